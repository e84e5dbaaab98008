#include "embedded/command/ParsedCommand.h"

#include <algorithm>

#include "embedded/session/Session.h"
#include "host/text/KORAMBstr.h"

// Declared here as everything a host must define of its interface.
ParamObj::~ParamObj() = default;
SubComObj::~SubComObj() = default;

namespace embedded::command {

namespace {

void focusOn(const Spot& place) {
  Session::current().commandFocus = place;
}

}  // namespace

bool ParsedParam::getNumberValue(double& value) const {
  focusOn(place);
  if (tokens.size() != 1 || !tokens.front().IsNumber()) {
    return false;
  }
  value = tokens.front().getNumeric();
  return true;
}

bool ParsedParam::isStringValueCase(std::string_view keyword) const {
  focusOn(place);
  std::string wanted(keyword);
  KORAMBstrupr_A(wanted);
  return keywords.size() == 1 && keywords.front() == wanted;
}

TokenList ParsedParam::getTokenList() const {
  focusOn(tokens.empty() ? place : tokens.front().impl().place);
  return tokens;
}

std::vector<std::string> ParsedParam::getUpStringList() const {
  focusOn(place);
  return keywords;
}

const ParamObj* ParsedParam::getStringAndQual(std::string& keyword) const {
  focusOn(place);
  if (!qualifier) {
    return nullptr;
  }
  focusOn(qualifier->place);
  keyword = qualifier->name;
  return qualifier.get();
}

bool ParsedParam::isLeadingToken() const {
  focusOn(place);
  return !tokens.empty() || !keywords.empty() || qualifier != nullptr;
}

const ParamObj* ParsedSubcommand::getParamObj(std::string_view wanted) const {
  const auto found = std::find_if(parameters.begin(), parameters.end(),
                                  [&](const auto& parameter) { return parameter->name == wanted; });
  return found == parameters.end() ? nullptr : found->get();
}

}  // namespace embedded::command

CommandSpec::CommandSpec() : impl_(std::make_unique<Impl>()) {}
CommandSpec::~CommandSpec() = default;

int CommandSpec::getSubComListSize() const {
  return static_cast<int>(impl_->subcommands.size());
}

const SubComObj* CommandSpec::getSubComObj(std::string_view name) const {
  const auto found = std::find_if(impl_->subcommands.begin(), impl_->subcommands.end(),
                                  [&](const auto& subcommand) { return subcommand->name == name; });
  return found == impl_->subcommands.end() ? nullptr : found->get();
}
