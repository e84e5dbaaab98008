// Bootstrap samples, imputations, and split groups laid as rows of common tables.
#include "ModuleTest.h"
#include "proportions/proportionsFlags.h"

namespace module_tests {
namespace {

using scripted::numeric;
using scripted::oneSample;
using scripted::qualified;
using scripted::success;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

constexpr double Gone = MCMV::Missing;

// What each analysis object's dump says under the label.
Numbers dumped(Host& host, const std::string& label) {
  gDisplayAlgorithm = true;
  host.run();
  gDisplayAlgorithm = false;
  Numbers found;
  for (const scripted::Line& line : host.log.lines)
    if (line.label == label) found.push_back(line.numbers.at(0));
  return found;
}

scripted::DataSet samples(const Numbers& pooling, const Numbers& values,
                          const std::string& name = "$bootstrap_split") {
  return {.variables = {numeric(name, pooling), numeric("v", values)},
          .splits = {name},
          .splitsAsRows = true,
          .bootstrapping = true};
}

scripted::Command command(const std::string& rule) {
  return {oneSample({"v"}), success(qualified("VALUE", rule))};
}

// Labels of "Variables" in the first table of a split group.
nlohmann::json labelsOf(const Host& host, std::size_t table) {
  nlohmann::json labels = nlohmann::json::array();
  const nlohmann::json written = scripted::writeTable(*host.log.tables.at(table));
  for (const auto& variable : written["variables"]) labels.push_back(variable["label"][1][1]);
  return labels;
}

// --- Flags and the pooling variable -------------------------------------------------------------

TEST(Pooling, IsNotPreparedWithoutSplits) {
  Host host({.variables = {numeric("v", {1, 0})}, .splitsAsRows = true, .bootstrapping = true},
            command("LAST"));
  EXPECT_THAT(dumped(host, "Need aggregation flag"), ElementsAre(0.0));
  EXPECT_EQ(host.log.count("QBOOTSTRAPPING"), 0u);
}

TEST(Pooling, IsNotPreparedForSeparateTablesOrFixedRules) {
  scripted::DataSet separate = samples({0, 1}, {1, 2});
  separate.splitsAsRows = false;
  Host host(separate, command("LAST"));
  EXPECT_THAT(dumped(host, "Pooling Variable Index"), ElementsAre(-1.0, -1.0));
}

TEST(Pooling, IsNotPreparedForARuleThatTakesNoValueFromTheData) {
  Host host(samples({0, 1}, {1, 2}), {oneSample({"v"}), success(scripted::cutPoint("VALUE", 2))});
  EXPECT_THAT(dumped(host, "Need aggregation flag"), ElementsAre(0.0, 0.0));
}

TEST(Pooling, KnowsTheBootstrapByItsExactName) {
  Host exact(samples({0, 1}, {1, 2}), command("LAST"));
  EXPECT_THAT(dumped(exact, "Bootstrapping flag"), ElementsAre(1.0, 1.0));
}

TEST(Pooling, TakesACapitalizedBootstrapNameForAUserSplit) {
  Host capital(samples({0, 1}, {1, 2}, "$Bootstrap_split"), command("LAST"));
  EXPECT_THAT(dumped(capital, "Bootstrapping flag"), ElementsAre(0.0, 0.0));
}

TEST(Pooling, KnowsImputationsByTheirNameInAnyCase) {
  Host host(samples({0, 1}, {1, 2}, "imputation_"), command("LAST"));
  EXPECT_THAT(dumped(host, "Multiple Imputation flag"), ElementsAre(1.0, 1.0));
}

TEST(Pooling, TakesAStringOfEitherNameForAUserSplit) {
  for (const char* name : {"$bootstrap_split", "IMPUTATION_"}) {
    Host host({.variables = {scripted::text(name, 2, {"0", "1"}), numeric("v", {1, 2})},
               .splits = {name},
               .splitsAsRows = true},
              command("LAST"));
    EXPECT_THAT(dumped(host, "Pooling Variable Index"), ElementsAre(-1.0, -1.0)) << name;
  }
}

TEST(Pooling, AssertsThatTheHostBootstraps) {
  scripted::DataSet data = samples({0, 1}, {1, 2});
  data.bootstrapping = false;
  Host host(data, command("LAST"));
  try {
    host.run();
    FAIL() << "the assertion did not fail";
  } catch (const scripted::AssertionFailed& failure) {
    EXPECT_EQ(failure.expression, "bBootstrap");
  }
}

TEST(Pooling, PoolsByTheLaterOfTwoPoolingVariables) {
  Host host({.variables = {numeric("$bootstrap_split", {0, 0}), numeric("IMPUTATION_", {0, 1}),
                           numeric("v", {1, 2})},
             .splits = {"$bootstrap_split", "IMPUTATION_"},
             .splitsAsRows = true,
             .bootstrapping = true},
            command("LAST"));
  EXPECT_THAT(dumped(host, "Pooling Variable Index"), ElementsAre(1.0, 1.0));
}

TEST(Pooling, SetsBothFlagsWithBothPoolingVariables) {
  const scripted::DataSet data{
      .variables = {numeric("IMPUTATION_", {0, 0}), numeric("$bootstrap_split", {0, 1}),
                    numeric("v", {1, 2})},
      .splits = {"IMPUTATION_", "$bootstrap_split"},
      .splitsAsRows = true,
      .bootstrapping = true};
  Host flags(data, command("LAST"));
  EXPECT_THAT(dumped(flags, "Multiple Imputation flag"), ElementsAre(1.0, 1.0));
  Host bootstrap(data, command("LAST"));
  EXPECT_THAT(dumped(bootstrap, "Bootstrapping flag"), ElementsAre(1.0, 1.0));
  // Neither is then a split of the user's: there is no key to match by.
  EXPECT_EQ(flags.log.count("ObsVecMap"), 0u);
}

// --- The pooling index --------------------------------------------------------------------------

TEST(Pooling, RoundsThePoolingValue) {
  Host host(samples({0, 0.4, 2.4, 2.5}, {1, 1, 1, 1}), command("LAST"));
  EXPECT_THAT(dumped(host, "Pooling Sample Index"), ElementsAre(0.0, 0.0, 2.0, 3.0));
}

TEST(Pooling, RefusesAnInvalidBootstrapIndexAndGoesOnWithTheGroupsSoFar) {
  for (const double invalid : {-0.1, Gone}) {
    Host host(samples({0, 1, invalid, 3}, {1, 1, 1, 1}), command("LAST"));
    EXPECT_THAT(dumped(host, "Pooling Sample Index"), ElementsAre(0.0, 1.0));
    EXPECT_THAT(host.log.messageIds(), ElementsAre("Invalid bootstrap index ..."));
    EXPECT_THAT(host.log.tables, SizeIs(4));
  }
}

TEST(Pooling, RefusesAnInvalidImputationIndex) {
  Host host(samples({0, -1}, {1, 1}, "Imputation_"), command("LAST"));
  host.run();
  EXPECT_THAT(host.log.messageIds(), ElementsAre("Invalid imputation index ..."));
}

TEST(Pooling, ReadsNoIndexInAGroupWithoutValidCases) {
  scripted::DataSet data = samples({0, 7}, {1, 1});
  data.variables.push_back(numeric("w", {1, 0}));
  data.weight = "w";
  Host host(data, command("LAST"));
  EXPECT_THAT(dumped(host, "Pooling Sample Index"), ElementsAre(0.0, 0.0));
}

// --- Samples and their originals ----------------------------------------------------------------

TEST(Pooling, JudgesSamplesByTheExtremesOfTheFirstGroupWithoutUserSplits) {
  Host host(samples({0, 0, 1, 1}, {1, 3, 2, 2}), command("LAST"));
  EXPECT_THAT(dumped(host, "Maximum numeric value"), ElementsAre(3.0, 3.0));
  EXPECT_THAT(host.log.messages, IsEmpty());
  EXPECT_EQ(host.log.count("ObsVecMap"), 0u);
}

TEST(Pooling, TakesTheFirstGroupForTheOriginalWhateverItsNumber) {
  Host host(samples({4, 5, 6}, {9, 2, 5}), command("LAST"));
  EXPECT_THAT(dumped(host, "Maximum numeric value"), ElementsAre(9.0, 9.0, 9.0));
}

TEST(Pooling, LeavesTheExtremesOfOriginalsAlone) {
  Host host(samples({0, 0.4, 1}, {9, 2, 5}), command("LAST"));
  EXPECT_THAT(dumped(host, "Maximum numeric value"), ElementsAre(9.0, 2.0, 9.0));
}

TEST(Pooling, CountsWhatTheOriginalCallsASuccess) {
  Host host(samples({0, 0, 1, 1, 1}, {1, 3, 2, 2, 3}), command("LAST"));
  EXPECT_THAT(dumped(host, "Number of successes"), ElementsAre(1.0, 1.0));
}

TEST(Pooling, HandsOverTheExtremesOfBothListsOfPairs) {
  scripted::DataSet data = samples({0, 0, 1, 1}, {1, 3, 2, 2});
  data.variables.push_back(numeric("u", {5, 9, 6, 7}));
  Host host(data, {scripted::paired({"v", "WITH", "u"}), success(qualified("VALUE", "MIDPOINT"))});
  EXPECT_THAT(dumped(host, "Middle point"), ElementsAre(2.0, 7.0, 2.0, 7.0));
}

TEST(Pooling, HandsOverTheExtremesOfStrings) {
  scripted::DataSet data = samples({0, 0, 0, 1, 1, 1}, {0, 0, 0, 0, 0, 0});
  data.variables.push_back(scripted::text("s", 1, {"a", "c", "c", "b", "b", "b"}));
  const auto successes = [&](const char* rule) {
    Host host(data, {oneSample({"s"}), success(qualified("VALUE", rule))});
    return dumped(host, "Number of successes");
  };
  EXPECT_THAT(successes("LAST"), ElementsAre(2.0, 0.0));
  // Neither end of the sample is one of the original.
  EXPECT_THAT(successes("FIRST"), ElementsAre(1.0, 0.0));
}

TEST(Pooling, DividesGroupsAtTheMidpointOfTheOriginal) {
  scripted::DataSet data = samples({0, 0, 1, 1}, {1, 0, 1, 0});
  data.variables.push_back(numeric("g", {10, 30, 2, 4}));
  Host host(data, {scripted::independent({"v", "BY", "g"}, {qualified("SELECT", "MIDPOINT")}),
                   success(scripted::cutPoint("VALUE", 1))});
  // Both cases of the sample lie below 20.
  EXPECT_THAT(dumped(host, "Number of trials for group 1"), ElementsAre(1.0, 2.0));
}

TEST(Pooling, KeepsTheGroupingMidpointOfASampleWhenOnlySuccessesArePooled) {
  scripted::DataSet data = samples({0, 0, 1, 1}, {1, 0, 1, 0});
  data.variables.push_back(numeric("g", {1, 2, 2, 1}));
  Host host(data, {scripted::independent({"v", "BY", "g"}), success(qualified("VALUE", "LAST"))});
  EXPECT_THAT(dumped(host, "Need select aggregation flag"), ElementsAre(0.0, 0.0));
  Numbers middles;
  for (const scripted::Line& line : host.log.lines)
    if (line.label == "Middle point") middles.push_back(line.numbers[0]);
  EXPECT_THAT(middles, ElementsAre(0.5, 0.5));
}

TEST(Pooling, HandsOverTheFiveExtremesButNotTheFlag) {
  Host host(samples({0, 0, 1, 1}, {Gone, Gone, 2, 4}), command("MIDPOINT"));
  EXPECT_THAT(dumped(host, "Middle point"), ElementsAre(Gone, Gone));
  Numbers flags;
  for (const scripted::Line& line : host.log.lines)
    if (line.label == "Has valid value flag") flags.push_back(line.numbers[0]);
  EXPECT_THAT(flags, ElementsAre(0.0, 1.0));
}

scripted::DataSet userSplits(const Texts& splits, const std::string& name = "$bootstrap_split") {
  scripted::Variable split = scripted::text("k", 10, {});
  for (const std::string& text : splits) split.data.emplace_back(text);
  return {.variables = {numeric(name, {0, 0, 1, 1}), split, numeric("v", {1, 5, 2, 2})},
          .splits = {name, "k"},
          .splitsAsRows = true,
          .bootstrapping = true};
}

TEST(Pooling, MatchesSamplesWithTheOriginalOfTheSameUserSplit) {
  Host host(userSplits({"north-east", "north-west", "north-east", "north-west"}), command("LAST"));
  EXPECT_THAT(dumped(host, "Maximum numeric value"), ElementsAre(1.0, 5.0, 1.0, 5.0));
}

TEST(Pooling, RefusesSamplesWithoutAnOriginal) {
  Host bootstrap(userSplits({"a", "b", "a", "c"}), command("LAST"));
  bootstrap.run();
  EXPECT_THAT(bootstrap.log.messageIds(), ElementsAre("Boot split values not consistent ..."));
  EXPECT_THAT(bootstrap.log.tables, IsEmpty());
}

TEST(Pooling, RefusesImputationsWithoutAnOriginal) {
  Host host(userSplits({"a", "b", "a", "c"}, "imputation_"), command("LAST"));
  host.run();
  EXPECT_THAT(host.log.messageIds(), ElementsAre("Impute split values not consistent ..."));
}

// The original group of "b" has no valid case, so it has no key that its samples could match.
TEST(Pooling, RefusesSamplesWhoseOriginalHasNoValidCase) {
  scripted::DataSet data = userSplits({"a", "b", "a", "b"});
  data.variables.push_back(numeric("w", {1, 0, 1, 1}));
  data.weight = "w";
  Host host(data, command("LAST"));
  host.run();
  EXPECT_THAT(host.log.messageIds(),
              ElementsAre("NoValidCasesSplit", "Boot split values not consistent ..."));
  EXPECT_THAT(host.log.tables, IsEmpty());
}

TEST(Pooling, TakesASampleWithoutValidCasesForAnOriginalThatNobodyMatches) {
  scripted::DataSet data = userSplits({"a", "b", "a", "c"});
  data.variables.push_back(numeric("w", {1, 1, 1, 0}));
  data.weight = "w";
  Host host(data, command("LAST"));
  EXPECT_THAT(dumped(host, "Maximum numeric value"), ElementsAre(1.0, 5.0, 1.0, Gone));
  EXPECT_THAT(host.log.messageIds(), ElementsAre("NoValidCasesSplit"));
}

// Two originals of one key: the first one counts.
TEST(Pooling, MatchesTheFirstOfTwoOriginalsAlike) {
  scripted::DataSet data = userSplits({"a", "a", "a", "a"});
  data.variables[0] = numeric("$bootstrap_split", {0, 0.25, 1, 2});
  Host host(data, command("LAST"));
  EXPECT_THAT(dumped(host, "Maximum numeric value"), ElementsAre(1.0, 5.0, 1.0, 1.0));
}

TEST(Pooling, ReadsNoKeyWithoutUserSplits) {
  Host host(samples({0, 1, 9}, {1, 2, 3}), command("LAST"));
  host.run();
  EXPECT_THAT(host.log.messageIds(), IsEmpty());
  EXPECT_EQ(host.log.count("ObsVecMap"), 0u);
}

// --- Recorded values ----------------------------------------------------------------------------

scripted::DataSet rows() {
  return {.variables = {numeric("k", {1, 1, 2, 2}), numeric("v", {1, 9, 0, 4})},
          .splits = {"k"},
          .splitsAsRows = true};
}

TEST(Pooling, RecordsTheLargestValuesOfOrdinarySplitsInOrder) {
  Host host(rows(), command("LAST"));
  host.run();
  EXPECT_EQ(labelsOf(host, 0), nlohmann::json({4.0, 9.0, 9.0}));
  EXPECT_EQ(labelsOf(host, 2), nlohmann::json({4.0, 9.0, 4.0}));
}

TEST(Pooling, RecordsNoSmallestValueOfTheFirstList) {
  Host host(rows(), command("FIRST"));
  host.run();
  EXPECT_EQ(labelsOf(host, 0), nlohmann::json({nullptr, 1.0}));
}

TEST(Pooling, RecordsTheSmallestStringOfTheFirstList) {
  Host host(
      {.variables = {numeric("k", {1, 1, 2, 2}), scripted::text("s", 2, {"b", "a", "d", "c"})},
       .splits = {"k"},
       .splitsAsRows = true},
      {oneSample({"s"}), success(qualified("VALUE", "FIRST"))});
  host.run();
  EXPECT_EQ(labelsOf(host, 0), nlohmann::json({"a", "c", "a"}));
}

TEST(Pooling, RecordsTheMidpointsOfOrdinarySplits) {
  Host host(rows(), command("MIDPOINT"));
  host.run();
  EXPECT_EQ(labelsOf(host, 0), nlohmann::json({2.0, 5.0, 5.0}));
}

TEST(Pooling, RecordsNothingOfAGroupWithoutValidCases) {
  scripted::DataSet data = rows();
  data.variables.push_back(numeric("w", {1, 1, 0, 0}));
  data.weight = "w";
  Host host(data, command("LAST"));
  host.run();
  EXPECT_EQ(labelsOf(host, 0), nlohmann::json({9.0, 9.0}));
}

TEST(Pooling, RecordsTheMissingValueOfAGroupWithoutValues) {
  scripted::DataSet data = rows();
  data.variables[1] = numeric("v", {1, 9, Gone, Gone});
  Host host(data, command("LAST"));
  host.run();
  EXPECT_EQ(labelsOf(host, 0), nlohmann::json({nullptr, 9.0, 9.0}));
}

TEST(Pooling, RecordsTheSmallestValueOfTheSecondList) {
  scripted::DataSet data = rows();
  data.variables.push_back(numeric("u", {3, 7, 2, 7}));
  Host host(data, {scripted::paired({"v", "WITH", "u"}), success(qualified("VALUE", "FIRST"))});
  host.run();
  // Recorded v (missing), own v, recorded u, own u.
  EXPECT_EQ(labelsOf(host, 0), nlohmann::json({nullptr, 1.0, 2.0, 3.0, 3.0}));
}

TEST(Pooling, RecordsSamplesNowhere) {
  Host host(samples({0, 0, 1, 1}, {1, 3, 2, 8}), command("LAST"));
  host.run();
  EXPECT_EQ(labelsOf(host, 2), nlohmann::json({3.0, 3.0}));
}

TEST(Pooling, RecordsTheMidpointsOfTheGroupingVariable) {
  Host host({.variables = {numeric("k", {1, 1, 2, 2}), numeric("v", {1, 0, 1, 0}),
                           numeric("g", {10, 30, 2, 4})},
             .splits = {"k"},
             .splitsAsRows = true},
            {scripted::independent({"v", "BY", "g"}, {qualified("SELECT", "MIDPOINT")}),
             success(scripted::cutPoint("VALUE", 1))});
  host.run();
  const nlohmann::json written = scripted::writeTable(*host.log.tables.at(0));
  nlohmann::json labels = nlohmann::json::array();
  for (const auto& group : written["row_dimension"]) labels.push_back(group["label"]);
  // Those of both groups, below and not below each, and then the group's own.
  EXPECT_EQ(labels, nlohmann::json::parse(R"([["< ^1", [3.0]], ["< ^1", [20.0]],
                                              [">= ^1", [3.0]], [">= ^1", [20.0]],
                                              ["< ^1", [20.0]], [">= ^1", [20.0]]])"));
}

TEST(Pooling, AddsNoRecordedCategoriesForLevelsAndCutPoints) {
  Host host(rows(), {oneSample({"v"}), success(scripted::levels("VALUE", Numbers{1}))});
  host.run();
  EXPECT_EQ(labelsOf(host, 0).size(), 1u);
}

}  // namespace
}  // namespace module_tests
