// `counts`: counts at hand instead of a data file, through the same tables.
#include <gtest/gtest.h>

#include "Program.h"
#include "ScenarioResults.h"

namespace cli_tests {
namespace {

Outcome counts(std::vector<std::string> words) {
  words.insert(words.begin(), "counts");
  return run(std::move(words));
}

// The only cell of this place; fails the test when there is none.
double valueOf(const std::vector<CsvCell>& cells, const std::string& row,
               const std::string& statistic) {
  for (const CsvCell& cell : cells) {
    if (cell.row == row && cell.statistic == statistic && cell.state == "valid") {
      return std::stod(cell.value);
    }
  }
  ADD_FAILURE() << "no valid cell " << row << " / " << statistic;
  return 0;
}

std::vector<CsvCell> cellsOf(std::vector<std::string> words) {
  words.insert(words.end(), {"--format", "csv"});
  const Outcome outcome = counts(std::move(words));
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  return readCsv(outcome.out);
}

std::vector<std::string> rowsOf(const std::vector<CsvCell>& cells, const std::string& table) {
  std::vector<std::string> rows;
  for (const CsvCell& cell : cells) {
    if (cell.table == table && (rows.empty() || rows.back() != cell.row)) {
      rows.push_back(cell.row);
    }
  }
  return rows;
}

// Expected values: the formulas by hand, in another language.
TEST(Counts, OfOneSample) {
  const auto cells = cellsOf({"7/50"});
  EXPECT_EQ(rowsOf(cells, "One-Sample Proportions Confidence Intervals"),
            (std::vector<std::string>{"Agresti-Coull", "Jeffreys", "Wilson Score"}));
  EXPECT_EQ(valueOf(cells, "Wilson Score", "Observed / Successes"), 7);
  EXPECT_EQ(valueOf(cells, "Wilson Score", "Observed / Trials"), 50);
  EXPECT_NEAR(valueOf(cells, "Wilson Score", "95% Confidence Interval / Lower"),
              0.06950833427016294, 1e-12);
  EXPECT_NEAR(valueOf(cells, "Agresti-Coull", "95% Confidence Interval / Upper"),
              0.26499592788180043, 1e-12);
  EXPECT_NEAR(valueOf(cells, "Score", "Z"), -5.091168824543142, 1e-12);
}

TEST(Counts, OfTwoGroups) {
  const auto cells = cellsOf({"7/50", "12/48"});
  EXPECT_EQ(rowsOf(cells, "Independent-Samples Proportions Group Statistics"),
            (std::vector<std::string>{"= 1", "= 2"}));
  EXPECT_EQ(valueOf(cells, "= 2", "Successes"), 12);
  EXPECT_EQ(valueOf(cells, "= 2", "Trials"), 48);
  const std::string interval = "95% Confidence Interval of the Difference / ";
  EXPECT_NEAR(valueOf(cells, "Newcombe", interval + "Lower"), -0.2648223766531095, 1e-12);
  EXPECT_NEAR(valueOf(cells, "Newcombe", interval + "Upper"), 0.04814453600731547, 1e-12);
  EXPECT_NEAR(valueOf(cells, "Wald H0", "Z"), -1.3769589642906717, 1e-12);
}

TEST(Counts, OfPairs) {
  const auto cells = cellsOf({"--paired", "40,12,5,43"});
  const std::string interval = "95% Confidence Interval of the Difference / ";
  EXPECT_NEAR(valueOf(cells, "Bonett-Price", "Difference in Proportions"), 0.07, 1e-15);
  EXPECT_NEAR(valueOf(cells, "Bonett-Price", interval + "Lower"), -0.014064609259291969, 1e-12);
  EXPECT_NEAR(valueOf(cells, "Newcombe", interval + "Upper"), 0.1494160857886322, 1e-12);
  EXPECT_NEAR(valueOf(cells, "McNemar", "Z"), 1.697749375254331, 1e-12);
}

TEST(Counts, TakeLevelTestValueAndMethods) {
  const auto cells = cellsOf({"7/50", "--level", "90", "--test-value", "0.1", "--tests",
                              "EXACT,SCORE", "--intervals", "WILSON_SCORE"});
  EXPECT_EQ(rowsOf(cells, "One-Sample Proportions Confidence Intervals"),
            (std::vector<std::string>{"Wilson Score"}));
  EXPECT_EQ(rowsOf(cells, "One-Sample Proportions Tests"),
            (std::vector<std::string>{"Exact Binomial", "Score"}));
  EXPECT_NEAR(valueOf(cells, "Wilson Score", "90% Confidence Interval / Lower"),
              0.07772089782062996, 1e-12);
  EXPECT_NEAR(valueOf(cells, "Exact Binomial", "Significance / One-Sided p"), 0.2297731581963771,
              1e-12);
}

TEST(Counts, TakeAllMethodsAndNone) {
  const auto cells = cellsOf({"7/50", "--intervals", "all", "--tests", "none"});
  EXPECT_EQ(rowsOf(cells, "One-Sample Proportions Confidence Intervals").size(), 9U);
  EXPECT_TRUE(rowsOf(cells, "One-Sample Proportions Tests").empty());
}

TEST(Counts, GiveTheTablesOfTheSameDataInAFile) {
  const Folder folder;
  folder.write("data.csv", "outcome,n\n1,7\n0,43\n");
  const std::string command = document(counts({"7/50", "--format", "json"}))["command"];
  const Outcome fromFile =
      run({.arguments = {"run", "data.csv", "--weight", "n", "-c", command, "--format", "csv"},
           .folder = folder.path(),
           .input = {}});
  EXPECT_EQ(counts({"7/50", "--format", "csv"}).out, fromFile.out);
}

TEST(Counts, WithoutFailuresOrSuccessesKeepTheirSuccess) {
  for (const char* text : {"0/7", "7/7"}) {
    const auto cells = cellsOf({text});
    EXPECT_EQ(cells.front().variable, "outcome = 1") << text;
    EXPECT_EQ(valueOf(cells, "Wilson Score", "Observed / Trials"), 7);
  }
}

// Words, exit status, what the message names.
using Refusal = std::tuple<std::vector<std::string>, int, std::string>;

TEST(Counts, RefuseWhatIsNoCount) {
  const Refusal refusals[] = {{{"8/7"}, 2, "8/7"},
                              {{"7"}, 2, "7"},
                              {{"a/b"}, 2, "a/b"},
                              {{"1.5/3"}, 2, "1.5/3"},
                              {{"7/50/2"}, 2, "7/50/2"},
                              {{"/"}, 2, "/"},
                              {{"99999999999999999999/99999999999999999999"}, 2, "99999"},
                              {{"7/50", "1/2", "3/4"}, 2, ""},
                              {{}, 2, ""},
                              {{"--paired", "1,2,3"}, 2, "1,2,3"},
                              {{"--paired", "1,2,3,-4"}, 2, ""},
                              {{"1/4503599627370497"}, 2, "1/4503599627370497"},
                              {{"1/99999999999999999999"}, 2, "1/99999999999999999999"},
                              {{"--paired", "1,2,3,4", "7/50"}, 2, ""},
                              {{"7/50", "--level", "x"}, 2, ""},
                              {{"7/50", "--level", "100"}, 1, "100"},
                              {{"7/50", "--test-value", "1"}, 1, ""},
                              {{"7/50", "--tests", "LOGIT"}, 1, "LOGIT"},
                              {{"7/50", "12/48", "--test-value", "0.5"}, 1, "TESTVAL"}};
  for (const auto& [words, status, named] : refusals) {
    SCOPED_TRACE(testing::PrintToString(words));
    const Outcome outcome = counts(words);
    EXPECT_EQ(outcome.status, status) << outcome.err;
    EXPECT_TRUE(outcome.out.empty()) << outcome.out;
    EXPECT_NE(outcome.err, "");
    EXPECT_NE(outcome.err.find(named), std::string::npos) << outcome.err;
  }
}

}  // namespace
}  // namespace cli_tests
