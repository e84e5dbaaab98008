// Lists of variables, as the test subcommands share them.

#include "PRPParser.h"
#include "PRPParserRepeats.h"

std::optional<PRPParser::SplitTokens> PRPParser::SplitAt(const TokenList& tokens,
                                                         TokenSequenceBase::OperatorCode code,
                                                         std::string_view onlyOne) {
  SplitTokens split;
  for (const TokenInfoObj& token : tokens) {
    if (!token.IsReservedWord() || token.getOperatorCode() != code) {
      (split.found ? split.after : split.before).push_back(token);
    } else if (split.found) {
      Refuse(onlyOne);
      return std::nullopt;
    } else {
      split.found = true;
    }
  }
  return split;
}

std::optional<PRPParser::VarInds> PRPParser::ValidVars(VarSpecObj& validator,
                                                       const TokenList& tokens) {
  if (!validator.ValidateVariables(tokens, UPSpecTypes::RepeatPassedThrough)) return std::nullopt;
  if (!validator.CheckCommonVars(fWeightVar)) return std::nullopt;
  return validator.GetValidVarList();
}

void PRPParser::DropRepeatedVars(VarInds& vars, std::string_view warning, std::string_view word,
                                 std::string_view subComName) {
  if (!prp::RemoveRepeats(vars)) return;
  if (word.empty())
    fMessages.GenericWarning(warning, {subComName});
  else
    fMessages.GenericWarning(warning, {word, subComName});
}
