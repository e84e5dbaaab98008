// Tokens as procedures meet them in lists.
#pragma once

#include <string>

#include "embedded/output/Document.h"
#include "host/command/TokenInfoObj.h"

namespace embedded::command {

enum class TokenKind { Word, Number, Quoted, Star, Range, Qualifier };

}  // namespace embedded::command

struct TokenInfoObj::Impl {
  embedded::command::TokenKind kind = embedded::command::TokenKind::Word;
  TokenSequenceBase::OperatorCode code = TokenSequenceBase::NoOperator;
  std::string text;
  std::string last;  // of a range: the name of its other end
  double number = 0.0;
  embedded::output::Place place;
};
