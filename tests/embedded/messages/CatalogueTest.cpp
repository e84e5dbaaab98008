// The catalogue: every identifier has a sentence that its arguments can fill.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "embedded/command/CommandMessages.h"
#include "embedded/data/EngineMessages.h"
#include "embedded/data/ImputationMessages.h"
#include "embedded/messages/Catalogue.h"
#include "embedded/output/Template.h"
#include "embedded/output/Values.h"
#include "statistics/Methods.h"

namespace embedded::messages {

namespace {

const Catalogue& english() {
  return Catalogue::forLanguage("en");
}

bool knows(std::string_view identifier) {
  const auto all = english().identifiers();
  return std::binary_search(all.begin(), all.end(), identifier);
}

// The placeholders of a pattern, outside and inside of lists: {"^1", "[2"}.
std::set<std::string> placeholders(const std::string& pattern) {
  std::set<std::string> found;
  static const std::regex lists(R"(\[[^\[\]]*:[^\[\]]*:\](\d+))");
  for (std::sregex_iterator i(pattern.begin(), pattern.end(), lists), end; i != end; ++i) {
    found.insert("[" + (*i)[1].str());
  }
  const std::string rest = std::regex_replace(pattern, lists, "");
  static const std::regex plain(R"(\^([1-9])(?!\d))");
  for (std::sregex_iterator i(rest.begin(), rest.end(), plain), end; i != end; ++i) {
    found.insert("^" + (*i)[1].str());
  }
  return found;
}

std::string contentOf(const std::filesystem::path& path) {
  std::ifstream file(path);
  return {std::istreambuf_iterator<char>(file), {}};
}

// The texts between double quotes of all sources of a folder that match.
std::set<std::string> literals(const std::string& folder, const std::regex& wanted) {
  std::set<std::string> found;
  static const std::regex literal(R"re("((?:[^"\\\n]|\\.)*)")re");
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(std::string(PROJECT_ROOT) + "/" + folder)) {
    if (entry.path().extension() != ".cpp" && entry.path().extension() != ".h") {
      continue;
    }
    const std::string source = contentOf(entry.path());
    for (std::sregex_iterator i(source.begin(), source.end(), literal), end; i != end; ++i) {
      if (std::regex_match((*i)[1].str(), wanted)) {
        found.insert((*i)[1].str());
      }
    }
  }
  return found;
}

TEST(Catalogue, GivesTheSentenceOfAnIdentifier) {
  EXPECT_EQ(english().sentence("Missing BY ..."),
            "The keyword BY with the grouping variable is missing.");
}

TEST(Catalogue, GivesTheIdentifierWhereItHasNoSentence) {
  EXPECT_EQ(english().sentence("No such identifier"), "No such identifier");
  EXPECT_EQ(english().sentence(""), "");
}

TEST(Catalogue, HasSixLanguages) {
  EXPECT_EQ(Catalogue::tags(), (std::vector<std::string>{"en", "de", "es", "fr", "ja", "zh-CN"}));
}

TEST(Catalogue, FindsALanguageByTheTagsThatMeanIt) {
  const std::pair<const char*, const char*> tags[] = {
      {"de", "de"},    {"de-AT", "de"},      {"DE_at.UTF-8", "de"},
      {"ja_JP", "ja"}, {"zh-CN", "zh_CN"},   {"zh_cn.UTF-8", "zh_CN"},
      {"fr-CA", "fr"}, {"es_MX@euro", "es"}, {"zh-CN-x-private", "zh_CN"}};
  for (const auto& [tag, language] : tags) {
    const Catalogue* found = Catalogue::find(tag);
    ASSERT_NE(found, nullptr) << tag;
    EXPECT_EQ(found->language(), language) << tag;
  }
}

TEST(Catalogue, DoesNotTakeOneLanguageForAnother) {
  for (const char* tag : {"", "xx", "zh", "zh-TW", "d", "deu", "e", "C"}) {
    EXPECT_EQ(Catalogue::find(tag), nullptr) << tag;
  }
}

// What a language lacks or has too much, told all at once.
TEST(Catalogue, HasASentenceInEveryLanguageForEveryIdentifier) {
  const auto wanted = english().identifiers();
  for (const std::string& tag : Catalogue::tags()) {
    const auto found = Catalogue::forLanguage(tag).identifiers();
    std::vector<std::string_view> wrong;
    std::ranges::set_symmetric_difference(wanted, found, std::back_inserter(wrong));
    EXPECT_TRUE(wrong.empty()) << tag << ": " << testing::PrintToString(wrong);
  }
}

TEST(Catalogue, UsesTheSamePlaceholdersInEveryLanguage) {
  for (const std::string& tag : Catalogue::tags()) {
    const Catalogue& catalogue = Catalogue::forLanguage(tag);
    for (const std::string_view id : english().identifiers()) {
      EXPECT_EQ(placeholders(std::string(catalogue.sentence(id))),
                placeholders(std::string(english().sentence(id))))
          << tag << ": " << id;
    }
  }
}

TEST(Catalogue, WritesSentencesInFullInEveryLanguage) {
  for (const std::string& tag : Catalogue::tags()) {
    for (const std::string_view id : Catalogue::forLanguage(tag).identifiers()) {
      const std::string_view sentence = Catalogue::forLanguage(tag).sentence(id);
      EXPECT_FALSE(sentence.empty()) << tag << ": " << id;
      EXPECT_FALSE(sentence.ends_with(" ...")) << tag << ": " << id;
    }
  }
}

// A sentence that stands in English in another language was forgotten.
TEST(Catalogue, TranslatesSentences) {
  for (const std::string& tag : Catalogue::tags()) {
    for (const std::string_view id : english().identifiers()) {
      if (tag != "en" && id.ends_with(" ...")) {
        EXPECT_NE(Catalogue::forLanguage(tag).sentence(id), english().sentence(id))
            << tag << ": " << id;
      }
    }
  }
}

TEST(Catalogue, SaysThatTranslationsAreNotReviewed) {
  for (const auto& entry :
       std::filesystem::directory_iterator(std::string(PROJECT_ROOT) + "/embedded/messages/po")) {
    const bool marked =
        contentOf(entry.path()).find("not yet reviewed by a speaker") != std::string::npos;
    EXPECT_EQ(marked, entry.path().stem() != "en") << entry.path();
  }
}

TEST(Catalogue, FallsBackToTheLanguageAloneAndThenToEnglish) {
  for (const char* tag : {"en-GB", "EN", "en_US.UTF-8", "xx-YY", "", "-", "C"}) {
    EXPECT_EQ(Catalogue::forLanguage(tag).language(), "en") << tag;
  }
}

TEST(Catalogue, HoldsEveryIdentifierOfTheModule) {
  const std::regex identifier(R"([A-Z].* \.\.\.)");
  const auto found = literals("backend/proportions", identifier);
  EXPECT_GT(found.size(), 40U);
  for (const std::string& id : found) {
    EXPECT_TRUE(knows(id)) << id;
  }
}

TEST(Catalogue, HoldsEveryIdentifierOfTheHostAndTheProgram) {
  const std::regex identifier(R"([A-Z].* \.\.\.)");
  for (const char* folder : {"embedded", "cli", "render"}) {
    for (const std::string& id : literals(folder, identifier)) {
      EXPECT_TRUE(knows(id)) << folder << ": " << id;
    }
  }
}

TEST(Catalogue, HoldsWhatInterfaceOperationsStandFor) {
  for (const char* id : {"NoSubCom", "ParamExclAnyOther", "NoTableRequested", "VariableNotNumeric",
                         "NoValidCases", "NoValidCasesSplit"}) {
    EXPECT_TRUE(knows(id)) << id;
  }
}

// Whether there is more in a formula than signs and the names of functions.
bool hasWords(std::string_view formula) {
  static const std::regex word(R"(\b(?!sqrt\b)[a-z]{4,}\b)");
  return std::regex_search(formula.begin(), formula.end(), word);
}

TEST(Catalogue, HoldsWhatThereIsToSayOfEveryMethod) {
  using statistics::Design;
  using statistics::MethodKind;
  for (const Design design : {Design::OneSample, Design::Paired, Design::Independent}) {
    for (const MethodKind kind : {MethodKind::Test, MethodKind::Interval}) {
      for (const auto& method : statistics::methodsOf(design, kind)) {
        EXPECT_TRUE(knows(method.label)) << method.label;
        EXPECT_TRUE(method.variant.empty() || knows(method.variant)) << method.variant;
        EXPECT_TRUE(method.canFail.empty() || knows(method.canFail)) << method.canFail;
        EXPECT_TRUE(knows(method.formula) || !hasWords(method.formula)) << method.formula;
      }
    }
  }
}

TEST(Catalogue, HoldsTheHostsOwnMessagesOfCommandsAndData) {
  const auto expectKnown = [](const auto& messages) {
    for (const auto& message : messages) {
      EXPECT_TRUE(knows(message.id)) << message.id;
    }
  };
  expectKnown(command::messages::all);
  expectKnown(data::messages::all);
  expectKnown(data::messages::ofEngines);
  expectKnown(data::messages::ofImputations);
}

// The arguments of an identifier are those that it names; operations of the interface that are no
// templates have theirs fixed.
TEST(Catalogue, KeepsThePlaceholdersOfEveryIdentifier) {
  for (const std::string_view identifier : english().identifiers()) {
    if (identifier == "ParamExclAnyOther" || identifier == "VariableNotNumeric") {
      continue;
    }
    const std::string id(identifier);
    const std::string sentence(english().sentence(id));
    const auto allowed = placeholders(id);
    const auto used = placeholders(sentence);
    EXPECT_TRUE(std::ranges::includes(allowed, used)) << id << " -> " << sentence;
  }
}

TEST(Catalogue, WritesSentencesInFull) {
  for (const std::string_view identifier : english().identifiers()) {
    const std::string_view sentence = english().sentence(identifier);
    EXPECT_FALSE(sentence.empty()) << identifier;
    EXPECT_FALSE(sentence.ends_with(" ...")) << identifier;
  }
}

TEST(Catalogue, FillsListsOfSplitValues) {
  output::VariableInfo info;
  info.name = "region";
  const auto region = std::make_shared<output::VariableInfo>(std::move(info));
  const auto text = output::Text::composite(
      "Not enough valid cases for split [%1 = %2:,^1 = ^2:]1 ...",
      {output::Text::list({output::Text::ofVariable(region),
                           output::Text::ofValue(region, std::string("North"), false)})});
  EXPECT_NE(output::readerText(*text, english()).find("region = North"), std::string::npos);
}

}  // namespace

}  // namespace embedded::messages
