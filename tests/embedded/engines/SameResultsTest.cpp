// The same data give the same document, whichever engine they come from and however the cases are
// delivered: random tables in a file, in a table over three shards, and in PostgreSQL.
#include <optional>
#include <random>

#include "Servers.h"
#include "embedded/data/DuckDb.h"
#include "embedded/data/SqlDialect.h"
#include "tests_cli/Program.h"

namespace engine_tests {
namespace {

using embedded::data::clickHouseDialect;
using embedded::data::duckDbDialect;
using embedded::data::Engine;
using embedded::data::postgreSqlDialect;
using embedded::data::SqlDialect;
using nlohmann::json;

using Cell = std::optional<std::string>;
using Row = std::vector<Cell>;

// A column with its type in each engine, and the values that rows take from.
struct RandomColumn {
  const char* name;
  const char* duckDb;
  const char* clickHouse;
  const char* postgreSql;
  bool bare;  // a number, which ClickHouse wants without quotes
  std::vector<Cell> values;
};

const std::vector<RandomColumn>& columns() {
  static const std::vector<RandomColumn> list{
      {"s",
       "VARCHAR",
       "Nullable(String)",
       "text",
       false,
       {{}, "", " ", "a", "a ", "b", "B", "\xC3\xA4", "it's \\ \"q\""}},
      {"x",
       "DOUBLE",
       "Nullable(Float64)",
       "float8",
       true,
       {{}, "0", "-0.0", "nan", "inf", "-inf", "1.5", "-7", "1e300"}},
      {"d", "DATE", "Nullable(Date)", "date", false, {{}, "2020-02-29", "1999-12-31"}},
      {"i",
       "BIGINT",
       "Nullable(Int64)",
       "bigint",
       true,
       {{}, "0", "1", "9", "-9", "9007199254740992"}},
      {"m",
       "DECIMAL(18,3)",
       "Nullable(Decimal(18,3))",
       "numeric(18,3)",
       true,
       {{}, "0.5", "0.100", "-3.125", "12"}},
      {"t",
       "TIMESTAMP",
       "Nullable(DateTime)",
       "timestamp",
       false,
       {{}, "2020-02-29 12:34:56", "1971-01-01 00:00:00"}},
      {"w",
       "DOUBLE",
       "Nullable(Float64)",
       "float8",
       true,
       {{},
        "0.5",
        "0.49999999999999994",
        "1",
        "1.49",
        "1.5",
        "2.5",
        "0",
        "-1",
        "nan",
        "inf",
        "1000000"}}};
  return list;
}

std::string literal(const SqlDialect& dialect, const Cell& cell, bool bare) {
  if (!cell) return "NULL";
  return bare ? *cell : dialect.text(*cell);
}

std::string valuesOf(const std::vector<Row>& rows, const SqlDialect& dialect, bool bare) {
  std::string text;
  for (const Row& row : rows) {
    text += text.empty() ? "(" : ", (";
    for (std::size_t i = 0; i < row.size(); ++i)
      text += (i == 0 ? "" : ", ") + literal(dialect, row[i], bare && columns()[i].bare);
    text += ")";
  }
  return text;
}

// The list of columns, each as `name` and a type by `type`.
std::string definition(const char* RandomColumn::* type) {
  std::string text;
  for (const RandomColumn& column : columns())
    text += (text.empty() ? "" : ", ") + std::string(column.name) + " " + column.*type;
  return text;
}

void makeFile(const std::string& path, const std::vector<Row>& rows) {
  std::string casts;
  std::string names;
  for (const RandomColumn& column : columns()) {
    casts += (casts.empty() ? "" : ", ") + std::string(column.name) + "::" + column.duckDb +
             " AS " + column.name;
    names += (names.empty() ? "" : ", ") + std::string(column.name);
  }
  Engine({}).rows("COPY (SELECT " + casts + " FROM (VALUES " +
                  valuesOf(rows, duckDbDialect, false) + ") AS t(" + names + ")) TO " +
                  duckDbDialect.text(path) + " (FORMAT parquet)");
}

void makeClickHouse(const std::string& name, const std::vector<Row>& rows) {
  clickHouse().executeOnAll("CREATE TABLE " + name + "_part (" +
                            definition(&RandomColumn::clickHouse) +
                            ") ENGINE = MergeTree ORDER BY tuple()");
  clickHouse().execute("CREATE TABLE " + name + " AS " + name +
                       "_part ENGINE = Distributed(shards, default, " + name + "_part, rand())");
  clickHouse().execute("INSERT INTO " + name + " VALUES " +
                       valuesOf(rows, clickHouseDialect, true));
}

void makePostgreSql(const std::string& name, const std::vector<Row>& rows) {
  postgreSql().execute("CREATE TABLE " + name + " (" + definition(&RandomColumn::postgreSql) + ")");
  postgreSql().execute("INSERT INTO " + name + " VALUES " +
                       valuesOf(rows, postgreSqlDialect, false));
}

// What of a document may differ: where the data came from.
json withoutSource(json document) {
  document["data"].erase("source");
  document["data"].erase("fingerprint");
  document.erase("invocation");
  return document;
}

class Random {
 public:
  explicit Random(std::uint32_t seed) : source_(seed) {}
  template <class List>
  const auto& pick(const List& list) {
    return list[std::uniform_int_distribution<std::size_t>(0, list.size() - 1)(source_)];
  }
  std::size_t below(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(source_);
  }

 private:
  std::mt19937 source_;
};

std::vector<std::string> randomArguments(Random& random) {
  static const std::vector<std::string> commands{
      "PROPORTIONS /ONESAMPLE s x d i m t",
      "PROPORTIONS /ONESAMPLE x i m CITYPES=ALL TESTTYPES=ALL /SUCCESS VALUE=LAST",
      "PROPORTIONS /ONESAMPLE s /SUCCESS VALUE=LEVEL('a')",
      "PROPORTIONS /ONESAMPLE x m i /SUCCESS CUTPOINT(0) /MISSING SCOPE=LISTWISE",
      "PROPORTIONS /PAIREDSAMPLES x WITH i",
      "PROPORTIONS /INDEPENDENTSAMPLES x m BY i SELECT=CUTPOINT(1)",
      "PROPORTIONS /ONESAMPLE x i /MISSING USERMISSING=INCLUDE"};
  static const std::vector<std::vector<std::string>> splits{
      {},
      {},
      {"--split", "s"},
      {"--split", "x"},
      {"--split", "d,s"},
      {"--split", "m"},
      {"--split", "s,t", "--split-layout", "tables"}};
  static const std::vector<std::vector<std::string>> weights{{}, {"--weight", "w"}};
  static const std::vector<std::vector<std::string>> locales{{}, {"--locale", "de"}};
  std::vector<std::string> arguments{"-c", random.pick(commands), "--format", "json"};
  for (const auto& options : {random.pick(splits), random.pick(weights), random.pick(locales)})
    arguments.insert(arguments.end(), options.begin(), options.end());
  return arguments;
}

TEST(Engines, GiveTheSameDocumentForTheSameData) {
  REQUIRE_INSTALLED(clickHouse());
  REQUIRE_INSTALLED(postgreSql());
  const cli_tests::Folder folder;
  int withTables = 0;
  for (std::uint32_t trial = 0; trial < 30; ++trial) {
    Random random(trial);
    std::vector<Row> rows(1 + random.below(trial % 3 == 0 ? 12 : 300));
    for (Row& row : rows)
      for (const RandomColumn& column : columns()) row.push_back(random.pick(column.values));
    const std::string name = "random_" + std::to_string(trial);
    const std::string file = (folder.path() / (name + ".parquet")).string();
    makeFile(file, rows);
    makeClickHouse(name, rows);
    makePostgreSql(name, rows);
    const std::vector<std::string> options = randomArguments(random);
    std::string shown;
    for (const std::string& option : options) shown += option + " ";
    std::optional<json> expected;
    for (const std::string& address :
         {file, clickHouse().address(name), postgreSql().address(name)}) {
      for (const bool caseByCase : {false, true}) {
        std::vector<std::string> arguments{"run", address};
        arguments.insert(arguments.end(), options.begin(), options.end());
        if (caseByCase) arguments.push_back("--case-by-case");
        const cli_tests::Outcome outcome = cli_tests::run(arguments);
        EXPECT_LE(outcome.status, 1) << outcome.err;
        const json document = withoutSource(cli_tests::document(outcome));
        if (!expected && !document["tables"].empty()) ++withTables;
        if (!expected) expected = document;
        EXPECT_EQ(document, *expected) << address << " " << caseByCase << " " << shown;
      }
    }
  }
  EXPECT_GE(withTables, 25);  // the others are commands that the data do not suit
}

}  // namespace
}  // namespace engine_tests
