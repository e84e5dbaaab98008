// A database server as the relation above it sees it: a table with columns, how its values are
// asked for, and queries that answer in rows. An engine implements this once, in a library of its
// own that is loaded when an address names it (Engines.h).
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "DataAddress.h"
#include "Progress.h"
#include "Relation.h"
#include "SqlDialect.h"

namespace embedded::data {

// One value as it came from the server. Dates are days, times and timestamps seconds, both since
// 1970 (UTC) as Real; what is infinite there is an infinite Real.
struct SqlValue {
  enum class Kind : std::uint8_t { Null, Real, Signed, Unsigned, Text };
  Kind kind = Kind::Null;
  double real = 0.0;
  std::int64_t whole = 0;      // the bits of an Unsigned, too
  std::string_view text = {};  // lives until the next row is asked for

  static SqlValue ofReal(double value) { return {Kind::Real, value}; }
  static SqlValue ofSigned(std::int64_t value) { return {Kind::Signed, 0.0, value}; }
  static SqlValue ofUnsigned(std::uint64_t value) {
    return {Kind::Unsigned, 0.0, static_cast<std::int64_t>(value)};
  }
  static SqlValue ofText(std::string_view value) { return {Kind::Text, 0.0, 0, value}; }
};

// A query and what it answers with.
struct SqlQuery {
  std::string text;
  std::vector<std::string> types;  // of the answer's columns, by the engine's own names
  // Whether the engine is to do all its work before it delivers anything, so that what fails
  // delivers nothing; otherwise rows come as they are found.
  bool whole = true;
  // Whether each row begins with SqlDialect::mark, which is no column of the answer.
  bool marked = false;
};

// The rows of a query. All failures are Error(Data): a server that is lost, silent or refuses, an
// answer that breaks off; or Error(Cancelled).
class SqlResult {
 public:
  virtual ~SqlResult() = default;
  // Replaces `row`; false after the last row of a complete answer.
  virtual bool next(std::vector<SqlValue>& row) = 0;
};

// How a column is asked for. All are SQL expressions over the table's own columns.
struct SqlColumn {
  std::string value;   // what is delivered and grouped by; texts without trailing blanks
  std::string type;    // of that value, by the engine's own name
  std::string key;     // null where the value is missing or no number, else ordered as values are
  std::string number;  // a double, for arithmetic; empty for texts
};

class SqlServer {
 public:
  virtual ~SqlServer() = default;

  virtual const SqlDialect& dialect() const = 0;
  // The quoted table, for FROM.
  virtual const std::string& table() const = 0;
  virtual const std::vector<Column>& columns() const = 0;
  // With `asText` the value is a text, whatever the column holds; one of texts always is.
  virtual SqlColumn column(const Column& column, bool asText) const = 0;
  // Whether all queries of this connection see the same state of the data.
  virtual bool isSnapshot() const = 0;
  virtual std::unique_ptr<SqlResult> query(const SqlQuery& query) = 0;
};

struct ServerOptions {
  std::string source;                            // what messages call the data
  double timeout = 0.0;                          // seconds of silence that are borne; 0: any
  const std::atomic<bool>* cancelled = nullptr;  // looked at while waiting
  ProgressListener progress = {};                // told while waiting
};

// What an engine's library offers as "connectServer": connects, and finds the table. Errors are
// those of SqlResult, and Error(Data) for a table that is not there.
using ConnectServer = void(const ServerAddress& address, const ServerOptions& options,
                           std::unique_ptr<SqlServer>& server);

}  // namespace embedded::data
