// A command as it was read.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "embedded/command/Tokens.h"
#include "host/command/CommandSpec.h"

namespace embedded::command {

// A parameter with its value, or a qualifier with the value that it carries.
class ParsedParam final : public ParamObj {
 public:
  std::string name;  // as declared
  Spot place;
  TokenList tokens;                   // of the value
  std::vector<std::string> keywords;  // whole and in capital letters
  std::unique_ptr<ParsedParam> qualifier;

  std::string getParamName() const override { return name; }
  bool getNumberValue(double& value) const override;
  bool isStringValueCase(std::string_view keyword) const override;
  TokenList getTokenList() const override;
  std::vector<std::string> getUpStringList() const override;
  const ParamObj* getStringAndQual(std::string& keyword) const override;
  bool isLeadingToken() const override;
};

class ParsedSubcommand final : public SubComObj {
 public:
  std::string name;     // as declared
  std::string written;  // as the user wrote it
  Spot place;
  std::unique_ptr<ParsedParam> list;
  std::vector<std::unique_ptr<ParsedParam>> parameters;

  const ParamObj* getParamObj(std::string_view wanted) const override;
  const ParamObj* exportParamObj() const override { return list.get(); }
  std::string getSubComExtName() const override { return written; }
};

}  // namespace embedded::command

struct CommandSpec::Impl {
  std::vector<std::unique_ptr<embedded::command::ParsedSubcommand>> subcommands;
};
