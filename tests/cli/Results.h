// The cells of the tidy csv by their place.
#pragma once

#include <map>
#include <string>
#include <tuple>

#include "ScenarioResults.h"

namespace cli_tests {

// Where a cell stands.
struct CsvPlace {
  std::string table, split, row, variable, statistic;
  friend auto operator<=>(const CsvPlace&, const CsvPlace&) = default;
};

class Results {
 public:
  // Fails the test when a place occurs twice, as when the form is not as promised.
  explicit Results(const std::string& csv);

  const std::map<CsvPlace, CsvCell>& cells() const { return cells_; }
  bool has(const CsvPlace& place) const { return cells_.count(place) != 0; }
  // Fails the test when there is no such cell.
  const CsvCell& at(const CsvPlace& place) const;
  // Its number; fails the test when it is not valid.
  double value(const CsvPlace& place) const;
  // The number of what stands below it: `path` is " / Bootstrap / Bias" and the like.
  double value(CsvPlace place, const std::string& path) const;

 private:
  std::map<CsvPlace, CsvCell> cells_;
};

// What the bootstrap says of one estimate.
struct BootstrapCells {
  double statistic, bias, error, lower, upper, samples;
};
BootstrapCells bootstrapOf(const Results& results, const CsvPlace& place);

}  // namespace cli_tests
