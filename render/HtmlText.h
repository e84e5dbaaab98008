// Text as HTML: whatever it holds, nothing in it is markup.
#pragma once

#include <string>
#include <string_view>

namespace render {

// The text on one line, for element content and for attributes in double quotes. Line breaks
// become blanks, other control characters replacement characters.
std::string htmlText(std::string_view text);

// The same with its line breaks kept, for elements that show them.
std::string htmlLines(std::string_view text);

// Text with the references and separators that a place in an element's id wants: "t1-n2".
std::string htmlId(std::string_view prefix, std::size_t number);

}  // namespace render
