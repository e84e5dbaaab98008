// The observation word: the unit in which a case's values lie in memory.
//
// A numeric value takes one word. A string value of width w takes (w + 7) / 8 words, its bytes
// laid end to end and padded with blanks to its width; a null string is all NUL bytes.
#pragma once

#include <cstddef>
#include <memory>

union OBS {
  double number;
  char bytes[8];
};
static_assert(sizeof(OBS) == 8);

// An observation value that its holder owns: one word for a number, else as many as the
// variable's values have. Made with new[] on either side of the interface, freed by its last
// holder on either side (one C++ runtime).
using OwnedOBS = std::unique_ptr<OBS[]>;

// Words that a value of this type takes; `type` is 0 for numeric, else the width in bytes.
constexpr std::size_t ObsWords(int type) {
  return type <= 8 ? 1 : (static_cast<std::size_t>(type) + 7) / 8;
}
