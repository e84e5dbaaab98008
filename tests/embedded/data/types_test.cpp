// What values of each type read as.
#include <algorithm>

#include "Support.h"
#include "embedded/data/DataMessages.h"

namespace embedded::data {
namespace {

using Types = DataTest;

std::vector<SeenCase> casesOf(const std::string& address, std::vector<std::string> names = {}) {
  return readAll(optionsFor(address, CaseMode::CaseByCase), std::move(names)).cases;
}

TEST_F(Types, NumbersOfCsv) {
  EXPECT_EQ(casesOf(write("a.csv", "a,b\n1,0.5\n-2,\n,1e3\n")),
            (std::vector<SeenCase>{{"1", "0.5", "1"}, {"-2", ".", "1"}, {".", "1000", "1"}, {}}));
}

TEST_F(Types, DecimalsAfterALongRunOfWholeNumbersAreNotRounded) {
  std::string content = "a\n";
  for (int i = 0; i < 30000; ++i) content += "1\n";
  EXPECT_EQ(casesOf(write("a.csv", content + "1.5\n")).at(30000).at(0), "1.5");
}

TEST_F(Types, NullAndEmptyStringsOfCsvDiffer) {
  EXPECT_EQ(
      casesOf(write("a.csv", "a,b\n1,xyz\n2,\"\"\n3,\n4,y\n"), {"b"}),
      (std::vector<SeenCase>{{"[xyz]", "1"}, {"[   ]", "1"}, {"[000]", "1"}, {"[y  ]", "1"}, {}}));
}

TEST_F(Types, QuotedNumbersAreNumbersAndQuotedEmptyOnesMissing) {
  const std::string file = write("a.csv", "a,b\n\"1\",\"x\"\n\"\",\"\"\n\"3\",\n");
  EXPECT_EQ(casesOf(file),
            (std::vector<SeenCase>{{"1", "[x]", "1"}, {".", "[ ]", "1"}, {"3", "[0]", "1"}, {}}));
}

TEST_F(Types, BooleansAreWordsNotLetters) {
  EXPECT_EQ(casesOf(write("a.csv", "a,b\ntrue,f\nFALSE,t\n,f\n")),
            (std::vector<SeenCase>{{"1", "[f]", "1"}, {"0", "[t]", "1"}, {".", "[f]", "1"}, {}}));
}

TEST_F(Types, OnlyIsoDatesAreDates) {
  EXPECT_EQ(
      casesOf(write("a.csv", "a,b,c,d\n1970-01-02,01/02/2020,00:01:00,1970-01-01T00:00:01\n")),
      (std::vector<SeenCase>{{"1", "[01/02/2020]", "60", "1", "1"}, {}}));
}

TEST_F(Types, TypedColumns) {
  const std::string file = parquet("t.parquet",
                                   "SELECT 1.25::DECIMAL(9,2) AS dec, 'b'::ENUM('a','b') AS e, "
                                   "DATE '1970-01-11' AS d, TIME '00:00:01.5' AS t, "
                                   "TIMESTAMP '1970-01-01 00:00:02.25' AS ts, true AS b, "
                                   "1.5::FLOAT AS f, 200::UTINYINT AS u, -3::SMALLINT AS s");
  EXPECT_EQ(casesOf(file),
            (std::vector<SeenCase>{
                {"1.25", "[b]", "10", "1.5", "2.25", "1", "1.5", "200", "-3", "1"}, {}}));
}

TEST_F(Types, ColumnsOfADatabase) {
  Engine({}).rows(std::vector<std::string>{
      "ATTACH " + duckDbDialect.text(path("d.duckdb")) + " AS d",
      "CREATE TABLE d.t AS SELECT (-128)::TINYINT AS i8, 65535::USMALLINT AS u16, "
      "4294967295::UINTEGER AS u32, 36893488147419103232::HUGEINT AS i128, 5::UHUGEINT AS u128, "
      "1.25::DECIMAL(4,2) AS d4, 1.25::DECIMAL(38,2) AS d38, "
      "'1970-01-01 00:01:30'::TIMESTAMP_S AS s, '1970-01-01 00:00:01.5'::TIMESTAMP_MS AS ms, "
      "'1970-01-01 00:00:02.25'::TIMESTAMP_NS AS ns, "
      "'1970-01-01 02:00:01+02'::TIMESTAMPTZ AS tz, '00:00:01.123456789'::TIME_NS AS t, "
      "'00000000-0000-0000-0000-00000000000a'::UUID AS id"});
  const SeenCase expected{"-128",
                          "65535",
                          "4294967295",
                          output::shortest(0x1p65),
                          "5",
                          "1.25",
                          "1.25",
                          "90",
                          "1.5",
                          "2.25",
                          "1",
                          "1.123456789",
                          "[00000000-0000-0000-0000-00000000000a]",
                          "1"};
  for (const CaseMode mode : {CaseMode::CaseByCase, CaseMode::Patterns})
    EXPECT_EQ(readAll(optionsFor(path("d.duckdb") + "?table=t", mode)).cases,
              (std::vector<SeenCase>{expected, {}}));
}

TEST_F(Types, TimesOfCsvMayHaveAZone) {
  EXPECT_EQ(casesOf(write("z.csv", "t\n1970-01-01T00:00:01+00:00\n1970-01-01T02:00:02+02:00\n")),
            (std::vector<SeenCase>{{"1", "1"}, {"2", "1"}, {}}));
}

TEST_F(Types, ManyLargeNumbersThatADoubleHolds) {
  std::string content = "a\n";
  for (int i = 0; i < 6000; ++i) content += "9007199254740994\n";
  const std::vector<SeenCase> cases = casesOf(write("l.csv", content));
  ASSERT_EQ(cases.size(), 6001U);
  for (const SeenCase& one : cases)
    if (!one.empty()) {
      EXPECT_EQ(one[0], output::shortest(0x1p53 + 2));
    }
}

TEST_F(Types, NegativeZeroIsZeroAndWhatIsNotFiniteIsMissingWithAWarning) {
  const std::string file = parquet(
      "z.parquet",
      "SELECT v AS a FROM (VALUES (-0.0::DOUBLE), ('nan'), ('inf'), ('-inf'), (NULL), (1)) t(v)");
  for (const CaseMode mode : {CaseMode::CaseByCase, CaseMode::Patterns}) {
    const Seen seen = readAll(optionsFor(file, mode));
    ASSERT_EQ(seen.document.messages.size(), 1U);
    EXPECT_EQ(seen.document.messages[0].text->id, messages::nonFinite.id);
    EXPECT_EQ(std::get<double>(seen.document.messages[0].text->items.at(1)->value), 3);
    EXPECT_EQ(seen.document.data.cases.missing.at(0).second.system, 4U);
    const auto zeros = std::ranges::count_if(
        seen.cases, [](const SeenCase& one) { return !one.empty() && one[0] == "0"; });
    EXPECT_EQ(zeros, 1);
  }
}

TEST_F(Types, JsonOfBothForms) {
  const std::vector<SeenCase> cases{{"1", "[x]", "1"}, {"2.5", "[0]", "1"}, {}};
  EXPECT_EQ(casesOf(write("l.json", R"([{"a": 1, "b": "x"}, {"a": 2.5, "b": null}])")), cases);
  EXPECT_EQ(casesOf(write("n.json", "{\"a\": 1, \"b\": \"x\"}\n{\"a\": 2.5}\n")), cases);
}

TEST_F(Types, TabsAndSemicolonsSeparate) {
  const std::vector<SeenCase> cases{{"1", "[x]", "1"}, {}};
  EXPECT_EQ(casesOf(write("t.tsv", "a\tb\n1\tx\n")), cases);
  EXPECT_EQ(casesOf(write("s.csv", "a;b\n1;x\n")), cases);
}

TEST_F(Types, LineEndsAndByteOrderMark) {
  const std::vector<SeenCase> cases{{"1", "[x]", "1"}, {"2", "[y]", "1"}, {}};
  EXPECT_EQ(casesOf(write("w.csv",
                          "\xEF\xBB\xBF"
                          "a,b\r\n1,x\r\n2,y\r\n")),
            cases);
  EXPECT_EQ(casesOf(write("n.csv", "a,b\n1,x\n2,y")), cases);
}

TEST_F(Types, HeaderWithoutRowsHasNoCases) {
  EXPECT_TRUE(casesOf(write("h.csv", "a,b\n")).empty());
  EXPECT_TRUE(readAll(optionsFor(write("h.csv", "a,b\n"), CaseMode::Patterns)).cases.empty());
}

TEST_F(Types, SeveralFilesAreOneTable) {
  write("p1.csv", "a\n1\n");
  write("p2.csv", "a\n2\n");
  EXPECT_EQ(casesOf(path("p*.csv")), (std::vector<SeenCase>{{"1", "1"}, {"2", "1"}, {}}));
}

TEST_F(Types, AFileNameWithWildcardsStandsForItself) {
  write("p1.csv", "a\n1\n");
  EXPECT_EQ(casesOf(write("p*[1]?.csv", "a\n7\n")), (std::vector<SeenCase>{{"7", "1"}, {}}));
}

TEST_F(Types, HostileNamesAndValues) {
  const std::string name = "a\"b'; DROP TABLE x; --\\ \xE2\x98\x83";
  const std::string file =
      write("h'; .csv", "\"a\"\"b'; DROP TABLE x; --\\ \xE2\x98\x83\",select\n1,\"'; --\"\n");
  for (const CaseMode mode : {CaseMode::CaseByCase, CaseMode::Patterns}) {
    const Seen seen = readAll(optionsFor(file, mode), {name, "select"});
    EXPECT_EQ(seen.cases, (std::vector<SeenCase>{{"1", "['; --]", "1"}, {}}));
  }
}

TEST(SqlDialect, Quotes) {
  EXPECT_EQ(duckDbDialect.identifier("a\"b"), "\"a\"\"b\"");
  EXPECT_EQ(duckDbDialect.text("it's \\"), "'it''s \\'");
  EXPECT_EQ(clickHouseDialect.text("it's \\"), "'it\\'s \\\\'");
  EXPECT_EQ(clickHouseDialect.identifier("a`b\\"), "`a\\`b\\\\`");
  EXPECT_THROW(postgreSqlDialect.identifier(std::string(64, 'x')), Error);
  EXPECT_THROW(duckDbDialect.text(std::string("a\0b", 3)), Error);
}

}  // namespace
}  // namespace embedded::data
