// A server for HTTP that a test plays itself.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace engine_tests {

// Answers each request on a connection of its own, as the function says, several at a time; the
// function is called for one at a time. Ends with its object.
class FakeServer {
 public:
  // Within an answer: nothing is sent for a while.
  static constexpr std::string_view pause = "<pause>";

  explicit FakeServer(std::function<std::string(const std::string& sql)> answer)
      : answer_(std::move(answer)), listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    bind(listener_, generic, size);
    listen(listener_, 16);
    getsockname(listener_, generic, &size);
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { serve(); });
  }
  ~FakeServer() {
    shutdown(listener_, SHUT_RDWR);
    thread_.join();
    for (std::thread& one : answering_) one.join();
    close(listener_);
  }
  FakeServer(const FakeServer&) = delete;
  FakeServer& operator=(const FakeServer&) = delete;

  std::string address(const std::string& host = "127.0.0.1") const {
    return "clickhouse://" + host + ":" + std::to_string(port_) + "/d/t";
  }
  // The first lines of all requests so far.
  std::vector<std::string> requests() const {
    const std::scoped_lock lock(mutex_);
    return requests_;
  }

 private:
  void serve() {
    for (int client = 0; (client = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;)
      answering_.emplace_back([this, client] {
        serve(client);
        close(client);
      });
  }

  void serve(int client) {
    const std::string answer = answerTo(requestOf(client));
    for (std::size_t at = 0; at < answer.size();) {
      const std::size_t end = std::min(answer.find(pause, at), answer.size());
      send(client, answer.data() + at, end - at, MSG_NOSIGNAL);
      if (end < answer.size()) std::this_thread::sleep_for(std::chrono::milliseconds(400));
      at = end + pause.size();
    }
    shutdown(client, SHUT_WR);
    char left = 0;
    while (recv(client, &left, 1, 0) > 0) continue;
  }

  std::string answerTo(const std::string& request) {
    const std::scoped_lock lock(mutex_);
    requests_.push_back(request.substr(0, request.find("\r\n")));
    return answer_(request.substr(std::min(request.find("\r\n\r\n") + 4, request.size())));
  }

  // What a client sends, with its body; empty when it goes before that has come.
  static std::string requestOf(int client) {
    std::string request;
    const std::string length = "Content-Length: ";
    for (char buffer[4096];;) {
      const std::size_t head = request.find("\r\n\r\n");
      const std::size_t at = request.find(length);
      if (head != std::string::npos && at < head &&
          request.size() >= head + 4 + std::stoul(request.substr(at + length.size())))
        return request;
      const ssize_t got = recv(client, buffer, sizeof buffer, 0);
      if (got <= 0) return {};
      request.append(buffer, static_cast<std::size_t>(got));
    }
  }

  std::function<std::string(const std::string& sql)> answer_;
  int listener_;
  int port_ = 0;
  std::thread thread_;
  std::vector<std::thread> answering_;  // of that thread, until it ends
  mutable std::mutex mutex_;
  std::vector<std::string> requests_;
};

}  // namespace engine_tests
