// The distinct patterns of a run, whole and in canonical order.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "CaseSource.h"
#include "Relation.h"

namespace embedded::data {

// Patterns in the order of split groups, within a group in the order of their values from the
// first column to the last (missing first, numbers ascending, strings by bytes), those of
// invalid weight after those of valid weight. No two agree in values and kind of weight.
struct PatternTable {
  std::vector<OBS> rows;
  std::vector<double> weights;         // sums of rounded weights; 0 for invalid weights
  std::vector<std::uint64_t> counts;   // cases
  std::vector<std::size_t> groupEnds;  // index behind the last pattern of each group

  std::size_t size() const { return weights.size(); }
};

// How the rows of a table are made from a request's: the split columns are its first words.
struct PatternShape {
  std::vector<int> widths;  // of each column, the weight's not among them; 0 for numbers
  std::size_t splitWords = 0;
  bool weightWord = false;  // each row ends in a word with its weight
};

// Reads the patterns of a request. Empty when there are more than `most` of them. Error(Data)
// when the weights of one pattern add up to more than 2^52.
std::optional<PatternTable> readPatterns(PatternScan& scan, const PatternShape& shape,
                                         std::size_t most, const std::string& source);

// The cases of a table, a split group at a time. The table must outlive it.
class PatternStream final : public CaseStream {
 public:
  PatternStream(const PatternTable& table, std::size_t words) : table_(table), words_(words) {}
  bool next(CaseBlock& block) override;

 private:
  const PatternTable& table_;
  std::size_t words_;
  std::size_t group_ = 0;
};

}  // namespace embedded::data
