// The messages of the data side: what distinguishes them.
#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "embedded/data/EngineMessages.h"
#include "embedded/data/ImputationMessages.h"

namespace embedded::data {
namespace {

std::vector<DataMessage> everyMessage() {
  std::vector<DataMessage> list(messages::all.begin(), messages::all.end());
  list.insert(list.end(), messages::ofEngines.begin(), messages::ofEngines.end());
  list.insert(list.end(), messages::ofImputations.begin(), messages::ofImputations.end());
  return list;
}

TEST(DataMessages, HaveIdentifiersOfTheirOwn) {
  std::set<std::string_view> seen;
  for (const DataMessage& message : everyMessage()) EXPECT_TRUE(seen.insert(message.id).second);
}

}  // namespace
}  // namespace embedded::data
