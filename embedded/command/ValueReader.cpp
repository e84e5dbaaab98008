#include "embedded/command/ValueReader.h"

#include <utility>

#include "embedded/output/Values.h"
#include "host/text/KORAMBstr.h"

namespace embedded::command {

namespace {

using Code = TokenSequenceBase::OperatorCode;

// The reserved words of lists of variables, and the only ones.
Code reservedWord(const Lexeme& lexeme) {
  if (lexeme.kind != LexKind::Word) {
    return Code::NoOperator;
  }
  std::string upper = lexeme.text;
  KORAMBstrupr_A(upper);
  return upper == "WITH" ? Code::OperatorWith : upper == "BY" ? Code::OperatorBy : Code::NoOperator;
}

TokenInfoObj token(TokenKind kind, const Lexeme& lexeme, Code code = Code::NoOperator) {
  auto impl = std::make_shared<TokenInfoObj::Impl>();
  impl->kind = kind;
  impl->code = code;
  impl->text = lexeme.text;
  impl->number = lexeme.number;
  impl->place = lexeme.place;
  return TokenInfoObj(std::move(impl));
}

TokenKind kindOf(const Lexeme& lexeme) {
  switch (lexeme.kind) {
    case LexKind::Number:
      return TokenKind::Number;
    case LexKind::Quoted:
      return TokenKind::Quoted;
    case LexKind::Star:
      return TokenKind::Star;
    default:
      return TokenKind::Word;
  }
}

bool isValue(const Lexeme& lexeme) {
  // What could not be read has been told, and may have been a value.
  return lexeme.kind == LexKind::Word || lexeme.kind == LexKind::Number ||
         lexeme.kind == LexKind::Quoted || lexeme.kind == LexKind::Bad;
}

bool isName(const Cursor& cursor, std::size_t ahead) {
  return cursor.is(LexKind::Word, ahead) || cursor.is(LexKind::Quoted, ahead);
}

}  // namespace

TokenList ValueReader::variableList() {
  TokenList tokens;
  while (!cursor_.atValueEnd()) {
    addListItem(tokens);
  }
  return tokens;
}

void ValueReader::addListItem(TokenList& tokens) {
  if (cursor_.is(LexKind::Open)) {
    addQualifiers(tokens);
    return;
  }
  if (isName(cursor_, 0) && cursor_.is(LexKind::Dots, 1) && isName(cursor_, 2)) {
    auto range =
        std::make_shared<TokenInfoObj::Impl>(token(TokenKind::Range, cursor_.take()).impl());
    cursor_.take();
    const Lexeme& last = cursor_.take();
    range->last = last.text;
    range->firstPlace = range->place;
    range->lastPlace = last.place;
    if (last.place.line == range->place.line) {
      range->place.length = last.place.column + last.place.length - range->place.column;
    }
    tokens.emplace_back(std::move(range));
    return;
  }
  const Lexeme& lexeme = cursor_.take();
  if (lexeme.kind == LexKind::Dots) {
    cursor_.fail(messages::badRange, {}, lexeme.place);
  } else if (isValue(lexeme) || lexeme.kind == LexKind::Star) {
    tokens.push_back(token(kindOf(lexeme), lexeme, reservedWord(lexeme)));
  } else {
    cursor_.fail(messages::badCharacter, {lexeme.text}, lexeme.place);
  }
}

// Each value between parentheses is a qualifier of the list.
void ValueReader::addQualifiers(TokenList& tokens) {
  if (cursor_.is(LexKind::Close, 1)) {
    cursor_.fail(messages::emptyParentheses, {}, cursor_.place());
  }
  for (const TokenInfoObj& value : parenthesised()) {
    auto qualifier = std::make_shared<TokenInfoObj::Impl>(value.impl());
    qualifier->kind = TokenKind::Qualifier;
    tokens.emplace_back(std::move(qualifier));
  }
}

// Reads from the opening parenthesis to behind the closing one.
TokenList ValueReader::parenthesised() {
  const Spot open = cursor_.take().place;
  TokenList tokens;
  while (!cursor_.atEnd() && !cursor_.is(LexKind::Slash)) {
    const Lexeme& lexeme = cursor_.take();
    if (lexeme.kind == LexKind::Close) {
      return tokens;
    }
    if (isValue(lexeme)) {
      tokens.push_back(token(kindOf(lexeme), lexeme));
    } else {
      cursor_.fail(messages::notInParentheses, {lexeme.text}, lexeme.place);
    }
  }
  cursor_.fail(messages::openParenthesis, {}, open);
  return tokens;
}

std::unique_ptr<ParsedParam> ValueReader::parameter(const ParamDescriptor::Impl& description,
                                                    const Spot& place) {
  auto result = std::make_unique<ParsedParam>();
  result->name = description.name;
  result->place = place;
  if (cursor_.atValueEnd()) {
    if (description.valueRequired) {
      cursor_.fail(messages::valueWanted, {description.name}, place);
    }
    return result;
  }
  switch (description.spec) {
    case UPSpecTypes::ParamTokenList:
      result->tokens = variableList();
      break;
    case UPSpecTypes::ParamKeyword:
    case UPSpecTypes::ParamKeywordList:
      readKeywords(description, *result);
      break;
    case UPSpecTypes::ParamNumber:
      readNumber(description, *result);
      break;
    case UPSpecTypes::ParamQualified:
      readQualified(description, *result);
      break;
  }
  return result;
}

void ValueReader::readKeywords(const ParamDescriptor::Impl& description, ParsedParam& result) {
  while (!cursor_.atValueEnd()) {
    const Lexeme& lexeme = cursor_.take();
    if (lexeme.kind != LexKind::Word) {
      cursor_.fail(messages::keywordWanted, {description.name, lexeme.text}, lexeme.place);
      continue;
    }
    const FoundName found = findName(description.keywords, lexeme.text);
    if (found.name.empty()) {
      cursor_.failName(messages::unknownKeyword, {lexeme.text, description.name}, lexeme, found,
                       description.keywords);
    } else if (description.spec == UPSpecTypes::ParamKeyword && !result.keywords.empty()) {
      cursor_.fail(messages::oneValueWanted, {description.name, lexeme.text}, lexeme.place);
    } else {
      result.keywords.push_back(found.name);
    }
  }
}

void ValueReader::readNumber(const ParamDescriptor::Impl& description, ParsedParam& result) {
  const Lexeme& lexeme = cursor_.take();
  result.tokens.push_back(token(kindOf(lexeme), lexeme));
  checkNumber(description, result);
  refuseRest(description);
}

void ValueReader::checkNumber(const ParamDescriptor::Impl& description, ParsedParam& result) {
  const TokenInfoObj::Impl& value = result.tokens.front().impl();
  if (value.kind != TokenKind::Number) {
    cursor_.fail(messages::numberWanted, {description.name, value.text}, value.place);
  } else if (result.tokens.size() > 1) {
    const TokenInfoObj::Impl& next = result.tokens[1].impl();
    cursor_.fail(messages::oneValueWanted, {description.name, next.text}, next.place);
  } else {
    checkBounds(description, value);
  }
}

void ValueReader::checkBounds(const ParamDescriptor::Impl& description,
                              const TokenInfoObj::Impl& token) {
  const auto refuse = [&](const CommandMessage& message, double bound) {
    cursor_.fail(message, {description.name, token.text, output::shortest(bound)}, token.place);
  };
  if (description.lower) {
    const auto [bound, option] = *description.lower;
    if (option == UPSpecTypes::LowerOpen && !(token.number > bound)) {
      refuse(messages::numberNotAbove, bound);
    } else if (!(token.number >= bound)) {
      refuse(messages::numberTooLow, bound);
    }
  }
  if (description.upper) {
    const auto [bound, option] = *description.upper;
    if (option == UPSpecTypes::UpperOpen && !(token.number < bound)) {
      refuse(messages::numberNotBelow, bound);
    } else if (!(token.number <= bound)) {
      refuse(messages::numberTooHigh, bound);
    }
  }
}

void ValueReader::readQualified(const ParamDescriptor::Impl& description, ParsedParam& result) {
  const Lexeme word = cursor_.take();
  const auto names = namesOf(description.qualifiers);
  const FoundName found = word.kind == LexKind::Word ? findName(names, word.text) : FoundName{};
  if (found.name.empty()) {
    cursor_.failName(messages::unknownKeyword, {word.text, description.name}, word, found, names);
    cursor_.skipValue();
    return;
  }
  const ParamDescriptor::Impl& qualifier = description.qualifiers[found.index].impl();
  result.qualifier = std::make_unique<ParsedParam>();
  result.qualifier->name = qualifier.name;
  result.qualifier->place = word.place;
  const bool bracketed = cursor_.is(LexKind::Open);
  if (bracketed) {
    result.qualifier->tokens = parenthesised();
  }
  fillQualifier(qualifier, *result.qualifier, bracketed);
  refuseRest(description);
}

void ValueReader::fillQualifier(const ParamDescriptor::Impl& description, ParsedParam& result,
                                bool bracketed) {
  if (description.bare) {
    if (bracketed) {
      cursor_.fail(messages::bareKeyword, {description.name}, result.place);
    }
  } else if (result.tokens.empty()) {
    if (description.valueRequired) {
      cursor_.fail(messages::valueWanted, {description.name}, result.place);
    }
  } else if (description.spec == UPSpecTypes::ParamNumber) {
    checkNumber(description, result);
  }
}

// A parameter of one value takes nothing more.
void ValueReader::refuseRest(const ParamDescriptor::Impl& description) {
  if (!cursor_.atValueEnd()) {
    cursor_.fail(messages::oneValueWanted, {description.name, cursor_.here().text},
                 cursor_.place());
    cursor_.skipValue();
  }
}

}  // namespace embedded::command
