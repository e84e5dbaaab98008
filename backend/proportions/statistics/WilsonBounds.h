// The score interval of one proportion, as all three designs use it.
#pragma once

#include "statistics/Results.h"

namespace statistics {

// The bounds of Wilson 1927, not clamped: roots of (p - q)^2 = z^2 q (1 - q) / n in q.
// proportion in [0, 1], trials > 0, z >= 0. They are (m -+ h) / d with m = p + z^2 / (2n),
// h = z sqrt(p (1 - p) / n + z^2 / (4 n^2)), d = 1 + z^2 / n, of which cancellation takes no
// digits: the bounds are exactly 0 and 1 for proportions of 0 and 1.
Interval wilsonBounds(double proportion, double trials, double z);

// The same with a continuity correction of 1 / (2n), not clamped and without the usual guards at
// 0 and n successes: a bound is NaN when its radicand is negative. Newcombe 1998, method 4.
Interval correctedWilsonBounds(double successes, double proportion, double trials, double z);

// How far the bounds of the two intervals lie from the proportion successes / (successes +
// failures), which is what intervals for a difference are made of. Formed as distances, so that
// bounds near the proportion take no digits: below = (h + z^2 / n (p - 1/2)) / d and
// above = (h + z^2 / n (1/2 - p)) / d, neither negative. Counts of more than 0 trials, z >= 0.
struct Distances {
  double below, above;
};
Distances wilsonDistances(double successes, double failures, double z);

// Of the corrected interval: may be negative, and NaN as its bounds are.
Distances correctedWilsonDistances(double successes, double failures, double z);

// h = z sqrt(p (1 - p) / n + z^2 / (4 n^2)).
double wilsonHalf(double successes, double failures, double z);

}  // namespace statistics
