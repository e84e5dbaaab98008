// A plain analysis of rows, written without regard to speed: what bootstrap results are held
// against. It knows the five success rules, two rules of grouping, and the estimates of the three
// designs, and resamples row by row.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace cli_tests::rows {

enum class Design { OneSample, Paired, Independent };
enum class Success { First, Last, Midpoint, CutPoint, Level };
enum class Grouping { Levels, Midpoint, CutPoint };

// One case; what is missing has no value.
struct Row {
  std::optional<double> v, u, g;
};

struct Analysis {
  Design design = Design::OneSample;
  Success success = Success::Last;
  Grouping grouping = Grouping::Levels;  // levels 1 and 2, or at the cut point 2
  // Success from 2 on, or at level 2, for the rules that do not ask the data.
};

// What is estimated: the proportion of v, of u (or of group 1, of group 2), and their difference;
// the standard error of a single proportion. Without a value where it cannot be computed.
struct Estimates {
  std::optional<double> first, second, difference, error;
};

// The estimates of `sample`, judged by the extremes of `original`.
Estimates estimate(const Analysis& analysis, const std::vector<Row>& sample,
                   const std::vector<Row>& original);

// Estimates of as many samples, each of as many rows drawn with replacement.
std::vector<Estimates> resample(const Analysis& analysis, const std::vector<Row>& original,
                                int samples, std::uint64_t seed);

}  // namespace cli_tests::rows
