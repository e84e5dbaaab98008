// Whole runs through the finished program, with the module loaded from its file, against results
// of independent programs: notes, messages, warnings, tables, cells, footnotes.
#include <gtest/gtest.h>

#include <algorithm>

#include "FlatTables.h"
#include "ReferenceRun.h"

namespace cli_tests {
namespace {

using Json = nlohmann::json;

class ReferenceRuns : public testing::TestWithParam<reference::Line> {
 protected:
  void SetUp() override { writeData(dataset(), folder_); }

  const Json& dataset() const { return run_.given["dataset"]; }
  const Json& expect() const { return run_.expect; }

  Outcome runWith(const std::vector<std::string>& extra) const {
    return run({.arguments = argumentsOf(run_, extra), .folder = folder_.path(), .input = {}});
  }

  const ReferenceRun run_ = readRun(GetParam());
  Folder folder_;
};

// The arguments of a message as the document lists them: split values are one flat list.
Json argumentsOfMessage(const Json& arguments) {
  Json out = Json::array();
  for (const Json& argument : arguments) {
    Json list = Json::array();
    if (argument.is_object()) {
      for (const Json& part : argument["split"]) {
        list.insert(list.end(), part.begin(), part.end());
      }
    }
    out.push_back(argument.is_object() ? list : argument);
  }
  return out;
}

// Identifier, arguments, show and level of each message, in order; without the host's own remark on
// a split variable that numbers imputations.
Json messagesOf(const Json& document) {
  Json out = Json::array();
  for (const Json& message : document["messages"]) {
    if (message["id"] == "Split variable numbers imputations ^1 ...") {
      continue;
    }
    out.push_back(
        {labelText(message["id"], message["arguments"]), message["show"], message["level"]});
  }
  return out;
}

Json expectedMessages(const Json& expect) {
  Json out = Json::array();
  for (const Json& message : expect["messages"]) {
    out.push_back(
        {labelText(message["id"], argumentsOfMessage(message["args"])), nullptr, nullptr});
  }
  for (const Json& warning : expect["warnings"]) {
    out.push_back({labelText(warning["id"], argumentsOfMessage(warning["args"])), warning["show"],
                   warning["level"]});
  }
  return out;
}

Json notesOf(const Json& document) {
  Json out = Json::array();
  for (const Json& note : document["notes"]) {
    out.push_back({note["kind"], note["label"]["id"], note["value"]["id"]});
  }
  return out;
}

std::size_t casesOfInvalidWeight(const Json& dataset) {
  std::size_t invalid = 0;
  for (const Json& variable : dataset["variables"]) {
    if (variable["name"] == dataset["weight"]) {
      for (const Json& weight : variable["data"]) {
        invalid += weight.is_null() || weight.get<double>() < 0.5 ? 1U : 0U;
      }
    }
  }
  return invalid;
}

TEST_P(ReferenceRuns, ComeOutTableForTable) {
  const Outcome outcome = runWith({"--format", "json"});
  ASSERT_EQ(outcome.status, 0) << outcome.err << outcome.out;
  const Json got = document(outcome);
  EXPECT_EQ(got["procedure"], "Proportions");
  EXPECT_EQ(got["command"], commandText(run_.given["command"]));
  EXPECT_EQ(notesOf(got), expect()["notes"]);
  expectSameTables(flatDocument(got), flatExpectation(run_.given, expect()));
}

TEST_P(ReferenceRuns, ReportMessagesAndCases) {
  const Json got = document(runWith({"--format", "json"}));
  ASSERT_TRUE(got.is_object());
  const Json& data = got["data"];
  EXPECT_EQ(data["weight"], dataset()["weight"]);
  EXPECT_EQ(data["split"], dataset()["split"]);
  EXPECT_EQ(data["cases"]["read"], rowsOf(dataset()));
  EXPECT_EQ(data["cases"]["invalid_weight"], casesOfInvalidWeight(dataset()));
  if (rowsOf(dataset()) == 0) {
    // The module says nothing of data without rows; the host warns.
    ASSERT_EQ(got["messages"].size(), 1);
    EXPECT_EQ(got["messages"][0]["severity"], "warning");
  } else {
    EXPECT_EQ(messagesOf(got), expectedMessages(expect()));
  }
}

TEST_P(ReferenceRuns, AreTheSameCaseByCase) {
  const Outcome byPatterns = runWith({"--format", "json"});
  const Outcome byCases = runWith({"--format", "json", "--case-by-case"});
  EXPECT_EQ(byPatterns.status, byCases.status);
  EXPECT_EQ(byPatterns.out, byCases.out);
  EXPECT_EQ(byPatterns.err, byCases.err);
}

using RefusedRuns = ReferenceRuns;

TEST_P(RefusedRuns, AreWrongUsage) {
  const Outcome outcome = runWith({"--format", "json"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_TRUE(outcome.out.empty()) << outcome.out;
  EXPECT_NE(outcome.err.find("$bootstrap_split"), std::string::npos) << outcome.err;
}

// A split variable that is named as the one that numbers bootstrap samples is refused by the
// command line: only the host itself presents it.
bool isRefused(const reference::Line& line) {
  return line.text.find(R"("split":["$bootstrap_split")") != std::string::npos;
}

std::vector<reference::Line> runsThat(bool refused) {
  std::vector<reference::Line> runs = reference::readLines("procedure.jsonl");
  std::erase_if(runs, [&](const reference::Line& line) { return isRefused(line) != refused; });
  return runs;
}

// Names occur twice in the file, so each gets its place.
std::string testName(const testing::TestParamInfo<reference::Line>& info) {
  std::string name = info.param.id + "_" + std::to_string(info.index);
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(All, ReferenceRuns, testing::ValuesIn(runsThat(false)), testName);
INSTANTIATE_TEST_SUITE_P(All, RefusedRuns, testing::ValuesIn(runsThat(true)), testName);

}  // namespace
}  // namespace cli_tests
