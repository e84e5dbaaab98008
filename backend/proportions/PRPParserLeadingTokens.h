// The list that a test subcommand begins with.
#pragma once

#include "PRPAssert.h"
#include "host/command/CommandSpec.h"

namespace prp {

// Never empty: the description of the command requires the list.
inline TokenList LeadingTokens(const SubComObj& subCom) {
  const ParamObj* param = subCom.exportParamObj();
  TokenList tokens = param == nullptr ? TokenList() : param->getTokenList();
  PRP_ASSERT(!tokens.empty(), "nTokens > 0", "PRPParser");
  return tokens;
}

}  // namespace prp
