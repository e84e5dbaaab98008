// Tables of PostgreSQL, and of the distributed engines that speak its protocol. The password is
// PGPASSWORD of the environment.
//
// All queries run in one transaction that sees one state of the data, so that both passes agree;
// rows come one by one, so that memory does not grow with them.
#include <map>

#include "PostgreSqlConnection.h"
#include "PostgreSqlTypes.h"
#include "embedded/data/EngineMessages.h"

namespace embedded::engines {
namespace {

namespace messages = data::messages;
using data::Column;
using data::SqlQuery;
using data::SqlValue;

class PostgreSqlResult final : public data::SqlResult {
 public:
  PostgreSqlResult(PostgreSqlConnection& connection, std::uint64_t& latest, const SqlQuery& query)
      : connection_(connection), latest_(latest), number_(++latest) {
    connection_.start(query.text);
  }

  bool next(std::vector<SqlValue>& row) override {
    if (number_ != latest_) throw Error(ErrorKind::Internal, "A query was overtaken ...");
    result_ = connection_.fetch();
    if (!result_) return false;
    row.resize(static_cast<std::size_t>(PQnfields(result_.get())));
    for (std::size_t i = 0; i < row.size(); ++i)
      row[i] = postgreSqlValue(result_.get(), 0, static_cast<int>(i));
    return true;
  }

 private:
  PostgreSqlConnection& connection_;
  const std::uint64_t& latest_;
  std::uint64_t number_;
  ResultPtr result_;  // holds the texts of the row
};

class PostgreSql final : public data::SqlServer {
 public:
  PostgreSql(const data::ServerAddress& address, const data::ServerOptions& options)
      : connection_(address, options) {
    connection_.execute("BEGIN TRANSACTION ISOLATION LEVEL REPEATABLE READ READ ONLY");
    // Rows in the same order each time; a query that nobody waits for any more ends. Not every
    // server knows these.
    connection_.execute(
        "SELECT set_config(known.name, wanted.value, true) FROM pg_settings AS known JOIN (VALUES "
        "('synchronize_seqscans', 'off'), ('client_connection_check_interval', '1000')) AS "
        "wanted(name, value) ON known.name = wanted.name");
    if (!address.schema.empty()) table_ = dialect().identifier(address.schema) + ".";
    table_ += dialect().identifier(address.table);
    readColumns();
  }

  const data::SqlDialect& dialect() const override { return data::postgreSqlDialect; }
  const std::string& table() const override { return table_; }
  const std::vector<Column>& columns() const override { return columns_; }
  data::SqlColumn column(const Column& column, bool asText) const override {
    return postgreSqlColumn(column, types_.at(column.name), asText);
  }
  bool isSnapshot() const override { return true; }
  std::unique_ptr<data::SqlResult> query(const SqlQuery& query) override {
    return std::make_unique<PostgreSqlResult>(connection_, latest_, query);
  }

 private:
  // The description of an empty answer has every column, those of domains by their base type.
  void readColumns() {
    const ResultPtr none = connection_.execute("SELECT * FROM " + table_ + " LIMIT 0");
    for (int i = 0; i < PQnfields(none.get()); ++i) {
      const Oid type = PQftype(none.get(), i);
      const ResultPtr named =
          connection_.execute("SELECT format_type(oid, " + std::to_string(PQfmod(none.get(), i)) +
                              "), typtype = 'e' FROM pg_type WHERE oid = " + std::to_string(type));
      const bool isKnown = PQntuples(named.get()) == 1;
      const bool isEnumeration = isKnown && *PQgetvalue(named.get(), 0, 1) != 0;
      const std::string name = PQfname(none.get(), i);
      columns_.push_back({name, isKnown ? PQgetvalue(named.get(), 0, 0) : std::to_string(type),
                          postgreSqlKind(type, isEnumeration)});
      types_[name] = type;
    }
  }

  PostgreSqlConnection connection_;
  std::uint64_t latest_ = 0;  // the number of the last query
  std::string table_;
  std::vector<Column> columns_;
  std::map<std::string, Oid> types_;
};

}  // namespace
}  // namespace embedded::engines

extern "C" __attribute__((visibility("default"))) void connectServer(
    const embedded::data::ServerAddress& address, const embedded::data::ServerOptions& options,
    std::unique_ptr<embedded::data::SqlServer>& server) {
  server = std::make_unique<embedded::engines::PostgreSql>(address, options);
}
