// Estimates and confidence intervals of one proportion.
#include <cmath>

#include "host/distributions/MCDistFun.h"
#include "statistics/Bounds.h"
#include "statistics/OneSample.h"
#include "statistics/WilsonBounds.h"

namespace statistics {
namespace {

double standardError(double proportion, double trials) {
  return std::sqrt((1.0 - proportion) * proportion / trials);
}

double standardError(const OneSampleCounts& counts) {
  return std::sqrt(counts.complement() * counts.proportion() / counts.trials());
}

// The proportion at `shift` standard errors below the log odds of which `ratio` is the inverse.
Interval fromLogOdds(double ratio, double shift) {
  return inUnitRange(1.0 / (1.0 + ratio * std::exp(shift)), 1.0 / (1.0 + ratio * std::exp(-shift)));
}

// Bounds from the host's beta quantile: clamped, unless the host has none.
Interval fromQuantiles(double lower, double upper) {
  Interval interval = inUnitRange(lower, upper);
  if (lower == MCMV::Missing) interval.lower = MCMV::Missing;
  return interval;
}

}  // namespace

OneSampleEstimates estimate(const OneSampleCounts& counts) {
  OneSampleEstimates result;
  const double n = counts.trials();
  result.goodData = n > 0.0;
  if (!result.goodData) return result;
  const double p0 = counts.testValue;
  result.completeData = counts.successes > 0.0 && counts.failures > 0.0;
  result.prop = counts.proportion();
  result.estDiff = result.prop - p0;
  result.aseDiff0 = standardError(p0, n);
  result.aseDiff1 = standardError(counts);
  return result;
}

Interval agrestiCoull(const OneSampleCounts& counts, const CriticalValues& critical) {
  const double zSquared = critical.z * critical.z;
  const double trials = counts.trials() + zSquared;
  const double centre = (counts.successes + zSquared / 2.0) / trials;
  const double half = critical.z * standardError(centre, trials);
  return inUnitRange(centre - half, centre + half);
}

Interval anscombe(const OneSampleCounts& counts, const CriticalValues& critical) {
  const double x = counts.successes;
  const double f = counts.failures;
  const double n = counts.trials();
  const double s = std::sqrt((n + 1.0) * (n + 2.0) / ((x + 1.0) * n * (f + 1.0)));
  return fromLogOdds((f + 0.5) / (x + 0.5), critical.z * s);
}

Interval clopperPearson(const OneSampleCounts& counts, const CriticalValues& critical) {
  const double x = counts.successes;
  const double f = counts.failures;
  const double half = critical.alpha / 2.0;
  return fromQuantiles(x > 0.0 ? MCDistFun::IdfBeta(half, x, f + 1.0) : 0.0,
                       f > 0.0 ? MCDistFun::IdfBeta(1.0 - half, x + 1.0, f) : 1.0);
}

Interval jeffreys(const OneSampleCounts& counts, const CriticalValues& critical) {
  const double a = counts.successes + 0.5;
  const double b = counts.failures + 0.5;
  const double half = critical.alpha / 2.0;
  return fromQuantiles(MCDistFun::IdfBeta(half, a, b), MCDistFun::IdfBeta(1.0 - half, a, b));
}

Interval logit(const OneSampleCounts& counts, const CriticalValues& critical) {
  const double x = counts.successes;
  const double f = counts.failures;
  if (!(x > 0.0 && f > 0.0)) return {};
  const double s = std::sqrt(counts.trials() / (f * x));
  return fromLogOdds(f / x, critical.z * s);
}

Interval wald(const OneSampleCounts& counts, const CriticalValues& critical) {
  const double p = counts.proportion();
  const double half = critical.z * standardError(counts);
  return inUnitRange(p - half, p + half);
}

Interval waldCorrected(const OneSampleCounts& counts, const CriticalValues& critical) {
  const double p = counts.proportion();
  const double n = counts.trials();
  const double half = critical.z * standardError(counts);
  const double correction = 1.0 / (2.0 * n);
  return inUnitRange(p - half - correction, p + half + correction);
}

Interval wilsonScore(const OneSampleCounts& counts, const CriticalValues& critical) {
  const Interval raw = wilsonBounds(counts.proportion(), counts.trials(), critical.z);
  return inUnitRange(raw.lower, raw.upper);
}

Interval wilsonScoreCorrected(const OneSampleCounts& counts, const CriticalValues& critical) {
  const Interval raw =
      correctedWilsonBounds(counts.successes, counts.proportion(), counts.trials(), critical.z);
  return inUnitRange(raw.lower, raw.upper);
}

}  // namespace statistics
