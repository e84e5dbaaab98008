// Where something stands in a command, without the text of its line: small enough for every token.
#pragma once

#include <cstddef>
#include <string_view>

#include "embedded/output/Document.h"

namespace embedded::command {

struct Spot {
  int line = 1;  // lines and columns count from 1, columns in characters
  int column = 1;
  int length = 1;             // in characters, on that line
  std::size_t lineStart = 0;  // the byte of the command where the line begins

  friend bool operator==(const Spot&, const Spot&) = default;
};

// The place for a message, with its line as it can be shown: one character a column, what is no
// text or no printable character replaced. Lines too long to be shown are left out.
output::Place placeOf(const Spot& spot, std::string_view command);

// A character of a UTF-8 text.
struct Character {
  int code = -1;          // its code point; negative for bytes that are none
  std::size_t bytes = 1;  // how many bytes it takes
};

// The character at `at`, which lies within the text.
Character characterAt(std::string_view text, std::size_t at);

}  // namespace embedded::command
