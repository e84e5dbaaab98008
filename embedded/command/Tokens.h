// Tokens as procedures meet them in lists.
#pragma once

#include <string>

#include "embedded/command/Spot.h"
#include "host/command/TokenInfoObj.h"

namespace embedded::command {

enum class TokenKind { Word, Number, Quoted, Star, Range, Qualifier };

}  // namespace embedded::command

struct TokenInfoObj::Impl {
  embedded::command::TokenKind kind = embedded::command::TokenKind::Word;
  TokenSequenceBase::OperatorCode code = TokenSequenceBase::NoOperator;
  std::string text;
  // Of a range: the name of its other end, and the places of both names.
  std::string last;
  embedded::command::Spot firstPlace;
  embedded::command::Spot lastPlace;
  double number = 0.0;
  embedded::command::Spot place;
};
