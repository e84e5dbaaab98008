// An answer is pulled: the transfer runs only while somebody reads, and rests while nobody does.
#include "HttpAnswer.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <new>
#include <string_view>
#include <utility>

#include "Waiting.h"
#include "embedded/data/EngineMessages.h"

namespace embedded::engines {
namespace {

namespace messages = data::messages;
using data::fail;

// Bytes that are held before the server is made to wait.
constexpr std::size_t enough = std::size_t{1} << 20U;
constexpr long connectMilliseconds = 30000;
constexpr int glance = 50;  // milliseconds between looks at the user

// The library's global state lives as long as the program.
bool initialise() {
  return curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
}

// The number that a line of JSON gives a name, with or without quotes around it; 0 when it gives
// none.
std::uint64_t numberIn(std::string_view line, std::string_view name) {
  const std::string key = '"' + std::string(name) + "\":";
  std::size_t at = line.find(key);
  if (at == line.npos) return 0;
  at += key.size();
  if (line.substr(at).starts_with('"')) ++at;
  std::uint64_t number = 0;
  std::from_chars(line.data() + at, line.data() + line.size(), number);
  return number;
}

}  // namespace

HttpAnswer::HttpAnswer(HttpRequest request, data::ServerOptions options)
    : request_(std::move(request)),
      options_(std::move(options)),
      error_(CURL_ERROR_SIZE, '\0'),
      heard_(std::chrono::steady_clock::now()) {
  static const bool initialised = initialise();
  multi_.reset(initialised ? curl_multi_init() : nullptr);
  easy_.reset(multi_ ? curl_easy_init() : nullptr);
  if (!easy_) throw std::bad_alloc();
  set(CURLOPT_URL, request_.url.c_str());
  set(CURLOPT_PROTOCOLS_STR, "http,https");
  trust();
  set(CURLOPT_FOLLOWLOCATION, 0L);
  set(CURLOPT_PROXY, "");
  set(CURLOPT_NOSIGNAL, 1L);
  set(CURLOPT_TCP_KEEPALIVE, 1L);
  set(CURLOPT_HTTPAUTH, CURLAUTH_BASIC);
  set(CURLOPT_USERNAME, request_.user.c_str());
  set(CURLOPT_PASSWORD, request_.password.c_str());
  set(CURLOPT_POSTFIELDS, request_.body.data());
  set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request_.body.size()));
  set(CURLOPT_CONNECTTIMEOUT_MS,
      options_.timeout > 0 ? static_cast<long>(options_.timeout * 1000) : connectMilliseconds);
  set(CURLOPT_ERRORBUFFER, error_.data());
  set(CURLOPT_WRITEFUNCTION, &HttpAnswer::receive);
  set(CURLOPT_WRITEDATA, this);
  set(CURLOPT_HEADERFUNCTION, &HttpAnswer::hear);
  set(CURLOPT_HEADERDATA, this);
  curl_multi_add_handle(multi_.get(), easy_.get());
}

HttpAnswer::~HttpAnswer() {
  curl_multi_remove_handle(multi_.get(), easy_.get());
}

template <class Value>
void HttpAnswer::set(CURLoption option, Value value) {
  if (curl_easy_setopt(easy_.get(), option, value) == CURLE_OUT_OF_MEMORY) throw std::bad_alloc();
}

// A server must prove that it is the one asked for. Whom it may name as its witness is up to the
// system, or to the variables that programs with this library and its encryption look at.
void HttpAnswer::trust() {
  set(CURLOPT_SSL_VERIFYPEER, 1L);
  set(CURLOPT_SSL_VERIFYHOST, 2L);
  for (const char* variable : {"CURL_CA_BUNDLE", "SSL_CERT_FILE"}) {
    const char* file = std::getenv(variable);
    if (file == nullptr || *file == '\0') continue;
    set(CURLOPT_CAINFO, file);
    break;
  }
  const char* folder = std::getenv("SSL_CERT_DIR");
  if (folder != nullptr && *folder != '\0') set(CURLOPT_CAPATH, folder);
}

std::size_t HttpAnswer::receive(const char* data, std::size_t one, std::size_t size, void* answer) {
  auto& self = *static_cast<HttpAnswer*>(answer);
  self.heard_ = std::chrono::steady_clock::now();
  if (self.buffer_.size() >= enough) {
    self.paused_ = true;
    return CURL_WRITEFUNC_PAUSE;
  }
  self.buffer_.append(data, one * size);
  return one * size;
}

std::size_t HttpAnswer::hear(const char* data, std::size_t one, std::size_t size, void* answer) {
  auto& self = *static_cast<HttpAnswer*>(answer);
  self.heard_ = std::chrono::steady_clock::now();
  const std::string_view line(data, one * size);
  if (line.starts_with("X-ClickHouse-Progress:")) {
    self.progress_.rows = numberIn(line, "read_rows");
    // Older servers call it so.
    self.progress_.total =
        std::max(numberIn(line, "total_rows_to_read"), numberIn(line, "total_rows"));
  }
  return one * size;
}

void HttpAnswer::finish(CURLcode code) {
  ended_ = true;
  if (code == CURLE_OK) return;
  const std::string reason = error_[0] != '\0' ? error_.c_str() : curl_easy_strerror(code);
  long status = 0;
  curl_easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
  if (code == CURLE_PEER_FAILED_VERIFICATION || code == CURLE_SSL_CACERT_BADFILE)
    fail(messages::notTrusted, {options_.source, reason});
  if (status == 0 && code != CURLE_GOT_NOTHING && code != CURLE_RECV_ERROR)
    fail(messages::noConnection, {options_.source, reason});
  fail(messages::answerBroke, {options_.source});
}

// Lets the transfer go on, for at most a glance; called when all that came was read.
void HttpAnswer::step() {
  mindCancelled(options_);
  if (paused_) {  // the server was kept waiting, not the other way round
    paused_ = false;
    heard_ = std::chrono::steady_clock::now();
    curl_easy_pause(easy_.get(), CURLPAUSE_CONT);
  }
  mindSilence(options_, heard_);
  if (options_.progress) options_.progress(progress_);
  int running = 0;
  curl_multi_perform(multi_.get(), &running);
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_.get(), &left))
    if (message->msg == CURLMSG_DONE) finish(message->data.result);
  if (!ended_ && buffer_.empty()) curl_multi_poll(multi_.get(), nullptr, 0, glance, nullptr);
}

bool HttpAnswer::read(std::string& buffer) {
  while (buffer_.empty() && !ended_) step();
  if (buffer_.empty()) return false;
  buffer += buffer_;
  buffer_.clear();
  return true;
}

long HttpAnswer::status() {
  while (buffer_.empty() && !ended_) step();
  long status = 0;
  curl_easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
  return status;
}

}  // namespace embedded::engines
