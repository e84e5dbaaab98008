// The command line itself: help, version, methods, the dictionary, and wrong usage.
#include <gtest/gtest.h>

#include <sstream>

#include "Program.h"
#include "render/Columns.h"

namespace cli_tests {
namespace {

using Json = nlohmann::json;

std::size_t countOf(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) {
    ++count;
  }
  return count;
}

TEST(Usage, TellsVersionAndHelp) {
  const Outcome version = run({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_TRUE(version.out.starts_with("proportions ")) << version.out;
  EXPECT_EQ(version.err, "");
  const Outcome help = run({"--help"});
  EXPECT_EQ(help.status, 0);
  for (const char* word : {"run", "counts", "describe", "methods"}) {
    EXPECT_NE(help.out.find(word), std::string::npos) << word;
  }
  const Outcome ofRun = run({"run", "--help"});
  EXPECT_EQ(ofRun.status, 0);
  for (const char* word : {"--weight", "--split", "--split-layout", "--format", "--schema",
                           "--case-by-case", "--threads", "--quiet"}) {
    EXPECT_NE(ofRun.out.find(word), std::string::npos) << word;
  }
}

// As wide as a terminal: descriptions begin in one column, and no line is longer.
TEST(Usage, HelpKeepsItsColumns) {
  for (const char* tag : {"en", "de", "ja"}) {
    std::istringstream lines(run({"run", "--help", "--language", tag}).out);
    std::size_t options = 0;
    for (std::string line; std::getline(lines, line);) {
      EXPECT_LE(render::columnsOf(line), 100U) << line;
      const bool named = line.starts_with("      --") || line.starts_with("  -");
      if (named && line.find("  ", 8) != std::string::npos) {
        EXPECT_EQ(
            render::columnsOf(line.substr(0, line.find_first_not_of(' ', line.find("  ", 8)))), 30U)
            << line;
      }
      options += named ? 1 : 0;
    }
    EXPECT_GE(options, 25U) << tag;
  }
}

TEST(Usage, HelpTellsWhatAnOptionTakes) {
  const std::string help = run({"run", "--help"}).out;
  for (const char* part : {"-o, --output FILE", "--threads N ", "(1 to 1024)", "(text, json,",
                           "(only with --bootstrap)", "(not with --command)",
                           "Usage: proportions run [OPTIONS] DATA", "--split-layout rows|tables"}) {
    EXPECT_NE(help.find(part), std::string::npos) << part << "\n" << help;
  }
}

TEST(Usage, ThatIsWrongIsRefused) {
  const Folder folder;
  folder.write("data.csv", "v\n1\n0\n");
  const std::vector<std::vector<std::string>> wrong{
      {},
      {"analyse", "data.csv"},
      {"run"},
      {"run", "data.csv"},
      {"run", "data.csv", "-c"},
      {"run", "data.csv", "-c", ""},
      {"run", "data.csv", "-f", "none.txt"},
      {"run", "data.csv", "-c", "PROPORTIONS /ONESAMPLE v", "-f", "data.csv"},
      {"run", "data.csv", "-c", "PROPORTIONS /ONESAMPLE v", "--no-such-option"},
      {"run", "data.csv", "-c", "PROPORTIONS /ONESAMPLE v", "--format", "poem"},
      {"run", "data.csv", "-c", "PROPORTIONS /ONESAMPLE v", "-o", "results.poem"},
      {"run", "data.csv", "-c", "PROPORTIONS /ONESAMPLE v", "--split-layout", "pages"},
      {"run", "data.csv", "-c", "PROPORTIONS /ONESAMPLE v", "--split-layout", "1"},
      {"run", "data.csv", "-c", "PROPORTIONS /ONESAMPLE v", "--diagnostics-file", "dump.txt"},
      {"run", "data.csv", "-c", "PROPORTIONS /ONESAMPLE v", "--threads", "0"},
      {"run", "data.csv", "-c", "PROPORTIONS /ONESAMPLE v", "--threads", "many"},
      {"run", "data.csv", "-c", "PROPORTIONS /ONESAMPLE v", "--memory", "lots"},
      {"methods", "NO_SUCH_METHOD"},
      {"describe"}};
  for (const auto& words : wrong) {
    SCOPED_TRACE(testing::PrintToString(words));
    const Outcome outcome = run({.arguments = words, .folder = folder.path(), .input = {}});
    EXPECT_EQ(outcome.status, 2) << outcome.err;
    EXPECT_TRUE(outcome.out.empty()) << outcome.out;
    EXPECT_NE(outcome.err, "");
  }
  EXPECT_EQ(folder.files(), (std::vector<std::string>{"data.csv"}));
}

TEST(Usage, NamesWhatCouldHaveBeenMeant) {
  const std::pair<std::vector<std::string>, const char*> mistyped[] = {
      {{"count", "1/2"}, "count cannot stand here. Did you mean counts?"},
      {{"counts", "1/2", "--formt", "csv"}, "--formt cannot stand here. Did you mean --format?"},
      {{"counts", "1/2", "--lvel=90"}, "Did you mean --level?"}};
  for (const auto& [words, text] : mistyped) {
    const Outcome outcome = run(words);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.err.find(text), std::string::npos) << outcome.err;
  }
  EXPECT_EQ(run({"counts", "1/2", "--entirely-else"}).err.find("Did you mean"), std::string::npos);
}

TEST(Usage, ReadsTheCommandFromAFileAndOptionsInAnyOrder) {
  const Folder folder;
  folder.write("data.csv", "v,g,w\n1,a,1\n0,b,2\n");
  folder.write("command.txt", "PROPORTIONS\n  /ONESAMPLE v   # a comment\n");
  const Outcome first = run({.arguments = {"run", "data.csv", "-f", "command.txt", "--split", "g",
                                           "--weight", "w", "--format", "csv"},
                             .folder = folder.path(),
                             .input = {}});
  // A list of split variables ends where the word ends: what follows is the data.
  const Outcome second = run({.arguments = {"run", "--format", "csv", "--weight", "w", "-f",
                                            "command.txt", "--split", "g", "data.csv"},
                              .folder = folder.path(),
                              .input = {}});
  EXPECT_EQ(first.status, 0) << first.err;
  EXPECT_EQ(second.status, 0) << second.err;
  EXPECT_EQ(first.out, second.out);
}

TEST(Methods, AreAllListedWithWhatTheTablesSayOfThem) {
  const Outcome outcome = run({"methods"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(countOf(outcome.out, "\n  design"), 38U) << "21 intervals and 17 tests";
  EXPECT_EQ(countOf(outcome.out, "\n  label"), 38U);
  EXPECT_EQ(countOf(outcome.out, "\n  formula"), 38U);
  EXPECT_EQ(countOf(outcome.out, "\n  source"), 38U);
}

TEST(Methods, AreFoundByKeywordInAnyCase) {
  const Outcome outcome = run({"methods", "logit"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_TRUE(outcome.out.starts_with("LOGIT\n")) << outcome.out;
  EXPECT_EQ(countOf(outcome.out, "\n  design"), 1U);
  EXPECT_NE(outcome.out.find("can fail"), std::string::npos) << outcome.out;
  // A keyword of several designs is shown for each of them.
  EXPECT_EQ(countOf(run({"methods", "WALD"}).out, "\n  design"), 6U);
}

class Describe : public testing::Test {
 protected:
  Outcome inFolder(const std::vector<std::string>& words) const {
    return run({.arguments = words, .folder = folder_.path(), .input = {}});
  }
  Folder folder_;
};

constexpr const char* sidecar = R"({
  "fields": [
    {"name": "v", "type": "integer", "title": "A title", "missingValues": ["9",
     {"value": "8", "label": "refused"}],
     "proportions:missingRanges": [{"min": 90, "max": 99, "label": "not asked"}],
     "categories": [{"value": 0, "label": "no"}, {"value": 1, "label": "yes"}]},
    {"name": "s", "type": "string", "constraints": {"maxLength": 12}, "categories": ["a", "b"]},
    {"name": "day", "type": "date"}],
  "proportions:weight": "w", "proportions:split": ["s"]})";

TEST_F(Describe, PrintsASidecarThatDescribesTheSame) {
  folder_.write("data.csv", "v,s,day,w\n1,a,2024-02-29,2\n0,b,2024-03-01,1\n8,a,,1\n");
  folder_.write("data.schema.json", sidecar);
  const Outcome first = inFolder({"describe", "data.csv"});
  ASSERT_EQ(first.status, 0) << first.err;
  const Json schema = document(first);
  std::vector<std::string> names;
  for (const Json& field : schema["fields"]) {
    names.push_back(field["name"]);
  }
  EXPECT_EQ(names, (std::vector<std::string>{"v", "s", "day", "w"}));
  EXPECT_EQ(schema["fields"][0]["title"], "A title");
  EXPECT_EQ(schema["fields"][1]["constraints"]["maxLength"], 12);
  EXPECT_EQ(schema["fields"][2]["type"], "date");
  EXPECT_EQ(schema["proportions:weight"], "w");
  EXPECT_EQ(schema["proportions:split"], Json::array({"s"}));

  folder_.write("again.json", first.out);
  const Outcome second = inFolder({"describe", "data.csv", "--schema", "again.json"});
  EXPECT_EQ(second.out, first.out);
  const std::string command = "PROPORTIONS /ONESAMPLE v /MISSING USERMISSING=INCLUDE";
  const Outcome before = inFolder({"run", "data.csv", "-c", command, "--format", "json"});
  const Outcome after =
      inFolder({"run", "data.csv", "--schema", "again.json", "-c", command, "--format", "json"});
  EXPECT_EQ(before.status, 0) << before.err;
  EXPECT_EQ(before.out, after.out);
}

TEST_F(Describe, TellsTheTypesOfDataWithoutASidecar) {
  folder_.write("data.csv", "i,x,s,d,b\n1,1.5,a,2024-02-29,true\n2,2,bb,2024-03-01,false\n");
  const Json schema = document(inFolder({"describe", "data.csv"}));
  const std::pair<const char*, const char*> types[] = {
      {"i", "integer"}, {"x", "number"}, {"s", "string"}, {"d", "date"}, {"b", "boolean"}};
  ASSERT_EQ(schema["fields"].size(), 5);
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(schema["fields"][i]["name"], types[i].first);
    EXPECT_EQ(schema["fields"][i]["type"], types[i].second) << types[i].first;
  }
}

TEST(Usage, RefusesALanguageWithoutItsName) {
  for (const char* word : {"--language", "--languages", "--languages=de"}) {
    const Outcome outcome = run({"methods", word});
    EXPECT_EQ(outcome.status, 2) << word;
    EXPECT_TRUE(outcome.out.empty()) << outcome.out;
    EXPECT_NE(outcome.err.find("--language"), std::string::npos) << outcome.err;
  }
}

}  // namespace
}  // namespace cli_tests
