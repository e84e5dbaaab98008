// Answers over HTTP that are not whole, from a server that the test plays itself: each is an error,
// none is taken for the data.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <functional>
#include <thread>

#include "embedded/data/EngineMessages.h"
#include "tests_data/Support.h"

namespace engine_tests {
namespace {

using namespace embedded::data;

// Answers each request on a connection of its own, as the function says; ends with its object.
class FakeServer {
 public:
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
    close(listener_);
  }
  FakeServer(const FakeServer&) = delete;
  FakeServer& operator=(const FakeServer&) = delete;

  std::string address() const { return "clickhouse://127.0.0.1:" + std::to_string(port_) + "/d/t"; }

 private:
  void serve() {
    for (int client = 0; (client = accept(listener_, nullptr, nullptr)) >= 0; close(client)) {
      const std::string answer = answer_(bodyOf(client));
      send(client, answer.data(), answer.size(), MSG_NOSIGNAL);
      shutdown(client, SHUT_WR);
      char left = 0;
      while (recv(client, &left, 1, 0) > 0) continue;
    }
  }

  static std::string bodyOf(int client) {
    std::string request;
    const std::string length = "Content-Length: ";
    for (char buffer[4096];;) {
      const std::size_t head = request.find("\r\n\r\n");
      const std::size_t at = request.find(length);
      if (head != std::string::npos && at < head &&
          request.size() >= head + 4 + std::stoul(request.substr(at + length.size())))
        return request.substr(head + 4);
      const ssize_t got = recv(client, buffer, sizeof buffer, 0);
      if (got <= 0) return {};
      request.append(buffer, static_cast<std::size_t>(got));
    }
  }

  std::function<std::string(const std::string& sql)> answer_;
  int listener_;
  int port_ = 0;
  std::thread thread_;
};

// An answer that says it has so many bytes, or as many as it has.
std::string answer(const std::string& body, std::size_t length = std::string::npos) {
  if (length == std::string::npos) length = body.size();
  return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(length) +
         "\r\nConnection: close\r\n\r\n" + body;
}

// A table with one column of small numbers and three rows; `rows` is what a stream of it gives.
FakeServer serverOf(const std::string& rows) {
  return FakeServer([rows](const std::string& sql) {
    if (sql.find("system.settings") != std::string::npos) return answer("");
    if (sql.find("system.columns") != std::string::npos) return answer("\x01v\x05UInt8");
    if (sql.starts_with("SELECT count(*)")) return answer(std::string("\x03\0\0\0\0\0\0\0", 8));
    return rows;
  });
}

Failure failureWith(const std::string& rows) {
  const FakeServer server = serverOf(rows);
  const Failure failure =
      failureOf([&] { readAll(optionsFor(server.address(), CaseMode::CaseByCase)); });
  EXPECT_TRUE(failure.id.empty() || failure.kind == embedded::ErrorKind::Data);
  return failure;
}

const std::string row = "\xA5\x01";

TEST(BrokenAnswers, AWholeOneIsRead) {
  EXPECT_EQ(failureWith(answer(row + row + row)).id, "");
}

TEST(BrokenAnswers, TheConnectionEnds) {
  EXPECT_EQ(failureWith(answer(row + row, 6)).id, messages::answerBroke.id);
}

TEST(BrokenAnswers, NothingComesAtAll) {
  EXPECT_EQ(failureWith("").id, messages::answerBroke.id);
}

TEST(BrokenAnswers, RowsAreLeftOut) {
  EXPECT_EQ(failureWith(answer(row + row)).id, messages::dataChanged.id);
}

TEST(BrokenAnswers, RowsAreAdded) {
  EXPECT_EQ(failureWith(answer(row + row + row + row)).id, messages::dataChanged.id);
}

TEST(BrokenAnswers, ARowIsCut) {
  EXPECT_EQ(failureWith(answer(row + row + "\xA5")).id, messages::answerBroke.id);
}

TEST(BrokenAnswers, AnErrorStandsBehindTheRows) {
  const Failure failure = failureWith(
      answer(row + "Code: 241, e.displayText() = DB::Exception: Memory limit, e.what() = x"));
  EXPECT_EQ(failure.id, messages::engineFailure.id);
  EXPECT_EQ(failure.arguments.at(1), "Memory limit");
}

TEST(BrokenAnswers, AnErrorOfANewerServerStandsBehindTheRows) {
  const Failure failure = failureWith(
      answer(row + row + row + "Code: 241. DB::Exception: Memory limit. (MEMORY) (version 24.8)"));
  EXPECT_EQ(failure.id, messages::engineFailure.id);
  EXPECT_EQ(failure.arguments.at(1), "Memory limit. (MEMORY)");
}

TEST(BrokenAnswers, AnotherPageAnswers) {
  EXPECT_EQ(failureWith(answer("<html></html>")).id, messages::answerBroke.id);
}

}  // namespace
}  // namespace engine_tests
