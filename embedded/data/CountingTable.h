// Counts cases by pattern: a state with add, combine and finish, one for each thread.
//
// A pattern is packed into 64 bits, the codes of its values side by side. Few patterns are
// counted in a table indexed by those bits, more of them by hashing.
#pragma once

#include <cstdint>
#include <vector>

#include "CountingCodes.h"
#include "Relation.h"

namespace embedded::data {

class CountingTable {
 public:
  // Columns of these widths, 0 for a number; `weighted` when cases come with weights.
  CountingTable(const std::vector<int>& widths, bool weighted);

  // Counts some cases; `columns` holds the values of each column, and last, where cases are
  // weighted, their raw weights. False when there are now more patterns than this table is for:
  // it is useless then.
  bool add(const std::vector<const OBS*>& columns, std::size_t count);
  // Counts the cases of another table of the same columns; false as above.
  bool combine(const CountingTable& other);
  // All patterns, in no order: rows, sums of rounded weights, numbers of cases. One of invalid
  // weight is told from one of valid weight.
  PatternBatch finish() const;

 private:
  struct Entry {
    std::uint64_t key = 0;
    std::uint64_t cases = 0;  // 0: a free entry
    double weight = 0.0;      // sum of rounded weights, where cases are weighted
  };

  bool fitKeys();
  std::uint64_t repacked(std::uint64_t key, const std::vector<unsigned>& starts) const;
  void pack(std::size_t count);
  void weigh(const OBS* weights, std::size_t count);
  void countDense(std::size_t count);
  void tally(std::size_t count);
  bool countHashed(std::size_t count);
  Entry& entryOf(std::uint64_t key);
  bool rebuild(const std::vector<Entry>& entries, std::size_t size);
  std::uint32_t codeIn(std::uint64_t key, std::size_t column) const;

  std::vector<CountingCodes> codes_;  // of each column
  bool weighted_;
  bool dense_ = true;             // the entry of a key stands at the index that is the key
  std::vector<unsigned> starts_;  // the lowest bit of each column in a key, and the end of the last
  std::vector<Entry> entries_;    // a power of two of them
  std::size_t used_ = 0;          // patterns, of a table that is not dense
  // Of the cases being added.
  std::vector<std::vector<std::uint32_t>> coded_;
  std::vector<std::uint64_t> keys_;
  std::vector<double> weights_;
  std::vector<std::uint32_t> tallies_;
};

}  // namespace embedded::data
