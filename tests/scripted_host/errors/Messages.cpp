// Messages, the error repository, the messages about data without valid cases, and the assertion
// handler, which throws.
#include "host/errors/ACAInpAdaptMsg.h"
#include "host/errors/Assertion.h"
#include "host/errors/BEPesRepos.h"
#include "host/errors/ParserMessage.h"
#include "scripted_host/session/Session.h"

using scripted::Phase;
using scripted::session;

struct ParserMessage::Impl {
  std::string command;
  std::string title;
};

ParserMessage::ParserMessage(std::string_view commandName, std::string_view procedureTitle)
    : impl_(new Impl{std::string(commandName), std::string(procedureTitle)}) {
  session().enter("ParserMessage", {impl_->command, impl_->title});
  session().expect(impl_->command == "PROPORTIONS", "messages name the command in capitals");
  session().created("ParserMessage");
}

ParserMessage::~ParserMessage() {
  session().leave("ParserMessage");
  session().destroyed("ParserMessage");
}

namespace {

void issue(const char* kind, const char* via, std::string_view identifier,
           std::initializer_list<std::string_view> texts) {
  session().enter("ParserMessage::" + std::string(via), {std::string(identifier)});
  session().expect(texts.size() <= 5, "a message has at most five texts");
  session().message(kind, via, std::string(identifier), {texts.begin(), texts.end()});
}

}  // namespace

void ParserMessage::GenericError(std::string_view identifier,
                                 std::initializer_list<std::string_view> texts) {
  issue("error", "GenericError", identifier, texts);
}

void ParserMessage::GenericWarning(std::string_view identifier,
                                   std::initializer_list<std::string_view> texts) {
  issue("warning", "GenericWarning", identifier, texts);
}

void ParserMessage::NoSubCom() {
  issue("error", "NoSubCom", "NoSubCom", {});
}

void ParserMessage::ParamExclAnyOther(std::string_view parameterText, std::string_view subcommand) {
  issue("error", "ParamExclAnyOther", "ParamExclAnyOther", {parameterText, subcommand});
}

void ParserMessage::NoTableRequested() {
  issue("message", "NoTableRequested", "NoTableRequested", {});
}

void ParserMessage::VariableNotNumeric(const KoraVarName& variable, std::string_view parameter,
                                       std::string_view subcommand) {
  issue("error", "VariableNotNumeric", "VariableNotNumeric",
        {variable.name(), parameter, subcommand});
}

void ACAInpAdaptMsg::NoValidCases() const {
  session().enter("ACAInpAdaptMsg::NoValidCases");
  session().expectPhase(Phase::DuringRun, "NoValidCases");
  session().message("warning", "ACAInpAdaptMsg", "NoValidCases", {});
}

void ACAInpAdaptMsg::NoValidCasesSplit() const {
  session().enter("ACAInpAdaptMsg::NoValidCasesSplit");
  session().expectPhase(Phase::DuringRun, "NoValidCasesSplit");
  session().expect(session().onSplitGroup, "split values are asked for within a split group");
  session().message("warning", "ACAInpAdaptMsg", "NoValidCasesSplit", {});
}

void BEPesRepos::BEPesClear() {
  session().enter("BEPesRepos::BEPesClear");
  session().expectPhase(Phase::AfterParse, "BEPesClear");
}

void BEPesRepos::BEPesCheckError() {
  session().enter("BEPesRepos::BEPesCheckError");
}

void KORA_AssertionFailed(const char* expression, const char* source, int line) {
  session().log.calls.push_back({"KORA_AssertionFailed", {expression, source}});
  session().expect(line > 0, "an assertion names its line");
  throw scripted::AssertionFailed(expression, source);
}
