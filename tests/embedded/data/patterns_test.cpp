// Patterns and rows tell the same story: for random data, whatever a procedure can tally from
// the one it can tally from the other.
#include <rapidcheck.h>

#include <cmath>
#include <random>

#include "Support.h"
#include "embedded/data/DataMessages.h"
#include "host/distributions/MCMV.h"

namespace embedded::data {
namespace {

// Everything that can be told of one pattern of values in one split group.
struct Tally {
  double weight = 0;
  std::uint64_t cases = 0;
  friend bool operator==(const Tally&, const Tally&) = default;
};
// By the ordinal of the group, the bytes of the values, and whether the weight counts.
using Tallies = std::map<std::tuple<int, std::string, bool>, Tally>;

Tallies tallyOf(const std::string& file, CaseMode mode, bool weighted, std::size_t splits,
                std::uint64_t& delivered) {
  DataOptions options = optionsFor(file, mode);
  if (weighted) options.weight = "w";
  std::vector<std::string> names{"s", "x"};
  names.resize(splits);
  options.splits = names;
  OpenedData opened = openData(options);
  const std::vector<int> all{0, 1, 2, 3};
  opened.cases->measure(opened.dictionary, all);
  opened.cases->use(std::vector<int>{0, 1, 2, 3});
  const ObservationLayout& layout = opened.cases->layout();
  Tallies tallies;
  int group = 0;
  const auto stream = opened.cases->open();
  for (CaseBlock block; stream->next(block); group += block.endsGroup ? 1 : 0) {
    for (std::size_t i = 0; i < block.count; ++i) {
      const double weight = block.weights == nullptr ? 1.0 : block.weights[i];
      const bool counts = weight >= 0.5;
      std::string key;
      for (const int column : all) {
        const auto index = static_cast<std::size_t>(column);
        const OBS* value = block.rows + i * layout.words + layout.offsetOfVariable[index];
        key.append(value->bytes, ObsWords(opened.dictionary.variables[index].type) * sizeof(OBS));
      }
      Tally& tally = tallies[{group, key, counts}];
      tally.weight += counts ? std::floor(weight + 0.5) : 0.0;
      tally.cases += block.counts == nullptr ? 1 : block.counts[i];
      ++delivered;
    }
  }
  return tallies;
}

// One row of a random table, few values of each kind and all the odd ones.
std::string randomRow(std::mt19937& random) {
  static const std::vector<std::string> numbers{
      "NULL",          "0::DOUBLE",      "-0.0::DOUBLE", "'nan'::DOUBLE",
      "'inf'::DOUBLE", "'-inf'::DOUBLE", "1.5",          "-7"};
  static const std::vector<std::string> texts{"NULL", "''", "' '", "'a'", "'a '", "'b'", "'B'"};
  static const std::vector<std::string> dates{"NULL", "DATE '2020-01-01'", "DATE '1969-12-31'",
                                              "DATE 'infinity'"};
  static const std::vector<std::string> whole{"NULL", "0", "1", "9", "-9"};
  static const std::vector<std::string> weights{
      "NULL", "0.5",           "0.49999999999999994", "1",         "1.49", "1.5", "2.5", "0",
      "-1",   "'nan'::DOUBLE", "'inf'::DOUBLE",       "1000000000"};
  const auto pick = [&](const std::vector<std::string>& values) {
    return values[std::uniform_int_distribution<std::size_t>(0, values.size() - 1)(random)];
  };
  return "(" + pick(texts) + ", " + pick(numbers) + ", " + pick(dates) + ", " + pick(whole) + ", " +
         pick(weights) + ")";
}

class PatternsTest : public DataTest {};

TEST_F(PatternsTest, TellWhatTheRowsTell) {
  // Many small tables in one file each would spend its time opening files; so each trial is a
  // table of many groups, and each group is a data set of its own.
  const bool passed = rc::check("patterns and rows give the same tallies", [&] {
    std::mt19937 random(*rc::gen::arbitrary<std::uint32_t>());
    const auto rows = *rc::gen::inRange(1, 400);
    const auto weighted = *rc::gen::arbitrary<bool>();
    const auto splits = *rc::gen::inRange<std::size_t>(0, 3);
    std::string values;
    for (int i = 0; i < rows; ++i) values += (i == 0 ? "" : ", ") + randomRow(random);
    const std::string file =
        parquet("r.parquet",
                "SELECT s, x::DOUBLE AS x, d, i::BIGINT AS i, w::DOUBLE AS w FROM "
                "(VALUES " +
                    values + ") t(s, x, d, i, w)");
    std::uint64_t rowsDelivered = 0;
    std::uint64_t patternsDelivered = 0;
    const Tallies byRow = tallyOf(file, CaseMode::CaseByCase, weighted, splits, rowsDelivered);
    const Tallies byPattern =
        tallyOf(file, CaseMode::Patterns, weighted, splits, patternsDelivered);
    RC_ASSERT(byRow == byPattern);
    RC_ASSERT(rowsDelivered == static_cast<std::uint64_t>(rows));
    RC_ASSERT(patternsDelivered == byPattern.size());  // no two are equal
  });
  EXPECT_TRUE(passed);
}

using Patterns = PatternsTest;

TEST_F(Patterns, RoundEachWeightAndKeepInvalidOnesApart) {
  DataOptions options = optionsFor(
      write("a.csv", "v,w\n1,0.5\n1,1.49\n1,2.5\n1,0.49\n1,\n1,-2\n0,1\n"), CaseMode::Patterns);
  options.weight = "w";
  EXPECT_EQ(readAll(options, {"v"}).cases,
            (std::vector<SeenCase>{{"0", "1"}, {"1", "5"}, {"1", "0"}, {}}));
}

TEST_F(Patterns, ComeInTheOrderOfTheirValues) {
  EXPECT_EQ(readAll(optionsFor(write("a.csv", "v,s\n3,b\n-1,b\n3,a\n,b\n3,\n3,\"\"\n"),
                               CaseMode::Patterns))
                .cases,
            (std::vector<SeenCase>{{".", "[b]", "1"},
                                   {"-1", "[b]", "1"},
                                   {"3", "[0]", "1"},
                                   {"3", "[ ]", "1"},
                                   {"3", "[a]", "1"},
                                   {"3", "[b]", "1"},
                                   {}}));
}

TEST_F(Patterns, AreChosenWhenTheyAreFarFewerThanTheRows) {
  const auto chosen = [&](const std::string& query, const std::vector<int>& columns) {
    OpenedData opened = openData(optionsFor(parquet("c.parquet", query)));
    opened.cases->use(columns);
    return opened.cases->deliversPatterns();
  };
  const std::string query = "SELECT i % 2 AS few, i AS many FROM range(50000) t(i)";
  EXPECT_TRUE(chosen(query, {0}));
  EXPECT_FALSE(chosen(query, {1}));
  EXPECT_FALSE(chosen(query, {0, 1}));
}

TEST_F(Patterns, AColumnThatIsBothWeightAndSplitGroupsByItsRawValue) {
  DataOptions options = optionsFor(write("a.csv", "v,w\n1,2\n1,2\n1,0.7\n"), CaseMode::Patterns);
  options.weight = "w";
  options.splits = {"w"};
  EXPECT_EQ(readAll(options, {"v", "w"}).cases,
            (std::vector<SeenCase>{{"1", "0.7", "1"}, {}, {"1", "2", "4"}, {}}));
}

TEST_F(Patterns, OfNoColumnsAreTheNumberOfCases) {
  for (const std::string& file :
       {write("n.csv", "v\n1\n0\n1\n"), parquet("n.parquet", "SELECT unnest([1, 0, 1]) AS v")})
    for (const CaseMode mode : {CaseMode::Auto, CaseMode::CaseByCase, CaseMode::Patterns}) {
      DataOptions options = optionsFor(file, mode);
      options.cases.rowsAtOnce = 2;
      OpenedData opened = openData(options);
      opened.cases->use({});
      for (int pass = 0; pass < 2; ++pass) {
        std::uint64_t cases = 0;
        const auto stream = opened.cases->open();
        for (CaseBlock block; stream->next(block);)
          for (std::size_t i = 0; i < block.count; ++i)
            cases += block.counts == nullptr ? 1 : block.counts[i];
        EXPECT_EQ(cases, 3U) << file << ", pass " << pass;
      }
    }
}

TEST_F(Patterns, AStringLongerThanDeclaredIsRefused) {
  DataOptions options =
      optionsFor(parquet("l.parquet", "SELECT unnest(['abc', 'abcd']) AS v"), CaseMode::Patterns);
  options.schema =
      write("l.json", R"({"fields": [{"name": "v", "constraints": {"maxLength": 3}}]})");
  const Failure failure = failureOf([&] { readAll(options); });
  EXPECT_EQ(failure.id, messages::widerString.id);
  EXPECT_EQ(failure.arguments, (std::vector<std::string>{path("l.parquet"), "2", "v", "4", "3"}));
}

}  // namespace
}  // namespace embedded::data
