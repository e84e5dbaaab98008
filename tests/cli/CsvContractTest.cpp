// The tidy csv as programs read it: columns, order, quoting, the split column, full precision.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

#include "Program.h"
#include "ScenarioResults.h"

namespace cli_tests {
namespace {

using Json = nlohmann::json;

class Csv : public testing::Test {
 protected:
  void write(const std::string& data, const std::string& schema = "{\"fields\": []}") const {
    folder_.write("data.csv", data);
    folder_.write("data.schema.json", schema);
  }

  std::string runWith(const std::string& command, const std::vector<std::string>& extra,
                      const char* format = "csv") const {
    Call call{.arguments = {"run", "data.csv", "-c", command, "--format", format},
              .folder = folder_.path(),
              .input = {}};
    call.arguments.insert(call.arguments.end(), extra.begin(), extra.end());
    const Outcome outcome = run(call);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    return outcome.out;
  }

  Folder folder_;
};

std::uint64_t bits(double value) {
  return std::bit_cast<std::uint64_t>(value);
}

TEST_F(Csv, HasOneRecordForEachCellOfTheDocument) {
  write("v,u,g,w\n1,0,1,3\n0,1,2,4\n1,1,2,5\n0,0,1,6\n1,0,1,2\n");
  const std::string command = "PROPORTIONS /INDEPENDENTSAMPLES v u BY g TESTTYPES=ALL CITYPES=ALL";
  const auto cells = readCsv(runWith(command, {"--weight", "w"}));
  const Json json = Json::parse(runWith(command, {"--weight", "w"}, "json"));
  std::size_t at = 0;
  for (const Json& table : json["tables"]) {
    for (const Json& cell : table["cells"]) {
      ASSERT_LT(at, cells.size());
      EXPECT_EQ(cells[at].table, table["title"]["id"].get<std::string>());
      EXPECT_EQ(cells[at].state, cell["state"].get<std::string>());
      if (cell["state"] == "valid") {
        EXPECT_EQ(bits(std::stod(cells[at].value)), bits(cell["value"].get<double>()));
      }
      ++at;
    }
  }
  EXPECT_EQ(at, cells.size());
}

TEST_F(Csv, WritesSeventeenDigits) {
  write("v,n\n1,1\n0,2\n");
  const std::string csv =
      runWith("PROPORTIONS /ONESAMPLE v CITYPES=WALD TESTTYPES=NONE", {"--weight", "n"});
  EXPECT_NE(csv.find(",Observed / Proportion,0.33333333333333331,valid,\n"), std::string::npos)
      << csv;
}

TEST_F(Csv, QuotesWhatHoldsCommasQuotesAndLineFeeds) {
  write("answer,n\n\"a,b\",1\n\"say \"\"no\"\"\",2\n\"two\nlines\",3\n");
  const std::string command =
      "PROPORTIONS /ONESAMPLE answer CITYPES=WALD TESTTYPES=NONE"
      " /SUCCESS VALUE=LEVEL(\"a,b\" \"say \"\"no\"\"\" \"two\nlines\")";
  const std::string csv = runWith(command, {});
  EXPECT_NE(csv.find(",\"answer = a,b, say \"\"no\"\", two\nlines\",Observed / Successes,3,"),
            std::string::npos)
      << csv;
  EXPECT_EQ(readCsv(csv).front().variable, "answer = a,b, say \"no\", two\nlines");
}

TEST_F(Csv, EscapesTheSplitColumnAndMarksMissingValues) {
  write("v,\"a=b\",g\n1,x;y,1\n0,x;y,1\n1,back\\slash,\n0,p=q,2.5\n",
        R"({"fields": [{"name": "g", "type": "number"}]})");
  const auto cells = readCsv(
      runWith("PROPORTIONS /ONESAMPLE v CITYPES=WALD TESTTYPES=NONE", {"--split", "a=b,g"}));
  std::vector<std::string> splits;
  for (const CsvCell& cell : cells) {
    if (splits.empty() || splits.back() != cell.split) {
      splits.push_back(cell.split);
    }
  }
  EXPECT_EQ(splits, (std::vector<std::string>{R"(a\=b=back\\slash; g=.)", R"(a\=b=p\=q; g=2.5)",
                                              R"(a\=b=x\;y; g=1)"}));
}

TEST_F(Csv, WritesRawValuesOfLabelledAndDatedVariables) {
  write("v,day\n1,2024-05-01\n0,2024-05-01\n1,2023-01-31\n",
        R"({"fields": [{"name": "v", "type": "integer", "title": "A title",
            "categories": [{"value": 1, "label": "yes"}, {"value": 0, "label": "no"}]},
           {"name": "day", "type": "date"}]})");
  const auto cells =
      readCsv(runWith("PROPORTIONS /ONESAMPLE v CITYPES=WALD TESTTYPES=NONE", {"--split", "day"}));
  EXPECT_EQ(cells.front().split, "day=2023-01-31");
  EXPECT_EQ(cells.front().variable, "v = 1");
}

TEST_F(Csv, JoinsFootnotesOfTheCellAndOfItsCategory) {
  write("v,n\n0,4\n");
  const auto cells =
      readCsv(runWith("PROPORTIONS /ONESAMPLE v CITYPES=LOGIT TESTTYPES=WALD TESTVAL=0.25"
                      " /SUCCESS VALUE=LEVEL(1)",
                      {}));
  for (const CsvCell& cell : cells) {
    if (cell.statistic == "Observed - Test Value") {
      EXPECT_EQ(cell.footnotes, "Test Value = 0.25");
    } else if (cell.state == "missing") {
      EXPECT_EQ(cell.footnotes, "Stat miss not enough cases ...");
      EXPECT_EQ(cell.value, "");
    } else {
      EXPECT_EQ(cell.footnotes, "") << cell.statistic;
    }
  }
}

TEST_F(Csv, IsTheHeaderAloneWithoutTables) {
  write("v,n\n");
  EXPECT_EQ(runWith("PROPORTIONS /ONESAMPLE v", {}),
            "table,split,row,variable,statistic,value,state,footnotes\n");
}

TEST_F(Csv, DependsOnNeitherThreadsNorDelivery) {
  std::string data = "v,g\n";
  for (int i = 0; i < 5000; ++i) {
    data += std::to_string(i * 7919 % 13 % 3) + "," + std::to_string(i % 4) + "\n";
  }
  write(data);
  const std::string command = "PROPORTIONS /ONESAMPLE v CITYPES=ALL TESTTYPES=ALL";
  const std::string one = runWith(command, {"--split", "g", "--threads", "1"});
  for (const char* threads : {"2", "7"}) {
    EXPECT_EQ(runWith(command, {"--split", "g", "--threads", threads}), one);
  }
  EXPECT_EQ(runWith(command, {"--split", "g", "--case-by-case"}), one);
}

}  // namespace
}  // namespace cli_tests
