// Cases held in memory: numeric variables, a whole count for each row.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "embedded/data/CaseSource.h"
#include "embedded/data/Dictionary.h"

namespace embedded::data {

// A small table of counts: each row stands for as many cases as its count says; rows of count 0
// are not there.
struct MemoryTable {
  std::vector<output::VariableInfo> variables;  // numeric
  std::vector<std::vector<double>> rows;        // a value of each variable
  std::vector<std::uint64_t> counts;            // by row, at most 2^53
  std::string weight = "count";                 // name of the variable that holds the counts
};

// The dictionary of the table: its variables, then the weight.
Dictionary dictionaryOf(const MemoryTable& table);

// Delivers the table's rows as one group of cases, each weighted by its count.
class MemorySource final : public CaseSource {
 public:
  explicit MemorySource(const MemoryTable& table);

  void use(std::span<const int> columns) override;
  const ObservationLayout& layout() const override { return layout_; }
  std::unique_ptr<CaseStream> open() override;

 private:
  std::vector<std::vector<double>> rows_;  // the weight last
  std::vector<std::uint64_t> counts_;
  std::vector<double> weights_;
  std::vector<OBS> words_;
  ObservationLayout layout_;
};

}  // namespace embedded::data
