#include "Support.h"

namespace embedded::command_tests {

namespace {

using Strings = std::vector<std::string>;

std::vector<std::string> texts(const TokenList& tokens) {
  std::vector<std::string> all;
  for (const TokenInfoObj& token : tokens) {
    all.push_back(token.getString());
  }
  return all;
}

class Parser : public CommandTest {};

TEST_F(Parser, ReadsAWholeCommand) {
  ASSERT_EQ(parse("TASTE /TRY a b SHARE = 0.3, KINDS=SOUR SALTY ORDER=UP\n/TAKE RULE=CUT(-3.5);"),
            0);
  EXPECT_EQ(spec().getSubComListSize(), 2);
  EXPECT_EQ(texts(list()), (Strings{"a", "b"}));
  double share = 0.0;
  EXPECT_TRUE(parameter("TRY", "SHARE").getNumberValue(share));
  EXPECT_EQ(share, 0.3);
  EXPECT_EQ(parameter("TRY", "KINDS").getUpStringList(), (Strings{"SOUR", "SALTY"}));
  EXPECT_TRUE(parameter("TRY", "ORDER").isStringValueCase("up"));
  EXPECT_FALSE(parameter("TRY", "ORDER").isStringValueCase("DOWN"));
  std::string keyword;
  const ParamObj* cut = parameter("TAKE", "RULE").getStringAndQual(keyword);
  ASSERT_NE(cut, nullptr);
  EXPECT_EQ(keyword, "CUT");
  double at = 0.0;
  EXPECT_TRUE(cut->getNumberValue(at));
  EXPECT_EQ(at, -3.5);
}

TEST_F(Parser, LetsTheFirstSlashBeLeftOut) {
  EXPECT_EQ(parse("TASTE TRY a /TRAY"), 0);
  EXPECT_EQ(spec().getSubComListSize(), 2);
}

TEST_F(Parser, ReadsACommandWithoutSubcommands) {
  EXPECT_EQ(parse("TASTE ;"), 0);
  EXPECT_EQ(spec().getSubComListSize(), 0);
  EXPECT_EQ(spec().getSubComObj("TRY"), nullptr);
}

TEST_F(Parser, ReadsNamesWithoutRegardToCaseAndAbbreviated) {
  ASSERT_EQ(parse("tas /tRy a k=sal so o=d /ta r=g"), 0);
  EXPECT_EQ(spec().getSubComObj("TRY")->getSubComExtName(), "tRy");
  EXPECT_EQ(parameter("TRY", "KINDS").getUpStringList(), (Strings{"SALTY", "SOUR"}));
  std::string keyword;
  EXPECT_FALSE(parameter("TAKE", "RULE").getStringAndQual(keyword)->isLeadingToken());
  EXPECT_EQ(keyword, "GROUPS");
}

TEST_F(Parser, TakesAWholeNameBeforeALongerOneThatItBegins) {
  ASSERT_EQ(parse("TASTE /TRY a KINDS=SWEET"), 0);
  EXPECT_EQ(parameter("TRY", "KINDS").getUpStringList(), (Strings{"SWEET"}));
}

TEST_F(Parser, RefusesAnAbbreviationOfSeveralNames) {
  EXPECT_EQ(messagesOf("TASTE /TRY a KINDS=SWE"),
            (Strings{"1:20:3 Name ambiguous ^1 [%1:, ^1:]2 ... [SWE] [SWEET, SWEETISH]"}));
  EXPECT_EQ(messagesOf("TASTE /T a"),
            (Strings{"1:8:1 Name ambiguous ^1 [%1:, ^1:]2 ... [T] [TRY, TAKE, TRAY]"}));
}

TEST_F(Parser, ReadsQualifiersWithValues) {
  ASSERT_EQ(parse("TASTE /TAKE RULE=LEVEL(1 \"b c\", yes)"), 0);
  std::string keyword;
  const ParamObj* level = parameter("TAKE", "RULE").getStringAndQual(keyword);
  const TokenList tokens = level->getTokenList();
  EXPECT_EQ(texts(tokens), (Strings{"1", "b c", "yes"}));
  EXPECT_TRUE(tokens[0].IsNumber());
  EXPECT_EQ(tokens[0].getNumeric(), 1.0);
  EXPECT_FALSE(tokens[1].IsNumber());
  EXPECT_TRUE(level->isLeadingToken());
}

TEST_F(Parser, TakesEmptyParenthesesForNoValues) {
  ASSERT_EQ(parse("TASTE /TAKE RULE=GROUPS()"), 0);
  std::string keyword;
  EXPECT_FALSE(parameter("TAKE", "RULE").getStringAndQual(keyword)->isLeadingToken());
}

TEST_F(Parser, ReservesWordsInListsOnlyAndWithoutQuotes) {
  ASSERT_EQ(parse("TASTE /TRY a with b By 'BY' c /TAKE RULE=LEVEL(by with)"), 0);
  const TokenList tokens = list();
  EXPECT_EQ(tokens[1].getOperatorCode(), TokenSequenceBase::OperatorWith);
  EXPECT_EQ(tokens[3].getOperatorCode(), TokenSequenceBase::OperatorBy);
  EXPECT_EQ(static_cast<int>(tokens[1].getOperatorCode()), 31);
  EXPECT_EQ(static_cast<int>(tokens[3].getOperatorCode()), 34);
  EXPECT_TRUE(tokens[1].IsReservedWord());
  EXPECT_FALSE(tokens[4].IsReservedWord());
  std::string keyword;
  for (const TokenInfoObj& token :
       parameter("TAKE", "RULE").getStringAndQual(keyword)->getTokenList()) {
    EXPECT_FALSE(token.IsReservedWord());
  }
}

// One violation each: the command, and what is said of it.
TEST_F(Parser, RefusesEveryViolationWithItsPlace) {
  const std::pair<std::string, std::string> cases[] = {
      {"", "1:1:1 Command missing ^1 ... [TASTE]"},
      {"/TRY a", "1:1:1 Command missing ^1 ... [TASTE]"},
      {"TASTY /TRY a", "1:1:5 Command unknown ^1 ^2 ... [TASTY] [TASTE] TASTE"},
      {"TASTE /", "1:8:1 Command nothing after slash ..."},
      {"TASTE //TRY a", "1:8:1 Command slash wanted ^1 ... [/]"},
      {"TASTE /'TRY' a", "1:8:5 Command slash wanted ^1 ... [TRY]"},
      {"TASTE /TRX a", "1:8:3 Subcommand unknown ^1 ... [TRX] TRY"},
      {"TASTE /PLOT a", "1:8:4 Subcommand unknown ^1 ... [PLOT]"},
      {"TASTE /TRY a /TRY b", "1:15:3 Subcommand twice ^1 ... [TRY]"},
      {"TASTE /TRY", "1:8:3 Subcommand list wanted ^1 ... [TRY]"},
      {"TASTE /TRY SHARE=.5", "1:8:3 Subcommand list wanted ^1 ... [TRY]"},
      {"TASTE /TAKE a RULE=FIRST", "1:13:1 Subcommand list refused ^1 ^2 ... [TAKE] [a]"},
      {"TASTE /TRY a SHRE=.5", "1:14:4 Parameter unknown ^1 ^2 ... [SHRE] [TRY] SHARE"},
      {"TASTE /TRY a ALPHA=", "1:14:5 Parameter unknown ^1 ^2 ... [ALPHA] [TRY]"},
      {"TASTE /TRY a ALPHA=\n/TRAY", "1:14:5 Parameter unknown ^1 ^2 ... [ALPHA] [TRY]"},
      {"TASTE /TRY a LIMIT=1 LIMIT=2", "1:22:5 Parameter twice ^1 ^2 ... [LIMIT] [TRY]"},
      {"TASTE /TRY a LIMIT=", "1:14:5 Parameter value wanted ^1 ... [LIMIT]"},
      {"TASTE /TRY a LIMIT= KINDS=SOUR", "1:14:5 Parameter value wanted ^1 ... [LIMIT]"},
      {"TASTE /TRY a LIMIT=1 2", "1:22:1 Parameter one value ^1 ^2 ... [LIMIT] [2]"},
      {"TASTE /TRY a LIMIT=x", "1:20:1 Parameter number wanted ^1 ^2 ... [LIMIT] [x]"},
      {"TASTE /TRY a LIMIT='1'", "1:20:3 Parameter number wanted ^1 ^2 ... [LIMIT] [1]"},
      {"TASTE /TRY a SHARE=0", "1:20:1 Number not above ^1 ^2 ^3 ... [SHARE] [0] [0]"},
      {"TASTE /TRY a SHARE=1.0", "1:20:3 Number not below ^1 ^2 ^3 ... [SHARE] [1.0] [1]"},
      {"TASTE /TRY a LIMIT=-.5", "1:20:3 Number too low ^1 ^2 ^3 ... [LIMIT] [-.5] [0]"},
      {"TASTE /TRY a LIMIT=101", "1:20:3 Number too high ^1 ^2 ^3 ... [LIMIT] [101] [100]"},
      {"TASTE /TRY a KINDS=SWEAT", "1:20:5 Keyword unknown ^1 ^2 ... [SWEAT] [KINDS] SWEET"},
      {"TASTE /TRY a KINDS=1", "1:20:1 Parameter keyword wanted ^1 ^2 ... [KINDS] [1]"},
      {"TASTE /TRY a KINDS='SOUR'", "1:20:6 Parameter keyword wanted ^1 ^2 ... [KINDS] [SOUR]"},
      {"TASTE /TRY a ORDER=UP DOWN", "1:23:4 Parameter one value ^1 ^2 ... [ORDER] [DOWN]"},
      {"TASTE /TAKE RULE=LAST", "1:18:4 Keyword unknown ^1 ^2 ... [LAST] [RULE]"},
      {"TASTE /TAKE RULE=FIRST(1)", "1:18:5 Keyword takes no values ^1 ... [FIRST]"},
      {"TASTE /TAKE RULE=FIRST CUT(1)", "1:24:3 Parameter one value ^1 ^2 ... [RULE] [CUT]"},
      {"TASTE /TAKE RULE=LEVEL", "1:18:5 Parameter value wanted ^1 ... [LEVEL]"},
      {"TASTE /TAKE RULE=LEVEL()", "1:18:5 Parameter value wanted ^1 ... [LEVEL]"},
      {"TASTE /TAKE RULE=CUT", "1:18:3 Parameter value wanted ^1 ... [CUT]"},
      {"TASTE /TAKE RULE=CUT(1 2)", "1:24:1 Parameter one value ^1 ^2 ... [CUT] [2]"},
      {"TASTE /TAKE RULE=CUT('x')", "1:22:3 Parameter number wanted ^1 ^2 ... [CUT] [x]"},
      {"TASTE /TAKE RULE=LEVEL(1 /TRAY", "1:23:1 Parenthesis open ..."},
      {"TASTE /TAKE RULE=LEVEL(1 * 2)", "1:26:1 Parenthesis content ^1 ... [*]"},
      {"TASTE /TAKE RULE=LEVEL(1 (2))", "1:26:1 Parenthesis content ^1 ... [(]"},
      {"TASTE /TRY a ()", "1:14:1 Parenthesis empty ..."},
      {"TASTE /TRY a..", "1:13:2 Range incomplete ..."},
      {"TASTE /TRY ..a", "1:12:2 Range incomplete ..."},
      {"TASTE /TRY a..b..c", "1:16:2 Range incomplete ..."},
      {"TASTE /TRY a = b", ""},
      {"TASTE /TRY a ; /TRAY", "1:16:1 Command text after end ..."},
      {"TASTE /TRY a %", "1:14:1 Command bad character ^1 ... [%]"},
      {"TASTE /TRY a LIMIT=5x", "1:20:2 Command bad number ^1 ... [5x]"},
      {"TASTE /TRY a\n  'b", "2:3:1 Command open string ..."},
  };
  for (const auto& [command, expected] : cases) {
    const bool refused = parse(command) != 0;
    const Strings told = messages();
    EXPECT_TRUE(refused) << command;
    if (!expected.empty()) {
      EXPECT_EQ(told.front(), expected) << command;
    }
  }
}

TEST_F(Parser, TellsEveryMistakeInTheOrderOfTheirPlaces) {
  EXPECT_EQ(messagesOf("TASTE /TRY a SHARE=2 KINDS=SOUP ? \n/TAKE RULE=LEVEL /TRIE"),
            (Strings{"1:20:1 Number not below ^1 ^2 ^3 ... [SHARE] [2] [1]",
                     "1:28:4 Keyword unknown ^1 ^2 ... [SOUP] [KINDS] SOUR",
                     "1:33:1 Command bad character ^1 ... [?]",
                     "2:12:5 Parameter value wanted ^1 ... [LEVEL]",
                     "2:19:4 Subcommand unknown ^1 ... [TRIE]"}));
}

TEST_F(Parser, KeepsTheLineOfTheCommand) {
  parse("TASTE\n\t/TRY a SHARE=2\n/TRAY");
  ASSERT_EQ(session_.document.messages.size(), 1U);
  EXPECT_EQ(session_.document.messages[0].where->lineText, " /TRY a SHARE=2");
}

TEST_F(Parser, TellsOnlyTheFirstOfVeryManyMistakes) {
  std::string command = "TASTE /TRY a KINDS=";
  for (int i = 0; i < 100000; ++i) {
    command += "oops ";
  }
  const Strings told = messagesOf(command);
  EXPECT_EQ(told.size(), 21U);
  EXPECT_EQ(told.back(), "Command further mistakes ...");
}

TEST_F(Parser, SurvivesHostileTexts) {
  const std::string longWord(2000000, 'x');
  for (const std::string& command :
       {"TASTE /" + longWord, "TASTE /TRY " + longWord + "=1", "TASTE /TAKE RULE=" + longWord,
        "TASTE /TRY a LIMIT=" + std::string(2000000, '9'), "TASTE /TRY " + std::string(500000, '('),
        "TASTE /TAKE RULE=LEVEL" + std::string(500000, '('), std::string(500000, '/'),
        "TASTE " + std::string(500000, '='), std::string(10, '\0'), "TASTE '" + longWord}) {
    EXPECT_NE(parse(command), 0);
    for (const std::string& told : messages()) {
      EXPECT_LT(told.size(), 400U);
    }
  }
}

// Mistakes of one kind, each of which is found in another way.
TEST_F(Parser, TellsTheFirstMistakesWhateverTheyAre) {
  for (const char* wrong : {"1 ", "SWE ", "SOUP "}) {
    std::string command = "TASTE /TRY a KINDS=";
    for (int i = 0; i < 25; ++i) {
      command += wrong;
    }
    const Strings told = messagesOf(command);
    EXPECT_EQ(told.size(), 21U) << wrong;
    EXPECT_EQ(told.back(), "Command further mistakes ...") << wrong;
  }
}

TEST_F(Parser, RefusesAParenthesisThatNothingOpened) {
  EXPECT_EQ(messagesOf("TASTE /TRY a )"), (Strings{"1:14:1 Command bad character ^1 ... [)]"}));
  EXPECT_EQ(messagesOf("TASTE /TRY a = = b"),
            (Strings{"1:8:3 Subcommand list wanted ^1 ... [TRY]",
                     "1:12:1 Parameter unknown ^1 ^2 ... [a] [TRY]"}));
}

}  // namespace

}  // namespace embedded::command_tests
