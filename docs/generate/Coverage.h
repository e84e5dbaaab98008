// How a method behaves over all proportions: for an interval how often it covers the truth, for a
// test how often it rejects what is true. Summed over every outcome that can be, not simulated.
#pragma once

#include <cstddef>
#include <vector>

#include "statistics/Methods.h"

namespace docs {

// The number of trials of each curve, and of each group where there are two.
inline constexpr int trialsOfCurves[] = {10, 30, 100};

// The points of a curve: proportions 1/400, 2/400, ..., 399/400.
inline constexpr int steps = 400;
constexpr double proportionAt(int step) {
  return static_cast<double>(step) / steps;
}

// The correlation of the two answers of a pair in the curves of paired samples.
inline constexpr double pairCorrelation = 0.5;

struct Curve {
  int trials = 0;
  std::vector<double> values;  // by step, from 1
};

// The curves of the method at this slot, at the level of 95 percent. Where two proportions are
// compared both are the same, so that the true difference is zero. A bound or p-value that is
// missing or not a number covers nothing and rejects nothing.
std::vector<Curve> curvesOf(statistics::Design design, statistics::MethodKind kind,
                            std::size_t slot);

}  // namespace docs
