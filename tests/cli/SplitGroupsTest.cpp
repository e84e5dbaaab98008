// Split groups through the program: their order, groups without cases that count, both layouts, the
// values in warnings, and many of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "Program.h"
#include "Results.h"

namespace cli_tests {
namespace {

using Json = nlohmann::json;
using Words = std::vector<std::string>;

const std::string plain = "PROPORTIONS /ONESAMPLE v CITYPES=WALD TESTTYPES=NONE";
const std::string table = "One-Sample Proportions Confidence Intervals";

class SplitGroups : public testing::Test {
 protected:
  void write(const std::string& data, const std::string& schema = "{\"fields\": []}") const {
    folder_.write("data.csv", data);
    folder_.write("data.schema.json", schema);
  }

  std::string csv(const std::string& command, Words options) const {
    options.insert(options.end(), {"--format", "csv", "--quiet"});
    const Outcome outcome = start(command, options);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome.out;
  }

  Outcome start(const std::string& command, const Words& options) const {
    Call call{
        .arguments = {"run", "data.csv", "-c", command}, .folder = folder_.path(), .input = {}};
    call.arguments.insert(call.arguments.end(), options.begin(), options.end());
    return run(call);
  }

  Json json(const std::string& command, Words options) const {
    options.insert(options.end(), {"--format", "json", "--quiet"});
    const Outcome outcome = start(command, options);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return document(outcome);
  }

  // The split groups in the order in which their cells stand.
  Words order(const Words& options, const std::string& command = plain) const {
    Words found;
    for (const CsvCell& cell : readCsv(csv(command, options))) {
      if (found.empty() || found.back() != cell.split) {
        found.push_back(cell.split);
      }
    }
    return found;
  }

  Folder folder_;
};

// --- Order --------------------------------------------------------------------------------------

TEST_F(SplitGroups, StandMissingFirstAndThenInTheOrderOfTheirNumbers) {
  write("v,k\n1,10\n0,9\n1,-2.5\n0,\n1,1e3\n0,-10\n1,0\n");
  EXPECT_EQ(order({"--split", "k"}),
            (Words{"k=.", "k=-10", "k=-2.5", "k=0", "k=9", "k=10", "k=1000"}));
}

TEST_F(SplitGroups, StandInTheOrderOfBytesWithoutALocale) {
  write("v,k\n1,b\n0,B\n1,\xc3\xa4\n0,a\n1,a2\n0,\"\"\n");
  EXPECT_EQ(order({"--split", "k"}), (Words{"k=", "k=B", "k=a", "k=a2", "k=b", "k=\xc3\xa4"}));
}

TEST_F(SplitGroups, StandInTheOrderOfTheLocale) {
  write("v,k\n1,b\n0,z\n1,\xc3\xa4\n0,a\n1,B\n");
  EXPECT_EQ(order({"--split", "k", "--locale", "de"}),
            (Words{"k=a", "k=\xc3\xa4", "k=b", "k=B", "k=z"}));
  // In Swedish the letter is the last but one of the alphabet.
  EXPECT_EQ(order({"--split", "k", "--locale", "sv"}),
            (Words{"k=a", "k=b", "k=B", "k=z", "k=\xc3\xa4"}));
}

TEST_F(SplitGroups, KeepStringsApartThatALocaleTakesForEqual) {
  // A composed and a decomposed letter collate alike: bytes break the tie.
  write("v,k\n1,\xc3\xa4\n0,a\xcc\x88\n1,\xc3\xa4\n0,a\xcc\x88\n");
  EXPECT_EQ(order({"--split", "k", "--locale", "de"}), (Words{"k=a\xcc\x88", "k=\xc3\xa4"}));
}

TEST_F(SplitGroups, StandInTheOrderOfDates) {
  write("v,d\n1,2024-01-31\n0,1999-12-31\n1,2023-06-01\n0,1969-07-20\n");
  EXPECT_EQ(order({"--split", "d"}),
            (Words{"d=1969-07-20", "d=1999-12-31", "d=2023-06-01", "d=2024-01-31"}));
}

TEST_F(SplitGroups, StandInTheOrderOfSeveralVariablesTheFirstOutermost) {
  write("v,a,b\n1,2,x\n0,1,y\n1,1,x\n0,2,\n1,2,x\n");
  EXPECT_EQ(order({"--split", "a,b"}), (Words{"a=1; b=x", "a=1; b=y", "a=2; b=.", "a=2; b=x"}));
  EXPECT_EQ(order({"--split", "b,a"}), (Words{"b=.; a=2", "b=x; a=1", "b=x; a=2", "b=y; a=1"}));
}

// An empty field without quotes is no string at all, one with quotes an empty string.
TEST_F(SplitGroups, KeepMissingStringsAndEmptyOnesApart) {
  write("v,k\n1,a\n0,\n1,\"\"\n0,\n");
  EXPECT_EQ(order({"--split", "k"}), (Words{"k=.", "k=", "k=a"}));
  const Json got = json(plain, {"--split", "k"});
  const Json& cells = got["tables"][0]["cells"];
  EXPECT_TRUE(cells.front()["split"][0]["value"].is_null()) << cells.front().dump();
  EXPECT_EQ(cells.back()["split"][0]["value"], "a");
}

TEST_F(SplitGroups, TakeMinusZeroForZero) {
  write("v,k\n1,-0\n0,0\n1,0.0\n");
  EXPECT_EQ(order({"--split", "k"}), (Words{"k=0"}));
}

// --- Groups without cases that count ------------------------------------------------------------

TEST_F(SplitGroups, WithoutValidCasesGetAMessageAndTheOthersTheirTables) {
  write("v,k,w\n1,1,1\n0,1,1\n1,2,0\n0,2,0.49\n1,3,-1\n1,4,2\n");
  const Json got = json(plain, {"--split", "k", "--weight", "w"});
  Words ids;
  for (const Json& message : got["messages"]) {
    ids.push_back(message["id"]);
  }
  EXPECT_EQ(ids, (Words{"NoValidCasesSplit", "NoValidCasesSplit"}));
  EXPECT_EQ(got["messages"][0]["split"][0]["value"], 2);
  EXPECT_EQ(got["messages"][1]["split"][0]["value"], 3);
  EXPECT_EQ(order({"--split", "k", "--weight", "w"}), (Words{"k=1", "k=4"}));
}

TEST_F(SplitGroups, AllWithoutValidCasesHaveNoTables) {
  write("v,k,w\n1,1,0\n0,2,0\n");
  const Json got = json(plain, {"--split", "k", "--weight", "w"});
  EXPECT_TRUE(got["tables"].empty());
  EXPECT_EQ(got["messages"].size(), 2U);
}

// The warnings' own identifiers with the list of split values as one argument.
TEST_F(SplitGroups, NameTheirValuesInWarnings) {
  write("v,u,g,k,r\n1,,1,1,a\n0,,2,1,a\n,,1,2,b\n1,1,1,3,c\n0,1,1,3,c\n");
  const auto warnings = [&](const std::string& command) {
    std::vector<std::pair<std::string, Json>> found;
    const Json got = json(command, {"--split", "k,r"});
    for (const Json& message : got["messages"]) {
      EXPECT_EQ(message["level"], 2);
      found.emplace_back(message["id"], message["arguments"]);
    }
    return found;
  };
  using Found = std::vector<std::pair<std::string, Json>>;
  EXPECT_EQ(warnings("PROPORTIONS /ONESAMPLE v u"),
            (Found{{"Not enough valid cases var ^1 for split [%1 = %2:,^1 = ^2:]2 ...",
                    Json::parse(R"(["u", ["k", 1, "r", "a"]])")},
                   {"Not enough valid cases for split [%1 = %2:,^1 = ^2:]1 ...",
                    Json::parse(R"([["k", 2, "r", "b"]])")}}));
  EXPECT_EQ(warnings("PROPORTIONS /PAIREDSAMPLES v v WITH u g (PAIRED)"),
            (Found{{"Not enough valid cases pair ^1 var ^2 ^3 for split [%1 = %2:,^1 = ^2:]4 ...",
                    Json::parse(R"([1, "v", "u", ["k", 1, "r", "a"]])")},
                   {"Not enough valid cases for split [%1 = %2:,^1 = ^2:]1 ...",
                    Json::parse(R"([["k", 2, "r", "b"]])")}}));
  EXPECT_EQ(warnings("PROPORTIONS /INDEPENDENTSAMPLES v u BY g SELECT=LEVEL(1 2)").front(),
            (std::pair<std::string, Json>{
                "Not enough valid cases var ^1 group for split [%1 = %2:,^1 = ^2:]2 ...",
                Json::parse(R"(["u", ["k", 1, "r", "a"]])")}));
}

TEST_F(SplitGroups, AreNamedInSentences) {
  write("v,k,r\n1,1,a\n,2,b\n");
  const Outcome outcome = start(plain, {"--split", "k,r"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE((outcome.out + outcome.err).find("k = 2, r = b"), std::string::npos)
      << outcome.out << outcome.err;
}

TEST_F(SplitGroups, HaveThePlainWarningsWithoutSplits) {
  write("v,u,k\n1,,1\n0,,1\n");
  const Json got = json("PROPORTIONS /ONESAMPLE v u", {});
  ASSERT_EQ(got["messages"].size(), 1U);
  EXPECT_EQ(got["messages"][0]["id"], "Not enough valid cases var ^1 ...");
}

// --- Layouts ------------------------------------------------------------------------------------

TEST_F(SplitGroups, HoldTheSameCellsInBothLayouts) {
  std::string data = "v,u,g,k\n";
  for (int i = 0; i < 90; ++i) {
    data += std::to_string(i % 5 % 3) + "," + std::to_string(i % 7 % 2) + "," +
            std::to_string(i % 2 + 1) + "," + std::to_string(i % 4) + "\n";
  }
  write(data);
  for (const char* command :
       {"PROPORTIONS /ONESAMPLE v u CITYPES=ALL TESTTYPES=ALL",
        "PROPORTIONS /PAIREDSAMPLES v WITH u CITYPES=ALL TESTTYPES=ALL /SUCCESS VALUE=FIRST",
        "PROPORTIONS /INDEPENDENTSAMPLES v u BY g CITYPES=ALL TESTTYPES=ALL"}) {
    const Results rows(csv(command, {"--split", "k"}));
    const Results tables(csv(command, {"--split", "k", "--split-layout", "tables"}));
    EXPECT_EQ(rows.cells().size(), tables.cells().size());
    for (const auto& [place, cell] : rows.cells()) {
      EXPECT_EQ(tables.at(place).value, cell.value) << place.split << " " << place.statistic;
    }
  }
}

// Each group is a part of the data by itself.
TEST_F(SplitGroups, AreAnalysedAsIfTheyStoodAlone) {
  std::string all = "v,k\n";
  std::map<int, std::string> parts;
  for (int i = 0; i < 60; ++i) {
    const std::string value = std::to_string(i % 7 % 3);
    all += value + "," + std::to_string(i % 3) + "\n";
    parts[i % 3] += value + ",1\n";
  }
  const std::string command = "PROPORTIONS /ONESAMPLE v CITYPES=ALL TESTTYPES=ALL";
  write(all);
  const Results together(csv(command, {"--split", "k"}));
  std::size_t cells = 0;
  for (const auto& [k, part] : parts) {
    write("v,n\n" + part);
    const Results alone(csv(command, {}));
    for (const auto& [place, cell] : alone.cells()) {
      CsvPlace inSplit = place;
      inSplit.split = "k=" + std::to_string(k);
      EXPECT_EQ(together.at(inSplit).value, cell.value) << inSplit.split << place.statistic;
      ++cells;
    }
  }
  EXPECT_EQ(cells, together.cells().size());
}

// In rows, tables carry the values of all groups; a category without cells is not shown.
TEST_F(SplitGroups, ShowNoCategoriesOfOtherGroupsThatHaveNoCells) {
  write("v,k\n1,1\n2,1\n1,2\n3,2\n");
  std::set<std::pair<std::string, std::string>> labels;
  const Results results(csv(plain, {"--split", "k"}));
  for (const auto& [place, cell] : results.cells()) {
    labels.emplace(place.split, place.variable);
  }
  EXPECT_EQ(labels,
            (std::set<std::pair<std::string, std::string>>{{"k=1", "v = 2"}, {"k=2", "v = 3"}}));
}

// --- Many groups --------------------------------------------------------------------------------

// 20,000 groups; a run that grew with the square of their number would meet the alarm that every
// run carries.
TEST_F(SplitGroups, OfManyValuesAreAllThere) {
  constexpr int groups = 20000;
  std::string data = "v,k\n";
  for (int i = 0; i < 2 * groups; ++i) {
    data += std::to_string(i / groups) + "," + std::to_string(i * 7919LL % groups) + "\n";
  }
  write(data);
  for (const Words& layout : {Words{}, Words{"--split-layout", "tables"},
                              Words{"--split-layout", "tables", "--bootstrap", "2"}}) {
    Words options{"--split", "k"};
    options.insert(options.end(), layout.begin(), layout.end());
    const auto records = csvRecords(csv(plain, options));
    std::size_t trials = 0;
    std::set<std::string> splits;
    for (const auto& record : records) {
      splits.insert(record[1]);
      if (record[4] == "Observed / Trials") {
        EXPECT_EQ(record[5], "2");
        ++trials;
      }
    }
    EXPECT_EQ(trials, static_cast<std::size_t>(groups));
    EXPECT_EQ(splits.size(), groups + 1U);  // and the header's
  }
}

}  // namespace
}  // namespace cli_tests
