// The diagnostic dumps, to the letter.
#include <algorithm>

#include "ModuleTest.h"
#include "proportions/PRPAlgorithm.h"
#include "proportions/VarValue.h"
#include "proportions/proportionsFlags.h"

namespace module_tests {
namespace {

using scripted::numeric;
using scripted::oneSample;
using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::Not;
using Texts = std::vector<std::string>;

// Every line as its writer and its label.
Texts written(const scripted::Log& log) {
  Texts lines;
  for (const scripted::Line& line : log.lines) lines.push_back(line.writer + " " + line.label);
  return lines;
}

const std::string banner =
    "line "
    "****************************************************\n"
    "* This text output is for debugging purposes only. *\n"
    "* This will not be part of the final release.      *\n"
    "****************************************************";

const Texts element = {"line BinInfoElem display start",
                       "S Binomial Option",
                       "B Categorical Variable",
                       "DV Numeric Values",
                       "SV String Values",
                       "I OBS length",
                       "line BinInfoElem display end"};

Texts operator+(Texts a, const Texts& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

scripted::DataSet data() {
  return {.variables = {numeric("v", {1, 0}), numeric("u", {1, 1}), numeric("g", {1, 2}),
                        scripted::text("s", 3, {"a", "b"})}};
}

// The run's log with these switches.
template <class Switch>
Texts dumpOf(scripted::Command command, Switch& flag) {
  Host host(data(), std::move(command));
  flag = true;
  host.run();
  flag = false;
  return written(host.log);
}

TEST(SpecsDump, IsWrittenToTheLetter) {
  const Texts want = Texts{banner,
                           "line PRPValidSpecs display start",
                           "line Variable valid specifications are not defined",
                           "S Model Type",
                           "IV Vector of Test Variable indices",
                           "line Test Variable Vector Info Elements display start"} +
                     element +
                     Texts{"line Test Variable Vector Info Elements display end",
                           "IV Second Vector of Test Variable indices",
                           "line Second Variable Vector Info Elements display start",
                           "line Second Variable Vector Info Elements display end",
                           "D Test Value",
                           "B Flag for Ordered Pair option",
                           "I Group Variable Index",
                           "line Group Info Element not defined",
                           "B Scope Analysis",
                           "B User Missing Included",
                           "line Success Info Element display start"} +
                     element +
                     Texts{"line Success Info Element display end",
                           "B Ignore Case indicator",
                           "B Print Upper Case indicator",
                           "B Print Category Order",
                           "D Confidence Interval Level as percent",
                           "BV Test Type Option flags",
                           "BV CI Type Option flags",
                           "line PRPValidSpecs display end"};
  EXPECT_EQ(dumpOf({oneSample({"v"})}, gDisplaySpecs), want);
}

TEST(SpecsDump, ShowsTheGroupElementOfAGroupingVariable) {
  const Texts lines = dumpOf({scripted::independent({"v", "BY", "g"})}, gDisplaySpecs);
  EXPECT_THAT(lines, Contains("line Group Info Element display start"));
  EXPECT_THAT(lines, Not(Contains("line Group Info Element not defined")));
}

TEST(SpecsDump, NamesModelsAndRules) {
  const auto textsOf = [](scripted::Command command, const std::string& label) {
    Host host(data(), std::move(command));
    const Parsed parsed;
    parsed.specs.Display();
    return lineOf(host.log, label).texts.at(0);
  };
  EXPECT_EQ(textsOf({oneSample({"v"})}, "Model Type"), "One Sample");
  EXPECT_EQ(textsOf({scripted::paired({"v", "u"})}, "Model Type"), "Related");
  EXPECT_EQ(textsOf({scripted::independent({"v", "BY", "g"})}, "Model Type"), "Independent");
  for (const auto& [rule, label] : {std::pair("FIRST", "First Category"),
                                    {"LAST", "Last Category"},
                                    {"MIDPOINT", "Middle Point"}})
    EXPECT_EQ(textsOf({oneSample({"v"}), scripted::success(scripted::qualified("VALUE", rule))},
                      "Binomial Option"),
              label);
  EXPECT_EQ(textsOf({oneSample({"v"}), scripted::success(scripted::cutPoint("VALUE", 1))},
                    "Binomial Option"),
            "Cut Point");
  EXPECT_EQ(textsOf({oneSample({"v"}),
                     scripted::success(scripted::levels("VALUE", std::vector<double>{1}))},
                    "Binomial Option"),
            "Category Levels");
}

TEST(SpecsDump, CallsOtherNumbersUndefined) {
  Host host(data(), {oneSample({"v"})});
  Parsed parsed;
  parsed.specs.SetModelType(static_cast<ModelType>(9));
  parsed.specs.GetSuccessInfoElem()._binOption = static_cast<BinomialOption>(9);
  parsed.specs.Display();
  EXPECT_EQ(lineOf(host.log, "Model Type").texts.at(0), "Undefined");
  const Texts lines = written(host.log);
  const auto success = std::ranges::find(lines, "line Success Info Element display start");
  const auto from = static_cast<std::size_t>(success - lines.begin());
  EXPECT_EQ(lineOf(host.log, "Binomial Option", from).texts.at(0), "Undefined");
}

TEST(SpecsDump, AssertsAnElementForEachVariable) {
  Host host(data(), {oneSample({"v"})});
  Parsed parsed;
  parsed.specs.GetBinInfoElems().clear();
  try {
    parsed.specs.Display();
    FAIL() << "the assertion did not fail";
  } catch (const scripted::AssertionFailed& failure) {
    EXPECT_EQ(failure.expression, "nVars == fvBinInfoElems.size()");
    EXPECT_EQ(failure.source, "PRPValidSpecs");
  }
}

class VarSpecs : public ACAVarValidSpecs {
 public:
  void Display() const override { ACACommonDisplay::DisplayB("variables", true); }
  void DisplayNames() const override { ACACommonDisplay::DisplayB("names", true); }
};

TEST(SpecsDump, BeginsWithTheHostsOwnSpecificationWhenThereIsOne) {
  Host host(data(), {oneSample({"v"})});
  Parsed parsed;
  parsed.specs.SetVarValidSpecs(std::make_unique<VarSpecs>());
  parsed.specs.Display();
  EXPECT_EQ(host.log.lines.at(2).label, "variables");
  EXPECT_EQ(host.log.lines.at(3).label, "names");
}

const Texts counts = {"B Initial data pass indicator",
                      "line Weight variable is not defined",
                      "B Split file indicator",
                      "B Splits as Rows indicator",
                      "B Good Data indicator",
                      "B Complete Data indicator",
                      "I Number of all cases",
                      "I Number of valid cases",
                      "I Number of invalid cases",
                      "D Weighted number of all cases",
                      "D Weighted number of valid cases",
                      "D Weighted number of invalid cases",
                      "D Alpha level",
                      "D IDF Normal value of adjusted confidence level",
                      "B Need aggregation flag",
                      "B Need success aggregation flag",
                      "B Need select aggregation flag",
                      "B Bootstrapping flag",
                      "B Multiple Imputation flag",
                      "I Pooling Variable Index",
                      "I Pooling Sample Index",
                      "line User Split Indices are not defined"};

Texts tally(const std::string& categories) {
  return {"line VarCatInfo display start",
          categories,
          "IV Category Counts",
          "I Total Category Count",
          "DV Weighted Category Counts",
          "D Weighted Total Category Count",
          "B Has valid value flag",
          "D Minimum numeric value",
          "D Maximum numeric value",
          "D Middle point",
          "S Minimum string value",
          "S Maximum string value",
          "line VarCatInfo display end"};
}
const Texts numericTally = tally("DV Numeric Categorical Values");

const Texts oneSampleRecord = {"line PropZOneSamp display start",
                               "I Local variable index",
                               "D Number of successes",
                               "D Number of failures",
                               "D Number of trials",
                               "D Population proportion",
                               "D Estimated difference",
                               "D _aseDiff0",
                               "D _aseDiff1",
                               "B Good Data indicator",
                               "B Complete Data indicator",
                               "line PropZOneSamp display end"};

const Texts pairRecord = {"line PropZPairSamp display start",
                          "I Variable pair index",
                          "I First local variable index",
                          "I Second local variable index",
                          "D _n11",
                          "D _n10",
                          "D _n01",
                          "D _n00",
                          "D _n1p",
                          "D _np1",
                          "D _n0p",
                          "D _np0",
                          "D Number of observations",
                          "D _p11",
                          "D _p10",
                          "D _p01",
                          "D _p00",
                          "D Proportion for the first measurement",
                          "D Proportion for the second measurement",
                          "D Estimated difference",
                          "D Asymtotic standard error for the first proportion",
                          "D Asymtotic standard error for the second proportion",
                          "D _aseDiff0",
                          "D _aseDiff1",
                          "B Good Data indicator",
                          "B Complete Data indicator",
                          "line PropZPairSamp display end"};

const Texts independentRecord = {"line PropZIndSamp display start",
                                 "I Local variable index",
                                 "D Number of successes for group 1",
                                 "D Number of failures for group 1",
                                 "D Number of trials for group 1",
                                 "D Number of successes for group 2",
                                 "D Number of failures for group 2",
                                 "D Number of trials for group 2",
                                 "D Number of observations",
                                 "D Population proportion for group 1",
                                 "D Population proportion for group 2",
                                 "D Estimated difference",
                                 "D Asymtotic standard error for the first proportion",
                                 "D Asymtotic standard error for the second proportion",
                                 "D _aseDiff0",
                                 "D _aseDiff1",
                                 "B Good Data indicator",
                                 "B Complete Data indicator",
                                 "line PropZIndSamp display end"};

Texts objectDump(const Texts& records) {
  return Texts{banner, "line PRPAlgorithm display start"} + counts + records +
         Texts{"line PRPAlgorithm display end"};
}

TEST(AlgorithmDump, OfOneSampleIsWrittenToTheLetter) {
  EXPECT_EQ(dumpOf({oneSample({"v", "s"})}, gDisplayAlgorithm),
            objectDump(numericTally + tally("SV String Categorical Values") + oneSampleRecord +
                       oneSampleRecord));
}

TEST(AlgorithmDump, OfPairsIsWrittenToTheLetter) {
  EXPECT_EQ(dumpOf({scripted::paired({"v", "WITH", "u"})}, gDisplayAlgorithm),
            objectDump(numericTally + numericTally + pairRecord));
}

TEST(AlgorithmDump, OfGroupsIsWrittenToTheLetter) {
  EXPECT_EQ(dumpOf({scripted::independent({"v", "BY", "g"})}, gDisplayAlgorithm),
            objectDump(numericTally + independentRecord));
}

TEST(AlgorithmDump, ShowsTheWeightAndTheUserSplitsWhereThereAreSome) {
  Host host({.variables = {numeric("IMPUTATION_", {0, 0}), numeric("k", {1, 1}),
                           numeric("v", {1, 0}), numeric("w", {1, 1})},
             .weight = "w",
             .splits = {"IMPUTATION_", "k"},
             .splitsAsRows = true},
            {oneSample({"v"})});
  gDisplayAlgorithm = true;
  host.run();
  gDisplayAlgorithm = false;
  EXPECT_EQ(numberOf(host.log, "Weight variable index"), 3.0);
  EXPECT_THAT(lineOf(host.log, "User Split Indices").numbers, ElementsAre(1.0));
  EXPECT_THAT(written(host.log), Not(Contains("line Weight variable is not defined")));
}

TEST(AlgorithmDump, ShowsTheCriticalValue) {
  for (const auto& [level, alpha, z] : {std::tuple(95.0, 0.05, 1.959963984540054),
                                        {90.0, 0.10, 1.6448536269514722},
                                        {99.0, 0.01, 2.5758293035489004}}) {
    Host host(data(), {oneSample({"v"}), scripted::level(level)});
    gDisplayAlgorithm = true;
    host.run();
    gDisplayAlgorithm = false;
    EXPECT_NEAR(numberOf(host.log, "Alpha level"), alpha, 1e-15);
    EXPECT_NEAR(numberOf(host.log, "IDF Normal value of adjusted confidence level"), z, 1e-14);
  }
}

TEST(AlgorithmDump, IsWrittenAfterEachGroupsTables) {
  Host host({.variables = {numeric("k", {1, 2}), numeric("v", {1, 0})}, .splits = {"k"}},
            {oneSample({"v"})});
  gDisplayAlgorithm = true;
  host.run();
  gDisplayAlgorithm = false;
  const auto order = host.log.only({"BpHeading::PivotTable", "ACACommonDisplay::DisplayIV"});
  // One tally, and so one list of counts, in each of the two dumps.
  EXPECT_THAT(order, ElementsAre("BpHeading::PivotTable", "BpHeading::PivotTable",
                                 "ACACommonDisplay::DisplayIV", "BpHeading::PivotTable",
                                 "BpHeading::PivotTable", "ACACommonDisplay::DisplayIV"));
}

TEST(ValueDump, ShowsTheKindOfValue) {
  Host host({}, {});
  VarValue value;
  value.Display();
  value._stringVar = true;
  value.Display();
  EXPECT_THAT(
      written(host.log),
      ElementsAre("line VarValue display start", "D Numeric Value", "line VarValue display end",
                  "line VarValue display start", "S String Value", "line VarValue display end"));
}

// --- The probe ----------------------------------------------------------------------------------

std::string probed(scripted::Script script) {
  Host host(std::move(script));
  gProbeFindNCParamT = true;
  testing::internal::CaptureStdout();
  host.run();
  gProbeFindNCParamT = false;
  return testing::internal::GetCapturedStdout();
}

TEST(Probe, PrintsFourteenLinesAfterEachSuccessfulStep) {
  scripted::Script script{.data = data(), .command = {oneSample({"v"})}};
  std::string want;
  for (const int a : {2, 1, 0, -1, -2, -3, -4})
    for (const double q : {0.975, 0.025}) {
      char line[100];
      std::snprintf(line, sizeof line, "FindNCParamT( %f, 5.000000, %f, 0.000001 ) = %f\n",
                    static_cast<double>(a), q, a + q);
      want += line;
    }
  EXPECT_EQ(probed(script), want);
}

TEST(Probe, PrintsWhatIsMissing) {
  scripted::Script script{.data = data(),
                          .command = {oneSample({"v"})},
                          .faults = {.failingDistributions = {"FindNCParamT"}}};
  EXPECT_THAT(
      probed(script),
      testing::StartsWith("FindNCParamT( 2.000000, 5.000000, 0.975000, 0.000001 ) = missing\n"));
}

TEST(Probe, PrintsNothingAfterAStepThatFailed) {
  scripted::Script script{.data = {.variables = {numeric("v", {MCMV::Missing})}},
                          .command = {oneSample({"v"})}};
  EXPECT_EQ(probed(script), "");
}

}  // namespace
}  // namespace module_tests
