#include "render/Columns.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>

namespace render {

namespace {

std::size_t columnsOfCharacter(UChar32 character) {
  const int type = u_charType(character);
  if (character < 0 || type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK ||
      type == U_FORMAT_CHAR || type == U_CONTROL_CHAR) {
    return 0;
  }
  const int width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

std::string blanks(std::size_t count) {
  return std::string(count, ' ');
}

std::size_t missingColumns(std::string_view text, std::size_t width) {
  const std::size_t has = columnsOf(text);
  return has < width ? width - has : 0;
}

}  // namespace

std::size_t columnsOf(std::string_view text) {
  if (std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; })) {
    return text.size();
  }
  const auto unicode = icu::UnicodeString::fromUTF8(
      icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
  std::size_t columns = 0;
  for (std::int32_t i = 0; i < unicode.length(); i = unicode.moveIndex32(i, 1)) {
    columns += columnsOfCharacter(unicode.char32At(i));
  }
  return columns;
}

std::string padRight(std::string_view text, std::size_t width) {
  return std::string(text) + blanks(missingColumns(text, width));
}

std::string padLeft(std::string_view text, std::size_t width) {
  return blanks(missingColumns(text, width)) + std::string(text);
}

std::string centred(std::string_view text, std::size_t width) {
  const std::size_t missing = missingColumns(text, width);
  return blanks(missing / 2) + std::string(text) + blanks(missing - missing / 2);
}

std::vector<std::string> wrapped(std::string_view text, std::size_t width) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find(' ', at), text.size());
    const std::string_view word = text.substr(at, end - at);
    if (!lines.empty() && columnsOf(lines.back()) + 1 + columnsOf(word) <= width) {
      lines.back() += " " + std::string(word);
    } else if (!word.empty()) {
      lines.emplace_back(word);
    }
    at = end + 1;
  }
  return lines;
}

}  // namespace render
