// What every renderer shows of a message: its kind, and the place in the command.
#pragma once

#include <string>
#include <string_view>

#include "embedded/output/Document.h"

namespace render {

// "error", "warning" or "note".
std::string_view severityId(embedded::output::Severity severity);

// The line of the command in three parts, the middle one being the place; all of it can be shown.
struct MarkedLine {
  std::string before;
  std::string marked;  // at least one character, unless the place is at the end of the line
  std::string after;
};

MarkedLine markedLine(const embedded::output::Place& place);

}  // namespace render
