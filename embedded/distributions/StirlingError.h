// What Stirling's formula leaves out of the logarithm of the gamma function.
#pragma once

#include "embedded/distributions/DoubleDouble.h"

namespace embedded::distributions {

// log Gamma(z) - ((z - 1/2) log z - z + log(2 pi) / 2) for z > 0, at most 0.16 for z >= 1/2
// and growing with -log(z) / 2 towards 0. Absolute error below 2e-17: tabulated at the multiples of
// 1/2 up to 16, carried up to 16 and more by Gamma's recurrence in double-double elsewhere, and
// above 16 Stirling's series.
// Loader (2000), Fast and accurate computation of binomial probabilities.
DoubleDouble stirlingError(double z);

}  // namespace embedded::distributions
