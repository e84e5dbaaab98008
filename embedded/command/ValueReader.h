// Reads what stands after a name: lists of variables, keywords, numbers, qualifiers.
#pragma once

#include <memory>

#include "embedded/command/Cursor.h"
#include "embedded/command/ParsedCommand.h"

namespace embedded::command {

class ValueReader {
 public:
  explicit ValueReader(Cursor& cursor) : cursor_(cursor) {}

  // A leading list, up to the first parameter or slash.
  TokenList variableList();
  // The value of a parameter whose name and equals sign have been read.
  std::unique_ptr<ParsedParam> parameter(const ParamDescriptor::Impl& description,
                                         const Spot& place);

 private:
  void addListItem(TokenList& tokens);
  void addQualifiers(TokenList& tokens);
  void readKeywords(const ParamDescriptor::Impl& description, ParsedParam& result);
  void readNumber(const ParamDescriptor::Impl& description, ParsedParam& result);
  void readQualified(const ParamDescriptor::Impl& description, ParsedParam& result);
  TokenList parenthesised();
  void fillQualifier(const ParamDescriptor::Impl& description, ParsedParam& result, bool bracketed);
  void checkNumber(const ParamDescriptor::Impl& description, ParsedParam& result);
  void checkBounds(const ParamDescriptor::Impl& description, const TokenInfoObj::Impl& token);
  void refuseRest(const ParamDescriptor::Impl& description);

  Cursor& cursor_;
};

}  // namespace embedded::command
