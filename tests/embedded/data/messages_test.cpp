// The catalogue has every message of the data side, in the words that stand beside the code.
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <vector>

#include "embedded/data/EngineMessages.h"

namespace embedded::data {
namespace {

std::vector<DataMessage> everyMessage() {
  std::vector<DataMessage> list(messages::all.begin(), messages::all.end());
  list.insert(list.end(), messages::ofEngines.begin(), messages::ofEngines.end());
  return list;
}

TEST(DataMessages, StandInTheEnglishCatalogue) {
  std::ifstream file(PROJECT_ROOT "/embedded/messages/po/en.po");
  std::ostringstream text;
  text << file.rdbuf();
  // A long text is continued on further lines, each in quotes of its own.
  const std::string catalogue = std::regex_replace(text.str(), std::regex("\"\n\""), "");
  for (const DataMessage& message : everyMessage()) {
    std::string entry("msgid \"");
    entry.append(message.id).append("\"\nmsgstr \"").append(message.english).append("\"\n");
    EXPECT_NE(catalogue.find(entry), std::string::npos) << message.id;
  }
}

TEST(DataMessages, HaveIdentifiersOfTheirOwn) {
  std::set<std::string_view> seen;
  for (const DataMessage& message : everyMessage()) EXPECT_TRUE(seen.insert(message.id).second);
}

}  // namespace
}  // namespace embedded::data
