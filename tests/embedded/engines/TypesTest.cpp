// What the columns of each engine are to us, which values they have, and that no name and no value
// is more than a name and a value.
#include <algorithm>

#include "Servers.h"
#include "embedded/data/DataMessages.h"
#include "embedded/data/EngineMessages.h"
#include "tests_data/Support.h"

namespace engine_tests {
namespace {

using namespace embedded::data;
using embedded::ErrorKind;

constexpr const char* hostile = "a`b\\c\"d'e; DROP TABLE x; -- \xC3\xA4 \xF0\x9F\x98\x80 %41 ?";

// The cases of one pass without their weights, as a set: a table of a server has no order.
std::vector<SeenCase> valuesOf(const DataOptions& options, std::vector<std::string> names = {}) {
  std::vector<SeenCase> cases = readAll(options, std::move(names)).cases;
  std::erase_if(cases, [](const SeenCase& seen) { return seen.empty(); });
  for (SeenCase& seen : cases) seen.pop_back();
  std::ranges::sort(cases);
  return cases;
}

std::vector<std::string> kindsOf(const std::string& address) {
  std::vector<std::string> kinds;
  for (const Variable& variable : openData(optionsFor(address)).dictionary.variables)
    kinds.push_back(variable.name + (variable.supported ? ":" : "!") +
                    std::to_string(static_cast<int>(variable.kind)));
  return kinds;
}

class EngineTypes : public DataTest {
 protected:
  // A schema file with this content, for tables that have none beside them.
  DataOptions withSchema(const std::string& address, CaseMode mode, const std::string& content) {
    DataOptions options = optionsFor(address, mode);
    options.schema = write("schema.json", content);
    return options;
  }
};

constexpr const char* textsSchema = R"({"fields": [
  {"name": "n", "type": "number", "missingValues": ["-", "NA"]},
  {"name": "b", "type": "boolean", "trueValues": ["yes"], "falseValues": ["no"]},
  {"name": "d", "type": "date"}, {"name": "w", "type": "number"}]})";

// Texts that a schema reads as something else, also as weight and as split variable, come out as
// from a file of the same content.
void expectTextsAreRead(DataOptions server, DataOptions file) {
  EXPECT_EQ(valuesOf(server, {"n", "b", "d"}), valuesOf(file, {"n", "b", "d"}));
  server.weight = file.weight = "w";
  server.splits = file.splits = {"n"};
  const std::vector<SeenCase> expected = readAll(file, {"n", "b", "d"}).cases;
  EXPECT_EQ(expected.front().front(), ".");
  EXPECT_EQ(readAll(server, {"n", "b", "d"}).cases, expected);
  // Case by case the groups are the same, and their order.
  server.cases.mode = CaseMode::CaseByCase;
  std::vector<std::string> groups;
  for (const SeenCase& seen : readAll(server, {"n"}).cases)
    if (seen.empty() || groups.empty() || seen[0] != groups.back())
      groups.push_back(seen.empty() ? "end" : seen[0]);
  EXPECT_EQ(groups, (std::vector<std::string>{".", "end", "9.5", "end", "10", "end"}));
}

constexpr const char* textsCsv =
    "n,b,d,w\n10,yes,2020-01-01,1\n9.50,no,1999-12-31,2.5\n-,yes,2020-01-01,0.5\n"
    ",no,2020-01-02,0.4\nNA,yes,2020-01-01,\n9.5,yes,2020-01-01,3\n";

TEST_F(EngineTypes, ClickHouseColumns) {
  REQUIRE_INSTALLED(clickHouse());
  clickHouse().execute(
      "CREATE TABLE types (i8 Int8, i64 Int64, u64 UInt64, f32 Float32, f64 Float64, s String, "
      "fs FixedString(4), e Enum8('one' = 1, 'two' = 2), d Date, t DateTime, dec Decimal(18, 4), "
      "u UUID, nf Nullable(Float64), ns Nullable(String), nd Nullable(Decimal(9, 2)), "
      "a Array(Int8)) ENGINE = Memory");
  clickHouse().execute(
      "INSERT INTO types VALUES (-8, -64, 64, 0.5, -0.0, 'x  ', 'ab', 'two', '2020-02-29', "
      "'2020-02-29 01:02:03', -1.25, '61f0c404-5cb3-11e7-907b-a6006ad3dba0', NULL, NULL, NULL, "
      "[1])");
  const std::string address = clickHouse().address("types");
  EXPECT_EQ(kindsOf(address).back(), "a!0");
  EXPECT_EQ(valuesOf(optionsFor(address, CaseMode::CaseByCase),
                     {"i8", "i64", "u64", "f32", "f64", "s", "fs", "e", "d", "t", "dec", "u", "nf",
                      "ns", "nd"}),
            (std::vector<SeenCase>{{"-8", "-64", "64", "0.5", "0", "[x]", "[ab]", "[two]", "18321",
                                    "1582938123", "-1.25", "[61f0c404-5cb3-11e7-907b-a6006ad3dba0]",
                                    ".", "[0]", "."}}));
  EXPECT_EQ(failureOf([&] { readAll(optionsFor(address), {"a"}); }).id,
            messages::unsupportedType.id);
}

TEST_F(EngineTypes, PostgreSqlColumns) {
  REQUIRE_INSTALLED(postgreSql());
  postgreSql().execute(
      "CREATE TYPE mood AS ENUM ('sad', 'glad'); CREATE DOMAIN small AS smallint; "
      "CREATE TABLE types (b boolean, i2 small, i8 bigint, f4 real, f8 float8, n numeric, "
      "s text, vc varchar(5), c char(4), e mood, d date, t time, ts timestamp, tz timestamptz, "
      "u uuid, nn numeric(5,2), nt text, j json)");
  postgreSql().execute(
      "INSERT INTO types VALUES (true, -2, -8, 0.5, '-0', 1.250, 'x  ', 'v', 'c', 'glad', "
      "'2020-02-29', '01:02:03.5', '2020-02-29 01:02:03', '2020-02-29 02:02:03+01', "
      "'61f0c404-5cb3-11e7-907b-a6006ad3dba0', NULL, NULL, '{}')");
  const std::string address = postgreSql().address("types");
  EXPECT_EQ(kindsOf(address).back(), "j!0");
  EXPECT_EQ(valuesOf(optionsFor(address, CaseMode::CaseByCase),
                     {"b", "i2", "i8", "f4", "f8", "n", "s", "vc", "c", "e", "d", "t", "ts", "tz",
                      "u", "nn", "nt"}),
            (std::vector<SeenCase>{{"1", "-2", "-8", "0.5", "0", "1.25", "[x]", "[v]", "[c]",
                                    "[glad]", "18321", "3723.5", "1582938123", "1582938123",
                                    "[61f0c404-5cb3-11e7-907b-a6006ad3dba0]", ".", "[0]"}}));
  EXPECT_EQ(failureOf([&] { readAll(optionsFor(address), {"j"}); }).id,
            messages::unsupportedType.id);
}

TEST_F(EngineTypes, PostgreSqlObjectNumbersAndBooleans) {
  REQUIRE_INSTALLED(postgreSql());
  postgreSql().execute(
      "CREATE TABLE objects (o oid, b boolean); INSERT INTO objects VALUES (4000000001, false), "
      "(1, true), (NULL, NULL)");
  for (const CaseMode mode : {CaseMode::CaseByCase, CaseMode::Patterns}) {
    DataOptions options = optionsFor(postgreSql().address("objects"), mode);
    EXPECT_EQ(valuesOf(options),
              (std::vector<SeenCase>{{".", "."}, {"1", "1"}, {"4000000001", "0"}}));
    options.weight = "o";
    EXPECT_EQ(readAll(options, {"b"}).cases.size(), 4U);
    options.splits = {"o", "b"};
    EXPECT_EQ(readAll(options, {"o"}).cases.size(), 6U);
  }
}

// Nobody is to ask for one; what comes is taken for the text that it is.
TEST_F(EngineTypes, APostgreSqlTypeThatIsNotKnownIsATextOnTheWire) {
  REQUIRE_INSTALLED(postgreSql());
  postgreSql().execute("CREATE TABLE documents AS SELECT '5'::json AS j");
  OpenedData opened = openData(optionsFor(postgreSql().address("documents")));
  ScanRequest request;
  request.columns.emplace_back().as = ColumnKind::Real;
  std::vector<OBS> rows;
  EXPECT_EQ(opened.cases->relation().scan(request)->next(rows), 1U);
  EXPECT_EQ(rows.at(0).number, 5.0);
}

TEST_F(EngineTypes, PostgreSqlInfinitiesAreMissingAndCounted) {
  REQUIRE_INSTALLED(postgreSql());
  postgreSql().execute(
      "CREATE TABLE infinities (n numeric, d date, ts timestamp); INSERT INTO infinities VALUES "
      "('NaN', 'infinity', '-infinity'), ('Infinity', '-infinity', 'infinity'), (1, '1970-01-02', "
      "'1970-01-01 00:00:01')");
  for (const CaseMode mode : {CaseMode::CaseByCase, CaseMode::Patterns}) {
    DataOptions options = optionsFor(postgreSql().address("infinities"), mode);
    options.splits = {"n", "d", "ts"};
    const Seen seen = readAll(options);
    EXPECT_EQ(seen.cases.size(), mode == CaseMode::Patterns ? 4U : 5U);
    EXPECT_EQ(seen.cases.front()[0], ".");
    EXPECT_EQ(seen.cases[seen.cases.size() - 2], (SeenCase{"1", "1", "1", "1"}));
    EXPECT_EQ(seen.document.messages.size(), 3U);  // one for each column
  }
}

TEST_F(EngineTypes, TextsAreReadAsASchemaSays) {
  REQUIRE_INSTALLED(clickHouse());
  REQUIRE_INSTALLED(postgreSql());
  const std::string rows =
      "('10','yes','2020-01-01','1'),('9.50','no','1999-12-31','2.5'),"
      "('-','yes','2020-01-01','0.5'),('','no','2020-01-02','0.4'),"
      "('NA','yes','2020-01-01',NULL),('9.5','yes','2020-01-01','3')";
  clickHouse().execute(
      "CREATE TABLE texts (n String, b String, d String, w Nullable(String)) ENGINE = Memory");
  clickHouse().execute("INSERT INTO texts VALUES " + rows);
  postgreSql().execute("CREATE TABLE texts (n text, b text, d text, w text)");
  postgreSql().execute("INSERT INTO texts VALUES " + rows);
  const DataOptions file =
      withSchema(write("texts.csv", textsCsv), CaseMode::Patterns, textsSchema);
  expectTextsAreRead(withSchema(clickHouse().address("texts"), CaseMode::Patterns, textsSchema),
                     file);
  expectTextsAreRead(withSchema(postgreSql().address("texts"), CaseMode::Patterns, textsSchema),
                     file);
}

// What the data hold and no case can: the same error from each engine and in both ways.
class Refused : public EngineTypes {
 protected:
  void SetUp() override {
    REQUIRE_INSTALLED(clickHouse());
    REQUIRE_INSTALLED(postgreSql());
  }
  void expectError(const std::string& table, const DataMessage& message,
                   const std::string& schema = "{}", const std::string& weight = "") {
    for (const std::string& address : {clickHouse().address(table), postgreSql().address(table)}) {
      for (const CaseMode mode : {CaseMode::CaseByCase, CaseMode::Patterns}) {
        DataOptions options = withSchema(address, mode, schema);
        if (!weight.empty()) options.weight = weight;
        const Failure failure = failureOf([&] { readAll(options, {"v"}); });
        EXPECT_EQ(failure.id, message.id) << address;
        EXPECT_EQ(failure.kind, ErrorKind::Data);
      }
    }
  }
  static void make(const std::string& table, const std::string& clickHouseColumns,
                   const std::string& postgreSqlColumns, const std::string& rows) {
    clickHouse().execute("CREATE TABLE " + table + " (" + clickHouseColumns + ") ENGINE = Memory");
    clickHouse().execute("INSERT INTO " + table + " VALUES " + rows);
    postgreSql().execute("CREATE TABLE " + table + " (" + postgreSqlColumns + ")");
    postgreSql().execute("INSERT INTO " + table + " VALUES " + rows);
  }
};

TEST_F(Refused, AWholeNumberThatADoubleCannotHold) {
  make("large", "v Int64", "v bigint", "(1), (9007199254740993)");
  expectError("large", messages::inexactNumber);
}

TEST_F(Refused, ADecimalNumberThatADoubleCannotHold) {
  make("large_decimal", "v Decimal(38, 2)", "v numeric(38, 2)", "(1.5), (9007199254740993.00)");
  expectError("large_decimal", messages::inexactNumber);
}

TEST_F(Refused, AWeightThatADoubleCannotHold) {
  make("large_weight", "v Int8, w Int64", "v smallint, w bigint", "(1, 1), (1, -9007199254740993)");
  expectError("large_weight", messages::inexactNumber, "{}", "w");
}

TEST_F(Refused, ATextThatIsNoNumber) {
  make("no_number", "v String", "v text", "('1'), ('one')");
  expectError("no_number", messages::badValue, R"({"fields": [{"name": "v", "type": "number"}]})");
}

TEST_F(Refused, ATextLongerThanDeclared) {
  make("too_long", "v String", "v text", "('1'), ('four  ')");
  expectError("too_long", messages::widerString,
              R"({"fields": [{"name": "v", "type": "string", "constraints": {"maxLength": 3}}]})");
}

TEST_F(Refused, WeightsThatAddUpToTooMuch) {
  make("heavy", "v Int8, w Float64", "v smallint, w float8", "(1, 4e15), (1, 4e15)");
  for (const std::string& address :
       {clickHouse().address("heavy"), postgreSql().address("heavy")}) {
    DataOptions options = optionsFor(address, CaseMode::Patterns);
    options.weight = "w";
    EXPECT_EQ(failureOf([&] { readAll(options); }).id, messages::heavyPattern.id);
  }
}

TEST_F(Refused, ATextThatIsNotUtf8) {
  clickHouse().execute("CREATE TABLE bytes (v String) ENGINE = Memory");
  clickHouse().execute("INSERT INTO bytes SELECT unhex('61FF')");
  for (const CaseMode mode : {CaseMode::CaseByCase, CaseMode::Patterns})
    EXPECT_EQ(failureOf([&] { readAll(optionsFor(clickHouse().address("bytes"), mode)); }).id,
              messages::textEncoding.id);
}

// It could pass for a null text, and two of them for the same.
TEST_F(Refused, ATextWithANulByte) {
  clickHouse().execute("CREATE TABLE nul_bytes (v String) ENGINE = Memory");
  clickHouse().execute("INSERT INTO nul_bytes SELECT unhex('00')");
  for (const CaseMode mode : {CaseMode::CaseByCase, CaseMode::Patterns}) {
    const Failure failure =
        failureOf([&] { readAll(optionsFor(clickHouse().address("nul_bytes"), mode)); });
    EXPECT_EQ(failure.id, messages::unreadable.id);
    EXPECT_EQ(failure.arguments.at(1), "Reason holds a NUL byte ...");
  }
}

using HostileNames = EngineTypes;

// Reads a table whose name, columns and values are all hostile, whole and split by them.
void expectHostileIsRead(const std::string& address, const std::string& column) {
  for (const CaseMode mode : {CaseMode::CaseByCase, CaseMode::Patterns}) {
    for (const char* collation : {"", "de"}) {
      DataOptions options = optionsFor(address, mode);
      options.splits = {column};
      options.cases.collation = collation;
      const std::vector<SeenCase> expected{{"[" + std::string(hostile) + "]", "7", "8"}};
      EXPECT_EQ(valuesOf(options, {column, "v_0", "select"}), expected) << address;
    }
  }
}

TEST_F(HostileNames, InClickHouse) {
  REQUIRE_INSTALLED(clickHouse());
  const std::string table = clickHouseDialect.identifier(hostile);
  clickHouse().executeOnAll("CREATE TABLE hostile_part (" + table +
                            " String, `v_0` Int8, `select` Int8) ENGINE = MergeTree ORDER BY "
                            "tuple()");
  clickHouse().execute(
      "CREATE TABLE hostile AS hostile_part ENGINE = Distributed(shards, default, "
      "hostile_part, rand())");
  clickHouse().execute("INSERT INTO hostile VALUES (" + clickHouseDialect.text(hostile) +
                       ", 7, 8)");
  expectHostileIsRead(clickHouse().address("hostile"), hostile);
  clickHouse().execute("CREATE TABLE " + table + " AS hostile_part ENGINE = Memory");
  clickHouse().execute("INSERT INTO " + table + " SELECT * FROM hostile");
  expectHostileIsRead(clickHouse().address(hostile), hostile);
}

TEST_F(HostileNames, InPostgreSql) {
  REQUIRE_INSTALLED(postgreSql());
  const std::string table = postgreSqlDialect.identifier(hostile);
  postgreSql().execute("CREATE TABLE " + table + " (" + table +
                       " text, \"v_0\" smallint, \"select\" smallint)");
  postgreSql().execute("INSERT INTO " + table + " VALUES (" + postgreSqlDialect.text(hostile) +
                       ", 7, 8)");
  expectHostileIsRead(postgreSql().address(hostile), hostile);
}

TEST_F(HostileNames, APostgreSqlTableInASchemaAndALongName) {
  REQUIRE_INSTALLED(postgreSql());
  const std::string longest(63, 'x');
  postgreSql().execute("CREATE SCHEMA \"other.one\"; CREATE TABLE \"other.one\".\"" + longest +
                       "\" AS SELECT 1 AS " + longest);
  const std::string address = postgreSql().address("other.one") + "." + longest;
  EXPECT_EQ(valuesOf(optionsFor(address)), (std::vector<SeenCase>{{"1"}}));
  // One byte more would be cut by the server, and mean the table of the shorter name.
  EXPECT_EQ(failureOf([&] { openData(optionsFor(address + "x")); }).kind, ErrorKind::Data);
}

TEST_F(HostileNames, TooManyTextsForACollationAreRefused) {
  REQUIRE_INSTALLED(clickHouse());
  clickHouse().execute("CREATE TABLE many (v String) ENGINE = Memory");
  clickHouse().execute("INSERT INTO many SELECT toString(number) FROM system.numbers LIMIT 6000");
  DataOptions options = optionsFor(clickHouse().address("many"), CaseMode::Patterns);
  options.splits = {"v"};
  EXPECT_EQ(valuesOf(options).size(), 6000U);
  options.cases.collation = "de";
  EXPECT_EQ(failureOf([&] { readAll(options); }).id, messages::tooManyToOrder.id);
}

// A server's user who may not change settings, and one whose profile would falsify answers.
TEST_F(EngineTypes, ClickHouseUsersWithOtherSettings) {
  REQUIRE_INSTALLED(clickHouse());
  clickHouse().execute("CREATE TABLE settings (v Int8) ENGINE = Memory");
  clickHouse().execute("INSERT INTO settings VALUES (3)");
  for (const char* user : {"reader", "lenient"})
    EXPECT_EQ(valuesOf(optionsFor(clickHouse().address("settings", user))),
              (std::vector<SeenCase>{{"3"}}));
}

TEST_F(EngineTypes, AnEmptyTableHasNoCases) {
  REQUIRE_INSTALLED(clickHouse());
  REQUIRE_INSTALLED(postgreSql());
  clickHouse().execute("CREATE TABLE empty (v Int8, s String) ENGINE = Memory");
  postgreSql().execute("CREATE TABLE empty (v smallint, s text)");
  for (const std::string& address : {clickHouse().address("empty"), postgreSql().address("empty")})
    for (const CaseMode mode : {CaseMode::CaseByCase, CaseMode::Patterns, CaseMode::Auto})
      EXPECT_TRUE(valuesOf(optionsFor(address, mode)).empty());
}

// As when patterns turn out to be too many: what was asked is given up, and rows are read instead.
TEST_F(EngineTypes, AnUnfinishedAnswerGivesWayToAnother) {
  REQUIRE_INSTALLED(clickHouse());
  REQUIRE_INSTALLED(postgreSql());
  clickHouse().execute(
      "CREATE VIEW numbers AS SELECT number AS v FROM system.numbers LIMIT 300000");
  postgreSql().execute("CREATE VIEW numbers AS SELECT i AS v FROM generate_series(1, 300000) AS i");
  for (const std::string& address :
       {clickHouse().address("numbers"), postgreSql().address("numbers")}) {
    OpenedData opened = openData(optionsFor(address));
    Relation& relation = opened.cases->relation();
    ScanRequest request;
    request.columns.emplace_back().as = ColumnKind::Integer;
    for (int i = 0; i < 2; ++i) {
      PatternBatch batch;
      EXPECT_TRUE(relation.patterns(request)->next(batch));
      EXPECT_EQ(relation.rowCount(), 300000U);
      std::vector<OBS> rows;
      EXPECT_GT(relation.scan(request)->next(rows), 0U);
    }
    EXPECT_EQ(relation.rowCount(), 300000U);
  }
}

// One connection answers one query at a time; the older one cannot go on.
TEST_F(EngineTypes, APostgreSqlAnswerThatWasGivenUpIsNotReadOn) {
  REQUIRE_INSTALLED(postgreSql());
  postgreSql().execute(
      "CREATE VIEW overtaken AS SELECT i AS v FROM generate_series(1, 10000) AS i");
  OpenedData opened = openData(optionsFor(postgreSql().address("overtaken")));
  ScanRequest request;
  request.columns.emplace_back().as = ColumnKind::Integer;
  std::vector<OBS> rows;
  const auto older = opened.cases->relation().scan(request);
  EXPECT_GT(older->next(rows), 0U);
  const auto newer = opened.cases->relation().scan(request);
  EXPECT_GT(newer->next(rows), 0U);
  EXPECT_EQ(failureOf([&] { older->next(rows); }).kind, ErrorKind::Internal);
  EXPECT_GT(newer->next(rows), 0U);
}

// The first question finds out, and the next ones know.
TEST_F(EngineTypes, APostgreSqlServerThatEndedTheConnectionAnswersNothingMore) {
  REQUIRE_INSTALLED(postgreSql());
  postgreSql().execute("CREATE TABLE left_alone AS SELECT 1 AS v");
  OpenedData opened = openData(optionsFor(postgreSql().address("left_alone")));
  EXPECT_EQ(opened.cases->relation().rowCount(), 1U);
  postgreSql().execute(
      "SELECT pg_terminate_backend(pid) FROM pg_stat_activity WHERE application_name = "
      "'proportions' AND pid <> pg_backend_pid()");
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(failureOf([&] { opened.cases->relation().rowCount(); }).kind, ErrorKind::Data);
}

// The question itself is of twelve megabytes, more than a connection takes at once.
TEST_F(EngineTypes, LongTextsArePutInOrder) {
  REQUIRE_INSTALLED(postgreSql());
  postgreSql().execute(
      "CREATE TABLE long_texts AS SELECT CASE WHEN i % 2 = 0 THEN 'b' ELSE 'C' END || "
      "repeat('x', 20000) || to_char(i, 'FM0000') AS s FROM generate_series(1, 600) AS i");
  DataOptions options = optionsFor(postgreSql().address("long_texts"), CaseMode::Patterns);
  options.splits = {"s"};
  options.cases.collation = "en";
  std::vector<std::string> places;
  for (const SeenCase& seen : readAll(options).cases)
    if (!seen.empty()) places.push_back(seen[0].substr(0, 2) + seen[0].substr(20002, 4));
  ASSERT_EQ(places.size(), 600U);
  EXPECT_EQ(places.front(), "[b0002");
  EXPECT_EQ(places[299], "[b0600");
  EXPECT_EQ(places[300], "[C0001");
  EXPECT_TRUE(std::ranges::is_sorted(places.begin(), places.begin() + 300));
}

// More than the answer's buffers hold, so that the server has to wait for the reader.
TEST_F(EngineTypes, LongStreamsArriveWhole) {
  REQUIRE_INSTALLED(clickHouse());
  REQUIRE_INSTALLED(postgreSql());
  clickHouse().execute(
      "CREATE VIEW wide AS SELECT number AS v, toString(number * 1000003) AS s "
      "FROM system.numbers LIMIT 300000");
  postgreSql().execute(
      "CREATE VIEW wide AS SELECT i - 1 AS v, ((i - 1)::bigint * 1000003)::text "
      "AS s FROM generate_series(1, 300000) AS i");
  for (const std::string& address : {clickHouse().address("wide"), postgreSql().address("wide")}) {
    OpenedData opened = openData(optionsFor(address, CaseMode::CaseByCase));
    const std::vector<int> all{0, 1};
    opened.cases->measure(opened.dictionary, all);
    opened.cases->use(all);
    double sum = 0;
    const auto stream = opened.cases->open();
    for (CaseBlock block; stream->next(block);)
      for (std::size_t i = 0; i < block.count; ++i)
        sum += block.rows[i * opened.cases->layout().words].number;
    EXPECT_EQ(sum, 299999.0 * 150000.0) << address;
  }
}

}  // namespace
}  // namespace engine_tests
