// What this host keeps of a command description.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/command/CommandDescriptor.h"

// A qualifier is a parameter description; a bare one takes no value.
struct ParamDescriptor::Impl {
  std::string name;
  UPSpecTypes::ParamSpec spec = UPSpecTypes::ParamTokenList;
  bool repeatable = false;
  bool valueRequired = false;
  bool bare = false;
  std::vector<std::string> keywords;
  std::vector<ParamDescriptor> qualifiers;
  std::optional<std::pair<double, UPSpecTypes::LowerBdryOptions>> lower;
  std::optional<std::pair<double, UPSpecTypes::UpperBdryOptions>> upper;
};

struct SubComDescriptor::Impl {
  std::string name;
  bool repeatable = false;
  bool required = false;
  bool hasList = false;
  bool listRequired = false;
  std::vector<ParamDescriptor> parameters;
};

struct CommandDescriptor::Impl {
  std::string name;
  std::string title;
  std::vector<SubComDescriptor> subcommands;
};
