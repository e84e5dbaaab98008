// Multiple imputation from the command line to the three formats: what is pooled, how it is called,
// and what is wrong with imputations that cannot be pooled.
//
// Numbers expected were computed from the formulas in 40 digits, where no other source is named.
#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <set>

#include "Program.h"
#include "ScenarioResults.h"

namespace cli_tests {
namespace {

using Json = nlohmann::json;

class Imputation : public testing::Test {
 protected:
  Outcome start(const std::string& command, const std::vector<std::string>& extra,
                const char* format = "csv") const {
    Call call{.arguments = {"run", "data.csv", "-c", "PROPORTIONS " + command, "--imputation",
                            "imp", "--format", format},
              .folder = folder_.path(),
              .input = {}};
    call.arguments.insert(call.arguments.end(), extra.begin(), extra.end());
    return run(call);
  }

  std::vector<CsvCell> cells(const std::string& command,
                             const std::vector<std::string>& extra = {}) const {
    const Outcome outcome = start(command, extra);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return readCsv(outcome.out);
  }

  // 17 of 45 in the original, then 18, 22, 20, 25 and 19 of 50 in five imputations.
  void writeOneSample(const std::string& yes = "1", const std::string& no = "0") const {
    const int successes[] = {17, 18, 22, 20, 25, 19};
    std::string data = "imp,v,w\n";
    for (int k = 0; k < 6; ++k) {
      const std::string number = std::to_string(k) + ",";
      const int trials = k == 0 ? 45 : 50;
      data += number + yes + "," + std::to_string(successes[k]) + "\n";
      data += number + no + "," + std::to_string(trials - successes[k]) + "\n";
      data += k == 0 ? "0,,5\n" : "";
    }
    folder_.write("data.csv", data);
  }

  // Two groups: the one above, and 10, 14, 9, 12 and 11 of 40.
  void writeTwoGroups() const {
    const int first[] = {17, 18, 22, 20, 25, 19};
    const int second[] = {10, 10, 14, 9, 12, 11};
    std::string data = "imp,v,g,w\n";
    for (int k = 0; k < 6; ++k) {
      const std::string number = std::to_string(k) + ",";
      data += number + "1,1," + std::to_string(first[k]) + "\n";
      data += number + "0,1," + std::to_string(50 - first[k]) + "\n";
      data += number + "1,2," + std::to_string(second[k]) + "\n";
      data += number + "0,2," + std::to_string(40 - second[k]) + "\n";
    }
    folder_.write("data.csv", data);
  }

  // Both, first alone, second alone, neither, of 50 pairs in each of four imputations.
  void writePairs() const {
    const int counts[][4] = {
        {20, 11, 5, 13}, {20, 12, 5, 13}, {22, 10, 6, 12}, {19, 14, 5, 12}, {21, 11, 4, 14}};
    const char* const pairs[] = {"1,1", "1,0", "0,1", "0,0"};
    std::string data = "imp,a,b,w\n";
    for (int k = 0; k < 5; ++k) {
      for (int pair = 0; pair < 4; ++pair) {
        data +=
            std::to_string(k) + "," + pairs[pair] + "," + std::to_string(counts[k][pair]) + "\n";
      }
    }
    folder_.write("data.csv", data);
  }

  Folder folder_;
};

// The value of the cell; a failed test when there is none.
double valueOf(const std::vector<CsvCell>& cells, const std::string& table, const std::string& row,
               const std::string& statistic, const std::string& split = "imputation=pooled",
               const std::string& variable = "") {
  for (const CsvCell& cell : cells) {
    if (cell.table == table && cell.row == row && cell.statistic == statistic &&
        cell.split == split && (variable.empty() || cell.variable == variable)) {
      EXPECT_EQ(cell.state, "valid") << row << " " << statistic;
      return cell.value.empty() ? std::nan("") : std::stod(cell.value);
    }
  }
  ADD_FAILURE() << "no cell " << table << " | " << row << " | " << statistic;
  return std::nan("");
}

std::vector<std::string> splitsOf(const std::vector<CsvCell>& cells, const std::string& table) {
  std::vector<std::string> splits;
  for (const CsvCell& cell : cells) {
    if (cell.table == table && (splits.empty() || splits.back() != cell.split)) {
      splits.push_back(cell.split);
    }
  }
  return splits;
}

constexpr const char* oneSampleIntervals = "One-Sample Proportions Confidence Intervals";
constexpr const char* oneSampleTests = "One-Sample Proportions Tests";
constexpr const char* lower = "95% Confidence Interval / Lower";
constexpr const char* upper = "95% Confidence Interval / Upper";
constexpr const char* missingInformation = "Multiple Imputation / Fraction of Missing Information";
constexpr const char* increase = "Multiple Imputation / Relative Increase in Variance";
constexpr const char* efficiency = "Multiple Imputation / Relative Efficiency";
constexpr const char* freedom = "Multiple Imputation / Degrees of Freedom";

TEST_F(Imputation, PoolsOneSample) {
  writeOneSample();
  const auto all = cells(
      "/ONESAMPLE v TESTVAL=0.3 CITYPES=WALD WILSON_SCORE LOGIT TESTTYPES=WALD SCORE"
      " /SUCCESS VALUE=LEVEL(1)",
      {"--weight", "w"});
  const std::string t = oneSampleIntervals;
  EXPECT_NEAR(valueOf(all, t, "Wald", "Observed / Proportion"), 0.416, 1e-15);
  EXPECT_NEAR(valueOf(all, t, "Wald", "Asymptotic Standard Error"), 0.0922258098365094325, 1e-14);
  EXPECT_NEAR(valueOf(all, t, "Wald", lower), 0.214680279995442903, 1e-12);
  EXPECT_NEAR(valueOf(all, t, "Wald", upper), 0.617319720004557097, 1e-12);
  EXPECT_NEAR(valueOf(all, t, "Wilson Score", lower), 0.247339784485672196, 1e-12);
  EXPECT_NEAR(valueOf(all, t, "Wilson Score", upper), 0.606928485754693606, 1e-12);
  EXPECT_NEAR(valueOf(all, t, "Wald", missingInformation), 0.510947262713714848, 1e-12);
  EXPECT_NEAR(valueOf(all, t, "Wald", increase), 0.768463073852295409, 1e-12);
  EXPECT_NEAR(valueOf(all, t, "Wald", efficiency), 0.907285038604758326, 1e-13);
  EXPECT_NEAR(valueOf(all, t, "Wald", freedom), 11.8007493948462008, 1e-10);
  EXPECT_NEAR(valueOf(all, t, "Wilson Score", freedom), 21.1839028503963569, 1e-10);
  EXPECT_NEAR(valueOf(all, oneSampleTests, "Wald", "Observed - Test Value"), 0.116, 1e-15);
  EXPECT_NEAR(valueOf(all, oneSampleTests, "Wald", "t"), 1.25778239524961134, 1e-12);
  EXPECT_NEAR(valueOf(all, oneSampleTests, "Wald", "Significance / One-Sided p"),
              0.116395231408459505, 1e-12);
  EXPECT_NEAR(valueOf(all, oneSampleTests, "Wald", "Significance / Two-Sided p"),
              0.23279046281691901, 1e-12);
  EXPECT_EQ(valueOf(all, t, "Logit", "Observed / Trials", "imputation=0"), 45.0);
  EXPECT_EQ(splitsOf(all, t), (std::vector<std::string>{
                                  "imputation=0", "imputation=1", "imputation=2", "imputation=3",
                                  "imputation=4", "imputation=5", "imputation=pooled"}));
  for (const CsvCell& cell : all) {
    EXPECT_FALSE(cell.split == "imputation=pooled" && (cell.row == "Logit" || cell.row == "Score"));
  }
}

// A pooled ratio follows Student's t: it does not stand among statistics of the normal law, and its
// degrees of freedom stand in the same row.
TEST_F(Imputation, CallsThePooledStatisticByItsName) {
  writeOneSample();
  const auto all =
      cells("/ONESAMPLE v TESTVAL=0.3 TESTTYPES=WALD CITYPES=NONE /SUCCESS VALUE=LEVEL(1)",
            {"--weight", "w"});
  std::map<std::string, std::set<std::string>> splits;  // by statistic
  for (const CsvCell& cell : all) {
    splits[cell.statistic].insert(cell.split);
  }
  EXPECT_EQ(splits["t"], std::set<std::string>{"imputation=pooled"});
  EXPECT_EQ(splits[freedom], std::set<std::string>{"imputation=pooled"});
  EXPECT_EQ(splits["Z"].size(), 6U);
  EXPECT_FALSE(splits["Z"].contains("imputation=pooled"));
}

TEST_F(Imputation, HasRubinsDegreesOfFreedomByOption) {
  writeOneSample();
  const auto all = cells("/ONESAMPLE v CITYPES=WALD TESTTYPES=NONE /SUCCESS VALUE=LEVEL(1)",
                         {"--weight", "w", "--pooling-df", "rubin"});
  EXPECT_NEAR(valueOf(all, oneSampleIntervals, "Wald", freedom), 21.1839028503963569, 1e-10);
  EXPECT_NEAR(valueOf(all, oneSampleIntervals, "Wald", lower), 0.224307260801598378, 1e-12);
  EXPECT_NEAR(valueOf(all, oneSampleIntervals, "Wald", upper), 0.607692739198401622, 1e-12);
  EXPECT_NEAR(valueOf(all, oneSampleIntervals, "Wald", missingInformation), 0.481300810843014931,
              1e-12);
}

TEST_F(Imputation, PoolsIndependentSamples) {
  writeTwoGroups();
  const auto all = cells(
      "/INDEPENDENTSAMPLES v BY g SELECT=LEVEL(1 2) CITYPES=WALD NEWCOMBE HAUCK_ANDERSON"
      " TESTTYPES=WALD WALDH0 /SUCCESS VALUE=LEVEL(1)",
      {"--weight", "w"});
  const std::string t = "Independent-Samples Proportions Confidence Intervals";
  const std::string interval = "95% Confidence Interval of the Difference / ";
  EXPECT_NEAR(valueOf(all, t, "Wald", "Difference in Proportions"), 0.136, 1e-15);
  EXPECT_NEAR(valueOf(all, t, "Wald", interval + "Lower"), -0.0916651689201469145, 1e-12);
  EXPECT_NEAR(valueOf(all, t, "Wald", interval + "Upper"), 0.363665168920146915, 1e-12);
  EXPECT_NEAR(valueOf(all, t, "Wald", freedom), 36.5427711530398072, 1e-10);
  EXPECT_NEAR(valueOf(all, t, "Newcombe", interval + "Lower"), -0.126287751999803692, 1e-12);
  EXPECT_NEAR(valueOf(all, t, "Newcombe", interval + "Upper"), 0.37254825150250411, 1e-12);
  const std::string tests = "Independent-Samples Proportions Tests";
  EXPECT_NEAR(valueOf(all, tests, "Wald", "t"), 1.21089495547935841, 1e-12);
  EXPECT_NEAR(valueOf(all, tests, "Wald", "Significance / Two-Sided p"), 0.233709074395251299,
              1e-12);
  const std::string groups = "Independent-Samples Proportions Group Statistics";
  EXPECT_NEAR(valueOf(all, groups, "= 1", "Proportion"), 0.416, 1e-15);
  EXPECT_NEAR(valueOf(all, groups, "= 1", freedom), 11.8007493948462008, 1e-10);
  EXPECT_NEAR(valueOf(all, groups, "= 2", "Asymptotic Standard Error"), 0.0881405128190209703,
              1e-14);
  EXPECT_NEAR(valueOf(all, groups, "= 2", freedom), 13.5534222337105573, 1e-10);
}

TEST_F(Imputation, PoolsPairs) {
  writePairs();
  const auto all = cells(
      "/PAIREDSAMPLES a WITH b CITYPES=ALL TESTTYPES=ALL /SUCCESS VALUE=LEVEL(1)"
      " /CRITERIA CILEVEL=90",
      {"--weight", "w"});
  const std::string t = "Paired-Samples Proportions Confidence Intervals";
  const std::string interval = "90% Confidence Interval of the Difference / ";
  EXPECT_NEAR(valueOf(all, t, "Wald", "Difference in Proportions"), 0.135, 1e-15);
  EXPECT_NEAR(valueOf(all, t, "Wald", "Asymptotic Standard Error"), 0.0918422560698505489, 1e-14);
  EXPECT_NEAR(valueOf(all, t, "Wald", interval + "Lower"), -0.0233294834332198601, 1e-12);
  EXPECT_NEAR(valueOf(all, t, "Wald", interval + "Upper"), 0.29332948343321986, 1e-12);
  EXPECT_NEAR(valueOf(all, t, "Wald", freedom), 20.1906597629865828, 1e-10);
  const std::string tests = "Paired-Samples Proportions Tests";
  EXPECT_NEAR(valueOf(all, tests, "Wald", "t"), 1.46991162648842017, 1e-12);
  EXPECT_NEAR(valueOf(all, tests, "Wald", "Significance / One-Sided p"), 0.0784986153413546469,
              1e-12);
  // The standard error of a single measurement is that of the table, by its successes.
  const std::string statistics = "Paired-Samples Proportions Statistics";
  const std::string first = "Pair 1 / a = 1";
  EXPECT_NEAR(valueOf(all, statistics, "", "Proportion", "imputation=pooled", first), 0.645, 1e-15);
  EXPECT_NEAR(valueOf(all, statistics, "", "Asymptotic Standard Error", "imputation=pooled", first),
              0.085, 1e-14);
  EXPECT_NEAR(valueOf(all, statistics, "", freedom, "imputation=pooled", first),
              46.0873335587214316, 1e-9);
  std::map<std::string, int> pooledRows;
  for (const CsvCell& cell : all) {
    if (cell.split == "imputation=pooled") {
      ++pooledRows[cell.row];
    }
  }
  EXPECT_EQ(pooledRows.size(), 2U) << "Wald, and the table that has no methods";
}

// Each group of the user's is pooled as if it were alone, in both layouts.
TEST_F(Imputation, StandsOutsideTheUsersSplits) {
  std::string data = "region,imp,v\n";
  std::string north = "imp,v\n";
  for (int k = 0; k < 4; ++k) {
    for (int i = 0; i < 24; ++i) {
      const std::string rest =
          std::to_string(k) + "," + std::to_string(i % 3 == 0 || i % (k + 4) == 1 ? 1 : 0) + "\n";
      data += (i % 2 == 0 ? "North," : "South,") + rest;
      north += i % 2 == 0 ? rest : "";
    }
  }
  const std::string command =
      "/ONESAMPLE v CITYPES=WALD WILSON_SCORE TESTTYPES=WALD TESTVAL=0.25 /SUCCESS VALUE=LEVEL(1)";
  folder_.write("data.csv", north);
  const auto alone = cells(command);
  folder_.write("data.csv", data);
  const auto rows = cells(command, {"--split", "region"});
  const auto tables = cells(command, {"--split", "region", "--split-layout", "tables"});
  EXPECT_EQ(
      splitsOf(rows, oneSampleTests),
      (std::vector<std::string>{
          "imputation=0; region=North", "imputation=0; region=South", "imputation=1; region=North",
          "imputation=1; region=South", "imputation=2; region=North", "imputation=2; region=South",
          "imputation=3; region=North", "imputation=3; region=South",
          "imputation=pooled; region=North", "imputation=pooled; region=South"}));
  const auto ofNorth = [](const std::vector<CsvCell>& from) {
    std::map<std::string, std::string> values;
    for (const CsvCell& cell : from) {
      if (cell.split.find("South") == std::string::npos) {
        const std::string split = cell.split.substr(0, cell.split.find(';'));
        values[cell.table + split + cell.row + cell.statistic] = cell.value + cell.state;
      }
    }
    return values;
  };
  EXPECT_EQ(ofNorth(rows), ofNorth(alone));
  EXPECT_EQ(ofNorth(tables), ofNorth(alone));
  EXPECT_EQ(tables.size(), rows.size());
}

// With the last value as success and labels of its own, each imputation is judged by the last
// value of the original: 2, though imputation 1 reaches 3, and imputation 2 only 1.
TEST_F(Imputation, JudgesBySuccessesOfTheOriginal) {
  folder_.write("data.csv", "imp,v\n0,0\n0,1\n0,2\n0,2\n1,0\n1,2\n1,3\n1,2\n2,0\n2,1\n2,1\n2,0\n");
  for (const char* rule : {"LAST", "FIRST", "MIDPOINT", "CUTPOINT(1)", "LEVEL(2)"}) {
    const std::map<std::string, std::vector<double>> expected{{"LAST", {2, 2, 0}},
                                                              {"FIRST", {1, 1, 2}},
                                                              {"MIDPOINT", {3, 3, 2}},
                                                              {"CUTPOINT(1)", {3, 3, 2}},
                                                              {"LEVEL(2)", {2, 2, 0}}};
    const auto all =
        cells(std::string("/ONESAMPLE v CITYPES=WALD TESTTYPES=NONE /SUCCESS VALUE=") + rule);
    const auto& successes = expected.at(rule);
    for (std::size_t k = 0; k < 3; ++k) {
      EXPECT_EQ(valueOf(all, oneSampleIntervals, "Wald", "Observed / Successes",
                        "imputation=" + std::to_string(k)),
                successes[k])
          << rule;
    }
    EXPECT_NEAR(valueOf(all, oneSampleIntervals, "Wald", "Observed / Proportion"),
                (successes[1] + successes[2]) / 8.0, 1e-15)
        << rule;
    std::map<std::string, int> labels;
    for (const CsvCell& cell : all) {
      ++labels[cell.variable];
    }
    EXPECT_EQ(labels.size(), 1U) << rule;
  }
}

// The groups of an original from 1 to 3 meet at 2, wherever those of an imputation would.
TEST_F(Imputation, FormsGroupsByTheMidpointOfTheOriginal) {
  folder_.write("data.csv",
                "imp,v,g\n0,1,1\n0,0,1\n0,1,3\n0,0,3\n1,1,1\n1,0,1\n1,1,3\n1,0,9\n"
                "2,1,1\n2,0,2\n2,1,2\n2,0,1\n");
  const auto all = cells(
      "/INDEPENDENTSAMPLES v BY g SELECT=MIDPOINT CITYPES=WALD TESTTYPES=NONE"
      " /SUCCESS VALUE=LEVEL(1)");
  const std::string groups = "Independent-Samples Proportions Group Statistics";
  for (const char* split : {"imputation=0", "imputation=1", "imputation=2"}) {
    EXPECT_EQ(valueOf(all, groups, "< 2", "Trials", split), 2.0);
    EXPECT_EQ(valueOf(all, groups, ">= 2", "Trials", split), 2.0);
  }
  EXPECT_EQ(valueOf(all, groups, "< 2", "Proportion"), 0.5);
}

// Whatever the complete data give, to the last bit, also where proportions are 0 and 1.
TEST_F(Imputation, GivesTheIntervalOfTheCompleteDataWhereImputationsAgree) {
  folder_.write("data.csv",
                "imp,none,some,all\n0,0,,1\n0,0,1,1\n0,0,0,1\n1,0,1,1\n1,0,1,1\n1,0,0,1\n"
                "2,0,0,1\n2,0,1,1\n2,0,1,1\n3,0,1,1\n3,0,1,1\n3,0,0,1\n");
  const auto all = cells(
      "/ONESAMPLE none some all CITYPES=WALD WILSON_SCORE TESTTYPES=WALD"
      " /SUCCESS VALUE=LEVEL(1)");
  std::map<std::string, CsvCell> complete;
  std::size_t compared = 0;
  for (const CsvCell& cell : all) {
    const std::string key = cell.table + cell.row + cell.variable + cell.statistic;
    if (cell.split == "imputation=1") {
      complete[key] = cell;
    } else if (cell.split == "imputation=pooled" && complete.contains(key)) {
      EXPECT_EQ(cell.value, complete[key].value) << key;
      EXPECT_EQ(cell.state, complete[key].state) << key;
      EXPECT_EQ(cell.footnotes, complete[key].footnotes) << key;
      ++compared;
    } else if (cell.split == "imputation=pooled") {
      EXPECT_EQ(cell.value, cell.statistic == efficiency ? "1" : "0") << key;
    }
  }
  EXPECT_EQ(compared, 3U * (2 * 4 + 6));
}

TEST_F(Imputation, PoolsProportionsOfZeroWithOthers) {
  folder_.write("data.csv", "imp,v,w\n0,0,20\n1,0,20\n2,1,1\n2,0,19\n3,0,20\n");
  const auto all = cells(
      "/ONESAMPLE v CITYPES=WALD WILSON_SCORE TESTTYPES=WALD TESTVAL=0.25"
      " /SUCCESS VALUE=LEVEL(1)",
      {"--weight", "w"});
  EXPECT_EQ(valueOf(all, oneSampleIntervals, "Wald", lower), 0.0);
  EXPECT_NEAR(valueOf(all, oneSampleIntervals, "Wald", upper), 0.150069998017114036, 1e-12);
  EXPECT_NEAR(valueOf(all, oneSampleIntervals, "Wilson Score", lower), 0.00036534857767102426,
              1e-14);
  EXPECT_NEAR(valueOf(all, oneSampleIntervals, "Wilson Score", upper), 0.440093734291272546, 1e-12);
  // No imputation but one has a Wald test; the pooled estimate has one all the same.
  EXPECT_LT(valueOf(all, oneSampleTests, "Wald", "t"), 0.0);
}

TEST_F(Imputation, SaysWhichStatisticsAnImputationLacks) {
  folder_.write("data.csv", "imp,a,b\n0,1,1\n0,0,1\n1,1,0\n1,0,0\n2,0,1\n2,0,0\n");
  const auto all = cells(
      "/PAIREDSAMPLES a WITH b CITYPES=WALD TESTTYPES=NONE"
      " /SUCCESS VALUE=LEVEL(1)");
  int noted = 0;
  for (const CsvCell& cell : all) {
    if (cell.split == "imputation=pooled" && cell.state == "missing") {
      EXPECT_EQ(cell.statistic, "Asymptotic Standard Error");
      EXPECT_EQ(cell.footnotes, "Imputations not computed 1 ...");
      ++noted;
    }
  }
  EXPECT_EQ(noted, 2) << "each measurement has no success in one of the imputations";
}

TEST_F(Imputation, DependsOnNeitherDeliveryNorTheOrderOfRows) {
  writeTwoGroups();
  const std::string command =
      "/INDEPENDENTSAMPLES v BY g SELECT=LEVEL(1 2) CITYPES=ALL TESTTYPES=ALL";
  const Outcome usual = start(command, {"--weight", "w"});
  EXPECT_EQ(start(command, {"--weight", "w", "--case-by-case"}).out, usual.out);
  std::string data = contentOf(folder_.path() / "data.csv");
  const std::size_t half = data.find("3,1,1,");
  data = data.substr(0, data.find('\n') + 1) + data.substr(half) +
         data.substr(data.find('\n') + 1, half - data.find('\n') - 1);
  folder_.write("data.csv", data);
  EXPECT_EQ(start(command, {"--weight", "w"}).out, usual.out);
}

TEST_F(Imputation, IsCalledImputationInEveryFormat) {
  writeOneSample();
  const std::string command = "/ONESAMPLE v CITYPES=WALD LOGIT TESTTYPES=NONE";
  const Json json = document(start(command, {"--weight", "w"}, "json"));
  EXPECT_EQ(json["data"]["split"], Json({"imputation"}));
  const Json& table = json["tables"][0];
  EXPECT_EQ(table["split"], Json({"imputation"}));
  std::vector<Json> values;
  for (const Json& cell : table["cells"]) {
    if (values.empty() || values.back() != cell["split"][0]["value"]) {
      values.push_back(cell["split"][0]["value"]);
    }
  }
  EXPECT_EQ(values, (std::vector<Json>{0, 1, 2, 3, 4, 5, "pooled"}));
  std::map<std::string, Json> notes;
  for (const Json& message : json["messages"]) {
    EXPECT_EQ(message["severity"], "note");
    notes[message["id"]] = message["arguments"];
  }
  EXPECT_EQ(notes["Pooled over ^1 imputations, degrees of freedom of Barnard and Rubin ..."],
            Json({5}));
  EXPECT_EQ(notes["No pooling rule in ^1 for [%1:, ^1:]2 ..."],
            Json({oneSampleIntervals, Json({"Logit"})}));
  const Outcome text = start(command, {"--weight", "w"}, "text");
  EXPECT_EQ(text.status, 0) << text.err;
  EXPECT_NE(text.out.find("\npooled "), std::string::npos) << text.out;
  EXPECT_NE(text.out.find("Barnard and Rubin"), std::string::npos);
  EXPECT_EQ(text.out.find("IMPUTATION_"), std::string::npos) << text.out;
}

TEST_F(Imputation, WarnsOfASplitVariableThatIsAnalysedToo) {
  folder_.write("data.csv", "imp,v\n0,1\n0,0\n1,1\n1,0\n2,1\n2,0\n");
  const Json json = document(
      start("/ONESAMPLE v CITYPES=WALD /SUCCESS VALUE=LEVEL(1)", {"--split", "v"}, "json"));
  std::vector<Json> warned;
  for (const Json& message : json["messages"]) {
    if (message["id"] == "Split variable analysed ^1 ...") {
      EXPECT_EQ(message["severity"], "warning");
      warned.push_back(message["arguments"]);
    }
  }
  EXPECT_EQ(warned, (std::vector<Json>{Json({"v"})}));
}

TEST_F(Imputation, IsNotPooledForASplitVariableOfItsNameButWarnedOf) {
  folder_.write("data.csv", "imputation_,v\n0,1\n0,0\n1,1\n1,0\n2,1\n2,0\n");
  const Outcome outcome = run({.arguments = {"run", "data.csv", "-c", "PROPORTIONS /ONESAMPLE v",
                                             "--split", "imputation_", "--format", "json"},
                               .folder = folder_.path(),
                               .input = {}});
  const Json json = document(outcome);
  ASSERT_EQ(json["messages"].size(), 1U);
  EXPECT_EQ(json["messages"][0]["id"], "Split variable numbers imputations ^1 ...");
  EXPECT_EQ(json["messages"][0]["arguments"], Json({"imputation_"}));
  EXPECT_EQ(json["data"]["split"], Json({"imputation_"}));
}

TEST_F(Imputation, WarnsOfGroupsThatNoImputationHas) {
  folder_.write("data.csv", "imp,g,v\n0,a,1\n0,a,0\n0,,1\n1,a,1\n1,a,0\n2,a,1\n2,a,0\n");
  const Json json = document(start("/ONESAMPLE v CITYPES=WALD", {"--split", "g"}, "json"));
  int warnings = 0;
  for (const Json& message : json["messages"]) {
    if (message["id"] == "Split group without imputations ...") {
      EXPECT_EQ(message["split"][0]["value"], 0);
      ++warnings;
    }
  }
  EXPECT_EQ(warnings, 1);
}

TEST_F(Imputation, IsPooledForAMillionTrials) {
  folder_.write("data.csv",
                "imp,v,w\n0,1,3\n0,0,9e8\n1,1,3\n1,0,999999997\n2,1,3\n2,0,999999997\n3,1,4\n"
                "3,0,999999996\n");
  const auto all = cells("/ONESAMPLE v CITYPES=WILSON_SCORE TESTTYPES=NONE /SUCCESS VALUE=LEVEL(1)",
                         {"--weight", "w"});
  EXPECT_NEAR(valueOf(all, oneSampleIntervals, "Wilson Score", lower) / 1.11323339998193835e-9, 1.0,
              1e-11);
}

// One thing that is wrong, the status, and words that the message holds.
struct BadImputations {
  std::string name;
  std::string data;
  std::vector<std::string> options;
  int status;
  std::vector<std::string> named;
};

void PrintTo(const BadImputations& bad, std::ostream* out) {
  *out << bad.name;
}

class RefusedImputations : public testing::TestWithParam<BadImputations> {};

TEST_P(RefusedImputations, AreToldWithTheirPlace) {
  const BadImputations& bad = GetParam();
  // The rules that the procedure itself looks at the number for, and those that it does not.
  for (const char* rule : {"LAST", "LEVEL(1)", "CUTPOINT(1)"}) {
    const Folder folder;
    folder.write("data.csv", bad.data);
    Call call{.arguments = {"run", "data.csv", "-c",
                            std::string("PROPORTIONS /ONESAMPLE v /SUCCESS VALUE=") + rule,
                            "--format", "json", "-o", "out.json"},
              .folder = folder.path(),
              .input = {}};
    call.arguments.insert(call.arguments.end(), bad.options.begin(), bad.options.end());
    const Outcome outcome = run(call);
    EXPECT_EQ(outcome.status, bad.status) << rule << ": " << outcome.err;
    EXPECT_EQ(outcome.out, "");
    for (const std::string& word : bad.named) {
      EXPECT_NE(outcome.err.find(word), std::string::npos) << rule << ": " << outcome.err;
    }
    EXPECT_EQ(folder.files(), (std::vector<std::string>{"data.csv"}));
  }
}

const std::vector<std::string> asNumber{"--imputation", "imp"};
const std::vector<std::string> withSplit{"--imputation", "imp", "--split", "g"};
const std::string usual = "imp,v\n0,1\n1,0\n2,1\n";

INSTANTIATE_TEST_SUITE_P(
    Imputations, RefusedImputations,
    testing::Values(
        BadImputations{"Strings", "imp,v\na,1\nb,0\n", asNumber, 3, {" imp ", "string"}},
        BadImputations{"Missing", "imp,v\n0,1\n,1\n1,0\n2,1\n", asNumber, 3, {" imp,"}},
        BadImputations{"Negative", "imp,v\n0,1\n-1,1\n1,0\n2,1\n", asNumber, 3, {"-1 in imp "}},
        BadImputations{"NotWhole", "imp,v\n0,1\n1,0\n1.5,0\n2,1\n", asNumber, 3, {"1.5 in imp "}},
        BadImputations{"NoOriginal", "imp,v\n1,0\n2,1\n", asNumber, 3, {" imp;", "number 0"}},
        BadImputations{"NoImputation", "imp,v\n0,0\n0,1\n", asNumber, 3, {" imp,", "is 0;"}},
        BadImputations{"OneImputation", "imp,v\n0,0\n1,1\n", asNumber, 3, {" imp,", "is 1;"}},
        BadImputations{"AnotherGroup",
                       "imp,g,v\n0,a,1\n1,a,1\n2,a,1\n2,b,0\n",
                       withSplit,
                       3,
                       {"Imputation 2 of imp", "g = b"}},
        BadImputations{"ALackingGroup",
                       "imp,g,v\n0,a,1\n0,b,0\n1,a,1\n2,a,1\n2,b,0\n",
                       withSplit,
                       3,
                       {"g = b", " imp "}},
        BadImputations{"UnknownVariable", usual, {"--imputation", "immp"}, 2, {"immp"}},
        BadImputations{"NoName", usual, {"--imputation", ""}, 2, {"--imputation"}},
        BadImputations{"SplitToo", usual, {"--imputation", "imp", "--split", "imp"}, 2, {" imp "}},
        BadImputations{"ASplitOfItsName",
                       "imp,Imputation_,v\n0,0,1\n",
                       {"--imputation", "imp", "--split", "Imputation_"},
                       2,
                       {"Imputation_"}},
        BadImputations{"WithBootstrap",
                       usual,
                       {"--imputation", "imp", "--bootstrap", "9"},
                       2,
                       {"--bootstrap"}},
        BadImputations{"DfAlone", usual, {"--pooling-df", "rubin"}, 2, {"--imputation"}},
        BadImputations{
            "UnknownDf", usual, {"--imputation", "imp", "--pooling-df", "best"}, 2, {"best"}}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace cli_tests
