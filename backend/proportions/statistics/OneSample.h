// One sample: a proportion of successes against a test value.
//
// Nine intervals for the proportion and six tests of it, pure functions of the counts. All need at
// least one trial. Operations run in the order in which the formulas are written, in IEEE doubles
// and without fused multiply-add, because comparisons in them may hang on the last bit.
#pragma once

#include "statistics/Results.h"

namespace statistics {

// What was counted, whole numbers up to 2^52, and the hypothesised proportion, 0 < testValue < 1.
struct OneSampleCounts {
  double successes = 0.0;
  double failures = 0.0;
  double testValue = 0.5;

  double trials() const { return successes + failures; }
  double proportion() const { return successes / trials(); }
  // 1 - proportion, with all its digits when the proportion is near 1.
  double complement() const { return failures / trials(); }
};

// What is reported beside the methods. Without a trial (goodData false) the numbers are missing
// and completeData stays true: nobody reads it then.
struct OneSampleEstimates {
  double prop = MCMV::Missing;      // successes / trials
  double estDiff = MCMV::Missing;   // prop - testValue
  double aseDiff0 = MCMV::Missing;  // standard error at the test value
  double aseDiff1 = MCMV::Missing;  // standard error at the observed proportion
  bool goodData = true;             // there are trials
  bool completeData = true;         // there are successes and failures
};

OneSampleEstimates estimate(const OneSampleCounts& counts);

// --- Intervals, clamped to [0, 1] ---------------------------------------------------------------

// Wald's interval around the proportion after z^2 / 2 successes and as many failures were added.
// Always has a value. Agresti and Coull 1998.
Interval agrestiCoull(const OneSampleCounts& counts, const CriticalValues& critical);

// The logit interval after one half was added to successes and failures, with Anscombe's variance
// (n + 1)(n + 2) / (n (x + 1)(f + 1)). Always has a value, also at x = 0 and f = 0. Anscombe 1956.
Interval anscombe(const OneSampleCounts& counts, const CriticalValues& critical);

// The interval that the exact binomial test inverts to: beta quantiles; the lower bound is 0 at
// x = 0, the upper 1 at f = 0. A bound is missing when the host's quantile fails.
// Clopper and Pearson 1934.
Interval clopperPearson(const OneSampleCounts& counts, const CriticalValues& critical);

// Equal-tailed quantiles of the posterior under the prior Beta(1/2, 1/2). Differs from Brown, Cai
// and DasGupta 2001 on purpose: the bounds at x = 0 and f = 0 are the quantiles themselves, not 0
// and 1. A bound is missing when the host's quantile fails.
Interval jeffreys(const OneSampleCounts& counts, const CriticalValues& critical);

// The interval of the log odds carried back to the proportion, nothing added to the counts.
// Both bounds are missing when x = 0 or f = 0. Stone and others; Newcombe 2013.
Interval logit(const OneSampleCounts& counts, const CriticalValues& critical);

// The textbook interval: proportion and z standard errors. A single point when x = 0 or f = 0.
// Laplace 1812; Wald 1943.
Interval wald(const OneSampleCounts& counts, const CriticalValues& critical);

// Wald's interval, each side wider by 1 / (2n). Blyth and Still 1983.
Interval waldCorrected(const OneSampleCounts& counts, const CriticalValues& critical);

// The interval that the score test inverts to. Always has a value. Wilson 1927.
Interval wilsonScore(const OneSampleCounts& counts, const CriticalValues& critical);

// Wilson's interval with a continuity correction of 1 / (2n). Differs from Newcombe 1998 on
// purpose: no special case at x = 0 and f = 0 but the clamp, so there the inner bound need not be
// 0 or 1, and a bound is NaN when its radicand is negative (x = 0 and z^2 < 2 + 1/n).
Interval wilsonScoreCorrected(const OneSampleCounts& counts, const CriticalValues& critical);

// --- Tests of proportion = testValue -----------------------------------------------------------

// The binomial test: the smaller of P(X <= x) and P(X >= x), and twice that, at most 1. No
// statistic. Missing when the host's distribution function fails. Relative digits hold deep in
// either tail. Clopper and Pearson 1934.
TestResult exactTest(const OneSampleCounts& counts);

// The binomial test less half the probability of what was observed. Missing when one of the
// host's functions fails. Lancaster 1961.
TestResult midpTest(const OneSampleCounts& counts);

// The normal test with the standard error of the test value. Wilson 1927.
TestResult scoreTest(const OneSampleCounts& counts);

// The score test with the difference of counts drawn one half towards 0; Z is 0 when
// 1 / (2n) > |proportion - testValue|. Yates 1934.
TestResult scoreCorrectedTest(const OneSampleCounts& counts);

// The normal test with the standard error of the observed proportion. Missing when x = 0 or
// f = 0. Wald 1943.
TestResult waldTest(const OneSampleCounts& counts);

// Wald's test with the correction of scoreCorrectedTest. Missing when x = 0 or f = 0, which is
// looked at before the correction.
TestResult waldCorrectedTest(const OneSampleCounts& counts);

}  // namespace statistics
