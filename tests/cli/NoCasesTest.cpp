// Columns without a value, and data without a case: numbers of which there are none, so that every
// option works on them as on any other data.
#include <gtest/gtest.h>

#include "Program.h"

namespace cli_tests {
namespace {

using Json = nlohmann::json;

constexpr const char* command = "PROPORTIONS /ONESAMPLE v TESTTYPES=NONE";

class NoCases : public testing::Test {
 protected:
  Outcome start(std::vector<std::string> words) const {
    return run({.arguments = std::move(words), .folder = folder_.path(), .input = {}});
  }
  std::string typeOf(const std::string& file, std::size_t field) const {
    return document(start({"describe", file}))["fields"][field]["type"];
  }
  Folder folder_;
};

TEST_F(NoCases, OfAHeaderAloneAreNoError) {
  folder_.write("lines.csv", "v,w,g,m\n");
  folder_.write("open.csv", "v,w,g,m");
  folder_.write("tabs.tsv", "v\tw\tg\tm\n");
  const std::vector<std::vector<std::string>> options{
      {},
      {"--case-by-case"},
      {"--weight", "w"},
      {"--split", "g"},
      {"--weight", "w", "--split", "g,m"},
      {"--imputation", "m"},
      {"--imputation", "m", "--weight", "w", "--split", "g"},
      {"--bootstrap", "10", "--weight", "w"}};
  for (const char* file : {"lines.csv", "open.csv", "tabs.tsv"}) {
    for (const auto& more : options) {
      SCOPED_TRACE(file + testing::PrintToString(more));
      std::vector<std::string> words{"run", file, "-c", command, "--format", "json"};
      words.insert(words.end(), more.begin(), more.end());
      const Outcome outcome = start(words);
      ASSERT_EQ(outcome.status, 0) << outcome.err;
      const Json got = document(outcome);
      EXPECT_EQ(got["data"]["cases"]["read"], 0);
      ASSERT_FALSE(got["messages"].empty());
      EXPECT_EQ(got["messages"].back()["id"], "No cases ...");
      for (const Json& table : got["tables"]) {
        EXPECT_TRUE(table["cells"].empty()) << table["cells"].dump();
      }
    }
  }
}

// What the columns of several files are is told by the first that has a case.
TEST_F(NoCases, InTheFirstOfSeveralFilesLeaveTheTypesToTheOthers) {
  folder_.write("part1.csv", "v,w\r\n");
  folder_.write("part2.csv", "v,w\r\n1,2\r\n0,3\r\n");
  EXPECT_EQ(typeOf("part*.csv", 0), "integer");
  const Outcome outcome =
      start({"run", "part*.csv", "--weight", "w", "-c", command, "--format", "json"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(document(outcome)["data"]["cases"]["read"], 2);
}

TEST_F(NoCases, OfAHeaderOnStandardInput) {
  const Outcome outcome = run(
      {.arguments = {"run", "-", "--weight", "w", "-c", command}, .folder = {}, .input = "v,w\n"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
}

TEST_F(NoCases, AColumnOfEmptyCellsIsOneOfNumbers) {
  folder_.write("cells.csv", "v,w\n1,\n0,\n1,\n");
  folder_.write("cells.json", R"([{"v": 1, "w": null}, {"v": 0, "w": null}])");
  for (const char* file : {"cells.csv", "cells.json"}) {
    EXPECT_EQ(typeOf(file, 1), "number") << file;
    const Outcome outcome =
        start({"run", file, "--weight", "w", "-c", command, "--format", "json"});
    ASSERT_EQ(outcome.status, 0) << file << outcome.err;
    const Json cases = document(outcome)["data"]["cases"];
    EXPECT_EQ(cases["invalid_weight"], cases["read"]) << file;
  }
}

TEST_F(NoCases, ADictionarySaysOtherwise) {
  folder_.write("data.csv", "v,s\n");
  folder_.write("data.schema.json", R"({"fields": [{"name": "s", "type": "string"}]})");
  EXPECT_EQ(typeOf("data.csv", 0), "number");
  EXPECT_EQ(typeOf("data.csv", 1), "string");
  EXPECT_EQ(start({"run", "data.csv", "--weight", "s", "-c", command}).status, 3);
}

// An empty text in quotes is a value, and so is one that stands far below.
TEST_F(NoCases, AValueMakesAColumnOneOfTexts) {
  folder_.write("quoted.csv", "v,s\n1,\"\"\n0,\n");
  EXPECT_EQ(typeOf("quoted.csv", 1), "string");
  std::string late = "v,s\n";
  for (int i = 0; i < 30000; ++i) {
    late += "1,\n";
  }
  folder_.write("late.csv", late + "0,text\n");
  EXPECT_EQ(typeOf("late.csv", 1), "string");
}

}  // namespace
}  // namespace cli_tests
