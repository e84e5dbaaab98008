// Text helpers: trimming, folding, collation, nearest names.
#include <gtest/gtest.h>

#include <algorithm>

#include "embedded/errors/Error.h"
#include "embedded/session/Session.h"
#include "embedded/text/Collation.h"
#include "embedded/text/Nearest.h"
#include "host/text/KORAMBstr.h"

namespace embedded::text {

namespace {

std::string trimmed(std::string text) {
  KORAMBstrtrim_A(text);
  return text;
}
std::string upper(std::string text) {
  KORAMBstrupr_A(text);
  return text;
}
std::string lower(std::string text) {
  KORAMBstrlwr_A(text);
  return text;
}

TEST(Trim, TakesTrailingBlanksOffAndNothingElse) {
  EXPECT_EQ(trimmed("  a b  "), "  a b");
  EXPECT_EQ(trimmed("   "), "");
  EXPECT_EQ(trimmed(""), "");
  EXPECT_EQ(trimmed("a\t"), "a\t");
}

TEST(Fold, KnowsLettersBeyondAscii) {
  EXPECT_EQ(upper("a\u00E4\u03B2"), "A\u00C4\u0392");
  EXPECT_EQ(lower("A\u00C4\u0392"), "a\u00E4\u03B2");
  EXPECT_EQ(upper("stra\u00DFe"), "STRASSE");
}

TEST(Fold, LeavesWhatIsNoTextAsItIs) {
  EXPECT_EQ(upper("a\xFF"), "a\xFF");
  EXPECT_EQ(upper(""), "");
}

TEST(Numbers, AreWrittenInDecimalDigits) {
  EXPECT_EQ(KORAMBltoa_A(0), "0");
  EXPECT_EQ(KORAMBltoa_A(-2147483647 - 1), "-2147483648");
}

class Collating : public ::testing::Test {
 protected:
  Session session_;
  Session::Scope scope_{session_};
};

TEST_F(Collating, IsByCodePointWhenNoLocaleIsGiven) {
  EXPECT_LT(KORAMBstrncoll_A("Z", "a", 1), 0);
  EXPECT_LT(KORAMBstrncoll_A("z", "\u00E4", 2), 0);
  EXPECT_GT(KORAMBstrncoll_A("\u20AC", "\u00E4", 3), 0);
  EXPECT_EQ(KORAMBstrncoll_A("abc", "abc", 3), 0);
  EXPECT_LT(KORAMBstrncoll_A("ab", "abc", 3), 0);
}

TEST_F(Collating, LooksAtTheFirstBytesAlone) {
  EXPECT_EQ(KORAMBstrncoll_A("abcX", "abcY", 3), 0);
  EXPECT_LT(KORAMBstrncoll_A("abcX", "abcY", 4), 0);
  EXPECT_EQ(KORAMBstrncoll_A("a", "b", 0), 0);
  EXPECT_EQ(KORAMBstrncoll_A("abc", "abc", 99), 0);
}

TEST_F(Collating, FollowsTheLocaleOfTheSession) {
  session_.collation = Collation("sv");
  EXPECT_GT(KORAMBstrncoll_A("\u00E4", "z", 2), 0);
  session_.collation = Collation("de");
  EXPECT_LT(KORAMBstrncoll_A("\u00E4", "z", 2), 0);
  EXPECT_LT(KORAMBstrncoll_A("a", "B", 1), 0);
}

// Texts that a language takes for equal still have an order, so that the order is total.
TEST_F(Collating, BreaksTiesByBytes) {
  const Collation german("de");
  const std::string composed = "\u00E4";
  const std::string decomposed = "a\u0308";
  EXPECT_NE(german.compare(composed, decomposed), 0);
  EXPECT_EQ(german.compare(composed, decomposed), -german.compare(decomposed, composed));
}

TEST(Collation, RefusesALocaleThatIsNone) {
  for (const char* tag : {"no such locale", "xx", "!!", "-", "de-", "x"}) {
    try {
      const Collation collation{std::string(tag)};
      ADD_FAILURE() << tag;
    } catch (const Error& error) {
      EXPECT_EQ(error.kind(), ErrorKind::Usage);
    }
  }
}

TEST(Nearest, IsTheNameOfTheFewestEdits) {
  const std::vector<std::string> names{"TESTVAL", "TESTTYPES", "CITYPES"};
  EXPECT_EQ(nearest("TESTVALUE", names), "TESTVAL");
  EXPECT_EQ(nearest("cittypes", names), "CITYPES");
  EXPECT_EQ(nearest("ALPHA", names), "");
  EXPECT_EQ(nearest("", names), "");
  EXPECT_EQ(nearest(std::string(100000, 'T'), names), "");
}

TEST(Nearest, PassesOverNamesThatAreFarTooLong) {
  const std::string longName(201, 'a');
  EXPECT_EQ(nearest(std::string(200, 'a'), std::vector<std::string>{longName}), "");
  EXPECT_EQ(nearest("abc", std::vector<std::string>{longName, "abd"}), "abd");
  EXPECT_EQ(nearest(std::string(199, 'a'), std::vector<std::string>{std::string(200, 'a')}),
            std::string(200, 'a'));
}

}  // namespace

}  // namespace embedded::text
