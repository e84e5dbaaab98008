// How a computed bound is brought into the range of what it is a bound of.
#pragma once

#include "statistics/Results.h"

namespace statistics {

// The interval cut off at the ends of [lowest, 1]. Only the lower bound is raised and only the
// upper bound lowered; the comparisons are written so that NaN passes through.
inline Interval clamped(double lower, double upper, double lowest) {
  return {lower < lowest ? lowest : lower, upper > 1.0 ? 1.0 : upper};
}

// For a proportion.
inline Interval inUnitRange(double lower, double upper) {
  return clamped(lower, upper, 0.0);
}

// For a difference of proportions.
inline Interval inDifferenceRange(double lower, double upper) {
  return clamped(lower, upper, -1.0);
}

}  // namespace statistics
