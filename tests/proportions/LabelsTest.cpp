// What all result tables share: scaffolding, labels, formats, footnotes, warnings.
#include "ModuleTest.h"
#include "proportions/PRPAlgorithm.h"
#include "scripted_host/output/Text.h"

namespace module_tests {
namespace {

using nlohmann::json;
using scripted::independent;
using scripted::levels;
using scripted::numeric;
using scripted::oneSample;
using scripted::paired;
using scripted::qualified;
using scripted::success;
using scripted::writeLabel;
using testing::ElementsAre;
using testing::IsEmpty;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

constexpr double Gone = MCMV::Missing;
constexpr const char* oneSampleIntervals = "One-Sample Proportions Confidence Intervals";
constexpr const char* oneSampleTests = "One-Sample Proportions Tests";
constexpr const char* groupStatistics = "Independent-Samples Proportions Group Statistics";

scripted::DataSet ages() {
  return {.variables = {numeric("v", {1, 2, 3, 1}), scripted::text("s", 3, {"b", "a", "c", "a"}),
                        numeric("g", {1, 2, 1, 2})}};
}

// The labels under "Variables" of the first table, whole.
json variablesOf(scripted::Command command) {
  Host host(ages(), std::move(command));
  host.run();
  json labels = json::array();
  const json written = scripted::writeTable(*host.log.tables.at(0));
  for (const json& variable : written["variables"])
    labels.push_back({variable["label"], variable["pref"]});
  return labels;
}

json only(const char* text, json arguments, int preference) {
  return json::array({json::array({json::array({text, std::move(arguments)}), preference})});
}

// --- Success labels -----------------------------------------------------------------------------

TEST(SuccessLabel, ShowsExtremesThroughValueLabels) {
  EXPECT_EQ(variablesOf({oneSample({"v"}), success(qualified("VALUE", "FIRST"))}),
            only("^1 = ^2", {"v", 1.0}, 2));
  EXPECT_EQ(variablesOf({oneSample({"v"})}), only("^1 = ^2", {"v", 3.0}, 2));
  EXPECT_EQ(variablesOf({oneSample({"s"}), success(qualified("VALUE", "FIRST"))}),
            only("^1 = ^2", {"s", "a"}, 2));
  EXPECT_EQ(variablesOf({oneSample({"s"})}), only("^1 = ^2", {"s", "c"}, 2));
}

TEST(SuccessLabel, ShowsComputedAndGivenNumbersPlainly) {
  EXPECT_EQ(variablesOf({oneSample({"v"}), success(qualified("VALUE", "MIDPOINT"))}),
            only("^1 >= ^2", {"v", 2.0}, 0));
  EXPECT_EQ(variablesOf({oneSample({"v"}), success(scripted::cutPoint("VALUE", 1.5))}),
            only("^1 >= ^2", {"v", 1.5}, 0));
}

TEST(SuccessLabel, ListsLevelsInTheOrderGiven) {
  EXPECT_EQ(variablesOf({oneSample({"v"}), success(levels("VALUE", Numbers{3, 1, 2}))}),
            only("^1 = [%1:, ^1:]2", {"v", {3.0, 1.0, 2.0}}, 2));
  EXPECT_EQ(variablesOf({oneSample({"s"}), success(levels("VALUE", Texts{"c", "a"}))}),
            only("^1 = [%1:, ^1:]2", {"s", {"c", "a"}}, 2));
}

TEST(SuccessLabel, IsNoneForAnyOtherRule) {
  Host host(ages(), {oneSample({"v"})});
  ProcedureDataSource source;
  BinInfoElem elem;
  elem._binOption = static_cast<BinomialOption>(5);
  EXPECT_EQ(MakeSuccCellText(*source.GetVariable(0), elem, VarCatInfo()), nullptr);
}

TEST(SuccessLabel, OfACutPointWithoutValueShowsTheMissingValue) {
  Host host(ages(), {oneSample({"v"})});
  ProcedureDataSource source;
  BinInfoElem elem;
  elem._binOption = CUTPOINT;
  const auto label = MakeSuccCellText(*source.GetVariable(0), elem, VarCatInfo());
  EXPECT_EQ(writeLabel(label->Replicate()), json::parse(R"(["^1 >= ^2", ["v", null]])"));
}

TEST(SuccessLabel, OfARecordedValueIsMadeForRulesOfTheData) {
  Host host(ages(), {oneSample({"v"})});
  ProcedureDataSource source;
  const KORA_Variable& variable = *source.GetVariable(0);
  VarValue value;
  value._numValue = 2.0;
  const auto label = [&](BinomialOption option) {
    const auto made = MakeValueSuccCellText(variable, option, value);
    return made == nullptr ? json() : writeLabel(made->Replicate());
  };
  EXPECT_EQ(label(FIRST), json::parse(R"(["^1 = ^2", ["v", 2.0]])"));
  EXPECT_EQ(label(LAST), json::parse(R"(["^1 = ^2", ["v", 2.0]])"));
  EXPECT_EQ(label(MIDPOINT), json::parse(R"(["^1 >= ^2", ["v", 2.0]])"));
  EXPECT_TRUE(label(CUTPOINT).is_null());
  EXPECT_TRUE(label(LEVEL).is_null());
}

// --- Group labels -------------------------------------------------------------------------------

json groupsOf(scripted::Params select) {
  Host host(ages(), {independent({"v", "BY", "g"}, std::move(select)),
                     success(levels("VALUE", Numbers{1}))});
  host.run();
  json labels = json::array();
  const json written = scripted::writeTable(host.log.table(groupStatistics));
  for (const json& group : written["row_dimension"])
    labels.push_back({group["label"][0], group["label"][1][0], group["pref"]});
  return labels;
}

TEST(GroupLabel, SaysWhichSideOfANumber) {
  EXPECT_EQ(groupsOf({qualified("SELECT", "MIDPOINT")}),
            json::parse(R"([["< ^1", 1.5, 0], [">= ^1", 1.5, 0]])"));
  EXPECT_EQ(groupsOf({scripted::cutPoint("SELECT", 2)}),
            json::parse(R"([["< ^1", 2.0, 0], [">= ^1", 2.0, 0]])"));
}

TEST(GroupLabel, ShowsLevelsThroughValueLabels) {
  EXPECT_EQ(groupsOf({}), json::parse(R"([["= ^1", 1.0, 2], ["= ^1", 2.0, 2]])"));
  EXPECT_EQ(groupsOf({levels("SELECT", Numbers{2, 1})}),
            json::parse(R"([["= ^1", 2.0, 2], ["= ^1", 1.0, 2]])"));
}

TEST(GroupLabel, AssertsTwoLevels) {
  Host host(ages(), {independent({"v", "BY", "g"})});
  Parsed parsed;
  parsed.specs.GetGroupInfoElem()._numValues.push_back(3.0);
  PRPAggregation aggregation;
  const auto first = parsed.source.MakeIterator(nullptr);
  PRPAlgorithm algorithm(parsed.source, parsed.output, parsed.specs);
  algorithm.InitialPass(dynamic_cast<ProcDSIterator&>(*first), aggregation);
  const auto second = parsed.source.MakeIterator(nullptr);
  try {
    algorithm.ComputeAndDisplay(dynamic_cast<ProcDSIterator&>(*second));
    FAIL() << "the assertion did not fail";
  } catch (const scripted::AssertionFailed& failure) {
    EXPECT_EQ(failure.expression, "fGroupInfoElem._numValues.size() == 2");
    EXPECT_EQ(failure.source, "PRPAlgorithm");
  }
}

// --- Scaffolding --------------------------------------------------------------------------------

// Label, place, level, labels inside, hidden, sort of each dimension.
json dimensionsOf(const scripted::Table& table) {
  json dimensions = json::array();
  for (const scripted::Dimension& dimension : table.dimensions)
    dimensions.push_back({writeLabel(dimension.label), dimension.place, dimension.level,
                          dimension.labelsInside, dimension.hidden, dimension.sort});
  return dimensions;
}

void expectScaffolding(scripted::Command command, const Texts& titles, const Texts& rows) {
  Host host(ages(), std::move(command));
  host.run();
  EXPECT_EQ(host.log.titles(), titles);
  for (std::size_t i = 0; i < titles.size(); ++i) {
    const scripted::Table& table = *host.log.tables.at(i);
    EXPECT_EQ(table.identity->text, titles[i]);
    EXPECT_TRUE(table.shown);
    json want = json::parse(R"([["Variables", 0, 2, true, false, 2],
                                ["Statistics", 1, 1, true, false, 2]])");
    if (rows[i].empty())
      want[0][2] = 1;
    else
      want.insert(want.begin(), json::array({rows[i], 0, 1, false, false, 2}));
    EXPECT_EQ(dimensionsOf(table), want) << titles[i];
  }
}

TEST(Tables, OfOneSampleStandOnThreeDimensions) {
  expectScaffolding({oneSample({"v"})}, {oneSampleIntervals, oneSampleTests},
                    {"Interval Type", "Test Type"});
}

TEST(Tables, OfPairedSamplesBeginWithTwoDimensions) {
  expectScaffolding(
      {paired({"v", "g"})},
      {"Paired-Samples Proportions Statistics", "Paired-Samples Proportions Confidence Intervals",
       "Paired-Samples Proportions Tests"},
      {"", "Interval Type", "Test Type"});
}

TEST(Tables, OfIndependentSamplesBeginWithTheGroupingVariable) {
  expectScaffolding({independent({"v", "BY", "g"})},
                    {groupStatistics, "Independent-Samples Proportions Confidence Intervals",
                     "Independent-Samples Proportions Tests"},
                    {"g", "Interval Type", "Test Type"});
}

TEST(Tables, AreWrittenWithTheirDimensionsWhenNothingIsRequested) {
  Host host(ages(), {oneSample({"v"}, {scripted::keywords("TESTTYPES", {"NONE"}),
                                       scripted::keywords("CITYPES", {"NONE"})})});
  host.run();
  ASSERT_THAT(host.log.titles(), ElementsAre(oneSampleIntervals, oneSampleTests));
  EXPECT_THAT(scripted::writeTable(*host.log.tables[0])["rows"], IsEmpty());
}

// --- Formats and footnotes ----------------------------------------------------------------------

// The cell of a row at a path of statistics.
json cellOf(const scripted::Table& table, const std::string& row, const json& path) {
  const json written = scripted::writeTable(table);
  for (const json& found : written["rows"])
    if (found["label"] == row)
      for (const json& cell : found["cells"])
        if (cell["path"] == path) return cell;
  return "no such cell";
}

TEST(Footnotes, StandAtMissingStatisticsAndNowhereElse) {
  Host host({.variables = {numeric("v", {1, 1})}},
            {oneSample({"v"}, {scripted::keywords("TESTTYPES", {"ALL"}),
                               scripted::keywords("CITYPES", {"ALL"})})});
  host.run();
  const json path = json::parse(R"([["^1% Confidence Interval", [95.0]], "Lower"])");
  const json missing = cellOf(host.log.table(oneSampleIntervals), "Logit", path);
  EXPECT_TRUE(missing["missing"]);
  EXPECT_EQ(missing["footnote"], "Stat miss not enough cases ...");
  EXPECT_EQ(missing["format"], "GeneralStat");
  const json given = cellOf(host.log.table(oneSampleIntervals), "Wald", path);
  EXPECT_EQ(given["value"], 1.0);
  EXPECT_FALSE(given.contains("footnote"));
}

TEST(Footnotes, SayTheTestValueAtItsCategory) {
  Host host(ages(), {oneSample({"v"}, {scripted::number("TESTVAL", 0.3)})});
  host.run();
  const json cell =
      cellOf(host.log.table(oneSampleTests), "Score", json::array({"Observed - Test Value"}));
  EXPECT_EQ(cell["category_footnote"], json::parse(R"(["Test Value = ^1", [0.3]])"));
}

TEST(Footnotes, AreNoneAtNotANumber) {
  Host host({.variables = {numeric("v", {0, 0, 0})}},
            {oneSample({"v"}, {scripted::keywords("CITYPES", {"WILSON_SCORECC"})}),
             success(levels("VALUE", Numbers{1})), scripted::level(80)});
  host.run();
  const json path = json::parse(R"([["^1% Confidence Interval", [80.0]], "Lower"])");
  const json cell =
      cellOf(host.log.table(oneSampleIntervals), "Wilson Score (Continuity Corrected)", path);
  EXPECT_EQ(cell["value"], "nan");
  EXPECT_FALSE(cell.contains("footnote"));
}

TEST(Footnotes, StandAtPValuesThatADistributionCouldNotGive) {
  for (const auto& [function, row] : {std::pair("CdfBin", "Exact Binomial"),
                                      {"PdfBin", "Mid-p Adjusted Binomial"},
                                      {"CdfStdNorm", "Score"}}) {
    scripted::Script script{
        .data = ages(),
        .command = {oneSample({"v"}, {scripted::keywords("TESTTYPES", {"ALL"})})},
        .faults = {.failingDistributions = {function}},
        .collation = {}};
    Host host(script);
    host.run();
    const json cell =
        cellOf(host.log.table(oneSampleTests), row, json::array({"Significance", "Two-Sided p"}));
    EXPECT_EQ(cell.value("footnote", ""), "Stat miss not enough cases ...") << function;
  }
}

TEST(Footnotes, AreNoneAtTheStatisticOfABinomialTest) {
  Host host(ages(), {oneSample({"v"}, {scripted::keywords("TESTTYPES", {"EXACT"})})});
  host.run();
  const json cell = cellOf(host.log.table(oneSampleTests), "Exact Binomial", json::array({"Z"}));
  EXPECT_EQ(cell, json::parse(R"({"path": ["Z"], "value": null, "format": null})"));
}

TEST(Footnotes, AreNoneInTheGroupStatistics) {
  Host host({.variables = {numeric("v", {1, 1}), numeric("g", {1, 2})}},
            {independent({"v", "BY", "g"})});
  host.run();
  for (const scripted::Entry& entry : host.log.table(groupStatistics).entries)
    if (entry.cell) {
      EXPECT_THAT(entry.cell->notes, IsEmpty());
    }
}

TEST(Footnotes, StandAtThePairedErrorWithoutSuccesses) {
  Host host({.variables = {numeric("v", {0, 0}), numeric("u", {1, 0})}},
            {paired({"v", "u"}), success(levels("VALUE", Numbers{1}))});
  host.run();
  const json table = scripted::writeTable(*host.log.tables.at(0));
  EXPECT_EQ(table["rows"][0]["cells"][3]["footnote"], "Stat miss not enough cases ...");
  EXPECT_FALSE(table["rows"][1]["cells"][3].contains("footnote"));
}

// --- The note that no table calls ---------------------------------------------------------------

json noteOf(const scripted::DataSet& data, double value, bool withVariable) {
  Host host(data, {oneSample({"v"})});
  Parsed parsed;
  PRPAggregation aggregation;
  const auto cases = parsed.source.MakeIterator(nullptr);
  PRPAlgorithm algorithm(parsed.source, parsed.output, parsed.specs);
  algorithm.InitialPass(dynamic_cast<ProcDSIterator&>(*cases), aggregation);
  const BpString title("T", true);
  BpPivotTable table = parsed.output.PivotTable(title, title, true);
  BpDimension dimension = table.Dimension(title, BpGroup::SortAsAdded);
  dimension.Position(BpDimension::Rows, 1, false, false);
  BpCategory category = dimension.Category(title);
  category.Cell(BpNumber(value, BpProcedure::GeneralStat()));
  const int index = host.indexOf("v");
  algorithm.AddStatNotComputedNote(category, value,
                                   withVariable ? parsed.source.GetVariable(index) : nullptr);
  const auto& notes = host.log.tables.at(0)->entries.at(0).cell->notes;
  return notes.empty() ? json() : writeLabel(notes.at(0).text);
}

TEST(NotComputedNote, NamesTheConstantVariable) {
  EXPECT_EQ(noteOf(ages(), Gone, true),
            json::parse(R"(["Stat not computed var ^1 const ...", ["v"]])"));
}

TEST(NotComputedNote, NamesTheSplitFirstWhenGroupsAreRows) {
  scripted::DataSet data = ages();
  data.splits = {"g"};
  data.splitsAsRows = true;
  EXPECT_EQ(noteOf(data, Gone, true),
            json::parse(R"(["Split [%1 = %2:,^1 = ^2:]1, stat not computed var ^2 const ...",
                            [{"split": [["g", 1.0]]}, "v"]])"));
}

TEST(NotComputedNote, IsNoneForAValueOrWithoutAVariable) {
  EXPECT_TRUE(noteOf(ages(), 1.0, true).is_null());
  EXPECT_TRUE(noteOf(ages(), Gone, false).is_null());
}

}  // namespace
}  // namespace module_tests
