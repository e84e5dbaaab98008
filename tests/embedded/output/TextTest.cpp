// Texts as values: when two labels are the same label.
#include <gtest/gtest.h>

#include "embedded/output/Text.h"

namespace {

using embedded::output::hashOf;
using embedded::output::NumberFormat;
using embedded::output::Text;
using embedded::output::VariableInfo;
using embedded::output::VariablePtr;

VariablePtr named(const char* name, const char* label = "") {
  VariableInfo info;
  info.name = name;
  info.label = label;
  return std::make_shared<const VariableInfo>(std::move(info));
}

void expectSame(const Text& a, const Text& b) {
  EXPECT_TRUE(a == b);
  EXPECT_EQ(hashOf(a), hashOf(b));
}

TEST(Text, IsEqualByIdentifierAndArguments) {
  const auto v = named("v");
  const auto label = [&](double value) {
    return Text::composite("^1 = ^2", {Text::ofVariable(v), Text::ofValue(v, value, true)});
  };
  expectSame(*label(1.0), *label(1.0));
  EXPECT_FALSE(*label(1.0) == *label(2.0));
  EXPECT_FALSE(*Text::string("Lower") == *Text::string("Upper"));
  EXPECT_FALSE(*Text::string("x") == *Text::composite("x", {}));
}

TEST(Text, TakesVariablesOfOneNameForTheSame) {
  expectSame(*Text::ofVariable(named("v", "one label")), *Text::ofVariable(named("v", "another")));
  EXPECT_FALSE(*Text::ofVariable(named("v")) == *Text::ofVariable(named("V")));
}

TEST(Text, ComparesNumbersBitForBit) {
  EXPECT_FALSE(*Text::number(0.0, NumberFormat::Count) == *Text::number(-0.0, NumberFormat::Count));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  expectSame(*Text::number(nan, NumberFormat::Count), *Text::number(nan, NumberFormat::Count));
}

TEST(Text, DoesNotCompareFormatOrPreference) {
  const auto v = named("v");
  expectSame(*Text::number(95.0, NumberFormat::SigDigit), *Text::number(95.0, NumberFormat::Count));
  expectSame(*Text::ofValue(v, 1.0, true), *Text::ofValue(v, 1.0, false));
}

TEST(Text, TellsANumberFromTheStringThatPrintsAlike) {
  const auto v = named("v");
  EXPECT_FALSE(*Text::ofValue(v, 1.0, true) == *Text::ofValue(v, std::string("1"), true));
}

TEST(Text, ComparesListsItemByItem) {
  const auto list = [](std::initializer_list<const char*> words) {
    std::vector<embedded::output::TextPtr> items;
    for (const char* word : words) {
      items.push_back(Text::string(word));
    }
    return Text::list(std::move(items));
  };
  expectSame(*list({"a", "b"}), *list({"a", "b"}));
  EXPECT_FALSE(*list({"a", "b"}) == *list({"b", "a"}));
  EXPECT_FALSE(*list({"a"}) == *list({"a", "b"}));
}

TEST(Text, TellsAVariableFromNone) {
  const auto v = named("v");
  EXPECT_FALSE(*Text::ofVariable(v) == *Text::ofVariable(nullptr));
  EXPECT_FALSE(*Text::ofVariable(nullptr) == *Text::ofVariable(v));
  EXPECT_TRUE(*Text::ofVariable(nullptr) == *Text::ofVariable(nullptr));
}

}  // namespace
