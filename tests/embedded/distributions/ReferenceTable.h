// Reading of reference grids, errors in ulps, and a report of them by region.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace reference {

// The rows of a file of comma-separated numbers below its line of names, as the nearest doubles.
inline std::vector<std::vector<double>> rowsOf(const std::string& name) {
  std::ifstream file(std::string(TEST_DATA) + "/distributions/" + name);
  std::vector<std::vector<double>> rows;
  std::string line;
  std::getline(file, line);
  while (std::getline(file, line)) {
    std::stringstream cells(line);
    std::vector<double> row;
    for (std::string cell; std::getline(cells, cell, ',');) {
      row.push_back(std::strtod(cell.c_str(), nullptr));
    }
    rows.push_back(row);
  }
  return rows;
}

// |got - want| in units of the gap above |want|; infinite when got is no number.
inline double ulps(double got, double want) {
  const double size = std::abs(want);
  const double gap = std::nextafter(size, std::numeric_limits<double>::infinity()) - size;
  const double error = std::abs(got - want) / gap;
  return std::isnan(error) ? std::numeric_limits<double>::infinity() : error;
}

// Errors collected under the names of regions.
class Report {
 public:
  explicit Report(std::string title) : title_(std::move(title)) {}

  void add(const std::string& region, double error) {
    Region& found = regions_[region];
    found.largest = std::max(found.largest, error);
    found.sum += error;
    ++found.count;
  }

  double largest() const {
    double value = 0;
    for (const auto& [name, region] : regions_) value = std::max(value, region.largest);
    return value;
  }

  int count() const {
    int value = 0;
    for (const auto& [name, region] : regions_) value += region.count;
    return value;
  }

  // One line a region on standard output: its largest and mean error.
  void print() const {
    std::printf("%-44s %6s %10s %10s\n", (title_ + ", ulp").c_str(), "values", "largest", "mean");
    for (const auto& [name, region] : regions_) {
      std::printf("  %-42s %6d %10.2f %10.3f\n", name.c_str(), region.count, region.largest,
                  region.sum / region.count);
    }
  }

 private:
  struct Region {
    double largest = 0;
    double sum = 0;
    int count = 0;
  };
  std::string title_;
  std::map<std::string, Region> regions_;
};

// "n < 1e5" and the like: the first bound above the value.
inline std::string sizeName(const std::string& what, double value,
                            const std::vector<double>& bounds) {
  char text[40];
  for (const double bound : bounds) {
    if (value >= bound) continue;
    std::snprintf(text, sizeof text, " < %g", bound);
    return what + text;
  }
  std::snprintf(text, sizeof text, " >= %g", bounds.back());
  return what + text;
}

inline std::string depthName(double probability) {
  return probability < 1e-100  ? "p < 1e-100"
         : probability < 1e-12 ? "p < 1e-12"
         : probability < 0.1   ? "p < 0.1"
                               : "p >= 0.1";
}

}  // namespace reference
