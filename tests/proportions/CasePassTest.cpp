// The passes over the cases: weights, validity, extremes, classification. What an analysis object
// counted is read from its dump.
#include "ModuleTest.h"
#include "proportions/PRPAlgorithm.h"
#include "proportions/VarCatInfo.h"
#include "proportions/VarValue.h"
#include "proportions/proportionsFlags.h"

namespace module_tests {
namespace {

using scripted::independent;
using scripted::None;
using scripted::numeric;
using scripted::oneSample;
using scripted::Value;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr double Gone = MCMV::Missing;

scripted::Param level(double value) {
  return scripted::levels("VALUE", std::vector<double>{value});
}

// A run whose analysis objects are dumped at its end.
struct DumpedRun {
  DumpedRun(scripted::DataSet data, scripted::Command command)
      : host(std::move(data), std::move(command)) {
    gDisplayAlgorithm = true;
    host.run();
    gDisplayAlgorithm = false;
  }
  double number(const std::string& label) const { return numberOf(host.log, label); }
  std::string text(const std::string& label) const { return lineOf(host.log, label).texts.at(0); }

  Host host;
};

// --- Weights ------------------------------------------------------------------------------------

double weightedCount(double weight) {
  return DumpedRun({.variables = {numeric("v", {1, 0}), numeric("w", {weight, 1})}, .weight = "w"},
                   {oneSample({"v"})})
             .number("Weighted number of all cases") -
         1.0;
}

TEST(CasePass, RoundsWeightsWithHalvesUpward) {
  EXPECT_EQ(weightedCount(0.5), 1.0);
  EXPECT_EQ(weightedCount(1.49), 1.0);
  EXPECT_EQ(weightedCount(2.4), 2.0);
  EXPECT_EQ(weightedCount(2.5), 3.0);
}

TEST(CasePass, CountsNothingForWeightsBelowOneHalf) {
  for (const double weight : {0.49, 0.0, -3.0, Gone}) {
    const DumpedRun run(
        {.variables = {numeric("v", {1, 0}), numeric("w", {weight, 1})}, .weight = "w"},
        {oneSample({"v"})});
    EXPECT_EQ(run.number("Number of all cases"), 2.0) << weight;
    EXPECT_EQ(run.number("Number of invalid cases"), 1.0) << weight;
    EXPECT_EQ(run.number("Weighted number of invalid cases"), 0.0) << weight;
  }
}

TEST(CasePass, TakesAUserMissingWeightForAPlainNumber) {
  scripted::Variable weight = numeric("w", {9, 1});
  weight.userMissing = {9.0};
  const DumpedRun run({.variables = {numeric("v", {1, 0}), weight}, .weight = "w"},
                      {oneSample({"v"})});
  EXPECT_EQ(run.number("Weighted number of valid cases"), 10.0);
}

// --- Validity -----------------------------------------------------------------------------------

TEST(CasePass, ReadsAGroupOfInvalidCasesToItsEnd) {
  Host host({.variables = {numeric("v", {1, 0, 1}), numeric("w", {0, 0, 0})}, .weight = "w"},
            {oneSample({"v"})});
  host.run();
  // Three cases and the end mark, twice: the second pass skips them.
  EXPECT_EQ(host.log.count("Iterator::NextCase"), 8u);
  EXPECT_THAT(host.log.messageIds(), ElementsAre("NoValidCases"));
}

TEST(CasePass, CountsACaseWithMissingValuesOnceWhenAnalysedSeparately) {
  const DumpedRun run({.variables = {numeric("v", {1, Gone}), numeric("u", {0, Gone})}},
                      {oneSample({"v", "u"})});
  EXPECT_EQ(run.number("Number of valid cases"), 2.0);
  EXPECT_EQ(run.number("Number of trials"), 1.0);
}

TEST(CasePass, LeavesOutIncompleteCasesListwise) {
  const DumpedRun run({.variables = {numeric("v", {1, 0, 7}), numeric("u", {0, 1, Gone})}},
                      {oneSample({"v", "u"}), scripted::missing("LISTWISE", "EXCLUDE")});
  EXPECT_EQ(run.number("Number of valid cases"), 2.0);
  // The extremes come from complete cases alone.
  EXPECT_EQ(run.number("Maximum numeric value"), 1.0);
}

TEST(CasePass, TakesACaseOutsideBothGroupsForValidOnlyWhenAnalysedSeparately) {
  const scripted::DataSet data = {.variables = {numeric("v", {1, 0, 7}), numeric("g", {1, 2, 3})}};
  const DumpedRun separately(data, {independent({"v", "BY", "g"})});
  EXPECT_EQ(separately.number("Number of valid cases"), 3.0);
  const DumpedRun listwise(
      data, {independent({"v", "BY", "g"}), scripted::missing("LISTWISE", "EXCLUDE")});
  EXPECT_EQ(listwise.number("Number of valid cases"), 2.0);
  // It was valid in the first pass: its value is the largest.
  EXPECT_EQ(listwise.number("Maximum numeric value"), 7.0);
}

TEST(CasePass, IssuesSplitChangesOnceInEachPassThatCounts) {
  Host host(
      {.variables = {numeric("k", {1, 2, 3}), numeric("v", {1, 0, 1}), numeric("w", {1, 0, 1})},
       .weight = "w",
       .splits = {"k"}},
      {oneSample({"v"})});
  host.run();
  std::vector<std::string> groups;
  for (const scripted::Event& event : host.log.events)
    if (event.kind == "splitchange") groups.push_back(event.what);
  // The second group, which has no valid case, is only skipped in the second pass.
  EXPECT_THAT(groups, ElementsAre("0", "1", "2", "0", "2"));
}

TEST(CasePass, IssuesNoSplitChangeWithoutSplits) {
  Host host({.variables = {numeric("v", {1, 0})}}, {oneSample({"v"})});
  host.run();
  EXPECT_EQ(host.log.count("BpProcedure::SplitChange"), 0u);
}

TEST(CasePass, DoublesTheCountsOfASkippedGroup) {
  const DumpedRun run({.variables = {numeric("v", {1, 0}), numeric("w", {0, 0})}, .weight = "w"},
                      {oneSample({"v"})});
  EXPECT_EQ(run.number("Number of all cases"), 4.0);
}

// --- Values -------------------------------------------------------------------------------------

scripted::Variable withUserMissing() {
  scripted::Variable variable = numeric("v", {1, 0, 9, Gone});
  variable.userMissing = {9.0};
  return variable;
}

TEST(Values, LeavesOutUserMissingNumbersUnlessIncluded) {
  const DumpedRun excluded({.variables = {withUserMissing()}}, {oneSample({"v"})});
  EXPECT_EQ(excluded.number("Number of trials"), 2.0);
  const DumpedRun included({.variables = {withUserMissing()}},
                           {oneSample({"v"}), scripted::missing("ANALYSIS", "INCLUDE")});
  EXPECT_EQ(included.number("Number of trials"), 3.0);
  EXPECT_EQ(included.number("Maximum numeric value"), 9.0);
}

TEST(Values, NeverTakesAStringForMissingWhenIncluded) {
  scripted::Variable variable = scripted::text("s", 3, {"a", "zz", None});
  variable.userMissing = {"zz"};
  const DumpedRun excluded({.variables = {variable}}, {oneSample({"s"})});
  EXPECT_EQ(excluded.number("Number of trials"), 1.0);
  const DumpedRun included({.variables = {variable}},
                           {oneSample({"s"}), scripted::missing("ANALYSIS", "INCLUDE")});
  EXPECT_EQ(included.number("Number of trials"), 3.0);
  EXPECT_EQ(included.text("Minimum string value"), "");
}

TEST(Values, TrimsAStringOfBlanksToTheEmptyString) {
  const DumpedRun run({.variables = {scripted::text("s", 3, {"   ", "a"})}},
                      {oneSample({"s"}), scripted::success(scripted::qualified("VALUE", "FIRST"))});
  EXPECT_EQ(run.text("Minimum string value"), "");
  EXPECT_EQ(run.number("Number of successes"), 1.0);
}

TEST(Values, ComparesALevelUntrimmed) {
  const DumpedRun run({.variables = {scripted::text("s", 3, {"a  ", "b"})}},
                      {oneSample({"s"}), scripted::success(scripted::levels(
                                             "VALUE", std::vector<std::string>{"a "}))});
  EXPECT_EQ(run.number("Number of successes"), 0.0);
}

TEST(Values, TakesTheMidpointAndTheCutPointForSuccesses) {
  const scripted::DataSet data = {.variables = {numeric("v", {0, 5, 10, 4.9})}};
  const DumpedRun midpoint(
      data, {oneSample({"v"}), scripted::success(scripted::qualified("VALUE", "MIDPOINT"))});
  EXPECT_EQ(midpoint.number("Middle point"), 5.0);
  EXPECT_EQ(midpoint.number("Number of successes"), 2.0);
  const DumpedRun cut(data,
                      {oneSample({"v"}), scripted::success(scripted::cutPoint("VALUE", 4.9))});
  EXPECT_EQ(cut.number("Number of successes"), 3.0);
}

TEST(Values, TakesAGroupingValueAtTheCutPointForTheSecondGroup) {
  const DumpedRun run({.variables = {numeric("v", {1, 0, 1}), numeric("g", {1, 2, 3})}},
                      {independent({"v", "BY", "g"}, {scripted::cutPoint("SELECT", 2)}),
                       scripted::success(level(1))});
  EXPECT_EQ(run.number("Number of trials for group 1"), 1.0);
  EXPECT_EQ(run.number("Number of trials for group 2"), 2.0);
}

TEST(Values, KeepsTheMissingValueForExtremesOfAVariableWithoutValues) {
  const DumpedRun run({.variables = {numeric("v", {Gone, Gone}), numeric("u", {1, 0})}},
                      {oneSample({"v", "u"})});
  EXPECT_EQ(run.number("Has valid value flag"), 0.0);
  EXPECT_EQ(run.number("Minimum numeric value"), Gone);
  EXPECT_EQ(run.number("Maximum numeric value"), Gone);
  EXPECT_EQ(run.number("Middle point"), Gone);
}

TEST(Values, FindsTheExtremesOfStringsByTheHostsCollation) {
  scripted::Script script{
      .data = {.variables = {scripted::text("s", 1, {"b", "a", "c"})}},
      .command = {oneSample({"s"})},
      .faults = {},
      .collation = [](std::string_view a, std::string_view b) { return b.compare(a); }};
  Host host(script);
  gDisplayAlgorithm = true;
  host.run();
  gDisplayAlgorithm = false;
  EXPECT_EQ(lineOf(host.log, "Minimum string value").texts.at(0), "c");
  EXPECT_EQ(lineOf(host.log, "Maximum string value").texts.at(0), "a");
}

// No command folds letters; the record can ask for it.
std::vector<std::string> foldedExtremes(bool upperCase) {
  Host host({.variables = {scripted::text("s", 3, {"abc", "ABC", "Abc"})}}, {oneSample({"s"})});
  Parsed parsed;
  parsed.specs.SetIgnoreCase(true);
  parsed.specs.SetPrintUpperCase(upperCase);
  PRPAggregation aggregation;
  const auto first = parsed.source.MakeIterator(nullptr);
  PRPAlgorithm algorithm(parsed.source, parsed.output, parsed.specs);
  EXPECT_TRUE(algorithm.InitialPass(dynamic_cast<ProcDSIterator&>(*first), aggregation));
  const auto second = parsed.source.MakeIterator(nullptr);
  EXPECT_TRUE(algorithm.ComputeAndDisplay(dynamic_cast<ProcDSIterator&>(*second)));
  algorithm.Display();
  EXPECT_EQ(numberOf(host.log, "Number of successes"), 3.0);
  return {lineOf(host.log, "Minimum string value").texts.at(0),
          lineOf(host.log, "Maximum string value").texts.at(0)};
}

TEST(Values, FoldsLettersToOneCategoryWhenTheRecordAsksForIt) {
  EXPECT_THAT(foldedExtremes(true), ElementsAre("ABC", "ABC"));
  EXPECT_THAT(foldedExtremes(false), ElementsAre("abc", "abc"));
}

// --- The order of values ------------------------------------------------------------------------

VarValue numberValue(double number) {
  VarValue value;
  value._numValue = number;
  return value;
}

VarValue textValue(const std::string& text) {
  VarValue value;
  value._stringVar = true;
  value._strValue = text;
  return value;
}

TEST(VarValues, SortTheMissingNumberFirst) {
  EXPECT_TRUE(numberValue(Gone) < numberValue(-1e300));
  EXPECT_FALSE(numberValue(-1e300) < numberValue(Gone));
  EXPECT_FALSE(numberValue(Gone) < numberValue(Gone));
  EXPECT_TRUE(numberValue(1) < numberValue(2));
  EXPECT_FALSE(numberValue(2) < numberValue(2));
}

TEST(VarValues, SortTextsByCollation) {
  Host host({}, {});
  EXPECT_TRUE(textValue("a") < textValue("b"));
  EXPECT_FALSE(textValue("b") < textValue("a"));
  EXPECT_FALSE(textValue("") < textValue(""));
  EXPECT_TRUE(textValue("") < textValue("a"));
}

TEST(VarValues, AreOfOneKind) {
  Host host({}, {});
  try {
    static_cast<void>(numberValue(1) < textValue("a"));
    FAIL() << "the assertion did not fail";
  } catch (const scripted::AssertionFailed& failure) {
    EXPECT_EQ(failure.expression, "varValue1._stringVar == varValue2._stringVar");
    EXPECT_EQ(failure.source, "PRPAlgorithm");
  }
}

}  // namespace
}  // namespace module_tests
