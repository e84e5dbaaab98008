// Errors in ulp and their report.
#include "Errors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <sstream>

namespace accuracy {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::vector<std::string> fieldsOf(const std::string& line) {
  std::vector<std::string> fields;
  std::stringstream rest(line);
  for (std::string field; std::getline(rest, field, ',');) fields.push_back(field);
  return fields;
}

}  // namespace

Rows::Rows(const std::string& file) {
  std::ifstream input(std::string(PROJECT_ROOT) + "/tests/accuracy/" + file);
  std::string line;
  std::getline(input, line);
  const auto names = fieldsOf(line);
  for (std::size_t place = 0; place < names.size(); ++place) places_[names[place]] = place;
  while (std::getline(input, line)) {
    rows_.push_back(fieldsOf(line));
    EXPECT_EQ(rows_.back().size(), names.size()) << file << ": " << line;
  }
}

const std::string& Rows::text(std::size_t row, const std::string& name) const {
  return rows_.at(row).at(places_.at(name));
}

double Rows::number(std::size_t row, const std::string& name) const {
  return std::strtod(text(row, name).c_str(), nullptr);
}

double ulps(double got, double head, double rest) {
  if (!std::isfinite(got)) return kInfinity;
  if (head == 0) return std::abs(got) <= 1e-15 ? 0 : kInfinity;
  const double size = std::abs(head);
  return std::abs((got - head) - rest) / (std::nextafter(size, kInfinity) - size);
}

double Errors::largest() const {
  return *std::max_element(errors_.begin(), errors_.end());
}

double Errors::mostly() const {
  std::vector<double> sorted = errors_;
  std::sort(sorted.begin(), sorted.end());
  const auto place = std::ceil(0.999 * static_cast<double>(sorted.size()));
  return sorted[static_cast<std::size_t>(place) - 1];
}

void Report::printAndExpect(const std::string& title) const {
  std::map<std::string, double> accepted;
  const Rows rows("accepted.csv");
  for (std::size_t row = 0; row < rows.size(); ++row) {
    accepted[rows.text(row, "name")] = rows.number(row, "largest");
  }
  std::printf("| %-46s | values | largest | 99.9 %% | accepted |\n", title.c_str());
  std::printf("| --- | --- | --- | --- | --- |\n");
  for (const auto& [name, errors] : errors_) {
    EXPECT_TRUE(accepted.contains(name)) << name << " has no accepted error";
    std::printf("| %-46s | %6zu | %7.2f | %6.2f | %8.2f |\n", name.c_str(), errors.count(),
                errors.largest(), errors.mostly(), accepted[name]);
    EXPECT_LE(errors.largest(), accepted[name]) << name;
  }
}

}  // namespace accuracy
