// Identities that hold for every table of counts, tried on random ones.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>

#include "statistics/Methods.h"

namespace {

using namespace statistics;

// Counts from single cases to a million, with enough zeros among them.
double anyCount() {
  const int most = *rc::gen::element(1, 6, 60, 5000, 1000000);
  return *rc::gen::inRange(0, most + 1);
}

double anyLevel() {
  return *rc::gen::inRange(0, 1000) / 10.0;
}

double anyTestValue() {
  return *rc::gen::inRange(1, 1000) / 1000.0;
}

OneSampleCounts anyOneSample() {
  const OneSampleCounts counts{anyCount(), anyCount(), anyTestValue()};
  RC_PRE(counts.trials() > 0.0);
  return counts;
}

PairedCounts anyPaired() {
  const PairedCounts counts{anyCount(), anyCount(), anyCount(), anyCount()};
  RC_PRE(counts.cases() > 0.0);
  return counts;
}

IndependentCounts anyIndependent() {
  const IndependentCounts counts{anyCount(), anyCount(), anyCount(), anyCount()};
  RC_PRE(counts.trials1() > 0.0 && counts.trials2() > 0.0);
  return counts;
}

OneSampleCounts mirrored(const OneSampleCounts& counts) {
  return {counts.failures, counts.successes, 1.0 - counts.testValue};
}

PairedCounts mirrored(const PairedCounts& counts) {
  return {counts.n11, counts.n01, counts.n10, counts.n00};
}

IndependentCounts mirrored(const IndependentCounts& counts) {
  return {counts.successes2, counts.failures2, counts.successes1, counts.failures1};
}

// Whether `a` and `b` are the same state, or numbers alike up to a few roundings of values of
// size one.
bool areAlike(double a, double b, double bound = 1e-9) {
  if (std::isnan(a) || std::isnan(b)) return std::isnan(a) == std::isnan(b);
  if (a == MCMV::Missing || b == MCMV::Missing) return a == b;
  return std::fabs(a - b) <= bound * std::max(1.0, std::fabs(a));
}

// The bound on the other side of `centre2 / 2`; missing stays missing.
double reflected(double bound, double centre2) {
  return bound == MCMV::Missing ? bound : centre2 - bound;
}

// Mirroring the counts mirrors the interval in centre2 / 2.
void expectMirrored(const auto& counts, const auto& methods, double centre2) {
  const CriticalValues critical = criticalValues(anyLevel());
  for (const auto& method : methods) {
    const Interval interval = method.compute(counts, critical);
    const Interval other = method.compute(mirrored(counts), critical);
    RC_ASSERT(areAlike(other.lower, reflected(interval.upper, centre2)));
    RC_ASSERT(areAlike(other.upper, reflected(interval.lower, centre2)));
  }
}

// Mirroring the counts flips the sign of the statistic and keeps the p-values.
void expectFlipped(const auto& counts, const auto& methods) {
  for (const auto& method : methods) {
    const TestResult result = method.compute(counts);
    const TestResult other = method.compute(mirrored(counts));
    RC_ASSERT(areAlike(other.statistic, reflected(result.statistic, 0.0)));
    RC_ASSERT(areAlike(other.oneSided, result.oneSided));
    RC_ASSERT(areAlike(other.twoSided, result.twoSided));
  }
}

// Bounds that are numbers lie in [lowest, 1].
void expectWithin(const auto& counts, const auto& methods, double lowest) {
  const CriticalValues critical = criticalValues(anyLevel());
  for (const auto& method : methods) {
    const Interval interval = method.compute(counts, critical);
    for (const double bound : {interval.lower, interval.upper})
      RC_ASSERT(bound == MCMV::Missing || !(bound < lowest || bound > 1.0));
  }
}

// p-values are probabilities, and the two-sided is never above 1.
void expectProbabilities(const auto& counts, const auto& methods) {
  for (const auto& method : methods) {
    const TestResult result = method.compute(counts);
    if (result.oneSided == MCMV::Missing) continue;
    RC_ASSERT(result.oneSided >= 0.0 && result.oneSided <= 1.0);
    RC_ASSERT(result.twoSided >= result.oneSided && result.twoSided <= 1.0);
  }
}

// A higher level gives an interval that holds the one of a lower level. The corrected Wilson bounds
// that are not numbers at a low level are left out.
void expectNested(const auto& counts, const auto& methods) {
  const double low = *rc::gen::inRange(0, 990) / 10.0;
  const double high = *rc::gen::inRange(static_cast<int>(low * 10.0) + 1, 999) / 10.0;
  for (const auto& method : methods) {
    const Interval inner = method.compute(counts, criticalValues(low));
    const Interval outer = method.compute(counts, criticalValues(high));
    if (!std::isnan(inner.lower)) RC_ASSERT(outer.lower <= inner.lower + 1e-12);
    if (!std::isnan(inner.upper)) RC_ASSERT(outer.upper >= inner.upper - 1e-12);
  }
}

// Every method of one sample is symmetric in successes and failures.
RC_GTEST_PROP(OneSampleProperties, ExchangingOutcomesMirrorsIntervals, ()) {
  expectMirrored(anyOneSample(), oneSampleIntervals, 1.0);
}
RC_GTEST_PROP(OneSampleProperties, ExchangingOutcomesFlipsTests, ()) {
  const OneSampleCounts counts = anyOneSample();
  // A difference of exactly the correction, 1 / (2n), falls on either side of it by rounding.
  const double edge = std::fabs(counts.successes - counts.trials() * counts.testValue) - 0.5;
  RC_PRE(std::fabs(edge) > 1e-6);
  expectFlipped(counts, oneSampleTests);
}
RC_GTEST_PROP(OneSampleProperties, BoundsAreProportions, ()) {
  expectWithin(anyOneSample(), oneSampleIntervals, 0.0);
}
RC_GTEST_PROP(OneSampleProperties, SignificanceIsAProbability, ()) {
  expectProbabilities(anyOneSample(), oneSampleTests);
}
RC_GTEST_PROP(OneSampleProperties, IntervalsAreNestedInTheLevel, ()) {
  expectNested(anyOneSample(), oneSampleIntervals);
}

// Every paired method is symmetric in the two measurements.
RC_GTEST_PROP(PairedProperties, ExchangingMeasurementsMirrorsIntervals, ()) {
  expectMirrored(anyPaired(), pairedIntervals, 0.0);
}
RC_GTEST_PROP(PairedProperties, ExchangingMeasurementsFlipsTests, ()) {
  expectFlipped(anyPaired(), pairedTests);
}
RC_GTEST_PROP(PairedProperties, BoundsAreDifferencesOfProportions, ()) {
  expectWithin(anyPaired(), pairedIntervals, -1.0);
}
RC_GTEST_PROP(PairedProperties, SignificanceIsAProbability, ()) {
  expectProbabilities(anyPaired(), pairedTests);
}
RC_GTEST_PROP(PairedProperties, IntervalsAreNestedInTheLevel, ()) {
  expectNested(anyPaired(), pairedIntervals);
}

// Exchanging successes and failures is the other symmetry of a difference. Newcombe's paired
// interval has it too; the standard errors of the two proportions, divided by the margin of
// successes, have not.
RC_GTEST_PROP(PairedProperties, ExchangingOutcomesMirrorsIntervals, ()) {
  const PairedCounts counts = anyPaired();
  const PairedCounts exchanged{counts.n00, counts.n01, counts.n10, counts.n11};
  const CriticalValues critical = criticalValues(anyLevel());
  for (const auto& method : pairedIntervals) {
    const Interval interval = method.compute(counts, critical);
    const Interval other = method.compute(exchanged, critical);
    RC_ASSERT(areAlike(other.lower, reflected(interval.upper, 0.0)));
    RC_ASSERT(areAlike(other.upper, reflected(interval.lower, 0.0)));
  }
}

// Every method of independent samples is symmetric in the groups.
RC_GTEST_PROP(IndependentProperties, ExchangingGroupsMirrorsIntervals, ()) {
  expectMirrored(anyIndependent(), independentIntervals, 0.0);
}
RC_GTEST_PROP(IndependentProperties, ExchangingGroupsFlipsTests, ()) {
  expectFlipped(anyIndependent(), independentTests);
}
RC_GTEST_PROP(IndependentProperties, BoundsAreDifferencesOfProportions, ()) {
  expectWithin(anyIndependent(), independentIntervals, -1.0);
}
RC_GTEST_PROP(IndependentProperties, SignificanceIsAProbability, ()) {
  expectProbabilities(anyIndependent(), independentTests);
}

// Without the usual guards the corrected Wilson bound of a group without successes lies above its
// proportion of 0, and nears it as the level grows: the combined interval then narrows. So groups
// that do not vary are left out here, and shown below.
RC_GTEST_PROP(IndependentProperties, IntervalsAreNestedInTheLevel, ()) {
  const IndependentCounts counts = anyIndependent();
  RC_PRE(counts.successes1 > 0.0 && counts.failures1 > 0.0);
  RC_PRE(counts.successes2 > 0.0 && counts.failures2 > 0.0);
  expectNested(counts, independentIntervals);
}

TEST(IndependentProperties, UnguardedCorrectedIntervalsNeedNotBeNested) {
  const IndependentCounts none{0, 4, 0, 46};
  EXPECT_LT(newcombeCorrected(none, criticalValues(86.7)).lower,
            newcombeCorrected(none, criticalValues(86.8)).lower);
}

}  // namespace
