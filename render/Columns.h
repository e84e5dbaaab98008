// Text measured in the columns of a terminal.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace render {

// Columns that the UTF-8 text takes: wide characters two, combining ones none.
std::size_t columnsOf(std::string_view text);

// The text with blanks added on one side, or both, up to `width` columns.
std::string padRight(std::string_view text, std::size_t width);
std::string padLeft(std::string_view text, std::size_t width);
std::string centred(std::string_view text, std::size_t width);

// Lines of at most `width` columns, broken at blanks; a longer word has a line of its own.
std::vector<std::string> wrapped(std::string_view text, std::size_t width);

}  // namespace render
