// Texts in other languages, and what never depends on one.
#include <gtest/gtest.h>

#include "Program.h"

namespace cli_tests {
namespace {

Outcome counts(std::vector<std::string> words) {
  words.insert(words.begin(), {"counts", "39/100", "--test-value", "0.3"});
  return run(std::move(words));
}

bool holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(Language, WritesLabelsNotesAndNumbersAsTheReaderKnowsThem) {
  const Outcome german = counts({"--language", "de"});
  EXPECT_EQ(german.status, 0) << german.err;
  EXPECT_TRUE(holds(german.out, "Konfidenzintervalle")) << german.out;
  EXPECT_TRUE(holds(german.out, "outcome = Erfolg")) << german.out;
  EXPECT_TRUE(holds(german.out, "0,390")) << german.out;
  EXPECT_FALSE(holds(german.out, "0.390")) << german.out;
}

TEST(Language, IsFoundByItsRegionToo) {
  EXPECT_EQ(counts({"--language", "de-AT"}).out, counts({"--language", "de"}).out);
  EXPECT_EQ(counts({"--language=zh_CN.UTF-8"}).out, counts({"--language", "zh-CN"}).out);
}

TEST(Language, OfAnUnknownTagIsWrongUsageThatNamesTheKnownOnes) {
  const Outcome outcome = counts({"--language", "tlh"});
  EXPECT_EQ(outcome.status, 2);
  EXPECT_EQ(outcome.out, "");
  EXPECT_TRUE(holds(outcome.err, "tlh")) << outcome.err;
  EXPECT_TRUE(holds(outcome.err, "en, de, es, fr, ja, zh-CN")) << outcome.err;
}

TEST(Language, IsThatOfErrorsToo) {
  const Outcome outcome = run({"run", "no-such.csv", "-c", "X", "--language", "fr"});
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.err, "proportions: Il n'y a pas de fichier no-such.csv.\n");
}

// The reason of a failure is told in the language as well as the failure.
TEST(Language, IsThatOfReasonsInsideOfErrors) {
  const Outcome outcome = counts({"-o", "/no/such/folder/out.txt", "--language", "de"});
  EXPECT_EQ(outcome.status, 4);
  EXPECT_TRUE(holds(outcome.err, "kann nicht geschrieben werden")) << outcome.err;
  EXPECT_FALSE(holds(outcome.err, " ...")) << outcome.err;
}

TEST(Language, ChangesNothingInTidyCsv) {
  for (const char* tag : {"de", "fr", "es", "ja", "zh-CN"}) {
    EXPECT_EQ(counts({"--format", "csv", "--language", tag}).out, counts({"--format", "csv"}).out)
        << tag;
  }
}

TEST(Language, KeepsThePointInJson) {
  const Outcome outcome = counts({"--format", "json", "--language", "fr"});
  EXPECT_TRUE(holds(outcome.out, "\"value\":0.39,\"state\":\"valid\",\"text\":\"0.390\""))
      << outcome.out;
}

}  // namespace
}  // namespace cli_tests
