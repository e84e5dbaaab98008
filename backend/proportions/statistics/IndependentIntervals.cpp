// Estimates and confidence intervals of the difference of two independent proportions.
#include <algorithm>
#include <cmath>

#include "statistics/Bounds.h"
#include "statistics/Independent.h"
#include "statistics/WilsonBounds.h"

namespace statistics {
namespace {

Interval around(double difference, double half) {
  return inDifferenceRange(difference - half, difference + half);
}

// The square-and-add interval: each group's own interval gives its share of the distance.
Interval squareAndAdd(const IndependentCounts& counts, const Distances& first,
                      const Distances& second) {
  const double difference = counts.difference();
  const double down = first.below * first.below + second.above * second.above;
  const double up = first.above * first.above + second.below * second.below;
  return inDifferenceRange(difference - std::sqrt(down), difference + std::sqrt(up));
}

// The counts with so many successes and failures added to each group.
IndependentCounts withAdded(const IndependentCounts& counts, double added) {
  return {counts.successes1 + added, counts.failures1 + added, counts.successes2 + added,
          counts.failures2 + added};
}

// z unpooled standard errors of the proportions, with these divisors.
double plainHalf(const IndependentCounts& counts, double z, double divisor1, double divisor2) {
  return z * std::sqrt(counts.variance1(divisor1) + counts.variance2(divisor2));
}

}  // namespace

double IndependentCounts::difference() const {
  // Kahan's difference of two products: what the first product lost in rounding is put back.
  const double product = successes2 * trials1();
  const double lost = std::fma(successes2, trials1(), -product);
  return (std::fma(successes1, trials2(), -product) - lost) / trials1() / trials2();
}

IndependentEstimates estimate(const IndependentCounts& counts) {
  IndependentEstimates result;
  const double n1 = counts.trials1();
  const double n2 = counts.trials2();
  result.goodData = n1 > 0.0 && n2 > 0.0;
  if (!result.goodData) return result;
  // One group with both outcomes is enough.
  result.completeData = (counts.successes1 > 0.0 && counts.failures1 > 0.0) ||
                        (counts.successes2 > 0.0 && counts.failures2 > 0.0);
  result.prop1 = counts.prop1();
  result.prop2 = counts.prop2();
  result.estDiff = counts.difference();
  const double variance1 = counts.variance1(n1);
  const double variance2 = counts.variance2(n2);
  result.ase1 = std::sqrt(variance1);
  result.ase2 = std::sqrt(variance2);
  const double pooled = counts.pooledVariance();
  result.aseDiff0 = std::sqrt(pooled / n2 + pooled / n1);
  result.aseDiff1 = std::sqrt(variance2 + variance1);
  return result;
}

Interval agrestiCaffo(const IndependentCounts& counts, const CriticalValues& critical) {
  const IndependentCounts more = withAdded(counts, 1.0);
  return around(more.difference(), plainHalf(more, critical.z, more.trials1(), more.trials2()));
}

Interval brownLiJeffreys(const IndependentCounts& counts, const CriticalValues& critical) {
  const IndependentCounts more = withAdded(counts, 0.5);
  return around(more.difference(), plainHalf(more, critical.z, counts.trials1(), counts.trials2()));
}

Interval hauckAnderson(const IndependentCounts& counts, const CriticalValues& critical) {
  const double n1 = counts.trials1();
  const double n2 = counts.trials2();
  if (!(n1 > 1.0 && n2 > 1.0)) return {};
  const double correction = 1.0 / (2.0 * std::min(n1, n2));
  const double half = plainHalf(counts, critical.z, n1 - 1.0, n2 - 1.0) + correction;
  return around(counts.difference(), half);
}

Interval newcombe(const IndependentCounts& counts, const CriticalValues& critical) {
  return squareAndAdd(counts, wilsonDistances(counts.successes1, counts.failures1, critical.z),
                      wilsonDistances(counts.successes2, counts.failures2, critical.z));
}

Interval newcombeCorrected(const IndependentCounts& counts, const CriticalValues& critical) {
  return squareAndAdd(counts,
                      correctedWilsonDistances(counts.successes1, counts.failures1, critical.z),
                      correctedWilsonDistances(counts.successes2, counts.failures2, critical.z));
}

Interval wald(const IndependentCounts& counts, const CriticalValues& critical) {
  return around(counts.difference(),
                plainHalf(counts, critical.z, counts.trials1(), counts.trials2()));
}

Interval waldCorrected(const IndependentCounts& counts, const CriticalValues& critical) {
  const double n1 = counts.trials1();
  const double n2 = counts.trials2();
  const double correction = 0.5 * (1.0 / n2 + 1.0 / n1);
  return around(counts.difference(), plainHalf(counts, critical.z, n1, n2) + correction);
}

}  // namespace statistics
