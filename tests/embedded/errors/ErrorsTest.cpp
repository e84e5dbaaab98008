// What errors, warnings and assertions of the interface leave in the session.
#include <gtest/gtest.h>

#include "embedded/errors/Error.h"
#include "embedded/output/Values.h"
#include "embedded/session/Session.h"
#include "host/errors/ACAInpAdaptMsg.h"
#include "host/errors/Assertion.h"
#include "host/errors/BEPesRepos.h"
#include "host/errors/ParserMessage.h"

namespace embedded {

namespace {

class Errors : public ::testing::Test {
 protected:
  const output::Message& last() const { return session_.document.messages.back(); }
  std::vector<std::string> arguments() const {
    std::vector<std::string> all;
    for (const auto& item : last().text->items) {
      all.push_back(output::machineText(*item));
    }
    return all;
  }

  Session session_;
  Session::Scope scope_{session_};
};

using Strings = std::vector<std::string>;

TEST(Error, KnowsItsKindIdentifierAndArguments) {
  const Error error(ErrorKind::Data, "Data no such file ^1 ...", {"x.csv"});
  EXPECT_EQ(error.kind(), ErrorKind::Data);
  EXPECT_EQ(error.identifier(), "Data no such file ^1 ...");
  EXPECT_EQ(error.arguments(), (Strings{"x.csv"}));
  EXPECT_STREQ(error.what(), "Data no such file ^1 ... [x.csv]");
}

TEST(Error, HasAnExitStatusForEveryKind) {
  EXPECT_EQ(exitStatus(ErrorKind::Command), 1);
  EXPECT_EQ(exitStatus(ErrorKind::Usage), 2);
  EXPECT_EQ(exitStatus(ErrorKind::Data), 3);
  EXPECT_EQ(exitStatus(ErrorKind::Output), 4);
  EXPECT_EQ(exitStatus(ErrorKind::Cancelled), 130);
  EXPECT_EQ(exitStatus(ErrorKind::Memory), 70);
  EXPECT_EQ(exitStatus(ErrorKind::Internal), 70);
}

TEST_F(Errors, AnAssertionEndsTheRunAsAnInternalError) {
  try {
    KORA_AssertionFailed("nTokens > 0", "PRPParser", 12);
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.kind(), ErrorKind::Internal);
    EXPECT_EQ(error.arguments(), (Strings{"nTokens > 0", "PRPParser", "12"}));
  }
}

TEST_F(Errors, GenericMessagesKeepIdentifierSeverityAndArguments) {
  ParserMessage message("TASTE", "Taste");
  message.GenericError("Param ^1, subcom ^2 ...", {"KINDS", "TRY"});
  EXPECT_EQ(last().severity, output::Severity::Error);
  EXPECT_EQ(last().text->id, "Param ^1, subcom ^2 ...");
  EXPECT_EQ(arguments(), (Strings{"KINDS", "TRY"}));
  message.GenericWarning("Something ...");
  EXPECT_EQ(last().severity, output::Severity::Warning);
  EXPECT_EQ(arguments(), Strings());
}

TEST_F(Errors, NamedMessagesKeepTheirNamesAsIdentifiers) {
  ParserMessage message("TASTE", "Taste");
  message.NoSubCom();
  EXPECT_EQ(last().text->id, "NoSubCom");
  EXPECT_EQ(last().severity, output::Severity::Error);
  message.NoTableRequested();
  EXPECT_EQ(last().text->id, "NoTableRequested");
  EXPECT_EQ(last().severity, output::Severity::Warning);
  message.ParamExclAnyOther("KINDS NONE", "TRY");
  EXPECT_EQ(arguments(), (Strings{"KINDS NONE", "TRY"}));
  message.VariableNotNumeric(KoraVarName("s"), "BY", "tr");
  EXPECT_EQ(arguments(), (Strings{"s", "BY", "tr"}));
}

TEST_F(Errors, PlacesHoldTheLineOfTheCommand) {
  session_.commandText = "TASTE\n/TRY a";
  session_.commandFocus = command::Spot{2, 6, 1, 6};
  ParserMessage("TASTE", "Taste").NoSubCom();
  ASSERT_TRUE(last().where.has_value());
  EXPECT_EQ(last().where->line, 2);
  EXPECT_EQ(last().where->column, 6);
  EXPECT_EQ(last().where->lineText, "/TRY a");
}

TEST_F(Errors, DataWithoutValidCasesAreWarnedOf) {
  const ProcedureDataSource source;
  const ACAInpAdaptMsg message(source);
  message.NoValidCases();
  EXPECT_EQ(last().text->id, "NoValidCases");
  EXPECT_EQ(last().severity, output::Severity::Warning);
  EXPECT_EQ(last().split, output::none);
  session_.currentSplit = 3;
  message.NoValidCasesSplit();
  EXPECT_EQ(last().text->id, "NoValidCasesSplit");
  EXPECT_EQ(last().split, 3U);
}

TEST_F(Errors, TheRepositoryStaysSilent) {
  BEPesRepos::BEPesClear();
  BEPesRepos::BEPesCheckError();
  EXPECT_TRUE(session_.document.messages.empty());
}

}  // namespace

}  // namespace embedded
