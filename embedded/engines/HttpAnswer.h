// One HTTP request and the bytes of its answer, as they come.
#pragma once

#include <curl/curl.h>

#include <chrono>
#include <memory>
#include <string>

#include "embedded/data/SqlServer.h"

namespace embedded::engines {

struct HttpRequest {
  std::string url;
  std::string user;
  std::string password;
  std::string body;
};

// While it waits it looks whether the user interrupted, and how long the server has been silent.
// Errors are those of data::SqlResult. No proxy is used, no other address followed.
class HttpAnswer {
 public:
  HttpAnswer(HttpRequest request, data::ServerOptions options);
  ~HttpAnswer();
  HttpAnswer(const HttpAnswer&) = delete;
  HttpAnswer& operator=(const HttpAnswer&) = delete;

  // Appends what came next; false when the answer ended as the server meant it to.
  bool read(std::string& buffer);
  // The status; waits for it.
  long status();
  bool ended() const { return ended_; }

 private:
  struct CloseEasy {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
  };
  struct CloseMulti {
    void operator()(CURLM* handle) const { curl_multi_cleanup(handle); }
  };
  static std::size_t receive(const char* data, std::size_t one, std::size_t size, void* answer);
  static std::size_t hear(const char* data, std::size_t one, std::size_t size, void* answer);

  template <class Value>
  void set(CURLoption option, Value value);
  void trust();
  void step();
  void finish(CURLcode code);

  HttpRequest request_;
  data::ServerOptions options_;
  std::string error_;   // of the library, for people
  std::string buffer_;  // received and not yet read
  bool paused_ = false;
  bool ended_ = false;
  data::Progress progress_;  // as the server's headers told it last
  std::chrono::steady_clock::time_point heard_;
  std::unique_ptr<CURLM, CloseMulti> multi_;
  std::unique_ptr<CURL, CloseEasy> easy_;  // leaves the multi handle before that goes
};

}  // namespace embedded::engines
