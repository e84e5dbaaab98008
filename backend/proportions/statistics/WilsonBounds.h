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

}  // namespace statistics
