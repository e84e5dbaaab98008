#include "render/MessageParts.h"

#include <algorithm>

#include "render/Columns.h"

namespace render {

using embedded::output::Severity;

std::string_view severityId(Severity severity) {
  switch (severity) {
    case Severity::Error:
      return "error";
    case Severity::Warning:
      return "warning";
    case Severity::Note:
      return "note";
  }
  return {};
}

MarkedLine markedLine(const embedded::output::Place& place) {
  const std::string line = visible(place.lineText);
  const std::size_t begin =
      endOfCharacters(line, static_cast<std::size_t>(std::max(0, place.column - 1)));
  const std::size_t length = endOfCharacters(std::string_view(line).substr(begin),
                                             static_cast<std::size_t>(std::max(1, place.length)));
  return {line.substr(0, begin), line.substr(begin, length), line.substr(begin + length)};
}

}  // namespace render
