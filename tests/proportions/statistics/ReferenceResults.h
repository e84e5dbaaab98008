// Reference results, made by independent programs in 50-digit arithmetic, and when a result agrees.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace reference {

// The lines of a file of results, without its header line.
std::vector<nlohmann::json> linesOf(const std::string& file);

// One expected number and how near a result must come. Numbers of a line are named "est0",
// "ci3.1" (interval 3, upper bound) and "t2.0" (test 2, statistic).
class Line {
 public:
  explicit Line(const nlohmann::json& line) : line_(line) {}

  double count(const char* name) const { return line_.at(name).get<double>(); }
  double level() const { return count("L"); }

  // Whether `got` is the number of this name: a state to the letter, a number within a few
  // roundings of the formula as written, or 1e-12 of its size.
  testing::AssertionResult agrees(double got, const std::string& group, std::size_t method,
                                  std::size_t place) const;
  // The same for an estimate; `rounding` is allowed besides.
  testing::AssertionResult agreesEstimate(double got, std::size_t place,
                                          double rounding = 0.0) const;
  testing::AssertionResult agreesFlag(bool got, std::size_t place) const;

 private:
  double toleranceOf(const std::string& name) const;
  // Whether the method's result hangs on the rounding of a comparison; then another is as good.
  bool isOnKnifeEdge(const std::string& group, std::size_t method) const;
  testing::AssertionResult compare(double got, const nlohmann::json& want, double bound,
                                   const std::string& name) const;

  const nlohmann::json& line_;
};

}  // namespace reference
