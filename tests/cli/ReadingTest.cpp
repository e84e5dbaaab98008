// What a run and `describe` say of the way cases are read: as patterns or one by one, and why.
#include <gtest/gtest.h>

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

  // The note of a run: how, why, and the arguments of that.
  Json note(const std::string& file, std::vector<std::string> options = {},
            const std::string& text = command) const {
    std::vector<std::string> words{"run", file, "-c", text, "--format", "json"};
    words.insert(words.end(), options.begin(), options.end());
    const Outcome outcome = start(words);
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(start(words).out, outcome.out) << "the same input gives the same note";
    const Json reading = document(outcome)["data"]["reading"];
    if (reading.is_null()) {
      return nullptr;
    }
    return {reading["as"], reading["reason"]["id"],
            reading["reason"].value("arguments", Json::array())};
  }

  Folder folder_;
};

TEST_F(Reading, IsByPatternsWhereASampleHasFew) {
  EXPECT_EQ(note("few.csv"), Json({"patterns", "Read as patterns by sample ^1 ^2 ...", {2, 40}}));
}

TEST_F(Reading, IsCaseByCaseWhereTheyDiffer) {
  EXPECT_EQ(note("many.csv"), Json({"cases", "Read case by case by sample ^1 ...", {40}}));
}

TEST_F(Reading, IsAsAskedFor) {
  EXPECT_EQ(note("few.csv", {"--case-by-case"}),
            Json({"cases", "Read case by case as asked ...", Json::array()}));
  EXPECT_EQ(note("many.csv", {"--bootstrap", "5"}),
            Json({"patterns", "Read as patterns for bootstrap ^1 ...", {40}}));
  EXPECT_EQ(note("few.csv", {"--diagnostics", "specs", "--diagnostics-file", "dump.txt"}),
            Json({"cases", "Read case by case for dumps ...", Json::array()}));
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
            Json({"cases", "Read case by case many columns ^1 ^2 ...", {70, 64}}));
}

TEST_F(Reading, IsNotToldWhereNothingIsRead) {
  folder_.write("none.csv", "v,w\n");
  EXPECT_EQ(note("none.csv"), nullptr);
  EXPECT_EQ(document(start({"counts", "7/50", "--format", "json"}))["data"]["reading"], nullptr);
  const Json refused = document(start({"run", "few.csv", "-c", "NONSENSE", "--format", "json"}));
  EXPECT_EQ(refused["data"]["reading"], nullptr);
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
