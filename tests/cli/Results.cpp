#include "Results.h"

#include <gtest/gtest.h>

#include <cmath>

namespace cli_tests {

Results::Results(const std::string& csv) {
  for (const CsvCell& cell : readCsv(csv)) {
    const CsvPlace place{cell.table, cell.split, cell.row, cell.variable, cell.statistic};
    EXPECT_TRUE(cells_.emplace(place, cell).second)
        << cell.table << " | " << cell.split << " | " << cell.row << " | " << cell.variable << " | "
        << cell.statistic << " occurs twice";
  }
}

const CsvCell& Results::at(const CsvPlace& place) const {
  static const CsvCell nothing;
  const auto found = cells_.find(place);
  if (found == cells_.end()) {
    ADD_FAILURE() << "no cell at " << place.table << " | " << place.split << " | " << place.row
                  << " | " << place.variable << " | " << place.statistic;
    return nothing;
  }
  return found->second;
}

double Results::value(const CsvPlace& place) const {
  const CsvCell& cell = at(place);
  EXPECT_EQ(cell.state, "valid") << place.statistic;
  return cell.value.empty() ? std::nan("") : std::stod(cell.value);
}

double Results::value(CsvPlace place, const std::string& path) const {
  place.statistic += path;
  return value(place);
}

BootstrapCells bootstrapOf(const Results& results, const CsvPlace& place) {
  const auto at = [&](const char* label) {
    return results.value(place, std::string(" / Bootstrap / ") + label);
  };
  return {results.value(place), at("Bias"),  at("Std. Error"),
          at("Lower"),          at("Upper"), at("Samples")};
}

}  // namespace cli_tests
