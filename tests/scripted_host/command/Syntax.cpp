// The host's own check of a command against its description.
#include <algorithm>
#include <cmath>
#include <set>

#include "scripted_host/command/Description.h"

namespace scripted {

namespace {

using Violations = std::vector<std::string>;

bool withinBounds(double number, const ParamDescriptor::Impl& description) {
  if (!std::isfinite(number)) return false;
  if (description.lower) {
    const auto [bound, option] = *description.lower;
    if (option == UPSpecTypes::LowerOpen ? number <= bound : number < bound) return false;
  }
  if (description.upper) {
    const auto [bound, option] = *description.upper;
    if (option == UPSpecTypes::UpperOpen ? number >= bound : number > bound) return false;
  }
  return true;
}

void checkKeywords(const Param& param, const ParamDescriptor::Impl& description,
                   Violations& found) {
  const bool list = description.spec == UPSpecTypes::ParamKeywordList;
  if (param.keywords.empty() || (!list && param.keywords.size() > 1))
    found.push_back("wrong number of keywords: " + param.name);
  for (const std::string& keyword : param.keywords)
    if (std::ranges::find(description.keywords, upperCase(keyword)) == description.keywords.end())
      found.push_back("undeclared keyword: " + keyword);
}

// What a qualifier carries, against the parameter that was declared for it (null: none).
void checkCarried(const Param& param, const ParamDescriptor::Impl* description, Violations& found) {
  const bool hasValue = param.tokens.has_value() && !param.tokens->empty();
  if (description == nullptr) {
    if (hasValue) found.push_back("no value belongs to " + param.qualifier);
    return;
  }
  if (!hasValue) {
    if (description->valueRequired) found.push_back("value missing: " + param.qualifier);
    return;
  }
  if (description->spec == UPSpecTypes::ParamNumber && param.number &&
      !withinBounds(*param.number, *description))
    found.push_back("number out of bounds: " + param.qualifier);
}

void checkQualified(const Param& param, const ParamDescriptor::Impl& description,
                    Violations& found) {
  for (const auto& [name, carried] : description.qualifiers)
    if (name == upperCase(param.qualifier))
      return checkCarried(param, carried ? &carried->impl() : nullptr, found);
  found.push_back("undeclared qualifier: " + param.qualifier);
}

void checkParam(const Param& param, const ParamDescriptor::Impl& description, Violations& found) {
  switch (description.spec) {
    case UPSpecTypes::ParamNumber:
      if (param.kind != Param::Number ||
          (param.number && !withinBounds(*param.number, description)))
        found.push_back("no number within the bounds: " + param.name);
      break;
    case UPSpecTypes::ParamKeyword:
    case UPSpecTypes::ParamKeywordList:
      checkKeywords(param, description, found);
      break;
    case UPSpecTypes::ParamQualified:
      checkQualified(param, description, found);
      break;
    case UPSpecTypes::ParamTokenList:
      break;
  }
}

void checkParams(const SubCommand& subCommand, const SubComDescriptor::Impl& description,
                 Violations& found) {
  std::set<std::string> seen;
  for (const Param& param : subCommand.params) {
    const auto declared = std::ranges::find(description.params, upperCase(param.name),
                                            [](const auto& other) { return other.impl().name; });
    if (declared == description.params.end()) {
      found.push_back("undeclared parameter: " + param.name);
      continue;
    }
    if (!seen.insert(declared->impl().name).second && !declared->impl().repeatable)
      found.push_back("parameter given twice: " + param.name);
    checkParam(param, declared->impl(), found);
  }
}

void checkList(const SubCommand& subCommand, const SubComDescriptor::Impl& description,
               Violations& found) {
  const bool given = subCommand.list.has_value() && !subCommand.list->empty();
  if (!description.leading) {
    if (given) found.push_back("no list belongs to " + subCommand.name);
  } else if (description.leading->second && !given) {
    found.push_back("list missing: " + subCommand.name);
  }
}

}  // namespace

std::string upperCase(std::string text) {
  for (char& c : text)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return text;
}

std::vector<std::string> violations(const Command& command,
                                    const CommandDescriptor::Impl& description) {
  Violations found;
  std::set<std::string> seen;
  for (const SubCommand& subCommand : command) {
    const auto declared = std::ranges::find(description.subCommands, upperCase(subCommand.name),
                                            [](const auto& other) { return other.impl().name; });
    if (declared == description.subCommands.end()) {
      found.push_back("undeclared subcommand: " + subCommand.name);
      continue;
    }
    if (!seen.insert(declared->impl().name).second && !declared->impl().repeatable)
      found.push_back("subcommand given twice: " + subCommand.name);
    checkList(subCommand, declared->impl(), found);
    checkParams(subCommand, declared->impl(), found);
  }
  for (const SubComDescriptor& declared : description.subCommands)
    if (declared.impl().required && !seen.contains(declared.impl().name))
      found.push_back("subcommand missing: " + declared.impl().name);
  return found;
}

}  // namespace scripted
