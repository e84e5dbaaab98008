// What the formulas of all three designs take and give: critical values, intervals, test results.
//
// Every number starts at the system-missing value MCMV::Missing, and a formula that has no answer
// leaves it there. Not-a-number is something else: a formula that ran into the root of a negative
// number, shown as such.
#pragma once

#include "host/distributions/MCMV.h"

namespace statistics {

// What a confidence level amounts to.
struct CriticalValues {
  double alpha = MCMV::Missing;  // 1 - level / 100, in (0, 1]
  double z = MCMV::Missing;      // the normal quantile at 0.5 + level / 200, z >= 0 and finite
};

// The critical values of a level in percent, 0 <= level < 100. At level 0 alpha is 1 and z is 0.
// z is MCMV::Missing when the host's quantile fails.
CriticalValues criticalValues(double levelPercent);

// The two bounds of a confidence interval, each clamped to the range of what it is about. A bound
// may be MCMV::Missing (no answer) or NaN (the formula's own), independently of the other.
struct Interval {
  double lower = MCMV::Missing;
  double upper = MCMV::Missing;
};

// A test: its statistic (a standard normal deviate; missing in tests that have none), the smaller
// tail probability whatever the direction of the difference, and twice that.
struct TestResult {
  double statistic = MCMV::Missing;
  double oneSided = MCMV::Missing;
  double twoSided = MCMV::Missing;
};

}  // namespace statistics
