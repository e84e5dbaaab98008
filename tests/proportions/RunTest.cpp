// The entry: the order of creation, passes and clean-up, with and without failures of the host.
#include "ModuleTest.h"

namespace module_tests {
namespace {

using scripted::None;
using scripted::Script;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

Script script(scripted::DataSet data) {
  return {.data = std::move(data), .command = {scripted::oneSample({"v"})}};
}

scripted::DataSet plainData() {
  return {.variables = {scripted::numeric("v", {1, 1, 0, 1})}};
}

// Three groups, the middle one without a valid case.
scripted::DataSet splitData(bool asRows = false) {
  return {.variables = {scripted::numeric("g", {1, 1, 2, 3, 3}),
                        scripted::numeric("v", {1, 0, 1, 0, 1}),
                        scripted::numeric("w", {1, 2, 0, 1, 1})},
          .weight = "w",
          .splits = {"g"},
          .splitsAsRows = asRows};
}

const std::initializer_list<std::string_view> milestones = {"BpProcedure",
                                                            "KORA_TokenSequence",
                                                            "ProcedureDataSource",
                                                            "ProcedureDataSource::Bootstrapping",
                                                            "AddNotes",
                                                            "BEPesRepos::BEPesClear",
                                                            "ProcedureDataSource::MakeIterator",
                                                            "BpHeading::PivotTable",
                                                            "~Iterator",
                                                            "BEPesRepos::BEPesCheckError",
                                                            "~ProcedureDataSource",
                                                            "~KORA_TokenSequence",
                                                            "~BpProcedure"};

TEST(Run, MakesAndReleasesItsObjectsInOrder) {
  Host host(script(plainData()));
  host.run();
  EXPECT_THAT(host.log.only(milestones),
              ElementsAre("BpProcedure", "KORA_TokenSequence", "ProcedureDataSource",
                          "ProcedureDataSource::Bootstrapping", "AddNotes", "AddNotes", "AddNotes",
                          "BEPesRepos::BEPesClear", "ProcedureDataSource::MakeIterator",
                          "~Iterator", "ProcedureDataSource::MakeIterator", "BpHeading::PivotTable",
                          "BpHeading::PivotTable", "~Iterator", "BEPesRepos::BEPesCheckError",
                          "~ProcedureDataSource", "~KORA_TokenSequence", "~BpProcedure"));
  for (const auto& [type, count] : host.live) EXPECT_EQ(count, 0) << type;
}

TEST(Run, TitlesItsOutputAndTakesPartInBootstrapping) {
  Host host(script(plainData()));
  host.run();
  EXPECT_THAT(host.log.calls.front().args, ElementsAre("Proportions", "10"));
  for (const scripted::Call& call : host.log.calls) {
    if (call.name == "ProcedureDataSource::Bootstrapping" || call.name == "KORA_TokenSequence") {
      EXPECT_THAT(call.args, ElementsAre("true"));
    }
  }
}

TEST(Run, DestroysTheAnalysisObjectsBeforeTheErrorCheck) {
  Host host(script(splitData()));
  host.run();
  // Each analysis object holds one message object, and so does the parser, which goes last.
  const auto order = host.log.only({"~ParserMessage", "~Iterator", "BEPesRepos::BEPesCheckError"});
  EXPECT_THAT(order, ElementsAre("~ParserMessage", "~Iterator", "~Iterator", "~ParserMessage",
                                 "~ParserMessage", "~ParserMessage", "BEPesRepos::BEPesCheckError",
                                 "~ParserMessage"));
}

TEST(Run, EndsAfterAFailedParseWithNothingMoreWritten) {
  Script given = script(plainData());
  given.command = {scripted::oneSample({"nosuch"})};
  Host host(given);
  host.run();
  EXPECT_THAT(host.log.messageIds(), ElementsAre("ValidateVariables"));
  EXPECT_THAT(host.log.notes, IsEmpty());
  EXPECT_EQ(host.log.count("BEPesRepos::BEPesClear"), 0u);
  EXPECT_EQ(host.log.count("BEPesRepos::BEPesCheckError"), 0u);
  EXPECT_EQ(host.log.count("ProcedureDataSource::MakeIterator"), 0u);
}

TEST(Run, KeepsNoObjectForDataWithoutACase) {
  Host host(script({.variables = {scripted::numeric("v", {})}}));
  host.run();
  EXPECT_THAT(host.log.tables, IsEmpty());
  EXPECT_THAT(host.log.messages, IsEmpty());
  EXPECT_EQ(host.log.count("Iterator::NextCase"), 1u);
  EXPECT_THAT(host.log.notes, SizeIs(3));
}

TEST(Run, StopsTheFirstLoopAfterOneObjectWithoutSplits) {
  Host host(script(plainData()));
  host.run();
  // The parser's and that of the one analysis object.
  EXPECT_EQ(host.log.count("ParserMessage"), 2u);
}

TEST(Run, DestroysTheExtraObjectAtTheEndOfSplitData) {
  Host host(script(splitData()));
  host.run();
  EXPECT_EQ(host.log.count("ParserMessage"), 1u + 3u + 1u);
}

TEST(Run, KeepsAnObjectForAGroupWhoseCasesAreAllInvalid) {
  Host host(script(splitData()));
  host.run();
  EXPECT_THAT(host.log.messageIds(), ElementsAre("NoValidCasesSplit"));
  // The third group's tables show its own counts: the iterator stayed in step.
  ASSERT_THAT(host.log.tables, SizeIs(4));
  EXPECT_EQ(host.log.tables[2]->group, 2);
  const auto table = scripted::writeTable(*host.log.tables[2]);
  EXPECT_EQ(table["rows"][0]["cells"][1]["value"], 2.0);
}

TEST(Run, WritesNoTablesWhenNoCaseIsValid) {
  Host host(script({.variables = {scripted::numeric("v", {1, 0}), scripted::numeric("w", {0, 0})},
                    .weight = "w"}));
  host.run();
  EXPECT_THAT(host.log.messageIds(), ElementsAre("NoValidCases"));
  EXPECT_THAT(host.log.tables, IsEmpty());
  EXPECT_THAT(host.log.notes, SizeIs(3));
}

TEST(Run, SkipsTheSecondLoopWhenSplitValuesDifferBetweenSamples) {
  Host host(script(
      {.variables = {scripted::numeric("$bootstrap_split", {0, 0, 1, 1}),
                     scripted::numeric("k", {1, 1, 2, 2}), scripted::numeric("v", {1, 0, 1, 0})},
       .splits = {"$bootstrap_split", "k"},
       .splitsAsRows = true,
       .bootstrapping = true}));
  host.run();
  EXPECT_THAT(host.log.messageIds(), ElementsAre("Boot split values not consistent ..."));
  EXPECT_THAT(host.log.tables, IsEmpty());
  EXPECT_EQ(host.log.count("BEPesRepos::BEPesCheckError"), 1u);
}

TEST(Run, WritesNothingToStandardOutputWithTheSwitchesOff) {
  Host host(script(splitData()));
  testing::internal::CaptureStdout();
  host.run();
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_THAT(host.log.lines, IsEmpty());
}

TEST(Run, AFailedGroupDoesNotStopTheOthers) {
  Host host(script({.variables = {scripted::numeric("g", {1, 1, 2, 2}),
                                  scripted::numeric("v", {MCMV::Missing, MCMV::Missing, 1, 0})},
                    .splits = {"g"}}));
  host.run();
  EXPECT_THAT(host.log.warningIds(),
              ElementsAre("Not enough valid cases for split [%1 = %2:,^1 = ^2:]1 ..."));
  ASSERT_THAT(host.log.tables, SizeIs(2));
  EXPECT_EQ(host.log.tables[0]->group, 1);
}

// --- Failures of the host -----------------------------------------------------------------------

TEST(Run, AssertsThatThereIsAnIterator) {
  for (const bool plain : {false, true}) {
    Script given = script(plainData());
    (plain ? given.faults.plainIterator : given.faults.nullIterator) = true;
    Host host(given);
    try {
      host.run();
      FAIL() << "the assertion did not fail";
    } catch (const scripted::AssertionFailed& failure) {
      EXPECT_EQ(failure.expression, "pDSIter!= 0");
      EXPECT_EQ(failure.source, "proportions");
    }
    EXPECT_EQ(host.live["ProcedureDataSource"], 0);
  }
}

// How often a whole run asks for the fatal state: before the notes, after them, before the first
// loop, after each object of it, before pooling, before the fresh iterator, before the second loop
// and after each object of that.
int fatalQueriesOf(const Script& given) {
  Host host(given);
  host.run();
  return host.fatalQueries;
}

TEST(Run, TestsTheFatalStateAtEveryPoint) {
  EXPECT_EQ(fatalQueriesOf(script(plainData())), 3 + 1 + 3 + 1);
  EXPECT_EQ(fatalQueriesOf(script(splitData())), 3 + 4 + 3 + 3);
}

TEST(Run, GoesToItsCleanUpOnceTheStateIsFatal) {
  const Script given = script(splitData());
  const int queries = fatalQueriesOf(given);
  for (int from = 1; from <= queries; ++from) {
    SCOPED_TRACE(from);
    Script failing = given;
    failing.faults.fatalFromQuery = from;
    Host host(failing);
    host.run();
    for (const auto& [type, count] : host.live) EXPECT_EQ(count, 0) << type;
    EXPECT_THAT(host.log.notes, SizeIs(from == 1 ? 0 : 3));
    const std::size_t iterators = from < 3 ? 0 : from <= 9 ? 1 : 2;
    EXPECT_EQ(host.log.count("ProcedureDataSource::MakeIterator"), iterators);
    EXPECT_EQ(host.log.count("BEPesRepos::BEPesCheckError"), from < 3 ? 0u : 1u);
    const std::size_t tables = from <= 10 ? 0 : from <= 12 ? 2 : 4;
    EXPECT_THAT(host.log.tables, SizeIs(tables));
  }
}

TEST(Run, ReadsNothingMoreWhenTheStreamBreaksOff) {
  for (int cases = 0; cases <= 5; ++cases) {
    SCOPED_TRACE(cases);
    Script given = script(splitData());
    given.faults.fatalAfterCases = cases;
    Host host(given);
    host.run();
    for (const auto& [type, count] : host.live) EXPECT_EQ(count, 0) << type;
    EXPECT_THAT(host.log.tables, IsEmpty());
  }
}

// What must be gone, in this order, when an exception leaves the entry.
void expectReleased(const Host& host) {
  std::vector<std::string> want;
  for (const char* type : {"ProcedureDataSource", "KORA_TokenSequence", "BpProcedure"})
    if (host.live.contains(type)) want.push_back(std::string("~").append(type));
  EXPECT_EQ(host.log.only({"~ProcedureDataSource", "~KORA_TokenSequence", "~BpProcedure"}), want);
  for (const auto& [type, count] : host.live) {
    // Analysis objects, known by their messages, and one iterator stay behind.
    const int most = type == "Iterator" ? 1 : type == "ParserMessage" ? 4 : 0;
    EXPECT_LE(count, most) << type;
  }
}

TEST(Run, LetsTheExceptionOfAnyHostCallPassAndReleasesWhatItOwns) {
  for (const bool rows : {false, true}) {
    bool finished = false;
    for (std::size_t k = 1; !finished; ++k) {
      Script given = script(splitData(rows));
      given.faults.throwAt = k;
      Host host(given);
      try {
        host.run();
        finished = true;
      } catch (const scripted::HostFailure&) {
        expectReleased(host);
      }
      ASSERT_FALSE(HasFailure()) << "call " << k << ", " << host.log.calls.at(k - 1).name;
    }
  }
}

TEST(Run, SurvivesTheRefusalOfAnyHostCall) {
  bool reached = true;
  for (std::size_t k = 1; reached; ++k) {
    Script given = script(splitData());
    given.faults.refuseAt = k;
    Host host(given);
    try {
      host.run();
      for (const auto& [type, count] : host.live) EXPECT_EQ(count, 0) << type;
    } catch (const scripted::AssertionFailed& failure) {
      // No iterator, or a command without the list that its description requires.
      EXPECT_TRUE(failure.expression == "pDSIter!= 0" || failure.expression == "nTokens > 0")
          << failure.expression;
    }
    reached = host.callCount >= k;
  }
}

}  // namespace
}  // namespace module_tests
