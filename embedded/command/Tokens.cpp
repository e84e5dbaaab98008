#include "embedded/command/Tokens.h"

#include "embedded/session/Session.h"
#include "host/distributions/MCMV.h"
#include "host/text/KORAMBstr.h"

using embedded::Session;
using embedded::command::TokenKind;

namespace {

// What a procedure looks at last is where its next message belongs.
const TokenInfoObj::Impl& seen(const TokenInfoObj::Impl& token) {
  Session::current().commandFocus = token.place;
  return token;
}

}  // namespace

bool TokenInfoObj::IsReservedWord() const {
  // Looking for reserved words passes over all the others: only what is found counts.
  if (impl_->code == TokenSequenceBase::NoOperator) {
    return false;
  }
  seen(*impl_);
  return true;
}

TokenSequenceBase::OperatorCode TokenInfoObj::getOperatorCode() const {
  return seen(*impl_).code;
}

bool TokenInfoObj::IsNumber() const {
  return seen(*impl_).kind == TokenKind::Number;
}

double TokenInfoObj::getNumeric() const {
  return IsNumber() ? impl_->number : MCMV::Missing;
}

std::string TokenInfoObj::getString() const {
  return seen(*impl_).text;
}

std::string TokenInfoObj::getUpperString() const {
  std::string text = seen(*impl_).text;
  KORAMBstrupr_A(text);
  return text;
}
