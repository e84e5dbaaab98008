// What the parser makes of a command, form by form.
#include "ModuleTest.h"

namespace module_tests {
namespace {

using scripted::Command;
using scripted::cutPoint;
using scripted::independent;
using scripted::keyword;
using scripted::keywords;
using scripted::levels;
using scripted::number;
using scripted::oneSample;
using scripted::paired;
using scripted::qualified;
using scripted::success;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using Inds = PRPValidSpecs::VarInds;
using Flags = PRPValidSpecs::Flags;

enum : std::int32_t { X, Y, Z, U, G, W, S, S9, D };

scripted::DataSet dictionary() {
  scripted::DataSet data;
  for (const char* name : {"x", "y", "z", "u", "g", "w"}) data.variables.push_back({.name = name});
  data.variables.push_back({.name = "s", .width = 4});
  data.variables.push_back({.name = "s9", .width = 12});
  data.variables.push_back(
      {.name = "d", .categoryTexts = {{"2020-01-01", 18262.0}}, .formatType = FormatType::Date});
  data.weight = "w";
  return data;
}

// A command, parsed.
struct Given {
  explicit Given(Command command) : host(dictionary(), std::move(command)) {}
  Given(scripted::DataSet data, Command command) : host(std::move(data), std::move(command)) {}

  std::vector<std::string> messages() const { return host.log.messageIds(); }
  const PRPValidSpecs& specs() const { return parsed.specs; }
  bool accepted() const { return parsed.accepted; }

  Host host;
  Parsed parsed;
};

void expectRefused(Command command, const std::string& identifier,
                   const std::vector<std::string>& args = {}) {
  const Given given(std::move(command));
  EXPECT_FALSE(given.accepted());
  ASSERT_THAT(given.messages(), ElementsAre(identifier));
  EXPECT_EQ(given.host.log.messages[0].kind, "error");
  // The host words its own violations as it likes.
  if (identifier != "syntax") {
    EXPECT_EQ(given.host.log.messages[0].args, args);
  }
}

void expectWarned(Command command, const std::string& identifier,
                  const std::vector<std::string>& args = {}) {
  const Given given(std::move(command));
  EXPECT_TRUE(given.accepted());
  ASSERT_THAT(given.messages(), ElementsAre(identifier));
  EXPECT_EQ(given.host.log.messages[0].kind, "warning");
  EXPECT_EQ(given.host.log.messages[0].args, args);
}

void expectAccepted(Command command) {
  const Given given(std::move(command));
  EXPECT_TRUE(given.accepted());
  EXPECT_THAT(given.messages(), IsEmpty());
}

scripted::Param tests(std::vector<std::string> names) {
  return keywords("TESTTYPES", std::move(names));
}
scripted::Param intervals(std::vector<std::string> names) {
  return keywords("CITYPES", std::move(names));
}

// --- The description of the command -------------------------------------------------------------

TEST(CommandDescription, BoundsTheTestValueOpenly) {
  expectRefused({oneSample({"x"}, {number("TESTVAL", 0)})}, "syntax");
  expectRefused({oneSample({"x"}, {number("TESTVAL", 1)})}, "syntax");
  expectAccepted({oneSample({"x"}, {number("TESTVAL", 0.0001)})});
}

TEST(CommandDescription, BoundsTheLevelClosedBelowAndOpenAbove) {
  expectAccepted({oneSample({"x"}), scripted::level(0)});
  expectRefused({oneSample({"x"}), scripted::level(100)}, "syntax");
}

TEST(CommandDescription, BoundsNoCutPoint) {
  expectAccepted({oneSample({"x"}), success(cutPoint("VALUE", -1e6))});
  expectAccepted({independent({"x", "BY", "g"}, {cutPoint("SELECT", -3.5)})});
}

TEST(CommandDescription, DeclaresTheMethodsOfEachDesign) {
  expectAccepted({oneSample({"x"}, {tests({"WALD"})})});
  expectAccepted({paired({"x", "y"}, {tests({"WALD"})})});
  expectAccepted({independent({"x", "BY", "g"}, {tests({"WALD"})})});
  expectAccepted({oneSample({"x"}, {tests({"SCORE"})})});
  expectRefused({paired({"x", "y"}, {tests({"SCORE"})})}, "syntax");
  expectRefused({independent({"x", "BY", "g"}, {tests({"SCORE"})})}, "syntax");
  expectRefused({oneSample({"x"}, {tests({"HAUCK_ANDERSON"})})}, "syntax");
  expectAccepted(
      {independent({"x", "BY", "g"}, {tests({"HAUCK_ANDERSON"}), intervals({"HAUCK_ANDERSON"})})});
  expectRefused({oneSample({"x"}, {tests({"LOGIT"})})}, "syntax");
}

TEST(CommandDescription, RefusesWhatItDoesNotDeclare) {
  expectRefused({{"NOSUCH", {}, {}}}, "syntax");
  expectRefused({oneSample({"x"}, {number("ALPHA", 0.05)})}, "syntax");
  expectRefused({oneSample({})}, "syntax");
  expectRefused({oneSample({"x"}), oneSample({"y"})}, "syntax");
}

TEST(CommandDescription, WantsValuesOfLevelUnderValueAlone) {
  expectRefused({oneSample({"x"}), success(qualified("VALUE", "LEVEL"))}, "syntax");
  expectAccepted({independent({"x", "BY", "g"}, {qualified("SELECT", "LEVEL")})});
}

TEST(CommandDescription, IsBuiltInDeclaredOrder) {
  const Given given({oneSample({"x"})});
  std::vector<std::string> subCommands;
  std::vector<std::string> params;
  for (const scripted::Call& call : given.host.log.calls) {
    if (call.name == "CommandDescriptor::addSubComDesc") subCommands.push_back(call.args[0]);
    if (call.name == "SubComDescriptor::addParamDesc") params.push_back(call.args[0]);
  }
  EXPECT_THAT(subCommands, ElementsAre("ONESAMPLE", "PAIREDSAMPLES", "INDEPENDENTSAMPLES",
                                       "SUCCESS", "MISSING", "CRITERIA"));
  EXPECT_THAT(params,
              ElementsAre("TESTVAL", "TESTTYPES", "CITYPES", "TESTTYPES", "CITYPES", "SELECT",
                          "TESTTYPES", "CITYPES", "VALUE", "SCOPE", "USERMISSING", "CILEVEL"));
}

// --- The driver ---------------------------------------------------------------------------------

TEST(Parser, NamesItsValidators) {
  const Given given({oneSample({"x"})});
  std::vector<std::vector<std::string>> validators;
  for (const scripted::Call& call : given.host.log.calls)
    if (call.name == "VarSpecObj") validators.push_back(call.args);
  using Names = std::vector<std::string>;
  EXPECT_THAT(validators,
              ElementsAre(Names{"SPLIT FILE", ""}, Names{"WEIGHT", ""}, Names{"ONESAMPLE", ""},
                          Names{"PAIREDSAMPLES", ""}, Names{"PAIREDSAMPLES", "WITH"},
                          Names{"INDEPENDENTSAMPLES", ""}, Names{"INDEPENDENTSAMPLES", "BY"}));
}

TEST(Parser, RefusesACommandWithoutSubcommands) {
  expectRefused({}, "NoSubCom");
}

TEST(Parser, WantsExactlyOneTestSubcommand) {
  expectRefused({scripted::missing("ANALYSIS", "EXCLUDE")}, "Exactly one test option ...");
  const Given given({oneSample({"nosuch"}), paired({"x", "y"})});
  EXPECT_THAT(given.messages(), ElementsAre("Exactly one test option ..."));
  EXPECT_EQ(given.host.log.count("VarSpecObj::ValidateVariables"), 0u);
}

TEST(Parser, StopsWhenTheHostRefusesSplitOrWeightVariables) {
  for (const char* name : {"SPLIT FILE", "WEIGHT"}) {
    scripted::DataSet data = dictionary();
    data.splits = {"z"};
    data.refusingValidators = {name};
    const Given given(data, {oneSample({"x"})});
    EXPECT_FALSE(given.accepted());
    EXPECT_EQ(given.host.log.messages.at(0).via, "host");
    EXPECT_EQ(given.host.log.count("VarSpecObj::ValidateVariables"), 0u);
  }
}

TEST(Parser, ReadsMissingAndKeepsWhatIsAbsent) {
  const Given given({oneSample({"x"}), {"MISSING", {}, {keyword("SCOPE", "LISTWISE")}}});
  EXPECT_FALSE(given.specs().GetScopeAnalysis());
  EXPECT_FALSE(given.specs().GetUserMissingIncluded());
  const Given other({oneSample({"x"}), {"MISSING", {}, {keyword("USERMISSING", "INCLUDE")}}});
  EXPECT_TRUE(other.specs().GetScopeAnalysis());
  EXPECT_TRUE(other.specs().GetUserMissingIncluded());
}

TEST(Parser, StoresTheLevelAndKeeps95WithoutOne) {
  EXPECT_EQ(Given({oneSample({"x"}), scripted::level(0)}).specs().GetCILevelPct(), 0.0);
  EXPECT_EQ(Given({oneSample({"x"})}).specs().GetCILevelPct(), 95.0);
}

TEST(Parser, WarnsOnceOfRepeatedMethods) {
  const Given given({oneSample({"x"}, {tests({"EXACT", "EXACT", "MIDP"})})});
  EXPECT_THAT(given.messages(), ElementsAre("Param ^1, subcom ^2, duplicate options ..."));
  EXPECT_THAT(given.host.log.messages[0].args, ElementsAre("TESTTYPES", "ONESAMPLE"));
  EXPECT_EQ(given.specs().GetTestTypes(), Flags({true, true, false, false, false, false}));
}

TEST(Parser, KeepsWhatWasStoredBeforeAFailure) {
  const Given given({oneSample({"x"}, {number("TESTVAL", 0.3), tests({"NONE", "WALD"})})});
  EXPECT_FALSE(given.accepted());
  EXPECT_EQ(given.specs().GetTestVarInds(), Inds{X});
  EXPECT_EQ(given.specs().GetTestValue(), 0.3);
}

// --- One sample ---------------------------------------------------------------------------------

TEST(OneSampleParser, HasDefaults) {
  const Given given({oneSample({"x"})});
  EXPECT_EQ(given.specs().GetTestValue(), 0.5);
  EXPECT_EQ(given.specs().GetTestTypes(), Flags({false, true, true, false, false, false}));
  EXPECT_EQ(given.specs().GetCITypes(),
            Flags({true, false, false, true, false, false, false, true, false}));
}

TEST(OneSampleParser, RefusesNoneBesideOtherMethods) {
  expectRefused({oneSample({"x"}, {tests({"ALL", "NONE"})})}, "ParamExclAnyOther",
                {"TESTTYPES NONE", "ONESAMPLE"});
  expectRefused({oneSample({"x"}, {intervals({"NONE", "WALD"})})}, "ParamExclAnyOther",
                {"CITYPES NONE", "ONESAMPLE"});
}

TEST(OneSampleParser, TakesNoneTwiceForNone) {
  const Given given({oneSample({"x"}, {tests({"NONE", "NONE"})})});
  EXPECT_TRUE(given.accepted());
  EXPECT_THAT(given.messages(), ElementsAre("Param ^1, subcom ^2, duplicate options ..."));
  EXPECT_EQ(given.specs().GetTestTypes(), Flags(6, false));
}

TEST(OneSampleParser, TakesAllBesideOneMethodForAll) {
  EXPECT_EQ(Given({oneSample({"x"}, {tests({"ALL", "WALD"})})}).specs().GetTestTypes(),
            Flags(6, true));
}

TEST(OneSampleParser, DropsRepeatedVariablesWithAWarning) {
  const Given given({oneSample({"x", "x", "y"})});
  EXPECT_THAT(given.messages(), ElementsAre("Subcom ^1, duplicate var names ..."));
  EXPECT_THAT(given.host.log.messages[0].args, ElementsAre("ONESAMPLE"));
  EXPECT_EQ(given.specs().GetTestVarInds(), Inds({X, Y}));
}

TEST(OneSampleParser, ResizesItsFlagsWhenVariablesAreInvalid) {
  for (const char* name : {"nosuch", "w"}) {
    const Given given({oneSample({name}, {number("TESTVAL", 0.3), tests({"ALL"})})});
    EXPECT_FALSE(given.accepted());
    EXPECT_EQ(given.specs().GetTestValue(), 0.5);
    EXPECT_EQ(given.specs().GetTestTypes(), Flags(6, false));
    EXPECT_EQ(given.specs().GetCITypes(), Flags(9, false));
  }
}

TEST(OneSampleParser, SaysThatNothingIsRequested) {
  const Given given({oneSample({"x"}, {tests({"NONE"}), intervals({"NONE"})})});
  EXPECT_TRUE(given.accepted());
  EXPECT_THAT(given.messages(), ElementsAre("NoTableRequested"));
}

// --- Paired samples -----------------------------------------------------------------------------

TEST(PairedParser, HasDefaults) {
  const Given given({paired({"x", "y"})});
  EXPECT_EQ(given.specs().GetTestTypes(), Flags({false, true, true, false, false, false}));
  EXPECT_EQ(given.specs().GetCITypes(), Flags({false, true, true, false, false}));
}

TEST(PairedParser, RefusesMalformedLists) {
  expectRefused({paired({"x", "WITH", "y", "WITH", "z"})}, "Only one WITH ...");
  expectRefused({paired({"WITH", "y"})}, "No vars before WITH ...");
  expectRefused({paired({"x", "WITH"})}, "No vars after WITH ...");
  expectRefused({paired({"x", "WITH", "y", "(CROSSED)"})}, "Only PAIRED option ...");
  expectRefused({paired({"x", "WITH", "y", "(PAIRED)", "(PAIRED)"})}, "Only PAIRED option ...");
  expectRefused({paired({"WITH", "WITH"})}, "Only one WITH ...");
}

TEST(PairedParser, WantsTwoDistinctVariablesInASingleList) {
  expectRefused({paired({"x"})}, "Need two dist vars ...");
  const Given given({paired({"x", "x"})});
  EXPECT_THAT(given.messages(),
              ElementsAre("Subcom ^1, duplicate var names ...", "Need two dist vars ..."));
}

TEST(PairedParser, CrossesAVariableWithItselfInLongerLists) {
  expectRefused({paired({"x", "WITH", "x"})}, "Need two dist vars ...");
  const Given given({paired({"x", "y", "WITH", "x"})});
  EXPECT_TRUE(given.accepted());
  EXPECT_EQ(given.specs().GetTestVarInds(), Inds({X, Y}));
  EXPECT_EQ(given.specs().GetTestVarInds2(), Inds{X});
  EXPECT_FALSE(given.specs().GetOrderPair());
}

TEST(PairedParser, WarnsOfRepeatsOnEitherSideOfWith) {
  expectWarned({paired({"x", "x", "WITH", "y"})}, "Before ^1, subcom ^2, dupl var names ...",
               {"WITH", "PAIREDSAMPLES"});
  expectWarned({paired({"x", "WITH", "y", "y"})}, "After ^1, subcom ^2, dupl var names ...",
               {"WITH", "PAIREDSAMPLES"});
}

TEST(PairedParser, IgnoresTheSurplusOfTheLongerOrderedList) {
  const Given given({paired({"x", "y", "z", "WITH", "u", "g", "(PAIRED)"})});
  EXPECT_THAT(given.messages(), ElementsAre("Unmatched pair vars ..."));
  EXPECT_EQ(given.specs().GetTestVarInds(), Inds({X, Y}));
  EXPECT_EQ(given.specs().GetTestVarInds2(), Inds({U, G}));
  EXPECT_TRUE(given.specs().GetOrderPair());
}

TEST(PairedParser, KeepsARepeatedOrderedPairOnce) {
  const Given given({paired({"x", "x", "WITH", "y", "y", "(PAIRED)"})});
  EXPECT_THAT(given.messages(), ElementsAre("Duplicate var pairs ..."));
  EXPECT_EQ(given.specs().GetTestVarInds(), Inds{X});
  EXPECT_EQ(given.specs().GetTestVarInds2(), Inds{Y});
}

TEST(PairedParser, KeepsAPairAndItsReverse) {
  const Given given({paired({"x", "y", "WITH", "y", "x", "(paired)"})});
  EXPECT_THAT(given.messages(), IsEmpty());
  EXPECT_EQ(given.specs().GetTestVarInds(), Inds({X, Y}));
}

TEST(PairedParser, DropsAnOrderedPairOfAVariableWithItself) {
  const Given given({paired({"x", "y", "WITH", "x", "u", "(PAIRED)"})});
  EXPECT_THAT(given.messages(), IsEmpty());
  EXPECT_EQ(given.specs().GetTestVarInds(), Inds{Y});
  EXPECT_EQ(given.specs().GetTestVarInds2(), Inds{U});
  expectRefused({paired({"x", "WITH", "x", "(PAIRED)"})}, "Need two dist vars ...");
}

TEST(PairedParser, CountsADroppedPairAsSeen) {
  const Given given({paired({"x", "x", "y", "WITH", "x", "x", "z", "(PAIRED)"})});
  EXPECT_THAT(given.messages(), ElementsAre("Duplicate var pairs ..."));
  EXPECT_EQ(given.specs().GetTestVarInds(), Inds{Y});
}

TEST(PairedParser, SaysNothingWhenNoMethodIsRequested) {
  expectAccepted({paired({"x", "y"}, {tests({"NONE"}), intervals({"NONE"})})});
}

TEST(PairedParser, RefusesNoneBesideOtherMethods) {
  expectRefused({paired({"x", "y"}, {tests({"NONE", "WALD"})})}, "ParamExclAnyOther",
                {"TESTTYPES NONE", "PAIREDSAMPLES"});
}

// --- Independent samples ------------------------------------------------------------------------

TEST(IndependentParser, HasDefaults) {
  const Given given({independent({"x", "BY", "g"})});
  const BinInfoElem& group = given.specs().GetGroupInfoElem();
  EXPECT_EQ(given.specs().GetGroupVarInd(), G);
  EXPECT_EQ(group._binOption, LEVEL);
  EXPECT_THAT(group._numValues, ElementsAre(1.0, 2.0));
  EXPECT_THAT(group._strValues, ElementsAre("1", "2"));
  EXPECT_EQ(group._obsValues.size(), 2u);
  EXPECT_EQ(given.specs().GetTestTypes(), Flags({false, false, false, true, false}));
  EXPECT_EQ(given.specs().GetCITypes(), Flags({true, false, false, true, false, false, false}));
}

TEST(IndependentParser, RefusesMalformedLists) {
  expectRefused({independent({"x", "BY", "g", "BY", "y"})}, "Only one BY ...");
  expectRefused({independent({"x", "g"})}, "Missing BY ...");
  expectRefused({independent({"BY", "g"})}, "No vars before BY ...");
  expectRefused({independent({"x", "BY"})}, "No vars after BY ...");
  expectRefused({independent({"x", "BY", "g", "y"})}, "Only one var after BY ...");
}

TEST(IndependentParser, RefusesAGroupingVariableThatIsTestedOrTheWeight) {
  expectRefused({independent({"x", "BY", "x"})}, "CheckCommonVars", {"INDEPENDENTSAMPLES", "BY"});
  expectRefused({independent({"x", "BY", "w"})}, "CheckCommonVars", {"BY", "WEIGHT"});
}

TEST(IndependentParser, KeepsOneOfARepeatedVariable) {
  expectWarned({independent({"x", "x", "BY", "g"})}, "Before ^1, subcom ^2, dupl var names ...",
               {"BY", "INDEPENDENTSAMPLES"});
}

TEST(IndependentParser, WantsANumericVariableForTheDefaultLevels) {
  expectRefused({independent({"x", "BY", "s"})}, "Numeric SELECT LEVEL var ^1 ...", {"s"});
  expectRefused({independent({"x", "BY", "s"}, {qualified("SELECT", "LEVEL")})},
                "Numeric SELECT LEVEL var ^1 ...", {"s"});
}

TEST(IndependentParser, WantsANumericVariableForMidpointAndCutPoint) {
  expectRefused({independent({"x", "BY", "s"}, {qualified("SELECT", "MIDPOINT")})},
                "VariableNotNumeric", {"s", "BY", "INDEPENDENTSAMPLES"});
  expectRefused({independent({"x", "BY", "s"}, {cutPoint("SELECT", 1)})}, "VariableNotNumeric",
                {"s", "BY", "INDEPENDENTSAMPLES"});
}

TEST(IndependentParser, WantsTwoDistinctLevels) {
  using Numbers = std::vector<double>;
  expectRefused({independent({"x", "BY", "g"}, {levels("SELECT", Numbers{1, 1})})},
                "Param ^1, subcom ^2, two distinct values ...",
                {"SELECT LEVEL", "INDEPENDENTSAMPLES"});
  expectRefused({independent({"x", "BY", "g"}, {levels("SELECT", Numbers{1, 2, 3})})},
                "Param ^1, subcom ^2, two values ...", {"SELECT LEVEL", "INDEPENDENTSAMPLES"});
}

TEST(IndependentParser, ComparesNumericLevelsAsNumbers) {
  const Given given(
      {independent({"x", "BY", "g"}, {levels("SELECT", std::vector<std::string>{"0", "-0"})})});
  EXPECT_THAT(given.messages(), ElementsAre("Param ^1, subcom ^2, two distinct values ..."));
}

TEST(IndependentParser, ComparesStringLevelsByTheirFirstEightBytes) {
  using Texts = std::vector<std::string>;
  expectRefused(
      {independent({"x", "BY", "s9"}, {levels("SELECT", Texts{"category_A", "category_B"})})},
      "Param ^1, subcom ^2, two distinct values ...", {"SELECT LEVEL", "INDEPENDENTSAMPLES"});
  expectAccepted(
      {independent({"x", "BY", "s9"}, {levels("SELECT", Texts{"categorA", "categorB"})})});
}

TEST(IndependentParser, RefusesLevelsThatAreNoValues) {
  scripted::DataSet data = dictionary();
  data.variables[G].rejectedTexts = {"2"};
  const Given given(data, {independent({"x", "BY", "g"})});
  EXPECT_THAT(given.messages(), ElementsAre("Invalid SELECT LEVEL default ..."));
  expectRefused(
      {independent({"x", "BY", "g"}, {levels("SELECT", std::vector<std::string>{"1", "abc"})})},
      "Invalid SELECT LEVEL ...");
}

TEST(IndependentParser, StoresACutPoint) {
  const Given given({independent({"x", "BY", "g"}, {cutPoint("SELECT", -3.5)})});
  const BinInfoElem& group = given.specs().GetGroupInfoElem();
  EXPECT_TRUE(given.accepted());
  EXPECT_EQ(group._binOption, CUTPOINT);
  EXPECT_FALSE(group._bCategorical);
  EXPECT_THAT(group._numValues, ElementsAre(-3.5));
  ASSERT_EQ(group._obsValues.size(), 1u);
  EXPECT_EQ(group._obsValues[0]->number, -3.5);
}

// --- SUCCESS ------------------------------------------------------------------------------------

TEST(SuccessParser, IsLastWhenAbsent) {
  const Given given({oneSample({"x", "s"})});
  for (const BinInfoElem& elem : given.specs().GetBinInfoElems()) {
    EXPECT_EQ(elem._binOption, LAST);
    EXPECT_TRUE(elem._bCategorical);
    EXPECT_THAT(elem._numValues, IsEmpty());
  }
}

TEST(SuccessParser, DropsRepeatedLevelsWithAWarning) {
  const Given given({oneSample({"x"}), success(levels("VALUE", std::vector<double>{1, 1, 2}))});
  EXPECT_THAT(given.messages(), ElementsAre("Duplicate SUCCESS LEVEL values ..."));
  EXPECT_THAT(given.specs().GetBinInfoElems()[0]._numValues, ElementsAre(1.0, 2.0));
}

// A level in quotes is the number that is written alike, whichever comes first.
TEST(SuccessParser, DropsALevelInQuotesBesideTheSameNumber) {
  for (const bool quotedFirst : {true, false}) {
    scripted::Param value = levels("VALUE", std::vector<double>{1, 1});
    value.tokens->at(quotedFirst ? 0 : 1).number.reset();
    const Given given({oneSample({"x"}), success(value)});
    EXPECT_THAT(given.messages(), ElementsAre("Duplicate SUCCESS LEVEL values ...")) << quotedFirst;
    EXPECT_THAT(given.specs().GetBinInfoElems()[0]._numValues, SizeIs(1)) << quotedFirst;
  }
}

TEST(SuccessParser, TellsLettersOfLevelsApartByCase) {
  const Given given(
      {oneSample({"s"}), success(levels("VALUE", std::vector<std::string>{"yes", "YES"}))});
  EXPECT_THAT(given.messages(), IsEmpty());
  EXPECT_THAT(given.specs().GetBinInfoElems()[0]._strValues, ElementsAre("yes", "YES"));
  EXPECT_TRUE(given.specs().GetBinInfoElems()[0]._bCategorical);
}

TEST(SuccessParser, WantsNumericVariablesForMidpointAndCutPoint) {
  expectRefused({oneSample({"s"}), success(qualified("VALUE", "MIDPOINT"))},
                "Numeric var SUCCESS option ^1 ...", {"MIDPOINT"});
  expectRefused({oneSample({"s"}), success(cutPoint("VALUE", 1))},
                "Numeric var SUCCESS option ^1 ...", {"CUTPOINT"});
}

TEST(SuccessParser, TakesLevelsOfANumberForNoCategories) {
  const Given given({oneSample({"x"}), success(levels("VALUE", std::vector<double>{1}))});
  EXPECT_EQ(given.specs().GetBinInfoElems()[0]._binOption, LEVEL);
  EXPECT_FALSE(given.specs().GetBinInfoElems()[0]._bCategorical);
}

TEST(SuccessParser, ReadsADateAsItsNumber) {
  const Given given(
      {oneSample({"d"}), success(levels("VALUE", std::vector<std::string>{"2020-01-01"}))});
  EXPECT_THAT(given.specs().GetBinInfoElems()[0]._numValues, ElementsAre(18262.0));
  EXPECT_THAT(given.specs().GetBinInfoElems()[0]._strValues, ElementsAre("2020-01-01"));
}

TEST(SuccessParser, EndsTheBuilderAtAnInvalidLevel) {
  const Given given(
      {oneSample({"x", "y"}), success(levels("VALUE", std::vector<std::string>{"1", "abc", "2"}))});
  EXPECT_FALSE(given.accepted());
  EXPECT_THAT(given.messages(), ElementsAre("Invalid SUCCESS LEVEL ..."));
  EXPECT_THAT(given.specs().GetBinInfoElems()[0]._numValues, ElementsAre(1.0));
  EXPECT_EQ(given.specs().GetBinInfoElems()[1]._binOption, LAST);
}

TEST(SuccessParser, LetsTheListAfterWithOverrideAFailureBeforeIt) {
  const Given given({paired({"s", "WITH", "x"}), success(qualified("VALUE", "MIDPOINT"))});
  EXPECT_TRUE(given.accepted());
  EXPECT_THAT(given.messages(), ElementsAre("Numeric var SUCCESS option ^1 ..."));
}

TEST(SuccessParser, CountsTheWordsOfLongStrings) {
  const Given given({oneSample({"s9"})});
  EXPECT_EQ(given.specs().GetBinInfoElems()[0]._obsLen, 2);
}

}  // namespace
}  // namespace module_tests
