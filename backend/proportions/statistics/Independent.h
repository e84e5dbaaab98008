// Independent samples: the difference of the proportions of two groups of cases.
//
// Seven intervals for the difference, group 1 minus group 2, and five tests that it is 0, pure
// functions of the counts. All need at least one trial in each group. Comparisons, which may hang
// on the last bit, are made of operations in the order in which they are written, in IEEE doubles
// and without fused multiply-add.
#pragma once

#include "statistics/Results.h"

namespace statistics {

// What was counted in the two groups, whole numbers up to 2^52.
struct IndependentCounts {
  double successes1 = 0.0;
  double failures1 = 0.0;
  double successes2 = 0.0;
  double failures2 = 0.0;

  double trials1() const { return successes1 + failures1; }
  double trials2() const { return successes2 + failures2; }
  double cases() const { return trials1() + trials2(); }
  double prop1() const { return successes1 / trials1(); }
  double prop2() const { return successes2 / trials2(); }

  // prop1 - prop2, of which cancellation takes no digits.
  double difference() const;
  // prop (1 - prop) / divisor of each group; a proportion near 1 keeps the digits of its
  // distance from 1.
  double variance1(double divisor) const { return prop1() * (failures1 / trials1()) / divisor; }
  double variance2(double divisor) const { return prop2() * (failures2 / trials2()) / divisor; }
  // The same of both groups together, not yet divided.
  double pooledVariance() const {
    return (failures2 + failures1) / cases() * ((successes2 + successes1) / cases());
  }
};

// What is reported beside the methods. With an empty group (goodData false) the numbers are
// missing and completeData stays true: nobody reads it then.
struct IndependentEstimates {
  double prop1 = MCMV::Missing;
  double prop2 = MCMV::Missing;
  double estDiff = MCMV::Missing;  // prop1 - prop2
  double ase1 = MCMV::Missing;
  double ase2 = MCMV::Missing;
  double aseDiff0 = MCMV::Missing;  // of the difference, with the pooled proportion
  double aseDiff1 = MCMV::Missing;  // of the difference, not pooled
  bool goodData = true;             // there are trials in both groups
  bool completeData = true;         // one group, or both, has successes and failures
};

IndependentEstimates estimate(const IndependentCounts& counts);

// --- Intervals for prop1 - prop2, clamped to [-1, 1] --------------------------------------------

// Wald's interval after one success and one failure were added to each group.
// Agresti and Caffo 2000.
Interval agrestiCaffo(const IndependentCounts& counts, const CriticalValues& critical);

// Wald's interval around the difference of (s + 1/2) / (n + 1). The variances are divided by the
// plain n, not by n + 1, on purpose. Brown and Li 2005.
Interval brownLiJeffreys(const IndependentCounts& counts, const CriticalValues& critical);

// Wald's interval with n - 1 in the variances, each side wider by 1 / (2 min(n1, n2)). Both bounds
// are missing when a group has one trial. Hauck and Anderson 1986.
Interval hauckAnderson(const IndependentCounts& counts, const CriticalValues& critical);

// The square-and-add interval of the two Wilson intervals. Newcombe 1998, method 10.
Interval newcombe(const IndependentCounts& counts, const CriticalValues& critical);

// The same of the two corrected Wilson intervals. Differs from Newcombe 1998, method 11, on
// purpose: the Wilson bounds of a group without successes or without failures are not set to 0
// and 1, and a bound is NaN when a radicand is negative.
Interval newcombeCorrected(const IndependentCounts& counts, const CriticalValues& critical);

// The difference and z unpooled standard errors; a single point when neither group varies.
// Wald 1943.
Interval wald(const IndependentCounts& counts, const CriticalValues& critical);

// Wald's interval, each side wider by (1/n1 + 1/n2) / 2. Fleiss, Levin and Paik 2003.
Interval waldCorrected(const IndependentCounts& counts, const CriticalValues& critical);

// --- Tests of prop1 = prop2 ---------------------------------------------------------------------
// Each corrected test compares its correction with |prop1 - prop2| before anything else: Z is 0
// when the correction is larger, also where the variance is 0 or a group has one trial.

// Unpooled, n - 1 in the variances, correction 1 / (2 min(n1, n2)). Missing when the variance is
// not positive or a group has one trial. Hauck and Anderson 1986.
TestResult hauckAndersonTest(const IndependentCounts& counts);

// The difference over its unpooled standard error. Missing when that is 0. Wald 1943.
TestResult waldTest(const IndependentCounts& counts);

// Wald's test, correction (1/n1 + 1/n2) / 2. Missing when the unpooled variance is 0.
// Fleiss, Levin and Paik 2003.
TestResult waldCorrectedTest(const IndependentCounts& counts);

// The difference over its standard error with the pooled proportion, the square root of Pearson's
// chi-squared. Missing when all cases, or none, are successes. Pearson 1900.
TestResult waldH0Test(const IndependentCounts& counts);

// The pooled test, correction (1/n1 + 1/n2) / 2. Where waldH0Test is missing there is no
// difference, so Z is 0: it always has a value. Yates 1934.
TestResult waldH0CorrectedTest(const IndependentCounts& counts);

}  // namespace statistics
