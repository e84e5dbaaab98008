// Messages of procedures: they belong to what the procedure looked at last.
#include "Support.h"
#include "host/errors/ParserMessage.h"

namespace embedded::command_tests {

namespace {

using Strings = std::vector<std::string>;

class Places : public CommandTest {
 protected:
  ParserMessage message_{"TASTE", "Taste"};
  Strings error() {
    message_.GenericError("Wrong ...");
    return messages();
  }
};

TEST_F(Places, BeginAtTheCommand) {
  parse("  TASTE /TRAY");
  EXPECT_EQ(error(), (Strings{"1:3:5 Wrong ..."}));
}

TEST_F(Places, AreThoseOfTheTokenLookedAt) {
  parse("TASTE /TRY a bb WITH c");
  const TokenList tokens = list();
  EXPECT_EQ(error(), (Strings{"1:12:1 Wrong ..."}));
  tokens[1].getString();
  EXPECT_EQ(error(), (Strings{"1:14:2 Wrong ..."}));
}

TEST_F(Places, AreThoseOfAReservedWordThatWasLookedFor) {
  parse("TASTE /TRY WITH c d");
  for (const TokenInfoObj& token : list()) {
    token.IsReservedWord();
  }
  EXPECT_EQ(error(), (Strings{"1:12:4 Wrong ..."}));
}

TEST_F(Places, AreThoseOfTheParameterLookedAt) {
  parse("TASTE /TRY a KINDS=SOUR SOUR LIMIT=3\n/TAKE RULE=FIRST");
  parameter("TRY", "KINDS").getUpStringList();
  EXPECT_EQ(error(), (Strings{"1:14:5 Wrong ..."}));
  std::string keyword;
  parameter("TAKE", "RULE").getStringAndQual(keyword);
  EXPECT_EQ(error(), (Strings{"2:12:5 Wrong ..."}));
}

TEST_F(Places, AreThoseOfTheRepeatedVariable) {
  parse("TASTE /TRY a b a");
  VarSpecObj validator(source_, "TRY", "");
  validator.ValidateVariables(list(), UPSpecTypes::RepeatPassedThrough);
  EXPECT_EQ(error(), (Strings{"1:16:1 Wrong ..."}));
}

}  // namespace

}  // namespace embedded::command_tests
