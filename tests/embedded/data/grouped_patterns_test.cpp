// Patterns that the engine groups itself, because the language orders the groups: weights are gone
// when they arrive, and what was odd about them is told all the same.
#include "Support.h"
#include "embedded/data/DataMessages.h"

namespace embedded::data {
namespace {

class GroupedPatterns : public DataTest {
 protected:
  static DataOptions optionsOf(const std::string& address) {
    DataOptions options = optionsFor(address, CaseMode::Patterns);
    options.weight = "w";
    options.splits = {"s"};
    options.cases.collation = "de";
    return options;
  }
  // A database file with rows of a string s, a number v and a weight of some type.
  std::string database(const std::string& type, const std::string& rows) const {
    std::filesystem::remove(path("d.duckdb"));
    Engine({}).rows(
        std::vector<std::string>{"ATTACH " + duckDbDialect.text(path("d.duckdb")) + " AS d",
                                 "CREATE TABLE d.t AS SELECT s, v, w::" + type +
                                     " AS w FROM (VALUES " + rows + ") t(s, v, w)"});
    return path("d.duckdb") + "?table=t";
  }
  Failure failure(const std::string& type, const std::string& rows) const {
    return failureOf([&] { readAll(optionsOf(database(type, rows)), {"s", "v"}); });
  }
};

TEST_F(GroupedPatterns, SumWeightsOfEveryType) {
  const std::string rows =
      "('b', 1, 2), ('B', 1, 5), ('a', 1, 3), ('b', 1, 1), ('b', 0, NULL), ('a', 1, 0)";
  for (const std::string type : {"DOUBLE", "FLOAT", "INTEGER", "BIGINT", "UBIGINT", "HUGEINT",
                                 "UHUGEINT", "DECIMAL(4,1)", "DECIMAL(38,0)"})
    EXPECT_EQ(readAll(optionsOf(database(type, rows)), {"s", "v"}).cases,
              (std::vector<SeenCase>{{"[a]", "1", "3"},
                                     {"[a]", "1", "0"},
                                     {},
                                     {"[b]", "0", "0"},
                                     {"[b]", "1", "3"},
                                     {},
                                     {"[B]", "1", "5"},
                                     {}}))
        << type;
}

TEST_F(GroupedPatterns, CountWeightsThatAreNotFinite) {
  const Seen seen = readAll(
      optionsOf(database("DOUBLE",
                         "('a', 1, 2.0::DOUBLE), ('a', 1, 'inf'), ('b', 1, 'nan'), ('b', 1, 1)")),
      {"s", "v"});
  EXPECT_EQ(seen.cases.at(0), (SeenCase{"[a]", "1", "2"}));
  ASSERT_EQ(seen.document.messages.size(), 1U);
  EXPECT_EQ(seen.document.messages[0].text->id, messages::nonFinite.id);
  EXPECT_EQ(std::get<double>(seen.document.messages[0].text->items.at(1)->value), 2);
}

TEST_F(GroupedPatterns, RefuseAWeightThatADoubleCannotHold) {
  for (const std::string type : {"BIGINT", "HUGEINT", "DECIMAL(38,0)"})
    for (const std::string weight : {"9007199254740993", "-9007199254740993"}) {
      const Failure refused = failure(type, "('a', 1, 1), ('b', 1, " + weight + ")");
      EXPECT_EQ(refused.id, messages::inexactNumber.id) << type;
      ASSERT_EQ(refused.arguments.size(), 4U);
      EXPECT_EQ(refused.arguments[1], "2");
      EXPECT_EQ(refused.arguments[2], "w");
      EXPECT_EQ(refused.arguments[3], weight);
    }
  const Failure written = failureOf(
      [&] { readAll(optionsOf(write("w.csv", "s,v,w\na,1,1\nb,1,-9007199254740993\n")), {"v"}); });
  EXPECT_EQ(written.id, messages::inexactNumber.id);
}

TEST_F(GroupedPatterns, RefuseTotalsBeyondTheLimitAlsoWhereEachWeightIsExact) {
  EXPECT_EQ(failure("BIGINT", "('a', 1, 9007199254740992)").id, messages::heavyPattern.id);
  EXPECT_EQ(failure("BIGINT", "('a', 1, -9007199254740992)").id, "") << "a weight of no case";
}

TEST_F(GroupedPatterns, TellsHowFarTheyHaveCome) {
  std::size_t told = 0;
  DataOptions options = optionsOf(
      parquet("p.parquet", "SELECT 'a' AS s, i % 2 AS v, 1 AS w FROM range(300000) t(i)"));
  options.progress = [&](const Progress& progress) {
    ++told;
    if (progress.total > 0) {
      EXPECT_LE(progress.rows, progress.total);
    }
  };
  EXPECT_EQ(readAll(options, {"v"}).cases.at(0), (SeenCase{"0", "150000"}));
  EXPECT_GT(told, 0U);
}

}  // namespace
}  // namespace embedded::data
