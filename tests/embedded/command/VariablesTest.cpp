// Validators: names, ranges, repeats, qualifiers, common variables.
#include <algorithm>

#include "Support.h"

namespace embedded::command_tests {

namespace {

using Strings = std::vector<std::string>;
using Indices = std::vector<std::int32_t>;

class Variables : public CommandTest {
 protected:
  // The variables that this list stands for; none when it is refused.
  Indices variablesOf(const std::string& written,
                      UPSpecTypes::RepeatVarOptions repeats = UPSpecTypes::RepeatPassedThrough) {
    VarSpecObj validator(source_, "TRY", "");
    EXPECT_EQ(parse("TASTE /TRY " + written), 0);
    return validator.ValidateVariables(list(), repeats) ? validator.GetValidVarList() : Indices();
  }
};

TEST_F(Variables, FindsNamesInEveryForm) {
  EXPECT_EQ(variablesOf("b A 'Event Count' \"event count\" 'by'"), (Indices{1, 0, 6, 6, 7}));
}

TEST_F(Variables, TakesAnExactNameFirst) {
  session_.dictionary.variables[1].name = "A";
  EXPECT_EQ(variablesOf("A a"), (Indices{1, 0}));
}

TEST_F(Variables, ReadsRangesInTheOrderOfTheData) {
  EXPECT_EQ(variablesOf("a..c"), (Indices{0, 1, 2}));
  EXPECT_EQ(variablesOf("c .. 'Event Count'"), (Indices{2, 3, 4, 5, 6}));
  EXPECT_EQ(variablesOf("b..b"), (Indices{1}));
}

TEST_F(Variables, LeavesWeightAndSplitsOutOfTheStar) {
  const Indices all = variablesOf("*");
  EXPECT_EQ(all.size(), 11U);
  EXPECT_EQ(std::count(all.begin(), all.end(), 4), 0);
  EXPECT_EQ(std::count(all.begin(), all.end(), 12), 0);
}

TEST_F(Variables, RefusesWhatIsNoVariable) {
  const std::pair<std::string, std::string> cases[] = {
      {"a gradee", "1:14:6 Variable unknown ^1 ... [gradee] grade"},
      {"a xyzzy", "1:14:5 Variable unknown ^1 ... [xyzzy]"},
      {"a..zz", "1:15:2 Variable unknown ^1 ... [zz]"},
      {"c..a", "1:12:4 Range backward ^1 ^2 ... [c] [a]"},
      {"a 1", "1:14:1 Variable expected ^1 ... [1]"},
      {"a BY b", "1:14:2 Variable name reserved ^1 ... [BY]"},
      {"a (PAIRED)", "1:15:6 Qualifier refused ^1 ... [PAIRED]"},
  };
  for (const auto& [written, expected] : cases) {
    EXPECT_EQ(variablesOf(written), Indices()) << written;
    EXPECT_EQ(messages(), (Strings{expected})) << written;
  }
}

TEST_F(Variables, TellsEveryUnknownNameOfAListButNotThousands) {
  variablesOf("q1 q2 a q3");
  EXPECT_EQ(messages().size(), 3U);
  std::string many;
  for (int i = 0; i < 5000; ++i) {
    many += " q" + std::to_string(i);
  }
  variablesOf(many);
  EXPECT_EQ(messages().size(), 20U);
}

TEST_F(Variables, RefusesRepeatsOrPassesThemThrough) {
  EXPECT_EQ(variablesOf("a b a"), (Indices{0, 1, 0}));
  EXPECT_EQ(variablesOf("a b A", UPSpecTypes::RepeatRefused), Indices());
  EXPECT_EQ(messages(), (Strings{"1:16:1 Variable repeated ^1 ^2 ... [a] [TRY]"}));
}

TEST_F(Variables, KeepsQualifiersApartWhereTheyAreAllowed) {
  VarSpecObj validator(source_, "TRY", "WITH");
  validator.SetAllowQualifiers(true);
  parse("TASTE /TRY a b (paired)");
  EXPECT_TRUE(validator.ValidateVariables(list(), UPSpecTypes::RepeatPassedThrough));
  EXPECT_EQ(validator.GetValidVarList(), (Indices{0, 1}));
  ASSERT_EQ(validator.GetQualTokenList().size(), 1U);
  EXPECT_EQ(validator.GetQualTokenList()[0].getUpperString(), "PAIRED");
}

TEST_F(Variables, WantsQualifiersAtTheEnd) {
  VarSpecObj validator(source_, "TRY", "WITH");
  validator.SetAllowQualifiers(true);
  parse("TASTE /TRY a (paired) b");
  EXPECT_FALSE(validator.ValidateVariables(list(), UPSpecTypes::RepeatPassedThrough));
  EXPECT_EQ(messages(), (Strings{"1:15:6 Qualifier refused ^1 ... [paired]"}));
}

TEST_F(Variables, ReadsASingleVariable) {
  VarSpecObj validator(source_, "TRY", "BY");
  parse("TASTE /TRY b a..c nosuch");
  EXPECT_EQ(validator.ValidateVariable(list()[0]), 1);
  EXPECT_LT(validator.ValidateVariable(list()[1]), 0);
  EXPECT_LT(validator.ValidateVariable(list()[2]), 0);
  EXPECT_EQ(messages(), (Strings{"1:14:4 Variable one wanted ^1 ... [a]",
                                 "1:19:6 Variable unknown ^1 ... [nosuch]"}));
}

TEST_F(Variables, NamesAVariableThatTwoListsHaveInCommon) {
  VarSpecObj weight(source_, "WEIGHT", "");
  EXPECT_TRUE(weight.SetVariable(4));
  VarSpecObj validator(source_, "TRY", "BY");
  parse("TASTE /TRY a W");
  EXPECT_TRUE(validator.ValidateVariables(list(), UPSpecTypes::RepeatPassedThrough));
  EXPECT_FALSE(validator.CheckCommonVars(weight));
  EXPECT_EQ(messages(), (Strings{"1:14:1 Variable in common ^1 ^2 ^3 ... [w] [TRY BY] [WEIGHT]"}));
  parse("TASTE /TRY a b");
  EXPECT_TRUE(validator.ValidateVariables(list(), UPSpecTypes::RepeatPassedThrough));
  EXPECT_TRUE(validator.CheckCommonVars(weight));
}

TEST_F(Variables, RefusesRepeatsAmongLoadedVariables) {
  VarSpecObj splits(source_, "SPLIT FILE", "");
  const Indices twice{2, 3, 2};
  EXPECT_FALSE(splits.SetVariables(twice, UPSpecTypes::RepeatRefused));
  EXPECT_TRUE(splits.SetVariables(twice, UPSpecTypes::RepeatPassedThrough));
}

TEST_F(Variables, KeepsSilentWhenToldTo) {
  VarSpecObj validator(source_, "TRY", "");
  validator.SetErrorReport(false);
  parse("TASTE /TRY nosuch");
  EXPECT_FALSE(validator.ValidateVariables(list(), UPSpecTypes::RepeatPassedThrough));
  EXPECT_EQ(messages(), Strings());
}

TEST_F(Variables, TellsTheSessionWhichColumnsTheRunNeeds) {
  variablesOf("c a c");
  VarSpecObj weight(source_, "WEIGHT", "");
  weight.SetVariable(4);
  EXPECT_EQ(session_.columnsInUse, (std::vector<int>{2, 0}));
}

TEST_F(Variables, MayStandOnTwoLinesAsARange) {
  EXPECT_EQ(variablesOf("a..\nc"), (Indices{0, 1, 2}));
  EXPECT_EQ(variablesOf("c..\n a"), Indices());
  EXPECT_EQ(messages(), (Strings{"1:12:1 Range backward ^1 ^2 ... [c] [a]"}));
}

TEST_F(Variables, NamesBothEndsOfARangeThatAreUnknown) {
  EXPECT_EQ(variablesOf("zz..b"), Indices());
  EXPECT_EQ(messages(), (Strings{"1:12:2 Variable unknown ^1 ... [zz]"}));
  EXPECT_EQ(variablesOf("zz..xx"), Indices());
  EXPECT_EQ(messages(), (Strings{"1:12:2 Variable unknown ^1 ... [zz]",
                                 "1:16:2 Variable unknown ^1 ... [xx]"}));
}

TEST_F(Variables, TellsNoMoreThanItsMostAlsoInTheMiddleOfARange) {
  std::string many;
  for (int i = 0; i < 19; ++i) {
    many += " q" + std::to_string(i);
  }
  variablesOf(many + " zz..yy");
  EXPECT_EQ(messages().size(), 20U);
}

TEST_F(Variables, SuggestsNoNameForOneThatIsFarTooLong) {
  EXPECT_EQ(variablesOf("grad" + std::string(200, 'e')), Indices());
  ASSERT_EQ(session_.document.messages.size(), 1U);
  EXPECT_EQ(session_.document.messages[0].nearest, "");
}

TEST_F(Variables, AreWantedInAList) {
  VarSpecObj validator(source_, "TRY", "BY");
  EXPECT_FALSE(validator.ValidateVariables({}, UPSpecTypes::RepeatPassedThrough));
  validator.SetAllowQualifiers(true);
  parse("TASTE /TRY (paired other)");
  EXPECT_FALSE(validator.ValidateVariables(list(), UPSpecTypes::RepeatPassedThrough));
  const Strings told = messages();
  ASSERT_EQ(told.size(), 2U);
  EXPECT_NE(told[0].find("Variable list empty ^1 ... [TRY BY]"), std::string::npos) << told[0];
  EXPECT_NE(told[1].find("Variable list empty ^1 ... [TRY BY]"), std::string::npos) << told[1];
}

TEST_F(Variables, MayBeFollowedBySeveralQualifiers) {
  VarSpecObj validator(source_, "TRY", "WITH");
  validator.SetAllowQualifiers(true);
  parse("TASTE /TRY a b (paired 2)");
  EXPECT_TRUE(validator.ValidateVariables(list(), UPSpecTypes::RepeatPassedThrough));
  EXPECT_EQ(validator.GetQualTokenList().size(), 2U);
}

}  // namespace

}  // namespace embedded::command_tests
