// Tests that two independent proportions are equal.
#include <algorithm>
#include <cmath>

#include "statistics/Independent.h"
#include "statistics/NormalTest.h"

namespace statistics {
namespace {

// 1/n1 + 1/n2.
double inverseTrials(const IndependentCounts& counts) {
  return 1.0 / counts.trials2() + 1.0 / counts.trials1();
}

double unpooledVariance(const IndependentCounts& counts) {
  return counts.variance1(counts.trials1()) + counts.variance2(counts.trials2());
}

// With n - 1 as divisors; 0 when a group has one trial, which has no such variance.
double unbiasedVariance(const IndependentCounts& counts) {
  const double n1 = counts.trials1();
  const double n2 = counts.trials2();
  return n1 > 1.0 && n2 > 1.0 ? counts.variance1(n1 - 1.0) + counts.variance2(n2 - 1.0) : 0.0;
}

double pooledVariance(const IndependentCounts& counts) {
  return inverseTrials(counts) * counts.pooledVariance();
}

// A statistic from a difference and its variance; missing when that is not positive.
double standardised(double difference, double variance) {
  return variance > 0.0 ? difference / std::sqrt(variance) : MCMV::Missing;
}

// The same with the difference drawn towards 0 by the correction. A correction larger than the
// difference is looked at first, before the variance; that comparison is of the proportions as
// they round, so that a correction equal to the difference counts as the doubles say.
double correctedStandardised(const IndependentCounts& counts, double correction, double variance) {
  if (correction > std::fabs(counts.prop1() - counts.prop2())) return 0.0;
  const double difference = counts.difference();
  const double shrunk = difference > 0.0 ? difference - correction : difference + correction;
  return standardised(shrunk, variance);
}

}  // namespace

TestResult hauckAndersonTest(const IndependentCounts& counts) {
  const double correction = 1.0 / (2.0 * std::min(counts.trials1(), counts.trials2()));
  return normalTest(correctedStandardised(counts, correction, unbiasedVariance(counts)));
}

TestResult waldTest(const IndependentCounts& counts) {
  return normalTest(standardised(counts.difference(), unpooledVariance(counts)));
}

TestResult waldCorrectedTest(const IndependentCounts& counts) {
  const double correction = inverseTrials(counts) * 0.5;
  return normalTest(correctedStandardised(counts, correction, unpooledVariance(counts)));
}

TestResult waldH0Test(const IndependentCounts& counts) {
  return normalTest(standardised(counts.difference(), pooledVariance(counts)));
}

TestResult waldH0CorrectedTest(const IndependentCounts& counts) {
  const double correction = 0.5 * inverseTrials(counts);
  return normalTest(correctedStandardised(counts, correction, pooledVariance(counts)));
}

}  // namespace statistics
