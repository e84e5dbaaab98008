// Tokens: what the script says they are, under the names of the host interface.
#include "scripted_host/command/Tokens.h"

#include "scripted_host/command/Description.h"
#include "scripted_host/session/Session.h"

using scripted::Phase;
using scripted::session;

struct KORA_TokenSequence::Impl {};

KORA_TokenSequence::KORA_TokenSequence(bool current) {
  session().enter("KORA_TokenSequence", {current ? "true" : "false"});
  session().created("KORA_TokenSequence");
}

KORA_TokenSequence::~KORA_TokenSequence() {
  session().leave("KORA_TokenSequence");
  session().destroyed("KORA_TokenSequence");
}

namespace {

void enterToken(std::string_view operation) {
  session().enter("TokenInfoObj::" + std::string(operation));
  session().expectPhase(Phase::AfterParse, operation);
}

}  // namespace

bool TokenInfoObj::IsReservedWord() const {
  enterToken("IsReservedWord");
  return impl_->token.code != TokenSequenceBase::NoOperator;
}

TokenSequenceBase::OperatorCode TokenInfoObj::getOperatorCode() const {
  enterToken("getOperatorCode");
  return impl_->token.code;
}

bool TokenInfoObj::IsNumber() const {
  enterToken("IsNumber");
  return impl_->token.number.has_value();
}

double TokenInfoObj::getNumeric() const {
  enterToken("getNumeric");
  return impl_->token.number.value_or(MCMV::Missing);
}

std::string TokenInfoObj::getString() const {
  enterToken("getString");
  return impl_->token.text;
}

std::string TokenInfoObj::getUpperString() const {
  enterToken("getUpperString");
  return scripted::upperCase(impl_->token.text);
}

TokenList scripted::tokenList(const Tokens& tokens) {
  TokenList list;
  for (const Token& token : tokens)
    list.emplace_back(std::make_shared<const TokenInfoObj::Impl>(TokenInfoObj::Impl{token}));
  return list;
}
