// What an analysis object makes of records that few commands lead to, or none: ordered pairs,
// groups of strings, rules and designs that are not there.
#include "ModuleTest.h"
#include "proportions/PRPAlgorithm.h"

namespace module_tests {
namespace {

using scripted::cutPoint;
using scripted::independent;
using scripted::levels;
using scripted::numeric;
using scripted::oneSample;
using scripted::paired;
using scripted::qualified;
using scripted::success;
using testing::ElementsAre;
using testing::Eq;
using testing::IsEmpty;
using testing::SizeIs;
using Numbers = std::vector<double>;
using Texts = std::vector<std::string>;

constexpr double Gone = MCMV::Missing;
constexpr auto noRule = static_cast<BinomialOption>(9);

scripted::DataSet data() {
  return {.variables = {numeric("x", {1, 0, 1, 1}), numeric("y", {0, 0, 1, 1}),
                        numeric("u", {0, 1, 1, 0}), numeric("k", {1, 1, 2, 2}),
                        scripted::text("s", 4, {"a", "b", "c", "a"}), numeric("d", {0, 1, 2, 3})}};
}

scripted::DataSet splitsAsRows() {
  scripted::DataSet rows = data();
  rows.splits = {"k"};
  rows.splitsAsRows = true;
  return rows;
}

// An analysis object of data without splits, or of their first group.
class Analysis {
 public:
  using Change = void (*)(PRPValidSpecs&);
  Analysis(
      scripted::DataSet given, scripted::Command command, Change change = [](PRPValidSpecs&) {})
      : host(std::move(given), std::move(command)) {
    change(parsed.specs);
    algorithm.emplace(parsed.source, parsed.output, parsed.specs);
  }

  bool read() {
    iterator_ = parsed.source.MakeIterator(nullptr);
    return algorithm->InitialPass(cases(), aggregation);
  }
  bool readAgain() {
    iterator_ = parsed.source.MakeIterator(nullptr);
    return algorithm->PassSplitGroup(cases());
  }
  bool write() {
    iterator_ = parsed.source.MakeIterator(nullptr);
    return algorithm->ComputeAndDisplay(cases());
  }
  // The numbers that the object's dump shows under a label.
  Numbers dumped(const std::string& label) {
    host.log.lines.clear();
    algorithm->Display();
    Numbers numbers;
    for (const scripted::Line& line : host.log.lines)
      if (line.label == label) numbers.push_back(line.numbers.at(0));
    return numbers;
  }
  // The assertion that writing the tables breaks.
  std::string brokenByWriting() {
    try {
      write();
    } catch (const scripted::AssertionFailed& failure) {
      return failure.expression;
    }
    return "";
  }

  Host host;
  Parsed parsed;
  PRPAggregation aggregation;
  std::optional<PRPAlgorithm> algorithm;

 private:
  ProcDSIterator& cases() { return dynamic_cast<ProcDSIterator&>(*iterator_); }
  std::unique_ptr<KORA_InputCaseIterator> iterator_;
};

// --- Pairs --------------------------------------------------------------------------------------

Numbers pairsOf(const Texts& list) {
  Analysis analysis(data(), {paired(list)});
  EXPECT_TRUE(analysis.read());
  EXPECT_TRUE(analysis.write());
  return analysis.dumped("Second local variable index");
}

TEST(Pairs, AreMadePositionByPositionOrCrossed) {
  EXPECT_THAT(pairsOf({"x", "y", "WITH", "u", "d", "(PAIRED)"}), ElementsAre(0, 1));
  EXPECT_THAT(pairsOf({"x", "y", "WITH", "u", "d"}), ElementsAre(0, 1, 0, 1));
  EXPECT_THAT(pairsOf({"x", "y", "u"}), ElementsAre(1, 2, 2));
}

TEST(Pairs, LeaveOutWhatTheShorterListHasNoPartnerFor) {
  Analysis analysis(data(), {paired({"x", "y", "WITH", "u", "d", "(PAIRED)"})},
                    [](PRPValidSpecs& specs) {
                      specs.GetTestVarInds2().pop_back();
                      specs.GetBinInfoElems2().pop_back();
                    });
  EXPECT_TRUE(analysis.read());
  EXPECT_THAT(analysis.dumped("Variable pair index"), ElementsAre(0));
}

// --- Groups of strings --------------------------------------------------------------------------

scripted::Command byString(const Texts& groups) {
  return {independent({"x", "BY", "s"}, {levels("SELECT", groups)}),
          success(levels("VALUE", Numbers{1}))};
}

TEST(StringGroups, TakeTheirLevelsInTheOrderGiven) {
  Analysis analysis(data(), byString({"c", "a"}));
  EXPECT_TRUE(analysis.read());
  EXPECT_TRUE(analysis.write());
  EXPECT_THAT(analysis.dumped("Number of trials for group 1"), ElementsAre(1));
  EXPECT_THAT(analysis.dumped("Number of trials for group 2"), ElementsAre(2));
  const auto written = scripted::writeTable(*analysis.host.log.tables.at(0));
  EXPECT_EQ(written["row_dimension"][0]["label"], nlohmann::json::parse(R"(["= ^1", ["c"]])"));
  EXPECT_EQ(written["row_dimension"][1]["label"], nlohmann::json::parse(R"(["= ^1", ["a"]])"));
}

TEST(Groups, MayBeTheFirstVariableOfTheData) {
  Analysis analysis({.variables = {numeric("g", {1, 1, 2}), numeric("x", {0, 1, 1})}},
                    {independent({"x", "BY", "g"})});
  EXPECT_TRUE(analysis.read());
  EXPECT_TRUE(analysis.write());
  EXPECT_THAT(analysis.dumped("Number of trials for group 1"), ElementsAre(2));
  EXPECT_THAT(analysis.dumped("Number of trials for group 2"), ElementsAre(1));
}

TEST(Weight, IsNotTestedWhenItIsTheFirstVariableOfTheData) {
  const scripted::DataSet weighted{.variables = {numeric("w", {2, 3}), numeric("x", {0, 1})},
                                   .weight = "w"};
  const auto accepts = [&](const char* tested) {
    Host host(weighted, {oneSample({tested})});
    return Parsed().accepted;
  };
  EXPECT_TRUE(accepts("x"));
  EXPECT_FALSE(accepts("w"));
}

TEST(StringGroups, AssertTwoLevels) {
  Analysis analysis(data(), byString({"c", "a"}), [](PRPValidSpecs& specs) {
    specs.GetGroupInfoElem()._strValues.emplace_back("b");
  });
  EXPECT_TRUE(analysis.read());
  EXPECT_EQ(analysis.brokenByWriting(), "fGroupInfoElem._strValues.size() == 2");
}

TEST(StringGroups, HoldNoCaseUnderAnyOtherRule) {
  Analysis analysis(data(), byString({"c", "a"}),
                    [](PRPValidSpecs& specs) { specs.GetGroupInfoElem()._binOption = FIRST; });
  EXPECT_TRUE(analysis.read());
  EXPECT_FALSE(analysis.write());
  EXPECT_THAT(analysis.host.log.tables, IsEmpty());
}

// --- Rules and designs that are not there -------------------------------------------------------

TEST(UnusualRecord, OfACutPointWithoutItsValueHasNoSuccess) {
  Analysis analysis(data(), {oneSample({"x"}), success(cutPoint("VALUE", 0))},
                    [](PRPValidSpecs& specs) { specs.GetBinInfoElems()[0]._numValues.clear(); });
  EXPECT_TRUE(analysis.read());
  EXPECT_TRUE(analysis.write());
  EXPECT_THAT(analysis.dumped("Number of successes"), ElementsAre(0));
}

TEST(UnusualRecord, OfAnUnknownRuleHasNoLabelToWrite) {
  for (const char* name : {"x", "s"}) {
    Analysis analysis(data(), {oneSample({name})},
                      [](PRPValidSpecs& specs) { specs.GetBinInfoElems()[0]._binOption = noRule; });
    EXPECT_TRUE(analysis.read()) << name;
    EXPECT_EQ(analysis.brokenByWriting(), "pSuccCellText != 0") << name;
    EXPECT_THAT(analysis.dumped("Number of successes"), ElementsAre(0)) << name;
  }
}

TEST(UnusualRecord, OfAnUnknownDesignWritesNothing) {
  Analysis analysis(splitsAsRows(), {oneSample({"x"})}, [](PRPValidSpecs& specs) {
    specs.SetModelType(static_cast<ModelType>(9));
    specs.SetTestVarInds({});
    specs.SetBinInfoElems({});
  });
  EXPECT_TRUE(analysis.read());
  EXPECT_TRUE(analysis.write());
  EXPECT_THAT(analysis.host.log.tables, IsEmpty());
  EXPECT_THAT(analysis.dumped("Need aggregation flag"), ElementsAre(0));
}

TEST(UnusualRecord, WithoutFlagsWritesNoRows) {
  Analysis analysis(data(), {oneSample({"x"})}, [](PRPValidSpecs& specs) {
    specs.GetTestTypes().clear();
    specs.GetCITypes().clear();
  });
  EXPECT_TRUE(analysis.read());
  EXPECT_TRUE(analysis.write());
  for (const auto& table : analysis.host.log.tables)
    EXPECT_THAT(scripted::writeTable(*table)["row_dimension"], IsEmpty());
}

TEST(UnusualRecord, RecordsNoValueOfARuleThatTakesNoneFromTheData) {
  Analysis analysis(splitsAsRows(),
                    {oneSample({"x", "y", "s"}), success(qualified("VALUE", "LAST"))},
                    [](PRPValidSpecs& specs) {
                      specs.GetBinInfoElems()[1]._binOption = CUTPOINT;
                      specs.GetBinInfoElems()[1]._numValues = {1.0};
                      specs.GetBinInfoElems()[2]._binOption = CUTPOINT;
                    });
  EXPECT_TRUE(analysis.read());
  analysis.aggregation.SortSuccessValues();
  EXPECT_EQ(analysis.aggregation.SuccessValues(PRPAggregation::List1, 0).at(0)._numValue, 1.0);
  EXPECT_EQ(analysis.aggregation.SuccessValues(PRPAggregation::List1, 1).at(0)._numValue, Gone);
  EXPECT_EQ(analysis.aggregation.SuccessValues(PRPAggregation::List1, 2).at(0)._strValue, "");
}

TEST(UnusualRecord, RecordsNoNumberOfAGroupOfStrings) {
  Analysis analysis(splitsAsRows(), byString({"c", "a"}),
                    [](PRPValidSpecs& specs) { specs.GetGroupInfoElem()._binOption = MIDPOINT; });
  EXPECT_TRUE(analysis.read());
  analysis.aggregation.SortSuccessValues();
  ASSERT_THAT(analysis.aggregation.GroupValues(), SizeIs(1));
  EXPECT_TRUE(analysis.aggregation.GroupValues()[0]._stringVar);
  EXPECT_EQ(analysis.aggregation.GroupValues()[0]._numValue, VarValue()._numValue);
}

TEST(UnusualRecord, OfStringsHasNoSuccessUnderARuleOfNumbers) {
  for (const char* rule : {"MIDPOINT", "CUTPOINT"}) {
    // The parser says so and goes on, when the string stands in the first list of pairs.
    const auto value =
        rule == std::string("MIDPOINT") ? qualified("VALUE", rule) : cutPoint("VALUE", 1);
    Analysis analysis(data(), {paired({"s", "WITH", "x"}), success(value)});
    EXPECT_TRUE(analysis.read());
    EXPECT_TRUE(analysis.write());
    EXPECT_THAT(analysis.dumped("_n1p"), ElementsAre(0)) << rule;
    EXPECT_THAT(analysis.dumped("_np1"), ElementsAre(3)) << rule;
    // Its label is the rule's number all the same: the one place where a string has one.
    EXPECT_THAT(analysis.host.log.violations,
                testing::Each(Eq("a number is the value of a numeric variable")));
    analysis.host.log.violations.clear();
  }
}

TEST(UnusualRecord, IsGivenBackAsItWasSet) {
  Host host(data(), {paired({"x", "WITH", "y"})});
  Parsed parsed;
  EXPECT_EQ(&parsed.specs.GetDataSource(), &parsed.source);
  EXPECT_THAT(parsed.specs.GetBinInfoElems2(), SizeIs(1));
  parsed.specs.SetBinInfoElems2({});
  EXPECT_THAT(parsed.specs.GetBinInfoElems2(), IsEmpty());
  EXPECT_TRUE(parsed.specs.GetPrintCategoryOrder());
  parsed.specs.SetPrintCategoryOrder(false);
  EXPECT_FALSE(parsed.specs.GetPrintCategoryOrder());
}

TEST(Store, KeepsNoGroupWithoutAGroupingVariable) {
  const Host host(data(), {});
  const ProcedureDataSource source;
  PRPAggregation store;
  store.SetUp(source, 1, 0, false, {});
  store.RecordGroup({});
  store.SortSuccessValues();
  EXPECT_THAT(store.GroupValues(), IsEmpty());
}

// --- Hosts that let through what the description of the command forbids -------------------------

scripted::Script careless(scripted::Command command) {
  return {.data = data(), .command = std::move(command), .checksCommands = false};
}

TEST(CarelessHost, MayLetAnUnknownRulePass) {
  const Host host(careless({oneSample({"x"}), success(qualified("VALUE", "OTHER"))}));
  const Parsed parsed;
  EXPECT_TRUE(parsed.accepted);
  EXPECT_EQ(parsed.specs.GetBinInfoElems().at(0)._binOption, LAST);
}

TEST(CarelessHost, MayLetAQualifierStandAlone) {
  const Host host(careless({paired({"x", "WITH", "(PAIRED)"})}));
  EXPECT_FALSE(Parsed().accepted);
  EXPECT_THAT(host.log.messageIds(), ElementsAre("No vars after WITH ..."));
}

TEST(CarelessHost, BreaksAnAssertionWithAnUnknownMethod) {
  const Host host(careless({oneSample({"x"}, {scripted::keywords("CITYPES", {"OTHER"})})}));
  try {
    const Parsed parsed;
    FAIL() << "the assertion did not fail";
  } catch (const scripted::AssertionFailed& failure) {
    EXPECT_EQ(failure.expression, "false");
  }
}

TEST(CarelessHost, MayKeepTheValueOfALevelForItself) {
  scripted::DataSet keeping = data();
  keeping.variables[0].categoryTexts = {{"yes", 1}};
  keeping.keepsCategoryValues = true;
  const Host host(keeping, {oneSample({"x"}), success(levels("VALUE", Texts{"yes"}))});
  const Parsed parsed;
  EXPECT_TRUE(parsed.accepted);
  EXPECT_THAT(parsed.specs.GetBinInfoElems().at(0)._numValues, ElementsAre(Gone));
}

// --- What the parser keeps and refuses ----------------------------------------------------------

TEST(ParsedRecord, KeepsTheFormatOfEachVariable) {
  scripted::DataSet dated = data();
  dated.variables[5].formatType = FormatType::Date;
  Host host(dated, byString({"a", "b"}));
  const Parsed grouped;
  EXPECT_EQ(grouped.specs.GetGroupInfoElem()._format.type, FormatType::String);
  EXPECT_EQ(grouped.specs.GetBinInfoElems().at(0)._format.type, FormatType::Number);
  Host other(dated, {oneSample({"d"})});
  const Parsed dates;
  EXPECT_EQ(dates.specs.GetBinInfoElems().at(0)._format.type, FormatType::Date);
}

Texts refusalOf(scripted::Command command) {
  Host host(data(), std::move(command));
  const Parsed parsed;
  EXPECT_FALSE(parsed.accepted);
  return host.log.messageIds();
}

TEST(ParsedRecord, TakesNoGroupWhoseFirstLevelIsNoValue) {
  EXPECT_THAT(refusalOf({independent({"x", "BY", "k"}, {levels("SELECT", Texts{"abc", "1"})})}),
              ElementsAre("Invalid SELECT LEVEL ..."));
}

TEST(ParsedRecord, TakesAReservedWordOfAnotherListForNoVariable) {
  EXPECT_THAT(refusalOf({independent({"x", "WITH", "y", "BY", "k"})}), SizeIs(1));
  EXPECT_THAT(refusalOf({paired({"x", "BY", "y"})}), SizeIs(1));
}

// --- Samples ------------------------------------------------------------------------------------

scripted::DataSet sample(double number) {
  return {.variables = {numeric("imputation_", {number, number}), numeric("k", {1, 1}),
                        numeric("x", {0, 1})},
          .splits = {"imputation_", "k"},
          .splitsAsRows = true};
}

TEST(UnusualSample, IsNotPooledBeforeItWasRead) {
  Analysis first(sample(1), {oneSample({"x"})});
  PRPAlgorithm second(first.parsed.source, first.parsed.output, first.parsed.specs);
  EXPECT_TRUE(first.aggregation.PoolSplitGroups({&*first.algorithm, &second}));
}

TEST(UnusualSample, HasNoIndexWithoutAStore) {
  Analysis analysis(sample(-5), {oneSample({"x"})});
  // Nobody has given it the store of the run yet, so a wrong index is not even looked at.
  EXPECT_TRUE(analysis.readAgain());
  EXPECT_THAT(analysis.host.log.messageIds(), IsEmpty());
  EXPECT_FALSE(analysis.read());
  EXPECT_THAT(analysis.host.log.messageIds(), ElementsAre("Invalid imputation index ..."));
}

TEST(UnusualSample, KeepsItsKeyWhenReadAgain) {
  Analysis analysis(sample(1), {oneSample({"x"})});
  EXPECT_TRUE(analysis.read());
  EXPECT_TRUE(analysis.readAgain());
  EXPECT_THAT(analysis.dumped("Pooling Sample Index"), ElementsAre(1));
  // The sample has the only key, and is no original: its own key matches nothing.
  PRPAlgorithm other(analysis.parsed.source, analysis.parsed.output, analysis.parsed.specs);
  EXPECT_FALSE(analysis.aggregation.PoolSplitGroups({&*analysis.algorithm, &other}));
}

}  // namespace
}  // namespace module_tests
