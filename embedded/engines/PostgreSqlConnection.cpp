// The library's asynchronous calls, so that waiting is ours.
#include "PostgreSqlConnection.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include "Waiting.h"
#include "embedded/data/EngineMessages.h"

namespace embedded::engines {
namespace {

namespace messages = data::messages;
using data::fail;
using Clock = std::chrono::steady_clock;

constexpr int glance = 50;  // milliseconds between looks at the user
constexpr double longestConnect = 30.0;
constexpr const char* passwordVariable = "PGPASSWORD";

// What the library says, on one line and without the place in the server's own code.
std::string brief(const char* text) {
  std::string all(text);
  all.resize(std::min(all.find("LOCATION:"), all.size()));
  std::string line;
  for (const char byte : all) {
    const bool isBlank = std::isspace(static_cast<unsigned char>(byte)) != 0;
    if (!isBlank) line += byte;
    if (isBlank && !line.ends_with(' ')) line += ' ';
  }
  while (line.ends_with(' ')) line.pop_back();
  return line;
}

// The error's code, which the library gives in its text alone while it connects: five digits and
// capital letters between colons, at least one of them a digit.
std::string codeIn(const std::string& text) {
  constexpr std::size_t length = 5;
  constexpr std::string_view digits = "0123456789";
  constexpr std::string_view all = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
  for (std::size_t at = text.find(": "); at != std::string::npos; at = text.find(": ", at + 1)) {
    const std::string code = text.substr(at + 2, length);
    if (code.size() == length && code.find_first_not_of(all) == std::string::npos &&
        code.find_first_of(digits) != std::string::npos && text.substr(at + 7, 1) == ":")
      return code;
  }
  return "";
}

bool isAboutPassword(const std::string& code) {
  return code == "28P01" || code == "28000";
}

}  // namespace

PostgreSqlConnection::PostgreSqlConnection(const data::ServerAddress& address,
                                           data::ServerOptions options)
    : options_(std::move(options)), heard_(Clock::now()) {
  const std::string port = std::to_string(address.port);
  const char* user = address.user.empty() ? nullptr : address.user.c_str();
  std::vector<const char*> names{
      "host", "port", "user", "dbname", "client_encoding", "application_name"};
  std::vector<const char*> values{address.host.c_str(),     port.c_str(), user,
                                  address.database.c_str(), "UTF8",       "proportions"};
  for (const auto& [name, value] : address.parameters) {
    names.push_back(name.c_str());
    values.push_back(value.c_str());
  }
  names.push_back(nullptr);
  values.push_back(nullptr);
  // Not as an expanded text: a database's name is nothing but a name.
  connection_.reset(PQconnectStartParams(names.data(), values.data(), 0));
  if (!connection_) throw std::bad_alloc();
  connect();
}

void PostgreSqlConnection::failConnection() const {
  const std::string text = brief(PQerrorMessage(connection_.get()));
  if (PQconnectionNeedsPassword(connection_.get()) != 0 || isAboutPassword(codeIn(text)))
    fail(messages::wrongPassword, {options_.source, passwordVariable, text});
  fail(messages::noConnection, {options_.source, text});
}

void PostgreSqlConnection::connect() {
  PQsetErrorVerbosity(connection_.get(), PQERRORS_VERBOSE);
  const double longest = options_.timeout > 0 ? options_.timeout : longestConnect;
  const data::ServerOptions patience{options_.source, longest, options_.cancelled};
  for (PostgresPollingStatusType state = PGRES_POLLING_WRITING; state != PGRES_POLLING_OK;) {
    if (state == PGRES_POLLING_FAILED || PQstatus(connection_.get()) == CONNECTION_BAD)
      failConnection();
    pollfd socket{PQsocket(connection_.get()),
                  static_cast<short>(state == PGRES_POLLING_READING ? POLLIN : POLLOUT), 0};
    mindCancelled(options_);
    mindSilence(patience, heard_);
    if (poll(&socket, 1, glance) > 0) state = PQconnectPoll(connection_.get());
  }
  PQsetErrorVerbosity(connection_.get(), PQERRORS_DEFAULT);
  PQsetnonblocking(connection_.get(), 1);
}

// Waits for the socket, for at most a glance, and takes what came.
void PostgreSqlConnection::wait(bool forWriting) {
  mindCancelled(options_);
  mindSilence(options_, heard_);
  if (options_.progress) options_.progress({rows_, 0});
  const int events = forWriting ? POLLIN | POLLOUT : POLLIN;
  pollfd socket{PQsocket(connection_.get()), static_cast<short>(events), 0};
  if (poll(&socket, 1, glance) <= 0) return;
  if ((socket.revents & POLLIN) != 0) heard_ = Clock::now();
  // A lost connection shows in the result.
  PQconsumeInput(connection_.get());
}

void PostgreSqlConnection::failResult(const PGresult* result) const {
  const char* field = PQresultErrorField(result, PG_DIAG_SQLSTATE);
  const std::string code = field == nullptr ? "" : field;
  const char* primary = PQresultErrorField(result, PG_DIAG_MESSAGE_PRIMARY);
  const std::string text = brief(primary != nullptr ? primary : PQerrorMessage(connection_.get()));
  if (code == "42P01" || code == "3F000") fail(messages::noServerTable, {options_.source, text});
  fail(messages::engineFailure, {options_.source, text});
}

// Ends what may still run, reads it off, and takes the transaction back to where it was before: a
// query that was ended leaves it failed.
void PostgreSqlConnection::abandon() {
  if (!busy_) return;
  const std::unique_ptr<PGcancel, void (*)(PGcancel*)> cancel(PQgetCancel(connection_.get()),
                                                              PQfreeCancel);
  std::array<char, 256> reason{};
  PQcancel(cancel.get(), reason.data(), static_cast<int>(reason.size()));
  while (const ResultPtr left = result()) continue;
  busy_ = false;
  execute("ROLLBACK TO SAVEPOINT before_query");
}

void PostgreSqlConnection::send(const std::string& sql) {
  abandon();
  heard_ = Clock::now();
  constexpr int binary = 1;
  if (PQsendQueryParams(connection_.get(), sql.c_str(), 0, nullptr, nullptr, nullptr, nullptr,
                        binary) == 0)
    fail(messages::engineFailure, {options_.source, brief(PQerrorMessage(connection_.get()))});
}

// The next result of what was sent; null when there is none.
ResultPtr PostgreSqlConnection::result() {
  while (PQflush(connection_.get()) == 1) wait(true);
  while (PQisBusy(connection_.get()) != 0) wait(false);
  return ResultPtr(PQgetResult(connection_.get()));
}

ResultPtr PostgreSqlConnection::execute(const std::string& sql) {
  send(sql);
  ResultPtr kept;
  while (ResultPtr next = result()) {
    const ExecStatusType status = PQresultStatus(next.get());
    if (status != PGRES_TUPLES_OK && status != PGRES_COMMAND_OK) failResult(next.get());
    kept = std::move(next);
  }
  if (!kept) fail(messages::answerBroke, {options_.source});
  return kept;
}

void PostgreSqlConnection::start(const std::string& sql) {
  abandon();
  execute("SAVEPOINT before_query");
  send(sql);
  PQsetSingleRowMode(connection_.get());
  rows_ = 0;
  busy_ = true;
}

ResultPtr PostgreSqlConnection::fetch() {
  if (!busy_) return nullptr;
  mindCancelled(options_);
  ResultPtr next = result();
  if (!next) fail(messages::answerBroke, {options_.source});
  const ExecStatusType status = PQresultStatus(next.get());
  if (status == PGRES_SINGLE_TUPLE) {
    ++rows_;
    return next;
  }
  busy_ = false;
  if (status != PGRES_TUPLES_OK) failResult(next.get());
  while (const ResultPtr end = result()) continue;
  return nullptr;
}

}  // namespace embedded::engines
