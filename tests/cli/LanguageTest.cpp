// Texts in other languages, and what never depends on one.
#include <gtest/gtest.h>

#include <sstream>

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

constexpr const char* foreign[] = {"de", "es", "fr", "ja", "zh-CN"};

// The lines of a help that name an option, each cut where its description begins.
std::vector<std::string> namesOfOptions(const std::string& help) {
  std::vector<std::string> names;
  std::istringstream lines(help);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t begin = line.find("--");
    if (begin != std::string::npos && begin < 8) {
      names.push_back(line.substr(begin, line.find(' ', begin) - begin));
    }
  }
  return names;
}

TEST(Language, IsThatOfTheHelp) {
  for (const char* use : {"", "run", "counts", "describe", "methods"}) {
    std::vector<std::string> words{"--help"};
    if (*use != 0) {
      words.insert(words.begin(), use);
    }
    const Outcome english = run(words);
    EXPECT_TRUE(holds(english.out, "Print this help and exit")) << english.out;
    words.insert(words.end(), {"--language", ""});
    for (const char* tag : foreign) {
      words.back() = tag;
      const Outcome outcome = run(words);
      EXPECT_EQ(outcome.status, 0) << outcome.err;
      EXPECT_FALSE(holds(outcome.out, "Print")) << outcome.out;
      EXPECT_FALSE(holds(outcome.out, "Usage:")) << outcome.out;
      EXPECT_FALSE(holds(outcome.out, " ...")) << outcome.out;
      EXPECT_EQ(namesOfOptions(outcome.out), namesOfOptions(english.out)) << tag << " " << use;
      std::istringstream lines(outcome.out);
      for (std::string line; std::getline(lines, line);) {
        const bool described = line.find("  ", line.find("--")) != std::string::npos;
        EXPECT_FALSE(described && holds(english.out, "\n" + line + "\n")) << tag << ":" << line;
      }
    }
  }
  EXPECT_TRUE(holds(run({"run", "--help", "--language", "de"}).out, "Das Fallgewicht"));
  EXPECT_TRUE(holds(run({"--language", "de", "--help"}).out, "Aufruf: proportions"));
}

TEST(Language, MayStandBeforeTheSubcommand) {
  EXPECT_EQ(run({"--language", "de", "counts", "39/100"}).out,
            run({"counts", "39/100", "--language", "de"}).out);
}

TEST(Language, IsThatOfTheListOfMethods) {
  const Outcome german = run({"methods", "MIDP", "--language", "de"});
  EXPECT_EQ(german.status, 0) << german.err;
  EXPECT_TRUE(holds(german.out, "MIDP\n  Design       eine Stichprobe, Test (Voreinstellung)\n"))
      << german.out;
  EXPECT_TRUE(holds(german.out, "X binomial mit n und p0")) << german.out;
  EXPECT_TRUE(holds(german.out, "fehlt, wenn eine Verteilungsfunktion versagt")) << german.out;
  EXPECT_TRUE(holds(german.out, "zweiseitige")) << german.out;
  for (const char* tag : foreign) {
    const Outcome all = run({"methods", "--language", tag});
    for (const char* word : {" when ", " with ", "missing ", " added ", "correction of"}) {
      EXPECT_FALSE(holds(all.out, word)) << tag << ":" << word;
    }
  }
}

TEST(Language, IsThatOfWrongUsage) {
  const std::pair<std::vector<std::string>, const char*> wrong[] = {
      {{}, "Il manque une sous-commande"},
      {{"run"}, "DATA manque."},
      {{"run", "d", "e"}, "e ne peut pas figurer ici."},
      {{"run", "d", "--format", "poem"},
       "--format ne peut pas être poem ; les valeurs possibles sont : text, json, "},
      {{"run", "d", "--threads", "0"},
       "--threads ne peut pas être 0 ; c'est un nombre de 1 à 1024."},
      {{"run", "d", "--timeout", "0"}, "un nombre de 0.1 à 1000000."},
      {{"run", "d", "--bootstrap", "9", "--seed", "-1"},
       "--seed ne peut pas être -1 ; c'est un nombre de 0 à 18446744073709551615."},
      {{"counts", "1/2", "--level", "high"}, "high n'est pas une valeur que --level puisse avoir."},
      {{"run", "d", "-c"}, "--command demande une valeur, qui manque."},
      {{"counts", "1/2", "--level", "9", "--level", "8"}, "--level ne peut figurer qu'une fois."},
      {{"run", "d", "--seed", "1"}, "--seed ne s'emploie qu'avec --bootstrap."},
      {{"counts", "1/2", "--paired", "1,2,3,4"}, "COUNTS et --paired ne peuvent pas"}};
  for (auto [words, text] : wrong) {
    words.insert(words.begin(), {"--language", "fr"});
    const Outcome outcome = run(words);
    EXPECT_EQ(outcome.status, 2) << text;
    EXPECT_TRUE(holds(outcome.err, text)) << outcome.err;
    EXPECT_TRUE(holds(outcome.err, "--help en dit plus.")) << outcome.err;
    EXPECT_EQ(outcome.out, "");
  }
}

}  // namespace
}  // namespace cli_tests
