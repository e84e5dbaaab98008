// What a run and `describe` say of the way cases are read: as patterns or one by one, and why.
#include <gtest/gtest.h>

#include <regex>

#include "Program.h"

namespace cli_tests {
namespace {

using Json = nlohmann::json;

constexpr const char* command = "PROPORTIONS /ONESAMPLE v TESTTYPES=NONE";

class Reading : public testing::Test {
 protected:
  Reading() {
    std::string few = "v,w\n";
    std::string many = "v,w\n";
    for (int i = 0; i < 40; ++i) {
      few += std::to_string(i % 2) + ",1\n";
      many += std::to_string(i) + ",1\n";
    }
    folder_.write("few.csv", few);
    folder_.write("many.csv", many);
  }

  Outcome start(std::vector<std::string> words) const {
    return run({.arguments = std::move(words), .folder = folder_.path(), .input = {}});
  }

  // What the run says of it; empty when it says nothing.
  std::string note(const std::string& file, std::vector<std::string> options = {},
                   const std::string& text = command) const {
    std::vector<std::string> words{"run", file, "-c", text};
    words.insert(words.end(), options.begin(), options.end());
    const Outcome outcome = start(words);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(start(words).out, outcome.out) << "the same input gives the same note";
    return noteIn(outcome.out);
  }

  static std::string noteIn(const std::string& text) {
    std::smatch found;
    return std::regex_search(text, found, std::regex("\nReading: +(.*)\n")) ? found[1].str() : "";
  }

  Folder folder_;
};

TEST_F(Reading, IsByPatternsWhereASampleHasFew) {
  EXPECT_EQ(note("few.csv"), "As 2 patterns: of 40 sampled cases at most a quarter are distinct.");
}

TEST_F(Reading, IsCaseByCaseWhereTheyDiffer) {
  EXPECT_EQ(note("many.csv"),
            "Case by case: of 40 sampled cases more than a quarter are distinct.");
}

TEST_F(Reading, IsAsAskedFor) {
  EXPECT_EQ(note("few.csv", {"--case-by-case"}), "Case by case, as asked for.");
  EXPECT_EQ(note("many.csv", {"--bootstrap", "5"}),
            "As 40 patterns, from which the samples are drawn.");
  EXPECT_EQ(note("few.csv", {"--diagnostics", "specs", "--diagnostics-file", "dump.txt"}),
            "Case by case, for the diagnostic dumps.");
}

TEST_F(Reading, IsCaseByCaseWithVeryManyColumns) {
  std::string head = "v0";
  std::string row = "1";
  for (int i = 1; i < 70; ++i) {
    head += ",v" + std::to_string(i);
    row += ",1";
  }
  folder_.write("wide.csv", head + "\n" + row + "\n" + row + "\n");
  EXPECT_EQ(note("wide.csv", {}, "PROPORTIONS /ONESAMPLE v0..v69 TESTTYPES=NONE"),
            "Case by case: 70 columns are in use, and patterns are tried for at most 64.");
}

TEST_F(Reading, IsNotToldWhereNothingIsRead) {
  folder_.write("none.csv", "v,w\n");
  EXPECT_EQ(note("none.csv"), "");
  EXPECT_EQ(noteIn(start({"counts", "7/50"}).out), "");
}

// What programs read is the same whichever way it was.
TEST_F(Reading, LeavesNoMarkInMachineFormats) {
  for (const char* format : {"json", "csv"}) {
    const auto read = [&](const char* file, const char* option) {
      return start({"run", file, "-c", command, "--format", format, "--quiet", option}).out;
    };
    EXPECT_EQ(read("few.csv", "--quiet"), read("few.csv", "--case-by-case")) << format;
  }
}

TEST_F(Reading, StandsInEveryFormatForPeople) {
  const std::string sentence = "As 2 patterns: of 40 sampled cases at most a quarter are distinct.";
  for (const char* format : {"text", "html", "markdown", "latex"}) {
    const Outcome outcome = start({"run", "few.csv", "-c", command, "--format", format});
    EXPECT_NE(outcome.out.find(sentence), std::string::npos) << format << outcome.out;
  }
}

TEST_F(Reading, OfAllColumnsStandsInTheDictionary) {
  EXPECT_EQ(document(start({"describe", "few.csv"}))["proportions:reading"],
            Json({{"as", "patterns"}, {"because", "sample"}, {"sampled", 40}, {"columns", 2}}));
  EXPECT_EQ(document(start({"describe", "many.csv", "--weight", "w"}))["proportions:reading"],
            Json({{"as", "cases"}, {"because", "sample"}, {"sampled", 40}, {"columns", 2}}));
}

// A column that no run can use keeps nobody from seeing the others.
TEST_F(Reading, OfADictionaryPassesOverColumnsThatCannotBeAnalysed) {
  folder_.write("lists.json", R"([{"v": 1, "l": [1, 2]}, {"v": 0, "l": []}])");
  const Outcome outcome = start({"describe", "lists.json"});
  ASSERT_EQ(outcome.status, 0) << outcome.err;
  const Json schema = document(outcome);
  EXPECT_EQ(schema["fields"][1]["type"], "any");
  EXPECT_EQ(schema["proportions:reading"]["columns"], 1);
}

}  // namespace
}  // namespace cli_tests
