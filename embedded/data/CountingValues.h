// A column's values as numbers without nulls, by a function of our own inside the engine.
//
// Columnar files keep few-valued columns as dictionaries, and the engine applies a function to the
// dictionary instead of the rows. What it hands on then has no null bits, and these would be the
// dearest part of reading the rows.
#pragma once

#include <atomic>
#include <string>

#include "ColumnWords.h"
#include "DuckDb.h"

namespace embedded::data {

class CountingValues {
 public:
  // Whether columns of this type of the engine can be read through such a function.
  static bool canRead(const std::string& typeName);

  // Adds a function to the engine, for one column. It must outlive all queries that use it.
  explicit CountingValues(Engine& engine);
  CountingValues(const CountingValues&) = delete;
  CountingValues& operator=(const CountingValues&) = delete;

  // The function of `column`: the value as a real number, the system-missing one for null.
  // Values that are not finite stay what they are.
  std::string call(const std::string& column) const { return name_ + "(" + column + ")"; }
  // Whether there were whole numbers that may not be exact.
  bool suspect() const { return suspect_; }

 private:
  static void run(duckdb_function_info info, duckdb_data_chunk input, duckdb_vector output);
  void convert(duckdb_vector values, std::size_t count, OBS* out);

  std::string name_;
  std::atomic<bool> suspect_ = false;
};

}  // namespace embedded::data
