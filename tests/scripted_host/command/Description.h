// The command description as the scripted host keeps it, and the check of a command against it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/command/CommandDescriptor.h"
#include "scripted_host/session/Script.h"

struct ParamDescriptor::Impl {
  std::string name;
  UPSpecTypes::ParamSpec spec;
  bool repeatable = false;
  bool valueRequired = false;
  int brackets = 0;
  std::vector<std::string> keywords;
  // In declared order; a bare keyword carries no parameter.
  std::vector<std::pair<std::string, std::optional<ParamDescriptor>>> qualifiers;
  std::optional<std::pair<double, UPSpecTypes::LowerBdryOptions>> lower;
  std::optional<std::pair<double, UPSpecTypes::UpperBdryOptions>> upper;
};

struct SubComDescriptor::Impl {
  std::string name;
  UPSpecTypes::SubComSpec spec;
  bool repeatable = false;
  bool required = false;
  std::optional<std::pair<UPSpecTypes::ParamSpec, bool>> leading;
  std::vector<ParamDescriptor> params;
};

struct CommandDescriptor::Impl {
  std::string name;
  std::string title;
  std::vector<SubComDescriptor> subCommands;
};

namespace scripted {

// What is wrong with the command, in the host's own words; empty when it follows the description.
std::vector<std::string> violations(const Command& command,
                                    const CommandDescriptor::Impl& description);

std::string upperCase(std::string text);

}  // namespace scripted
