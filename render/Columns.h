// Text measured in the columns of a terminal.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace render {

// Columns that the UTF-8 text takes: wide characters two, combining ones none.
std::size_t columnsOf(std::string_view text);

// Where the text's first `characters` characters end, in bytes.
std::size_t endOfCharacters(std::string_view text, std::size_t characters);

// The text with blanks added on one side, or both, up to `width` columns.
std::string padRight(std::string_view text, std::size_t width);
std::string padLeft(std::string_view text, std::size_t width);
std::string centred(std::string_view text, std::size_t width);

// Lines of at most `width` columns, at least one of them, broken at blanks, and inside a word
// only when the word is wider than a line.
std::vector<std::string> wrapped(std::string_view text, std::size_t width);

// The columns of the longest word.
std::size_t longestWord(std::string_view text);

// The text fit for one line of a terminal: line breaks and tabs become blanks, and what else would
// steer the terminal becomes a replacement character.
std::string visible(std::string_view text);

}  // namespace render
