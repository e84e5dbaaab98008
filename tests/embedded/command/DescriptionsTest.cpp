// Commands of every shape that a description can have, beyond those of the made-up command.
#include <optional>
#include <utility>

#include "Support.h"
#include "embedded/command/Tokens.h"
#include "host/command/UniversalParser.h"
#include "host/distributions/MCMV.h"

namespace embedded::command_tests {

namespace {

using Strings = std::vector<std::string>;

ParamDescriptor param(const char* name, UPSpecTypes::ParamSpec spec, bool repeatable,
                      bool valueRequired) {
  return {name, spec, repeatable, valueRequired, UPSpecTypes::BracketsHost};
}

// The command POUR:
//   /GLASS list OF=values (any number of them), SIZE=number (may be left empty); any number of them
//   /BILL (required)
CommandDescriptor pourCommand() {
  SubComDescriptor glass("GLASS", UPSpecTypes::SubComPlain, true, false);
  glass.setExportParamDesc(UPSpecTypes::ParamTokenList, false);
  glass.addParamDesc(param("OF", UPSpecTypes::ParamTokenList, true, true));
  glass.addParamDesc(param("SIZE", UPSpecTypes::ParamNumber, false, false));
  CommandDescriptor command("POUR", "Pour");
  command.addSubComDesc(glass);
  command.addSubComDesc(SubComDescriptor("BILL", UPSpecTypes::SubComPlain, false, true));
  return command;
}

class Descriptions : public CommandTest {
 protected:
  // The messages that reading a command of this description leads to.
  Strings read(const std::string& command, const CommandDescriptor& description = pourCommand()) {
    session_.commandText = command;
    session_.commandFocus.reset();
    spec_.emplace();
    const KORA_TokenSequence tokens(true);
    const bool read = UniversalParser(tokens, *spec_, description).getCommandSpecifications() == 0;
    Strings told = messages();
    EXPECT_EQ(read, told.empty()) << command;
    return told;
  }
  const SubComObj& subcommand(const char* name) const { return *spec_->getSubComObj(name); }
  int subcommands() const { return spec_->getSubComListSize(); }

 private:
  std::optional<CommandSpec> spec_;
};

TEST_F(Descriptions, LetWhatIsRepeatableStandMoreThanOnce) {
  EXPECT_EQ(read("POUR /GLASS a OF=b OF=c /GLASS d /BILL"), Strings());
  EXPECT_EQ(subcommands(), 3);
  EXPECT_EQ(read("POUR /GLASS a SIZE=1 SIZE=2 /BILL /BILL"),
            (Strings{"1:22:4 Parameter twice ^1 ^2 ... [SIZE] [GLASS]",
                     "1:36:4 Subcommand twice ^1 ... [BILL]"}));
}

TEST_F(Descriptions, AskForWhatIsRequired) {
  EXPECT_EQ(read("POUR /GLASS a"), (Strings{"1:14:1 Subcommand missing ^1 ... [BILL]"}));
  EXPECT_EQ(read("POUR /BILL"), Strings());
}

TEST_F(Descriptions, LetAListOrAValueBeLeftOut) {
  EXPECT_EQ(read("POUR /GLASS SIZE= /BILL"), Strings());
  EXPECT_EQ(subcommand("GLASS").exportParamObj(), nullptr);
  double size = 7.0;
  EXPECT_FALSE(subcommand("GLASS").getParamObj("SIZE")->getNumberValue(size));
  EXPECT_EQ(size, 7.0);
  EXPECT_EQ(read("POUR /GLASS OF= /BILL"), (Strings{"1:13:2 Parameter value wanted ^1 ... [OF]"}));
}

TEST_F(Descriptions, ReadListsAsValuesOfParameters) {
  ASSERT_EQ(read("POUR /GLASS OF=a..c 'Event Count' SIZE=3 /BILL"), Strings());
  EXPECT_EQ(subcommand("GLASS").getParamObj("OF")->getTokenList().size(), 2U);
}

// Each copy is a description of its own: what one is given later does not show in the other.
TEST_F(Descriptions, AreValues) {
  ParamDescriptor size = param("SIZE", UPSpecTypes::ParamNumber, false, true);
  ParamDescriptor other = param("OF", UPSpecTypes::ParamTokenList, false, true);
  other = size;
  other.setUpperBoundary(1.0, UPSpecTypes::UpperClosed);
  const ParamDescriptor& itself = size;
  size = itself;
  SubComDescriptor bounded("BOUNDED", UPSpecTypes::SubComPlain, false, false);
  bounded.addParamDesc(other);
  SubComDescriptor free("FREE", UPSpecTypes::SubComPlain, false, false);
  SubComDescriptor copy("COPY", UPSpecTypes::SubComPlain, false, false);
  copy = free;
  free.addParamDesc(size);
  const SubComDescriptor& same = free;
  free = same;
  CommandDescriptor made("POUR", "Pour");
  made.addSubComDesc(bounded);
  made.addSubComDesc(free);
  const CommandDescriptor command(std::move(made));
  EXPECT_EQ(read("POUR /BOUNDED SIZE=2 /FREE SIZE=2", command),
            (Strings{"1:20:1 Number too high ^1 ^2 ^3 ... [SIZE] [2] [1]"}));
  CommandDescriptor copied("POUR", "Pour");
  copied.addSubComDesc(copy);
  EXPECT_EQ(read("POUR /FREE SIZE=2", copied),
            (Strings{"1:12:4 Parameter unknown ^1 ^2 ... [SIZE] [FREE]"}));
}

using Answers = CommandTest;

// What a procedure is told that asks for something else than was written.
TEST_F(Answers, SayThatThereIsNoSuchThing) {
  ASSERT_EQ(parse("TASTE /TRY a KINDS=SOUR SALTY /TAKE RULE=GROUPS()"), 0);
  EXPECT_FALSE(parameter("TRY", "KINDS").isStringValueCase("SOUR")) << "there are two";
  EXPECT_TRUE(parameter("TRY", "KINDS").isLeadingToken());
  EXPECT_TRUE(parameter("TAKE", "RULE").isLeadingToken());
  std::string keyword = "untouched";
  EXPECT_EQ(parameter("TRY", "KINDS").getStringAndQual(keyword), nullptr);
  EXPECT_EQ(keyword, "untouched");
  EXPECT_TRUE(parameter("TAKE", "RULE").getStringAndQual(keyword)->getTokenList().empty());
  EXPECT_EQ(list()[0].getNumeric(), MCMV::Missing) << "a name is no number";
  double number = 7.0;
  EXPECT_FALSE(spec().getSubComObj("TRY")->exportParamObj()->getNumberValue(number));
  EXPECT_EQ(number, 7.0);
}

TEST(Spot, IsEqualWhereAllOfItIs) {
  const command::Spot spot{2, 5, 3, 10};
  EXPECT_EQ(spot, (command::Spot{2, 5, 3, 10}));
  EXPECT_FALSE(spot == (command::Spot{2, 5, 4, 10}));
  EXPECT_FALSE(spot == (command::Spot{1, 5, 3, 10}));
}

}  // namespace

}  // namespace embedded::command_tests
