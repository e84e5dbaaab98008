#include <gtest/gtest.h>

#include <chrono>
#include <clocale>
#include <cmath>
#include <string>
#include <vector>

#include "embedded/command/Lexer.h"

namespace embedded::command {

namespace {

std::string shown(const Lexeme& lexeme) {
  return std::to_string(lexeme.place.line) + ":" + std::to_string(lexeme.place.column) + ":" +
         std::to_string(lexeme.place.length) + " " + lexeme.text;
}

std::vector<std::string> lexemes(std::string_view text) {
  std::vector<std::string> all;
  for (const Lexeme& lexeme : lex(text).lexemes) {
    all.push_back(shown(lexeme));
  }
  return all;
}

std::vector<std::string> problems(std::string_view text) {
  std::vector<std::string> all;
  for (const LexProblem& problem : lex(text).problems) {
    all.push_back(std::to_string(problem.place.line) + ":" + std::to_string(problem.place.column) +
                  " " + std::string(problem.message.id));
  }
  return all;
}

double numberOf(std::string_view text) {
  const Lexed lexed = lex(text);
  EXPECT_EQ(lexed.lexemes.size(), 1U) << text;
  EXPECT_EQ(lexed.lexemes.front().kind, LexKind::Number) << text;
  return lexed.lexemes.front().number;
}

using Strings = std::vector<std::string>;

TEST(Lexer, CountsLinesAndCharactersFromOne) {
  EXPECT_EQ(lexemes("ab c\n  é=1"),
            (Strings{"1:1:2 ab", "1:4:1 c", "2:3:1 é", "2:4:1 =", "2:5:1 1"}));
}

TEST(Lexer, CountsCharactersNotBytes) {
  EXPECT_EQ(lexemes("'äöü€😀' x"), (Strings{"1:1:7 äöü€😀", "1:9:1 x"}));
}

TEST(Lexer, CountsOneLineForEveryKindOfLineBreak) {
  EXPECT_EQ(lexemes("a\r\nb\rc\nd"), (Strings{"1:1:1 a", "2:1:1 b", "3:1:1 c", "4:1:1 d"}));
}

TEST(Lexer, SeparatesByBlanksCommasAndLineBreaks) {
  EXPECT_EQ(lexemes("a,b\tc , d\xC2\xA0"
                    "e")
                .size(),
            5U);
}

TEST(Lexer, PassesOverAByteOrderMark) {
  EXPECT_EQ(lexemes("\xEF\xBB\xBF"
                    "a")
                .size(),
            1U);
}

TEST(Lexer, LeavesOutComments) {
  EXPECT_EQ(lexemes("a # b; 'c\nd#\n#"), (Strings{"1:1:1 a", "2:1:1 d"}));
}

TEST(Lexer, ReadsSigns) {
  EXPECT_EQ(lexemes("a..b*(/)="), (Strings{"1:1:1 a", "1:2:2 ..", "1:4:1 b", "1:5:1 *", "1:6:1 (",
                                           "1:7:1 /", "1:8:1 )", "1:9:1 ="}));
}

TEST(Lexer, DoublesAQuoteThatStandsForItself) {
  EXPECT_EQ(lexemes(R"('it''s' "a""b" '' "''")"),
            (Strings{"1:1:7 it's", "1:9:6 a\"b", "1:16:2 ", "1:19:4 ''"}));
}

TEST(Lexer, ReadsNumbersWithOptionalParts) {
  EXPECT_EQ(numberOf("5"), 5.0);
  EXPECT_EQ(numberOf(".5"), 0.5);
  EXPECT_EQ(numberOf("5."), 5.0);
  EXPECT_EQ(numberOf("-3.5"), -3.5);
  EXPECT_EQ(numberOf("+.25e+2"), 25.0);
  EXPECT_EQ(numberOf("1E-3"), 0.001);
  EXPECT_EQ(numberOf("0.1"), 0.1);
}

TEST(Lexer, ReadsMinusZeroAsZero) {
  EXPECT_FALSE(std::signbit(numberOf("-0")));
}

TEST(Lexer, EndsANumberAtARange) {
  EXPECT_EQ(lexemes("5..7"), (Strings{"1:1:1 5", "1:2:2 ..", "1:4:1 7"}));
}

TEST(Lexer, KnowsThePointInEveryLocale) {
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  for (const char* locale : {"de_DE.UTF-8", "de_DE", "C.UTF-8"}) {
    std::setlocale(LC_NUMERIC, locale);
    EXPECT_EQ(numberOf("1.5"), 1.5);
  }
  std::setlocale(LC_NUMERIC, before.c_str());
}

TEST(Lexer, RefusesWhatOnlyLooksLikeANumber) {
  for (const char* text :
       {"1a", "2020-01-01", "1.2.3", "1e400", "1e", "3%x", "12_", "-1.7976931348623157e308"}) {
    EXPECT_EQ(problems(text).size(), 1U) << text;
  }
  EXPECT_EQ(problems("x 2020-01-01"), (Strings{"1:3 Command bad number ^1 ..."}));
}

TEST(Lexer, RefusesCharactersWithoutMeaning) {
  EXPECT_EQ(problems("a ? b"), (Strings{"1:3 Command bad character ^1 ..."}));
  EXPECT_EQ(lex("\x1B").problems.front().arguments.front(), "U+001B");
}

TEST(Lexer, SaysWhereAnEndlessStringBegins) {
  EXPECT_EQ(problems("a\n 'b\nc"), (Strings{"2:2 Command open string ..."}));
  EXPECT_EQ(problems("'a''"), (Strings{"1:1 Command open string ..."}));
}

TEST(Lexer, RefusesWhatFollowsTheSemicolon) {
  EXPECT_EQ(problems("a; # b\n ,"), Strings());
  EXPECT_EQ(problems("a;\n b c"), (Strings{"2:2 Command text after end ..."}));
  EXPECT_EQ(problems("a;;"), (Strings{"1:3 Command text after end ..."}));
}

TEST(Lexer, RefusesBytesThatAreNoText) {
  for (const std::string& bad :
       {std::string("\xFF"), std::string("\xC3"), std::string("\xED\xA0\x80"),
        std::string("\xC0\x80"), std::string(1, '\0')}) {
    EXPECT_EQ(problems("a " + bad + " b"), (Strings{"1:3 Command bad encoding ..."}));
    EXPECT_EQ(problems("'a" + bad + "'"), (Strings{"1:3 Command bad encoding ..."}));
    EXPECT_EQ(problems("# " + bad + bad), (Strings{"1:3 Command bad encoding ..."}));
  }
}

TEST(Lexer, ShowsTheLineAsItCanBeShown) {
  const output::Place place = placeOf({2, 1, 1, 2}, "a\nb\tc\xFF\x1B\nd");
  EXPECT_EQ(place.lineText, "b c\uFFFD\uFFFD");
  EXPECT_EQ(placeOf({1, 1, 1, 0}, std::string(100000, 'x')).lineText, "");
}

// Ten times the text may take about ten times as long, not a hundred times.
TEST(Lexer, TakesTimeLinearInTheText) {
  const auto seconds = [](const std::string& unit, std::size_t times) {
    std::string text;
    for (std::size_t i = 0; i < times; ++i) {
      text += unit;
    }
    const auto begin = std::chrono::steady_clock::now();
    const Lexed lexed = lex(text);
    EXPECT_LE(lexed.problems.size(), 20U);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  };
  for (const std::string& unit :
       std::vector<std::string>{"a ", "1", "1.", "1-", "'", "''", "(", "é", "..", "?"}) {
    EXPECT_LT(seconds(unit, 500000), 40 * seconds(unit, 50000) + 0.2) << unit;
  }
}

TEST(Lexer, TakesMarksForPartsOfTheWordThatTheyStandIn) {
  EXPECT_EQ(lexemes("cafe\u0301 b\u0301c"), (Strings{"1:1:5 cafe\u0301", "1:7:3 b\u0301c"}));
}

TEST(Lexer, RefusesTheNumberThatStandsForAMissingOne) {
  EXPECT_EQ(problems("-1.7976931348623157e308"), (Strings{"1:1 Command bad number ^1 ..."}));
  EXPECT_EQ(problems("1.7976931348623157e308"), Strings());
}

}  // namespace

}  // namespace embedded::command
