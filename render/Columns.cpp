#include "render/Columns.h"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <algorithm>

namespace render {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

// The character at `at`, negative when the bytes are no UTF-8; moves past it.
UChar32 nextCharacter(std::string_view text, std::size_t& at) {
  const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
  auto place = static_cast<std::int32_t>(at);
  UChar32 character = 0;
  U8_NEXT(bytes, place, static_cast<std::int32_t>(text.size()), character);
  at = static_cast<std::size_t>(place);
  return character;
}

// The vowels and final consonants of Hangul that join the consonant before them.
bool joinsHangul(UChar32 character) {
  const int type = u_getIntPropertyValue(character, UCHAR_HANGUL_SYLLABLE_TYPE);
  return type == U_HST_VOWEL_JAMO || type == U_HST_TRAILING_JAMO;
}

std::size_t columnsOfCharacter(UChar32 character) {
  const int type = u_charType(character);
  if (type == U_NON_SPACING_MARK || type == U_ENCLOSING_MARK || type == U_FORMAT_CHAR ||
      type == U_CONTROL_CHAR || joinsHangul(character)) {
    return 0;
  }
  const int width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

bool isPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

std::size_t missingColumns(std::string_view text, std::size_t width) {
  const std::size_t has = columnsOf(text);
  return has < width ? width - has : 0;
}

std::string padded(std::size_t before, std::string_view text, std::size_t after) {
  std::string out(before, ' ');
  out += text;
  return out.append(after, ' ');
}

// Words without the blanks between them.
std::vector<std::string_view> wordsOf(std::string_view text) {
  std::vector<std::string_view> words;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find(' ', at), text.size());
    if (end > at) {
      words.push_back(text.substr(at, end - at));
    }
    at = end + 1;
  }
  return words;
}

// The bytes of the word's beginning that fit `width` columns, at least one character.
std::size_t fitting(std::string_view word, std::size_t width) {
  std::size_t at = 0;
  std::size_t used = 0;
  while (at < word.size()) {
    std::size_t next = at;
    used += columnsOfCharacter(nextCharacter(word, next));
    if (used > width && at > 0) {
      break;
    }
    at = next;
  }
  return at;
}

}  // namespace

std::size_t columnsOf(std::string_view text) {
  if (isPlain(text)) {
    return text.size();
  }
  std::size_t columns = 0;
  for (std::size_t at = 0; at < text.size();) {
    columns += columnsOfCharacter(nextCharacter(text, at));
  }
  return columns;
}

std::size_t endOfCharacters(std::string_view text, std::size_t characters) {
  std::size_t at = 0;
  for (; characters > 0 && at < text.size(); --characters) {
    nextCharacter(text, at);
  }
  return at;
}

std::string padRight(std::string_view text, std::size_t width) {
  return padded(0, text, missingColumns(text, width));
}

std::string padLeft(std::string_view text, std::size_t width) {
  return padded(missingColumns(text, width), text, 0);
}

std::string centred(std::string_view text, std::size_t width) {
  const std::size_t missing = missingColumns(text, width);
  return padded(missing / 2, text, missing - missing / 2);
}

std::vector<std::string> wrapped(std::string_view text, std::size_t width) {
  std::vector<std::string> lines;
  for (std::string_view word : wordsOf(text)) {
    if (!lines.empty() && columnsOf(lines.back()) + 1 + columnsOf(word) <= width) {
      lines.back().append(1, ' ').append(word);
      continue;
    }
    while (columnsOf(word) > width && word.size() > 1) {
      const std::size_t end = fitting(word, width);
      lines.emplace_back(word.substr(0, end));
      word.remove_prefix(end);
    }
    if (!word.empty()) {
      lines.emplace_back(word);
    }
  }
  if (lines.empty()) {
    lines.emplace_back();
  }
  return lines;
}

std::size_t longestWord(std::string_view text) {
  std::size_t longest = 0;
  for (const std::string_view word : wordsOf(text)) {
    longest = std::max(longest, columnsOf(word));
  }
  return longest;
}

std::string visible(std::string_view text) {
  if (isPlain(text)) {
    return std::string(text);
  }
  std::string out;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t begin = at;
    const UChar32 character = nextCharacter(text, at);
    if (character == '\n' || character == '\r' || character == '\t') {
      out += ' ';
    } else if (character < 0 || u_charType(character) == U_CONTROL_CHAR) {
      out += replacement;
    } else {
      out += text.substr(begin, at - begin);
    }
  }
  return out;
}

}  // namespace render
