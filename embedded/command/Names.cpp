#include "embedded/command/Names.h"

#include "host/text/KORAMBstr.h"

namespace embedded::command {

FoundName findName(const std::vector<std::string>& names, std::string_view written) {
  std::string wanted(written);
  KORAMBstrupr_A(wanted);
  FoundName found;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (names[i] == wanted) {
      return {names[i], i, {}};
    }
    if (names[i].starts_with(wanted)) {
      found.candidates.push_back(names[i]);
      found.index = i;
    }
  }
  if (found.candidates.size() == 1) {
    found.name = std::move(found.candidates.front());
    found.candidates.clear();
  }
  return found;
}

}  // namespace embedded::command
