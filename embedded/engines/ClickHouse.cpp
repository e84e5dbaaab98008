// Tables of ClickHouse over HTTP, also distributed ones: the cluster counts, this side reads what
// came out. The password is CLICKHOUSE_PASSWORD of the environment.
//
// A query that fails midway may answer 200, with the error behind the rows that were sent before.
// So small answers are held back by the server until all is done, and each row of a stream begins
// with a mark that no error begins with; the reader counts the rows besides.
#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <cstdlib>
#include <map>
#include <random>

#include "ClickHouseTypes.h"
#include "HttpAnswer.h"
#include "RowBinary.h"
#include "Waiting.h"
#include "embedded/data/EngineMessages.h"

namespace embedded::engines {
namespace {

namespace messages = data::messages;
using data::Column;
using data::fail;
using data::ServerAddress;
using data::ServerOptions;
using data::SqlQuery;
using data::SqlValue;

constexpr const char* passwordVariable = "CLICKHOUSE_PASSWORD";
constexpr std::size_t heldBack = std::size_t{1} << 20U;  // in the server's memory; more on its disk

struct Setting {
  std::string_view name;
  std::string_view value;
};

// Settings under which an answer is what the query says and the whole of it. A profile may have
// set others. Those that a server does not know are left out. They stand in a URL as they are.
constexpr std::array neededSettings{
    Setting{"skip_unavailable_shards", "0"},
    Setting{"distributed_group_by_no_merge", "0"},
    Setting{"read_overflow_mode", "throw"},
    Setting{"group_by_overflow_mode", "throw"},
    Setting{"sort_overflow_mode", "throw"},
    Setting{"result_overflow_mode", "throw"},
    Setting{"distinct_overflow_mode", "throw"},
    Setting{"transfer_overflow_mode", "throw"},
    Setting{"timeout_overflow_mode", "throw"},
    Setting{"limit", "0"},
    Setting{"offset", "0"},
    Setting{"aggregate_functions_null_for_empty", "0"},
    // Nothing is written; a query that nobody waits for any more ends; a query may name the
    // texts of its split groups.
    Setting{"readonly", "2"},
    Setting{"cancel_http_readonly_queries_on_client_close", "1"},
    Setting{"max_query_size", "16777216"},
};

// "Code: 60, e.displayText() = DB::Exception: Table x does not exist., e.what() = DB::Exception",
// or the same with fewer ornaments in newer servers.
std::string briefOf(const std::string& text) {
  const std::string_view begin = "DB::Exception: ";
  const std::size_t at = text.find(begin);
  std::string brief = at == std::string::npos ? text : text.substr(at + begin.size());
  brief.resize(std::min(
      {brief.find(", e.what()"), brief.find('\n'), brief.find(" (version "), brief.size()}));
  return brief;
}

int codeOf(const std::string& text) {
  const std::size_t at = text.find("Code: ");
  return at == std::string::npos ? 0 : std::atoi(text.c_str() + at + 6);
}

[[noreturn]] void failWith(const std::string& text, const ServerOptions& options) {
  switch (codeOf(text)) {
    case 192:  // unknown user
    case 193:  // wrong password
    case 194:  // a password is wanted
    case 516:  // authentication failed
      fail(messages::wrongPassword, {options.source, passwordVariable, briefOf(text)});
    case 60:  // unknown table
    case 81:  // unknown database
      fail(messages::noServerTable, {options.source, briefOf(text)});
    default:
      fail(messages::engineFailure, {options.source, briefOf(text)});
  }
}

std::string randomName() {
  std::random_device source;
  std::string name = "proportions-";
  for (int i = 0; i < 4; ++i) name += std::to_string(source()) + "-";
  return name;
}

// A host becomes part of a URL, and a user is told from the password behind it by a colon: neither
// may hold what would make it mean more.
void requirePlain(const ServerAddress& address) {
  const auto isPlain = [](unsigned char byte) {
    return std::isalnum(byte) != 0 || byte >= 0x80 || byte == '.' || byte == '-' || byte == '_' ||
           byte == ':' || byte == '%';
  };
  if (std::ranges::all_of(address.host, isPlain) && address.user.find(':') == std::string::npos)
    return;
  data::failUsage(messages::badServerAddress,
                  {address.scheme + "://USER@HOST:PORT/DATABASE/TABLE"});
}

// Where requests go, and as whom.
struct Door {
  std::string url;  // ends where parameters begin
  std::string user;
  std::string password;
  ServerOptions options;

  HttpRequest request(const std::string& parameters, std::string body) const {
    return {url + parameters, user, password, std::move(body)};
  }
};

class ClickHouseResult final : public data::SqlResult {
 public:
  ClickHouseResult(const Door& door, const std::string& settings, const SqlQuery& query)
      : door_(door),
        name_(randomName()),
        answer_(door.request(parameters(settings, query), query.text + " FORMAT RowBinary"),
                watched(door.options)),
        rows_(answer_, query.types, query.marked) {}

  ~ClickHouseResult() override {
    if (!answer_.ended()) kill();
  }
  ClickHouseResult(const ClickHouseResult&) = delete;
  ClickHouseResult& operator=(const ClickHouseResult&) = delete;

  bool next(std::vector<SqlValue>& row) override {
    if (!accepted_ && answer_.status() != 200) failWith(rows_.rest(), door_.options);
    accepted_ = true;
    switch (rows_.next(row)) {
      case RowBinary::Step::Row:
        return true;
      case RowBinary::Step::End:
        return false;
      case RowBinary::Step::Broken:
        break;
    }
    const std::string rest = rows_.rest();
    if (rest.find("DB::Exception") != std::string::npos) failWith(rest, door_.options);
    fail(messages::answerBroke, {door_.options.source});
  }

 private:
  std::string parameters(const std::string& settings, const SqlQuery& query) const {
    return "query_id=" + name_ + settings +
           (query.whole ? "&wait_end_of_query=1&buffer_size=" + std::to_string(heldBack) : "");
  }

  // Options under which the listener is told of the query also by a server that tells nothing of it
  // in the head of its answer: that one is asked, now and then.
  ServerOptions watched(ServerOptions options) {
    if (!options.progress) return options;
    options.progress = [this, tell = options.progress](const data::Progress& told) {
      if (told.rows == 0) ask();
      tell(told.rows == 0 ? asked_ : told);
    };
    return options;
  }

  void ask() noexcept {
    constexpr auto pace = std::chrono::seconds(1);
    const auto now = std::chrono::steady_clock::now();
    if (now < nextAsked_) return;
    nextAsked_ = now + pace;
    try {
      ServerOptions options = door_.options;
      options.timeout = 1.0;
      options.progress = nullptr;
      const std::string sql =
          "SELECT toUInt64(sum(read_rows)), toUInt64(sum(total_rows_approx)) FROM "
          "system.processes WHERE query_id = '" +
          name_ + "' FORMAT RowBinary";
      HttpAnswer answer(door_.request("", sql), options);
      RowBinary rows(answer, {"UInt64", "UInt64"}, false);
      std::vector<SqlValue> row;
      if (answer.status() == 200 && rows.next(row) == RowBinary::Step::Row)
        asked_ = {static_cast<std::uint64_t>(row[0].whole),
                  static_cast<std::uint64_t>(row[1].whole)};
    } catch (...) {
      nextAsked_ = now + 60 * pace;  // it has other things to do
    }
  }

  // Nobody will read on: the server need not either. It is asked in passing.
  void kill() const noexcept {
    try {
      ServerOptions options = door_.options;
      options.timeout = 1.0;
      options.cancelled = nullptr;
      options.progress = nullptr;
      HttpAnswer answer(door_.request("", "KILL QUERY WHERE query_id = '" + name_ + "' ASYNC"),
                        options);
      answer.status();
    } catch (...) {
      return;  // it finds out by itself
    }
  }

  const Door& door_;
  std::string name_;
  data::Progress asked_;
  std::chrono::steady_clock::time_point nextAsked_ =
      std::chrono::steady_clock::now() + std::chrono::seconds(1);
  HttpAnswer answer_;
  RowBinary rows_;
  bool accepted_ = false;  // the status was looked at
};

class ClickHouse final : public data::SqlServer {
 public:
  ClickHouse(const ServerAddress& address, const ServerOptions& options) {
    requirePlain(address);
    const bool isIpv6 = address.host.find(':') != std::string::npos;
    const std::string host = isIpv6 ? "[" + address.host + "]" : address.host;
    door_.url = (address.secure ? "https://" : "http://") + host + ":" +
                std::to_string(address.port) + "/?";
    door_.user = address.user.empty() ? "default" : address.user;
    const char* password = std::getenv(passwordVariable);
    door_.password = password == nullptr ? "" : password;
    door_.options = options;
    readSettings();
    const std::string table =
        address.schema.empty() ? address.table : address.schema + "." + address.table;
    table_ = dialect().identifier(address.database) + "." + dialect().identifier(table);
    readColumns(address.database, table);
  }

  const data::SqlDialect& dialect() const override { return data::clickHouseDialect; }
  const std::string& table() const override { return table_; }
  const std::vector<Column>& columns() const override { return columns_; }
  data::SqlColumn column(const Column& column, bool asText) const override {
    return clickHouseColumn(column, asText);
  }
  bool isSnapshot() const override { return false; }
  std::unique_ptr<data::SqlResult> query(const SqlQuery& query) override {
    return std::make_unique<ClickHouseResult>(door_, settings_, query);
  }

 private:
  // The rows of a small answer of two texts.
  std::vector<std::pair<std::string, std::string>> pairs(const std::string& sql) {
    const auto result = query({.text = sql, .types = {"String", "String"}});
    std::vector<std::pair<std::string, std::string>> pairs;
    for (std::vector<SqlValue> row; result->next(row);)
      pairs.emplace_back(row[0].text, row[1].text);
    return pairs;
  }

  // A user whom the server lets read only cannot change settings; what is wrong then stays wrong,
  // and the server says so when a setting is refused.
  void readSettings() {
    std::string names;
    for (const Setting& setting : neededSettings)
      names += (names.empty() ? "" : ", ") + dialect().text(setting.name);
    std::map<std::string, std::string> found;
    for (auto& [name, value] :
         pairs("SELECT name, value FROM system.settings WHERE name IN (" + names + ")"))
      found[name] = value;
    const bool mayOnlyRead = found["readonly"] == "1";
    for (const Setting& setting : neededSettings) {
      const std::string name(setting.name);
      const bool isSame = !found.contains(name) || found[name] == setting.value;
      const bool isLuxury =
          name == "readonly" || name.starts_with("cancel_") || name.starts_with("max_");
      if (!isSame && !(mayOnlyRead && isLuxury))
        settings_ += "&" + name + "=" + std::string(setting.value);
    }
    // Told only to those who watch: each report is a line in the head of an answer.
    if (door_.options.progress && !mayOnlyRead)
      settings_ += "&send_progress_in_http_headers=1&http_headers_progress_interval_ms=1000";
  }

  void readColumns(const std::string& database, const std::string& table) {
    for (auto& [name, type] : pairs(
             "SELECT name, type FROM system.columns WHERE database = " + dialect().text(database) +
             " AND table = " + dialect().text(table) + " AND default_kind != 'EPHEMERAL'"))
      columns_.push_back({name, type, clickHouseType(type).kind});
    if (columns_.empty())
      fail(messages::noServerTable, {door_.options.source, "Reason no table of that name ..."});
  }

  Door door_;
  std::string settings_;
  std::string table_;
  std::vector<Column> columns_;
};

}  // namespace
}  // namespace embedded::engines

extern "C" __attribute__((visibility("default"))) void connectServer(
    const embedded::data::ServerAddress& address, const embedded::data::ServerOptions& options,
    std::unique_ptr<embedded::data::SqlServer>& server) {
  server = std::make_unique<embedded::engines::ClickHouse>(address, options);
}
