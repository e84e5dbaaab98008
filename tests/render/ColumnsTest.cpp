// Text measured and broken in the columns of a terminal.
#include <gtest/gtest.h>

#include "render/Columns.h"

namespace {

using render::columnsOf;
using render::visible;
using render::wrapped;
using Lines = std::vector<std::string>;

TEST(ColumnsOf, CountsOneForALetterAndTwoForAWideCharacter) {
  EXPECT_EQ(columnsOf("abc"), 3U);
  EXPECT_EQ(columnsOf("\u55ab\u7159"), 4U);
}

TEST(ColumnsOf, CountsNothingForWhatJoinsTheCharacterBeforeIt) {
  EXPECT_EQ(columnsOf("e\u0301"), 1U) << "a combining accent";
  EXPECT_EQ(columnsOf("1\u20dd"), 1U) << "an enclosing circle";
  EXPECT_EQ(columnsOf("a\u200db"), 2U) << "a joiner that is not seen";
  EXPECT_EQ(columnsOf("\u1112\u1161\u11ab"), columnsOf("\ud55c"))
      << "a syllable of Hangul takes the same room in parts and as a whole";
}

TEST(ColumnsOf, CountsNothingForControlCharacters) {
  EXPECT_EQ(columnsOf("a\x7f"
                      "b"),
            2U);
}

TEST(Visible, MakesBlanksOfLineBreaksAndTabs) {
  EXPECT_EQ(visible("a\nb\rc\td"), "a b c d");
}

TEST(Visible, ReplacesWhatSteersTheTerminalAndBytesThatAreNoText) {
  EXPECT_EQ(visible("a\x1b[1m"), "a\uFFFD[1m");
  EXPECT_EQ(visible("del\x7f"), "del\uFFFD");
  EXPECT_EQ(visible("caf\xE9"), "caf\uFFFD");
}

TEST(Wrapped, BreaksAtBlanksAndTakesSeveralForOne) {
  EXPECT_EQ(wrapped("one  two three", 8), (Lines{"one two", "three"}));
  EXPECT_EQ(wrapped("", 8), Lines{""});
}

TEST(Wrapped, BreaksAWordThatIsWiderThanALine) {
  EXPECT_EQ(wrapped("abcdefgh", 3), (Lines{"abc", "def", "gh"}));
}

TEST(Wrapped, KeepsACharacterWhereNoLineHoldsIt) {
  EXPECT_EQ(wrapped("\u55ab\u7159", 1), (Lines{"\u55ab", "\u7159"}));
  EXPECT_EQ(wrapped("a", 0), Lines{"a"});
}

}  // namespace
