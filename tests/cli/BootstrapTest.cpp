// `--bootstrap` as its users meet it: what is written beside each estimate, what is said of samples
// that could not be computed, its own level and seed, and what is refused.
#include <gtest/gtest.h>

#include "Program.h"
#include "Results.h"

namespace cli_tests {
namespace {

using Json = nlohmann::json;
using Words = std::vector<std::string>;

const std::string intervals = "One-Sample Proportions Confidence Intervals";
const std::string tests = "One-Sample Proportions Tests";
const std::string oneSample = "PROPORTIONS /ONESAMPLE v CITYPES=WALD TESTTYPES=NONE";

// 27 successes among 40 cases of v, 12 among 40 of u; two groups of r.
std::string fortyCases() {
  std::string data = "v,u,g,r,w\n";
  for (int i = 0; i < 40; ++i) {
    data += std::string(i < 27 ? "1," : "0,") + (i % 10 < 3 ? "1," : "0,") +
            (i % 3 == 0 ? "1," : "2,") + (i % 4 == 0 ? "south," : "north,") +
            std::to_string(i % 5) + "\n";
  }
  return data;
}

class Bootstrap : public testing::Test {
 protected:
  Bootstrap() { write(fortyCases()); }

  void write(const std::string& data, const std::string& schema = "{\"fields\": []}") const {
    folder_.write("data.csv", data);
    folder_.write("data.schema.json", schema);
  }

  Outcome start(const std::string& command, const Words& options) const {
    Call call{
        .arguments = {"run", "data.csv", "-c", command}, .folder = folder_.path(), .input = {}};
    call.arguments.insert(call.arguments.end(), options.begin(), options.end());
    return run(call);
  }

  std::string csv(const std::string& command, Words options) const {
    options.insert(options.end(), {"--format", "csv", "--quiet"});
    const Outcome outcome = start(command, options);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome.out;
  }

  Json json(const std::string& command, Words options) const {
    options.insert(options.end(), {"--format", "json", "--quiet"});
    const Outcome outcome = start(command, options);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return document(outcome);
  }

  // Wrong usage, with the words in the message and nothing written.
  void expectRefused(const Words& options, const Words& named) const {
    const Outcome outcome = start(oneSample, options);
    EXPECT_EQ(outcome.status, 2) << testing::PrintToString(options);
    EXPECT_TRUE(outcome.out.empty()) << outcome.out;
    for (const std::string& word : named) {
      EXPECT_NE(outcome.err.find(word), std::string::npos) << word << " in: " << outcome.err;
    }
  }

  Folder folder_;
};

const CsvPlace proportion{intervals, "", "Wald", "v = 1", "Observed / Proportion"};
const CsvPlace error{intervals, "", "Wald", "v = 1", "Asymptotic Standard Error"};

CsvPlace below(CsvPlace place, const std::string& label) {
  place.statistic += " / Bootstrap / " + label;
  return place;
}

// --- What is written ----------------------------------------------------------------------------

TEST_F(Bootstrap, AddsFiveStatisticsBelowEachEstimateInOrder) {
  std::vector<std::string> statistics;
  for (const CsvCell& cell : readCsv(csv(oneSample, {"--bootstrap", "50"}))) {
    statistics.push_back(cell.statistic);
  }
  EXPECT_EQ(statistics,
            (Words{"Observed / Successes", "Observed / Trials", "Observed / Proportion",
                   "Observed / Proportion / Bootstrap / Bias",
                   "Observed / Proportion / Bootstrap / Std. Error",
                   "Observed / Proportion / Bootstrap / Lower",
                   "Observed / Proportion / Bootstrap / Upper",
                   "Observed / Proportion / Bootstrap / Samples", "Asymptotic Standard Error",
                   "Asymptotic Standard Error / Bootstrap / Bias",
                   "Asymptotic Standard Error / Bootstrap / Std. Error",
                   "Asymptotic Standard Error / Bootstrap / Lower",
                   "Asymptotic Standard Error / Bootstrap / Upper",
                   "Asymptotic Standard Error / Bootstrap / Samples",
                   "95% Confidence Interval / Lower", "95% Confidence Interval / Upper"}));
}

TEST_F(Bootstrap, LeavesTheTablesOfTheDataAsTheyAre) {
  const std::string command = "PROPORTIONS /INDEPENDENTSAMPLES v u BY g CITYPES=ALL TESTTYPES=ALL";
  for (const Words& options : {Words{}, {"--split", "r"}, {"--split", "r", "--weight", "w"}}) {
    Words resampled = options;
    resampled.insert(resampled.end(), {"--bootstrap", "20"});
    const Results plain(csv(command, options));
    const Results with(csv(command, resampled));
    std::size_t same = 0;
    for (const auto& [place, cell] : with.cells()) {
      if (place.statistic.find("Bootstrap") == std::string::npos) {
        ++same;
        EXPECT_EQ(plain.at(place).value, cell.value) << place.statistic;
        EXPECT_EQ(plain.at(place).footnotes, cell.footnotes) << place.statistic;
      }
    }
    EXPECT_EQ(same, plain.cells().size());
  }
}

TEST_F(Bootstrap, CoversDifferencesAndBothProportionsInEveryDesign) {
  const Words options{"--bootstrap", "30"};
  const Results single(
      csv("PROPORTIONS /ONESAMPLE v CITYPES=NONE TESTTYPES=SCORE TESTVAL=0.4", options));
  EXPECT_TRUE(
      single.has({tests, "", "Score", "v = 1", "Observed - Test Value / Bootstrap / Samples"}));
  const Results pairs(
      csv("PROPORTIONS /PAIREDSAMPLES v WITH u CITYPES=WALD TESTTYPES=ALL", options));
  for (const char* variable : {"Pair 1 / v = 1", "Pair 1 / u = 1"}) {
    EXPECT_TRUE(pairs.has({"Paired-Samples Proportions Statistics", "", "", variable,
                           "Proportion / Bootstrap / Std. Error"}))
        << variable;
  }
  EXPECT_TRUE(pairs.has({"Paired-Samples Proportions Confidence Intervals", "", "Wald",
                         "Pair 1 vars v u ...", "Difference in Proportions / Bootstrap / Bias"}));
  const Results groups(
      csv("PROPORTIONS /INDEPENDENTSAMPLES v BY g CITYPES=WALD TESTTYPES=WALD", options));
  for (const char* group : {"= 1", "= 2"}) {
    EXPECT_TRUE(groups.has({"Independent-Samples Proportions Group Statistics", "", group, "v = 1",
                            "Asymptotic Standard Error / Bootstrap / Upper"}))
        << group;
  }
  EXPECT_TRUE(groups.has({"Independent-Samples Proportions Tests", "", "Wald", "v = 1",
                          "Difference in Proportions / Bootstrap / Lower"}));
}

TEST_F(Bootstrap, WritesTheSameCellsInBothLayouts) {
  for (const char* command :
       {"PROPORTIONS /ONESAMPLE v u TESTTYPES=ALL /SUCCESS VALUE=FIRST",
        "PROPORTIONS /PAIREDSAMPLES v WITH u CITYPES=ALL /SUCCESS VALUE=MIDPOINT",
        "PROPORTIONS /INDEPENDENTSAMPLES v BY g SELECT=MIDPOINT /SUCCESS VALUE=LAST"}) {
    Words options{"--split", "r", "--bootstrap", "40", "--seed", "2"};
    const Results rows(csv(command, options));
    options.insert(options.end(), {"--split-layout", "tables"});
    const Results tables(csv(command, options));
    EXPECT_EQ(rows.cells().size(), tables.cells().size());
    for (const auto& [place, cell] : rows.cells()) {
      EXPECT_EQ(tables.at(place).value, cell.value) << place.split << " " << place.statistic;
      EXPECT_EQ(tables.at(place).footnotes, cell.footnotes);
    }
  }
}

TEST_F(Bootstrap, GivesEverySplitGroupItsTablesInTheirOrder) {
  Words order;
  const Json got =
      json(oneSample, {"--split", "r", "--bootstrap", "9", "--split-layout", "tables"});
  for (const Json& table : got["tables"]) {
    if (!table["cells"].empty()) {
      EXPECT_EQ(table["cells"][0]["split"][0]["value"], table["cells"].back()["split"][0]["value"]);
      order.push_back(table["cells"][0]["split"][0]["value"]);
    }
  }
  EXPECT_EQ(order, (Words{"north", "south"}));
}

TEST_F(Bootstrap, MarksPathsAndStatesInJson) {
  bool found = false;
  const Json got = json(oneSample, {"--bootstrap", "25"});
  for (const Json& cell : got["tables"][0]["cells"]) {
    const Json& path = cell["path"].back();
    if (path.size() == 4 && path[2]["id"] == "Bootstrap" && path[3]["id"] == "Samples") {
      EXPECT_EQ(path[0]["id"], "Observed");
      EXPECT_EQ(path[1]["id"], "Proportion");
      EXPECT_EQ(cell["value"], 25);
      EXPECT_EQ(cell["format"], "count");
      found = true;
    }
  }
  EXPECT_TRUE(found);
}

TEST_F(Bootstrap, SaysInTextWhatTheIntervalRestsOn) {
  const Outcome outcome =
      start(oneSample, {"--bootstrap", "200", "--bootstrap-interval", "bca", "--seed", "7"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  for (const char* words : {"Bootstrap", "Std.", "Samples", "Seed:", "BCa", "200 bootstrap"}) {
    EXPECT_NE(outcome.out.find(words), std::string::npos) << words << " in\n" << outcome.out;
  }
}

TEST_F(Bootstrap, NamesItsSeedWhetherGivenOrNot) {
  EXPECT_EQ(json(oneSample, {"--bootstrap", "9"})["data"]["seed"], 0);
  EXPECT_EQ(json(oneSample, {"--bootstrap", "9", "--seed", "18446744073709551615"})["data"]["seed"],
            18446744073709551615U);
  EXPECT_TRUE(json(oneSample, {})["data"]["seed"].is_null());
}

TEST_F(Bootstrap, CountsTheCasesOfTheDataAlone) {
  const Json data = json(oneSample, {"--bootstrap", "30", "--split", "r", "--weight", "w"})["data"];
  EXPECT_EQ(data["cases"]["read"], 40);
  EXPECT_EQ(data["cases"]["invalid_weight"], 8);
  EXPECT_EQ(data["split"], Json({"r"}));
}

// --- Level and interval -------------------------------------------------------------------------

std::string noteOf(const Results& results) {
  return results.at(below(proportion, "Lower")).footnotes;
}

TEST_F(Bootstrap, TakesTheLevelOfTheCommandOrItsOwn) {
  const std::string at90 = oneSample + " /CRITERIA CILEVEL=90";
  EXPECT_EQ(noteOf(Results(csv(at90, {"--bootstrap", "50"}))),
            "Bootstrap 90% percentile interval from 50 samples ...");
  EXPECT_EQ(noteOf(Results(csv(at90, {"--bootstrap", "50", "--bootstrap-level", "99.5"}))),
            "Bootstrap 99.5% percentile interval from 50 samples ...");
}

TEST_F(Bootstrap, TakesTheLevelOfACommandThatShowsNone) {
  const std::string testsAlone =
      "PROPORTIONS ONESAMPLE v CITYPES=NONE TESTTYPES=WALD /SUCCESS VALUE=LEVEL(1)";
  const auto saysLevel = [&](const std::string& command, const std::string& level) {
    return csv(command, {"--bootstrap", "50"}).find("Bootstrap " + level + "% percentile") !=
           std::string::npos;
  };
  EXPECT_TRUE(saysLevel(testsAlone + " /CRITERIA CILEVEL=90", "90"));
  EXPECT_TRUE(saysLevel(testsAlone, "95"));
}

TEST_F(Bootstrap, ItsOwnLevelMovesItsOwnIntervalAlone) {
  const Results usual(csv(oneSample, {"--bootstrap", "999"}));
  const Results narrow(csv(oneSample, {"--bootstrap", "999", "--bootstrap-level", "50"}));
  EXPECT_GT(narrow.value(below(proportion, "Lower")), usual.value(below(proportion, "Lower")));
  EXPECT_LT(narrow.value(below(proportion, "Upper")), usual.value(below(proportion, "Upper")));
  const CsvPlace wald{intervals, "", "Wald", "v = 1", "95% Confidence Interval / Lower"};
  EXPECT_EQ(narrow.at(wald).value, usual.at(wald).value);
}

TEST_F(Bootstrap, BcaDiffersFromPercentilesByItsCorrectionAlone) {
  write("v,w\n1,5\n0,55\n");
  const Words options{"--bootstrap", "500", "--seed", "4", "--weight", "w"};
  Words corrected = options;
  corrected.insert(corrected.end(), {"--bootstrap-interval", "bca"});
  const Results percentile(csv(oneSample, options));
  const Results bca(csv(oneSample, corrected));
  for (const char* same : {"Bias", "Std. Error", "Samples"}) {
    EXPECT_EQ(percentile.at(below(error, same)).value, bca.at(below(error, same)).value) << same;
  }
  const CsvPlace upper = below(proportion, "Upper");
  EXPECT_NE(percentile.at(upper).value, bca.at(upper).value);
  EXPECT_EQ(bca.at(upper).footnotes, "Bootstrap 95% BCa interval from 500 samples ...");
}

// --- Missing ------------------------------------------------------------------------------------

TEST_F(Bootstrap, OfOnePointHasNoIntervalAndSaysWhy) {
  write("v,n\n1,1\n1,1\n1,1\n");
  for (const char* interval : {"percentile", "bca"}) {
    const Results results(csv(oneSample, {"--bootstrap", "40", "--bootstrap-interval", interval}));
    EXPECT_EQ(results.value(below(proportion, "Bias")), 0.0);
    EXPECT_EQ(results.value(below(proportion, "Std. Error")), 0.0);
    for (const char* bound : {"Lower", "Upper"}) {
      const CsvCell& cell = results.at(below(proportion, bound));
      EXPECT_EQ(cell.state, "missing");
      EXPECT_EQ(cell.footnotes.rfind("Bootstrap samples all equal ... | ", 0), 0U)
          << cell.footnotes;
    }
  }
}

TEST_F(Bootstrap, OfOneSampleSaysThatThereAreTooFew) {
  const Results results(csv(oneSample, {"--bootstrap", "1"}));
  for (const char* label : {"Bias", "Std. Error", "Lower", "Upper"}) {
    const CsvCell& cell = results.at(below(proportion, label));
    EXPECT_EQ(cell.state, "missing") << label;
    EXPECT_EQ(cell.footnotes.rfind("Bootstrap too few samples ... | ", 0), 0U) << cell.footnotes;
  }
  EXPECT_EQ(results.value(below(proportion, "Samples")), 1.0);
}

// One case in group 2: a sample lacks it with probability (1 - 1/n)^n.
TEST_F(Bootstrap, SaysHowManySamplesCouldNotBeComputed) {
  write("v,g\n1,1\n0,1\n1,1\n1,2\n");
  const Results results(
      csv("PROPORTIONS /INDEPENDENTSAMPLES v BY g CITYPES=WALD TESTTYPES=NONE /SUCCESS "
          "VALUE=LEVEL(1)",
          {"--bootstrap", "200"}));
  const CsvPlace difference{"Independent-Samples Proportions Confidence Intervals", "", "Wald",
                            "v = 1", "Difference in Proportions"};
  const double computed = results.value(below(difference, "Samples"));
  EXPECT_GT(computed, 100.0);
  EXPECT_LT(computed, 170.0);
  EXPECT_EQ(results.at(below(difference, "Samples"))
                .footnotes.rfind("Bootstrap samples not computed " +
                                     std::to_string(200 - static_cast<int>(computed)) + " ... | ",
                                 0),
            0U);
}

// Group 2 is empty, so that there is no difference in the data nor in any sample.
TEST_F(Bootstrap, OfAMissingEstimateIsShownAsMissing) {
  write("v,g\n1,1\n0,1\n1,1\n1,3\n");
  const Results results(
      csv("PROPORTIONS /INDEPENDENTSAMPLES v BY g SELECT=LEVEL(1 2) CITYPES=WALD TESTTYPES=NONE "
          "/SUCCESS VALUE=LEVEL(1)",
          {"--bootstrap", "20"}));
  for (const auto& [place, cell] : results.cells()) {
    if (place.row == "= 2" && place.statistic == "Proportion / Bootstrap / Samples") {
      EXPECT_EQ(cell.value, "0");
    }
  }
}

TEST_F(Bootstrap, OfDataWithoutRowsHasNoTables) {
  write("v,n\n");
  const Outcome outcome = start(oneSample, {"--bootstrap", "10", "--format", "csv"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "table,split,row,variable,statistic,value,state,footnotes\n");
  EXPECT_NE(outcome.err.find("no cases"), std::string::npos) << outcome.err;
}

TEST_F(Bootstrap, WarnsOfTheDataAloneAndNamesTheUsersSplits) {
  write("v,u,r\n1,,a\n0,,a\n1,1,b\n0,,b\n,,c\n");
  const Json got = json("PROPORTIONS /ONESAMPLE v u CITYPES=WALD TESTTYPES=NONE",
                        {"--bootstrap", "50", "--split", "r"});
  Words ids;
  for (const Json& message : got["messages"]) {
    ids.push_back(message["id"]);
    EXPECT_EQ(message.dump().find("$bootstrap_split"), std::string::npos) << message.dump(1);
  }
  EXPECT_EQ(ids, (Words{"Not enough valid cases var ^1 for split [%1 = %2:,^1 = ^2:]2 ...",
                        "Not enough valid cases for split [%1 = %2:,^1 = ^2:]1 ..."}));
  EXPECT_EQ(got["messages"][0]["arguments"], Json::parse(R"(["u", ["r", "a"]])"));
}

TEST_F(Bootstrap, CallsTheDataByTheirNameWhereThereAreNoOtherSplits) {
  write("v,u\n1,\n0,\n");
  const Outcome outcome =
      start("PROPORTIONS /ONESAMPLE v u CITYPES=WALD TESTTYPES=NONE", {"--bootstrap", "9"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  const std::string all = outcome.out + outcome.err;
  EXPECT_EQ(all.find("$bootstrap_split"), std::string::npos) << all;
  EXPECT_NE(all.find("bootstrap sample = original data"), std::string::npos) << all;
}

TEST_F(Bootstrap, HidesItsSplitVariableFromTheCommand) {
  const Outcome outcome =
      start("PROPORTIONS /ONESAMPLE $bootstrap_split", {"--bootstrap", "9", "--format", "csv"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_NE(outcome.err.find("$bootstrap_split"), std::string::npos) << outcome.err;
  // A column of the data of that name is one like any other.
  write("v,$bootstrap_split\n1,1\n0,0\n1,0\n");
  const Results results(
      csv("PROPORTIONS /ONESAMPLE v..$bootstrap_split TESTTYPES=NONE "
          "CITYPES=WALD",
          {"--bootstrap", "9"}));
  EXPECT_EQ(results.value({intervals, "", "Wald", "$bootstrap_split = 1", "Observed / Successes"}),
            1.0);
}

// --- Equal seeds --------------------------------------------------------------------------------

TEST_F(Bootstrap, DependsOnTheSeedAndOnNothingElse) {
  std::string sorted = "v,u,r,w\n";
  std::string shuffled = sorted;
  std::vector<std::string> rows;
  for (int i = 0; i < 6000; ++i) {
    rows.push_back(std::to_string(i % 7 % 3) + "," + std::to_string(i % 11 % 2) + "," +
                   std::string(1, static_cast<char>('a' + i % 5)) + "," + std::to_string(i % 4) +
                   "\n");
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    sorted += rows[i];
    shuffled += rows[i * 4007 % rows.size()];
  }
  write(sorted);
  folder_.write("other.csv", shuffled);
  folder_.write("part1.csv", shuffled.substr(0, 8 + 8 * 1000));
  const std::string command = "PROPORTIONS /PAIREDSAMPLES v WITH u TESTTYPES=ALL";
  for (const char* interval : {"percentile", "bca"}) {
    const Words options{
        "--bootstrap",          "60",    "--seed", "11", "--split", "r", "--weight", "w",
        "--bootstrap-interval", interval};
    const std::string first = csv(command, options);
    for (const char* threads : {"1", "2", "7"}) {
      Words more = options;
      more.insert(more.end(), {"--threads", threads});
      EXPECT_EQ(csv(command, more), first) << threads;
    }
    Call call{.arguments = {"run", "other.csv", "-c", command, "--format", "csv"},
              .folder = folder_.path(),
              .input = {}};
    call.arguments.insert(call.arguments.end(), options.begin(), options.end());
    EXPECT_EQ(run(call).out, first) << "in another order";
  }
  EXPECT_NE(csv(command, {"--bootstrap", "60", "--seed", "11"}),
            csv(command, {"--bootstrap", "60", "--seed", "12"}));
}

TEST_F(Bootstrap, DrawsFromPartsOfAFileAsFromTheWhole) {
  std::string whole = "v\n";
  for (int part = 0; part < 3; ++part) {
    std::string data = "v\n";
    for (int i = 0; i < 500; ++i) {
      const std::string row = std::to_string((i + part) % 3 % 2) + "\n";
      data += row;
      whole += row;
    }
    folder_.write("part" + std::to_string(part) + ".csv", data);
  }
  write(whole);
  const std::string first = csv(oneSample, {"--bootstrap", "100"});
  const Outcome parts = run(
      {.arguments = {"run", "part*.csv", "-c", oneSample, "--bootstrap", "100", "--format", "csv"},
       .folder = folder_.path(),
       .input = {}});
  EXPECT_EQ(parts.out, first);
}

// --- Bad input ----------------------------------------------------------------------------------

TEST_F(Bootstrap, RefusesANumberOfSamplesThatIsNone) {
  for (const char* number : {"0", "-1", "abc", "1.5", "99999999999", ""}) {
    expectRefused({"--bootstrap", number}, {"--bootstrap"});
  }
}

TEST_F(Bootstrap, RefusesASeedThatIsNotWholeOrOutOfRange) {
  for (const char* seed : {"-1", "1.5", "x", "18446744073709551616", "1e3", ""}) {
    expectRefused({"--bootstrap", "9", "--seed", seed}, {"--seed"});
  }
}

TEST_F(Bootstrap, RefusesALevelOutOfRange) {
  for (const char* level : {"0", "100", "-5", "nan", "inf", "x"}) {
    expectRefused({"--bootstrap", "9", "--bootstrap-level", level}, {"level"});
  }
}

TEST_F(Bootstrap, RefusesAnUnknownKindOfInterval) {
  for (const char* name : {"basic", "1", ""}) {
    expectRefused({"--bootstrap", "9", "--bootstrap-interval", name},
                  {"--bootstrap-interval", name, "percentile", "bca"});
  }
}

TEST_F(Bootstrap, TakesTheKindOfIntervalInAnyCase) {
  const Results results(csv(oneSample, {"--bootstrap", "9", "--bootstrap-interval", "BCa"}));
  EXPECT_EQ(results.at(below(proportion, "Bias")).footnotes,
            "Bootstrap 95% BCa interval from 9 samples ...");
}

TEST_F(Bootstrap, RefusesImputationsBesideIt) {
  expectRefused({"--bootstrap", "9", "--imputation", "g"}, {"--bootstrap", "--imputation"});
}

TEST_F(Bootstrap, RefusesItsOptionsWithoutIt) {
  expectRefused({"--seed", "3"}, {"--seed", "--bootstrap"});
  expectRefused({"--bootstrap-level", "90"}, {"--bootstrap-level", "--bootstrap"});
  expectRefused({"--bootstrap-interval", "bca"}, {"--bootstrap-interval", "--bootstrap"});
}

TEST_F(Bootstrap, RefusesANumericSplitVariableOfItsOwnName) {
  write("v,$bootstrap_split\n1,0\n0,1\n");
  expectRefused({"--split", "$bootstrap_split"}, {"$bootstrap_split"});
  expectRefused({"--split", "$bootstrap_split", "--bootstrap", "9"}, {"$bootstrap_split"});
}

TEST_F(Bootstrap, TakesAStringOrACapitalizedNameForAUserSplit) {
  write("v,$bootstrap_split\n1,a\n0,b\n");
  const Results text(csv(oneSample, {"--split", "$bootstrap_split", "--bootstrap", "5"}));
  EXPECT_TRUE(text.has({intervals, "$bootstrap_split=a", "Wald", "v = 1", "Observed / Trials"}));
  write("v,$Bootstrap_Split\n1,1\n0,1\n");
  const Results capital(csv(oneSample, {"--split", "$Bootstrap_Split", "--bootstrap", "5"}));
  EXPECT_EQ(capital.value({intervals, "$Bootstrap_Split=1", "Wald", "v = 1", "Observed / Trials"}),
            2.0);
}

TEST_F(Bootstrap, RefusesWeightsThatAreTooLargeToBeDrawnFrom) {
  write("v,w\n1,4000000000000000\n0,4000000000000000\n");
  const Outcome sum = start(oneSample, {"--bootstrap", "9", "--weight", "w", "--format", "csv"});
  EXPECT_EQ(sum.status, 3);
  EXPECT_TRUE(sum.out.empty()) << sum.out;
  EXPECT_NE(sum.err.find("2^52"), std::string::npos) << sum.err;
  EXPECT_EQ(sum.err.find("$bootstrap_split"), std::string::npos) << sum.err;
  write("v,w\n1,4000000000000000\n1,4000000000000000\n");
  const Outcome pattern =
      start(oneSample, {"--bootstrap", "9", "--weight", "w", "--format", "csv"});
  EXPECT_EQ(pattern.status, 3);
  EXPECT_NE(pattern.err.find("2^52"), std::string::npos) << pattern.err;
}

TEST_F(Bootstrap, ShowsNoTablesForACommandThatIsRefused) {
  const Outcome outcome =
      start("PROPORTIONS /ONESAMPLE none", {"--bootstrap", "9", "--format", "json"});
  EXPECT_EQ(outcome.status, 1);
  const Json got = document(outcome);
  EXPECT_TRUE(got["tables"].empty());
  EXPECT_TRUE(got["data"]["split"].empty());
}

}  // namespace
}  // namespace cli_tests
