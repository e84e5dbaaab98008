// The beginning of every run: tokens, data source, the parsed command.
#pragma once

#include "conformance/Description.h"
#include "host/command/CommandSpec.h"
#include "host/command/TokenInfoObj.h"
#include "host/command/UniversalParser.h"
#include "host/command/VarSpecObj.h"
#include "host/data/ProcedureDataSource.h"

namespace conformance {

struct Parsed {
  Parsed() : described(description()), parser(tokens, spec, described) {
    accepted = parser.getCommandSpecifications() == 0;
  }

  // The list of the only subcommand.
  TokenList list() const { return spec.getSubComObj("LIST")->exportParamObj()->getTokenList(); }

  // Has a validator accept the first variables of the dictionary, so that they may be read.
  bool accept(VarSpecObj& validator) const {
    return validator.ValidateVariables(list(), UPSpecTypes::RepeatRefused);
  }

  const KORA_TokenSequence tokens{true};
  ProcedureDataSource source;
  CommandSpec spec;
  CommandDescriptor described;
  UniversalParser parser;
  bool accepted = false;
};

}  // namespace conformance
