// The template engine, placeholder by placeholder.
#include <gtest/gtest.h>

#include <vector>

#include "embedded/output/Template.h"

namespace {

using embedded::output::fillTemplate;
using embedded::output::Text;
using embedded::output::TextPtr;

TextPtr word(const char* text) {
  return Text::string(text);
}

TextPtr list(std::initializer_list<const char*> words) {
  std::vector<TextPtr> items;
  for (const char* text : words) {
    items.push_back(word(text));
  }
  return Text::list(std::move(items));
}

std::string filled(std::string_view pattern, const std::vector<TextPtr>& arguments) {
  return fillTemplate(pattern, arguments, [](const Text& text) { return text.id; });
}

TEST(Template, FillsArgumentsByNumber) {
  EXPECT_EQ(filled("^1 = ^2", {word("v"), word("yes")}), "v = yes");
  EXPECT_EQ(filled("^2 before ^1, ^2", {word("a"), word("b")}), "b before a, b");
}

TEST(Template, ReadsNumbersOfSeveralDigits) {
  std::vector<TextPtr> arguments(12, word("x"));
  arguments[11] = word("twelfth");
  EXPECT_EQ(filled("^12", arguments), "twelfth");
}

TEST(Template, PrintsAListBetweenItsSeparators) {
  EXPECT_EQ(filled("^1 = [%1:, ^1:]2", {word("v"), list({"a", "b", "c"})}), "v = a, b, c");
  EXPECT_EQ(filled("^1 = [%1:, ^1:]2", {word("v"), list({"a"})}), "v = a");
  EXPECT_EQ(filled("^1 = [%1:, ^1:]2", {word("v"), list({})}), "v = ");
}

TEST(Template, TakesAsManyEntriesAsAnItemNames) {
  EXPECT_EQ(filled("for split [%1 = %2:,^1 = ^2:]1 ...", {list({"region", "North", "sex", "F"})}),
            "for split region = North,sex = F ...");
}

TEST(Template, FillsAListThatIsNotTheFirstArgument) {
  EXPECT_EQ(filled("^1 and ^2, [%1 = %2:,^1 = ^2:]3", {word("a"), word("b"), list({"r", "N"})}),
            "a and b, r = N");
}

TEST(Template, PrintsAListWithCommasWhereAPlainArgumentIsWanted) {
  EXPECT_EQ(filled("^1", {list({"a", "b"})}), "a, b");
}

TEST(Template, LeavesWhatIsNoPlaceholder) {
  EXPECT_EQ(filled("^ ^0 ^x 100% [a] [b:c", {word("v")}), "^ ^0 ^x 100% [a] [b:c");
  EXPECT_EQ(filled("", {}), "");
}

TEST(Template, LeavesAPlaceholderWithoutItsArgument) {
  EXPECT_EQ(filled("^1 ^2", {word("a")}), "a ^2");
  EXPECT_EQ(filled("[%1:, ^1:]3", {word("a")}), "[%1:, ^1:]3");
}

TEST(Template, DoesNotReadPlaceholdersInArguments) {
  EXPECT_EQ(filled("^1 ^2", {word("^2"), word("[%1:, ^1:]1")}), "^2 [%1:, ^1:]1");
}

TEST(Template, LeavesAListWithoutTheNumberOfItsArgument) {
  EXPECT_EQ(filled("[%1:, ^1:]x", {list({"a"})}), "[%1:, a:]x") << "only ^1 is a placeholder here";
  EXPECT_EQ(filled("[%2:, %1:]0", {list({"a"})}), "[%2:, %1:]0");
}

TEST(Template, LeavesWhatTheLastItemOfAListLacks) {
  EXPECT_EQ(filled("[%1 = %2:, ^1 = ^2:]1", {list({"a", "b", "c"})}), "a = b, c = ^2");
}

TEST(Template, PrintsASingleArgumentWhereAListIsWanted) {
  EXPECT_EQ(filled("v = [%1:, ^1:]1", {word("a")}), "v = a");
}

TEST(Template, LeavesNumbersThatNoArgumentCanHave) {
  EXPECT_EQ(filled("^123456789", {word("a")}), "^123456789");
}

}  // namespace
