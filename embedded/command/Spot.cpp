#include "embedded/command/Spot.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <string>

namespace embedded::command {

namespace {

constexpr std::size_t longestLine = 4096;      // in bytes, of a line that is shown
constexpr const char* replacement = "\uFFFD";  // of what cannot be shown

}  // namespace

// ICU's macro narrows its own numbers.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wconversion"
#pragma GCC diagnostic ignored "-Wsign-conversion"

Character characterAt(std::string_view text, std::size_t at) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data()) + at;
  const auto length = static_cast<std::int32_t>(std::min<std::size_t>(text.size() - at, 4));
  std::int32_t next = 0;
  UChar32 code = 0;
  U8_NEXT(bytes, next, length, code);
  return {code, static_cast<std::size_t>(next)};
}

#pragma GCC diagnostic pop

output::Place placeOf(const Spot& spot, std::string_view command) {
  output::Place place{
      .line = spot.line, .column = spot.column, .length = spot.length, .lineText = {}};
  std::string_view line = command.substr(std::min(spot.lineStart, command.size()));
  line = line.substr(0, line.substr(0, longestLine + 1).find_first_of("\r\n"));
  if (line.size() > longestLine) {
    return place;
  }
  for (std::size_t at = 0; at < line.size();) {
    const Character character = characterAt(line, at);
    if (character.code == '\t') {
      place.lineText += ' ';
    } else if (character.code < 0 || u_iscntrl(character.code) != 0) {
      place.lineText += replacement;
    } else {
      place.lineText += line.substr(at, character.bytes);
    }
    at += character.bytes;
  }
  return place;
}

}  // namespace embedded::command
