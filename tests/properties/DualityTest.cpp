// Intervals and the tests that they invert: a value is outside the interval of level L exactly when
// its test has a two-sided p below 1 - L.
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <cmath>

#include "statistics/Independent.h"
#include "statistics/OneSample.h"

using namespace statistics;

namespace {

struct Level {
  double alpha;
  CriticalValues critical;
};

Level anyLevel() {
  const double percent = *rc::gen::inRange(500, 9999) / 100.0;
  const CriticalValues critical = criticalValues(percent);
  return {critical.alpha, critical};
}

// Whether the two judgements agree; a p-value on the border says nothing.
void expectDual(bool outside, double p, double alpha) {
  RC_PRE(std::abs(p - alpha) > 1e-9);
  RC_ASSERT(outside == (p < alpha));
}

OneSampleCounts anyOneSample() {
  const int trials = *rc::gen::inRange(1, 400);
  const int successes = *rc::gen::inRange(0, trials + 1);
  const double testValue = *rc::gen::inRange(1, 1000) / 1000.0;
  return {static_cast<double>(successes), static_cast<double>(trials - successes), testValue};
}

bool isOutside(double value, const Interval& interval) {
  return value < interval.lower || value > interval.upper;
}

RC_GTEST_PROP(Duality, OfWilsonsIntervalAndTheScoreTest, ()) {
  const OneSampleCounts counts = anyOneSample();
  const Level level = anyLevel();
  expectDual(isOutside(counts.testValue, wilsonScore(counts, level.critical)),
             scoreTest(counts).twoSided, level.alpha);
}

RC_GTEST_PROP(Duality, OfTheExactIntervalAndTheExactTest, ()) {
  const OneSampleCounts counts = anyOneSample();
  const Level level = anyLevel();
  expectDual(isOutside(counts.testValue, clopperPearson(counts, level.critical)),
             exactTest(counts).twoSided, level.alpha);
}

RC_GTEST_PROP(Duality, OfWaldsIntervalAndTest, ()) {
  const OneSampleCounts counts = anyOneSample();
  RC_PRE(counts.successes > 0 && counts.failures > 0);
  const Level level = anyLevel();
  expectDual(isOutside(counts.testValue, wald(counts, level.critical)), waldTest(counts).twoSided,
             level.alpha);
}

RC_GTEST_PROP(Duality, OfWaldsIntervalAndTestForADifference, ()) {
  const auto count = rc::gen::map(rc::gen::inRange(1, 300), [](int n) { return double(n); });
  const IndependentCounts counts{*count, *count, *count, *count};
  const Level level = anyLevel();
  expectDual(isOutside(0, wald(counts, level.critical)), waldTest(counts).twoSided, level.alpha);
}

}  // namespace
