// Runs every file of tests/scenarios.
#include <gtest/gtest.h>

#include <algorithm>

#include "Scenario.h"
#include "ScenarioResults.h"

namespace cli_tests {

void PrintTo(const Scenario& scenario, std::ostream* out) {
  *out << scenario.name;
}

namespace {

using Json = nlohmann::json;

std::string wordOf(const Json& argument) {
  return argument.is_string() ? argument.get<std::string>() : argument.dump();
}

// A message as scenarios write it.
std::string messageLine(const Json& message) {
  std::string line = message["severity"].get<std::string>() + " ";
  const Json& where = message["where"];
  line += where.is_null() ? "-" : where["line"].dump() + ":" + where["column"].dump();
  line += " " + message["id"].get<std::string>();
  for (const Json& argument : message["arguments"]) {
    line += " | " + wordOf(argument);
  }
  if (!message["nearest"].is_null()) {
    line += " nearest " + message["nearest"].get<std::string>();
  }
  return line;
}

std::vector<std::string> messageLines(const Json& document) {
  std::vector<std::string> lines;
  for (const Json& message : document["messages"]) {
    lines.push_back(messageLine(message));
  }
  return lines;
}

// The message with its place hidden, when the scenario says only that there is one.
std::string asFar(const std::string& want, std::string got) {
  const std::size_t begin = want.find(' ') + 1;
  if (want.substr(begin, 2) == "? " && got.substr(begin, 2) != "- ") {
    got.replace(begin, got.find(' ', begin) - begin, "?");
  }
  return got;
}

void expectMessages(const std::vector<std::string>& want, const Json& document) {
  std::vector<std::string> got = messageLines(document);
  for (std::size_t i = 0; i < std::min(want.size(), got.size()); ++i) {
    got[i] = asFar(want[i], got[i]);
  }
  EXPECT_EQ(got, want);
}

class Scenarios : public testing::TestWithParam<Scenario> {
 protected:
  void SetUp() override { writeFiles(GetParam(), folder_); }

  Outcome runWith(const std::vector<std::string>& extra) const {
    return runScenario(GetParam(), folder_, extra);
  }

  Folder folder_;
};

TEST_P(Scenarios, ComeOut) {
  const Scenario& scenario = GetParam();
  const Outcome outcome = runWith({"--format", "json"});
  EXPECT_EQ(outcome.status, scenario.status()) << outcome.err << outcome.out;
  if (scenario.has("messages")) {
    expectMessages(scenario.lines("messages"), document(outcome));
  }
  if (scenario.has("results")) {
    const Outcome csv = runWith({"--format", "csv"});
    expectResults(scenario.lines("results"), readCsv(csv.out));
  }
  if (scenario.has("text")) {
    const Outcome text = runWith({"--format", "text"});
    const std::string shown = text.out + text.err;
    EXPECT_NE(shown.find(scenario.text("text")), std::string::npos)
        << "wanted:\n"
        << scenario.text("text") << "\ngot:\n"
        << shown;
  }
}

TEST_P(Scenarios, ComeOutAlikeCaseByCase) {
  const Outcome byPatterns = runWith({"--format", "json"});
  const Outcome byCases = runWith({"--format", "json", "--case-by-case", "--threads", "2"});
  EXPECT_EQ(byPatterns.out, byCases.out);
  EXPECT_EQ(byPatterns.status, byCases.status);
}

// A refused command leaves nothing on standard output for readers, and no file.
TEST_P(Scenarios, LeaveNoFileWhenRefused) {
  const auto before = folder_.files();
  const Outcome outcome = runWith({"--format", "text", "-o", "results.txt"});
  EXPECT_EQ(outcome.status, GetParam().status());
  EXPECT_TRUE(outcome.out.empty()) << outcome.out;
  if (outcome.status == 0) {
    EXPECT_NE(contentOf(folder_.path() / "results.txt"), "");
  } else {
    EXPECT_EQ(folder_.files(), before);
    EXPECT_NE(outcome.err, "");
  }
}

std::string testName(const testing::TestParamInfo<Scenario>& info) {
  std::string name = info.param.name;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(All, Scenarios, testing::ValuesIn(allScenarios()), testName);

}  // namespace
}  // namespace cli_tests
