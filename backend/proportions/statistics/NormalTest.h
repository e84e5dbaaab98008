// From a standard normal statistic to its p-values, the same in every design.
#pragma once

#include "statistics/Results.h"

namespace statistics {

// The result of a test with this statistic: the smaller tail, min(P(Z <= z), P(Z >= z)), and twice
// that. It is taken as the lower tail of -|z|, so that deep tails keep their digits on both sides.
// The p-values are missing when the statistic is, or when the host has no tail for it; the
// statistic is kept as it is.
TestResult normalTest(double statistic);

}  // namespace statistics
