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

// How a decimal is stored: as a whole number over a power of ten.
struct DecimalType {
  int scale = 0;
  duckdb_type storedAs = DUCKDB_TYPE_INVALID;
};

// Writes `count` values of `vector` to out[0], out[stride], ... - a number each, or, of a string
// column, `width` bytes in ObsWords(width) words - and adds to `faults`. `multiplicity` says how
// many cases a row stands for; null for one each. `first` is the first value to be written, a
// multiple of 64. A vector of a type that is no number and no
// string is an internal error; all vectors of one writer are of one type. Whole numbers of a real
// column are suspect only when `wholeAreTexts`: then they were texts and may have lost digits.
class ColumnWriter {
 public:
  ColumnWriter(int width, bool wholeAreTexts) : width_(width), wholeAreTexts_(wholeAreTexts) {}

  void write(duckdb_vector vector, std::size_t count, OBS* out, std::size_t stride,
             ColumnFaults& faults, const std::uint64_t* multiplicity = nullptr,
             std::size_t first = 0);

 private:
  void findType(duckdb_vector vector);

  int width_;
  bool wholeAreTexts_;
  duckdb_type type_ = DUCKDB_TYPE_INVALID;  // until the first vector comes
  DecimalType decimal_;
};

}  // namespace embedded::data
