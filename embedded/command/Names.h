// Names that may be abbreviated.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "embedded/command/Descriptors.h"

namespace embedded::command {

// What an abbreviation stands for: the name and its index, or the names that it could be, if
// there are several.
struct FoundName {
  std::string name;
  std::size_t index = 0;
  std::vector<std::string> candidates;
};

// Looks `written` up without regard to case: a whole name first, else the one name that it begins.
FoundName findName(const std::vector<std::string>& names, std::string_view written);

template <class Descriptor>
std::vector<std::string> namesOf(const std::vector<Descriptor>& descriptors) {
  std::vector<std::string> names;
  for (const Descriptor& descriptor : descriptors) {
    names.push_back(descriptor.impl().name);
  }
  return names;
}

}  // namespace embedded::command
