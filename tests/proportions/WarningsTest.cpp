// Notes of a run, warnings about too few valid cases, and the tables that go with them.
#include "ModuleTest.h"

namespace module_tests {
namespace {

using nlohmann::json;
using scripted::independent;
using scripted::levels;
using scripted::numeric;
using scripted::oneSample;
using scripted::paired;
using scripted::success;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr double Gone = MCMV::Missing;

scripted::SubCommand ones() {
  return success(levels("VALUE", std::vector<double>{1}));
}

// --- Notes --------------------------------------------------------------------------------------

json notesOf(scripted::DataSet data, scripted::Command command) {
  Host host(std::move(data), std::move(command));
  host.run();
  return scripted::writeNotes(host.log);
}

TEST(Notes, StateTheDefaults) {
  EXPECT_EQ(notesOf({.variables = {numeric("v", {1, 0})}}, {oneSample({"v"})}),
            json::parse(R"([[4, "Definition of Missing", "MISSING is EXCLUDE ..."],
                            [4, "Cases Used", "Cases used analysiswise ..."],
                            [0, "Weight Handling", "not applicable"]])"));
}

TEST(Notes, StateWhatTheCommandAndTheWeightSay) {
  EXPECT_EQ(notesOf({.variables = {numeric("v", {1, 0}), numeric("w", {1, 1})}, .weight = "w"},
                    {oneSample({"v"}), scripted::missing("LISTWISE", "INCLUDE")}),
            json::parse(R"([[4, "Definition of Missing", "MISSING is INCLUDE ..."],
                      [4, "Cases Used", "Cases used listwise ..."],
                      [0, "Weight Handling",
                       "Weight values are rounded to the nearest whole numbers"]])"));
}

TEST(Notes, AreWrittenOnceBeforeTheFirstGroupAlsoWithoutValidCases) {
  Host host({.variables = {numeric("k", {1, 2}), numeric("v", {1, 0}), numeric("w", {0, 0})},
             .weight = "w",
             .splits = {"k"}},
            {oneSample({"v"})});
  host.run();
  EXPECT_THAT(host.log.notes, SizeIs(3));
  for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(host.log.events.at(i).kind, "note");
}

// --- Warnings -----------------------------------------------------------------------------------

// All warnings: identifier, arguments, show, level.
json warningsOf(const Host& host) {
  json warnings = scripted::writeWarnings(host.log);
  json short_ = json::array();
  for (const json& warning : warnings)
    short_.push_back({warning["id"], warning["args"], warning["show"], warning["level"]});
  return short_;
}

scripted::DataSet twoVariables(bool split, const std::vector<double>& first,
                               const std::vector<double>& second) {
  std::vector<double> groups(first.size(), 7.0);
  return {.variables = {numeric("k", groups), numeric("v", first), numeric("u", second),
                        numeric("g", {1, 1, 2, 2})},
          .splits = split ? std::vector<std::string>{"k"} : std::vector<std::string>{}};
}

const std::vector<double> none = {Gone, Gone, Gone, Gone};
const std::vector<double> mixed = {1, 0, 1, 0};

void expectWarnings(bool split, const std::vector<double>& second, scripted::Command command,
                    const char* wanted, std::size_t tables) {
  Host host(twoVariables(split, second, none), std::move(command));
  host.run();
  EXPECT_EQ(warningsOf(host), json::parse(wanted));
  EXPECT_THAT(host.log.tables, SizeIs(tables));
}

TEST(Warnings, OfOneSampleNameTheVariable) {
  expectWarnings(false, mixed, {oneSample({"v", "u"}), ones()},
                 R"([["Not enough valid cases var ^1 ...", ["u"], 2, 2]])", 4);
  expectWarnings(true, mixed, {oneSample({"v", "u"}), ones()},
                 R"([["Not enough valid cases var ^1 for split [%1 = %2:,^1 = ^2:]2 ...",
                      ["u", {"split": [["k", 7.0]]}], 2, 2]])",
                 4);
}

TEST(Warnings, OfOneSampleAreOneWhenNoVariableHasData) {
  expectWarnings(false, none, {oneSample({"v", "u"}), ones()},
                 R"([["Not enough valid cases ...", [], 2, 3]])", 0);
  expectWarnings(true, none, {oneSample({"v", "u"}), ones()},
                 R"([["Not enough valid cases for split [%1 = %2:,^1 = ^2:]1 ...",
                      [{"split": [["k", 7.0]]}], 2, 2]])",
                 0);
}

TEST(Warnings, OfPairsNameTheNumberAndBothVariables) {
  expectWarnings(false, mixed, {paired({"g", "v", "u"}), ones()},
                 R"([["Not enough valid cases pair ^1 var ^2 ^3 ...", [2.0, "g", "u"], 2, 2],
                     ["Not enough valid cases pair ^1 var ^2 ^3 ...", [3.0, "v", "u"], 2, 2]])",
                 9);
  expectWarnings(true, mixed, {paired({"g", "WITH", "v", "u"}), ones()},
                 R"([["Not enough valid cases pair ^1 var ^2 ^3 for split [%1 = %2:,^1 = ^2:]4 ...",
           [2.0, "g", "u", {"split": [["k", 7.0]]}], 2, 2]])",
                 6);
}

TEST(Warnings, OfPairsAreOneWhenNoPairHasData) {
  expectWarnings(false, none, {paired({"v", "u"}), ones()},
                 R"([["Not enough valid cases ...", [], 2, 3]])", 0);
}

TEST(Warnings, OfGroupsNameTheVariable) {
  expectWarnings(false, mixed, {independent({"v", "u", "BY", "g"}), ones()},
                 R"([["Not enough valid cases var ^1 group ...", ["u"], 2, 2]])", 6);
  expectWarnings(true, mixed, {independent({"v", "u", "BY", "g"}), ones()},
                 R"([["Not enough valid cases var ^1 group for split [%1 = %2:,^1 = ^2:]2 ...",
                      ["u", {"split": [["k", 7.0]]}], 2, 2]])",
                 6);
}

TEST(Warnings, OfGroupsAreOneWhenNoVariableHasBothGroups) {
  expectWarnings(false, {1, 0, Gone, Gone}, {independent({"v", "BY", "g"}), ones()},
                 R"([["Not enough valid cases group ...", [], 2, 3]])", 0);
  expectWarnings(true, {1, 0, Gone, Gone}, {independent({"v", "BY", "g"}), ones()},
                 R"([["Not enough valid cases group for split [%1 = %2:,^1 = ^2:]1 ...",
                      [{"split": [["k", 7.0]]}], 2, 2]])",
                 0);
}

TEST(Warnings, OfGroupsComeWhenNoCaseIsInEitherGroup) {
  expectWarnings(
      false, mixed,
      {independent({"v", "BY", "g"}, {levels("SELECT", std::vector<double>{8, 9})}), ones()},
      R"([["Not enough valid cases group ...", [], 2, 3]])", 0);
}

TEST(Warnings, ComeBeforeTheTablesOfTheirVariable) {
  Host host(twoVariables(false, none, mixed), {oneSample({"v", "u"}), ones()});
  host.run();
  std::vector<std::string> kinds;
  for (const scripted::Event& event : host.log.events)
    if (event.kind != "note") kinds.push_back(event.kind);
  EXPECT_THAT(kinds, ElementsAre("warning", "table", "table", "table", "table"));
}

// --- Tables -------------------------------------------------------------------------------------

TEST(Tables, OfAVariableWithoutDataHoldItsLabelAndNoCells) {
  Host host(twoVariables(false, mixed, none), {oneSample({"v", "u"}), ones()});
  host.run();
  for (const std::size_t number : {2u, 3u}) {
    const json table = scripted::writeTable(*host.log.tables.at(number));
    EXPECT_THAT(table["variables"], SizeIs(1));
    EXPECT_THAT(table["rows"], IsEmpty());
  }
}

// The labels of the rows of each table of the run.
std::vector<std::vector<std::string>> rowsOf(scripted::Command command) {
  Host host(twoVariables(false, mixed, {1, 1, 0, 0}), std::move(command));
  host.run();
  std::vector<std::vector<std::string>> tables;
  for (const auto& table : host.log.tables) {
    auto& rows = tables.emplace_back();
    const json written = scripted::writeTable(*table);
    for (const json& row : written["rows"])
      if (row["label"].is_string()) rows.push_back(row["label"]);
  }
  return tables;
}

scripted::Params methods(std::vector<std::string> tests, std::vector<std::string> intervals) {
  return {scripted::keywords("TESTTYPES", std::move(tests)),
          scripted::keywords("CITYPES", std::move(intervals))};
}

using Rows = std::vector<std::string>;

TEST(Tables, OfOneSampleHaveTheirRowsInFixedOrder) {
  EXPECT_THAT(
      rowsOf({oneSample({"v"}, methods({"ALL"}, {"ALL"}))}),
      ElementsAre(Rows{"Agresti-Coull", "Anscombe", "Clopper-Pearson Exact ...", "Jeffreys",
                       "Logit", "Wald", "Wald (Continuity Corrected)", "Wilson Score",
                       "Wilson Score (Continuity Corrected)"},
                  Rows{"Exact Binomial", "Mid-p Adjusted Binomial", "Score",
                       "Score (Continuity Corrected)", "Wald", "Wald (Continuity Corrected)"}));
  EXPECT_THAT(
      rowsOf({oneSample({"v"}, methods({"WALDCC", "EXACT"}, {"WILSON_SCORE"}))}),
      ElementsAre(Rows{"Wilson Score"}, Rows{"Exact Binomial", "Wald (Continuity Corrected)"}));
}

TEST(Tables, OfPairsHaveTheirRowsInFixedOrder) {
  EXPECT_THAT(
      rowsOf({paired({"v", "u"}, methods({"ALL"}, {"ALL"}))}),
      ElementsAre(
          Rows{},
          Rows{"Agresti-Min", "Bonett-Price", "Newcombe", "Wald", "Wald (Continuity Corrected)"},
          Rows{"Exact Binomial", "Mid-p Adjusted Binomial", "McNemar",
               "McNemar (Continuity Corrected)", "Wald", "Wald (Continuity Corrected)"}));
}

TEST(Tables, OfGroupsHaveTheirRowsInFixedOrder) {
  EXPECT_THAT(
      rowsOf({independent({"v", "BY", "g"}, methods({"ALL"}, {"ALL"}))}),
      ElementsAre(Rows{},
                  Rows{"Agresti-Caffo", "Brown-Li-Jeffreys", "Hauck-Anderson", "Newcombe",
                       "Newcombe (Continuity Corrected)", "Wald", "Wald (Continuity Corrected)"},
                  Rows{"Hauck-Anderson", "Wald", "Wald (Continuity Corrected)", "Wald H0",
                       "Wald H0 (Continuity Corrected)"}));
  EXPECT_THAT(rowsOf({independent({"v", "BY", "g"}, methods({"NONE"}, {"WALD"}))}),
              ElementsAre(Rows{}, Rows{"Wald"}, Rows{}));
}

TEST(Tables, CountACaseOnlyForThePairsThatItIsCompleteFor) {
  Host host({.variables = {numeric("a", {1, 1}), numeric("b", {0, Gone}), numeric("c", {1, 0})}},
            {paired({"a", "b", "c"}), ones()});
  host.run();
  const auto trials = [&](std::size_t pair) {
    const json table =
        scripted::writeTable(host.log.table("Paired-Samples Proportions Statistics", pair));
    return table["rows"][0]["cells"][1]["value"].get<double>();
  };
  EXPECT_EQ(trials(0), 1.0);
  EXPECT_EQ(trials(1), 2.0);
  EXPECT_EQ(trials(2), 1.0);
}

TEST(Tables, CountWeightsAsCases) {
  const auto written = [](scripted::DataSet data) {
    Host host(std::move(data), {paired({"a", "b"}), ones()});
    host.run();
    return scripted::writeTable(*host.log.tables.at(0));
  };
  EXPECT_EQ(
      written({.variables = {numeric("a", {1, 0}), numeric("b", {1, 1}), numeric("w", {2, 3})},
               .weight = "w"}),
      written({.variables = {numeric("a", {1, 1, 0, 0, 0}), numeric("b", {1, 1, 1, 1, 1})}}));
}

TEST(Tables, CountACaseForTheVariablesThatHaveAValue) {
  Host host({.variables = {numeric("v", {1, 0, 1, 0}), numeric("u", {Gone, 1, 0, 1}),
                           numeric("g", {1, 1, 2, 3})}},
            {independent({"v", "u", "BY", "g"}), ones()});
  host.run();
  const auto trials = [&](std::size_t variable) {
    const json table = scripted::writeTable(
        host.log.table("Independent-Samples Proportions Group Statistics", variable));
    return std::vector<double>{table["rows"][0]["cells"][1]["value"],
                               table["rows"][1]["cells"][1]["value"]};
  };
  EXPECT_THAT(trials(0), ElementsAre(2.0, 1.0));
  EXPECT_THAT(trials(1), ElementsAre(1.0, 1.0));
}

}  // namespace
}  // namespace module_tests
