// From the engine's vectors to words of rows, a column at a time.
#pragma once

#include <duckdb.h>

#include <cstdint>

#include "host/data/OBS.h"

namespace embedded::data {

// What a column's values brought with them.
struct ColumnFaults {
  std::uint64_t nonFinite = 0;  // read as missing
  bool suspect = false;         // a whole number of 2^53 or more that may not be exact
  bool tooLong = false;         // a string longer than the column's width
};

// Writes `count` values of `vector` to out[0], out[stride], ... - a number each, or, of a string
// column, `width` bytes in ObsWords(width) words - and adds to `faults`. `multiplicity` says how
// many cases a row stands for; null for one each. A vector of a type that is no number and no
// string is an internal error. Whole numbers of a real column are suspect only when
// `wholeAreTexts`: then they were texts and may have lost digits.
class ColumnWriter {
 public:
  ColumnWriter(int width, bool wholeAreTexts) : width_(width), wholeAreTexts_(wholeAreTexts) {}

  void write(duckdb_vector vector, std::size_t count, OBS* out, std::size_t stride,
             ColumnFaults& faults, const std::uint64_t* multiplicity = nullptr);

 private:
  int width_;
  bool wholeAreTexts_;
};

}  // namespace embedded::data
