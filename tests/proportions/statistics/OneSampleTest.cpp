// One sample: estimates, intervals and tests at the edges of their domain.
#include <gtest/gtest.h>

#include <cmath>

#include "host/distributions/MCDistFun.h"
#include "statistics/Methods.h"
#include "statistics/OneSample.h"

namespace {

using namespace statistics;

const CriticalValues at95 = criticalValues(95.0);

void expectInterval(const Interval& interval, double lower, double upper) {
  EXPECT_DOUBLE_EQ(interval.lower, lower);
  EXPECT_DOUBLE_EQ(interval.upper, upper);
}

void expectMissing(const TestResult& result) {
  EXPECT_EQ(result.statistic, MCMV::Missing);
  EXPECT_EQ(result.oneSided, MCMV::Missing);
  EXPECT_EQ(result.twoSided, MCMV::Missing);
}

void expectNoEvidence(const TestResult& result) {
  EXPECT_EQ(result.statistic, 0.0);
  EXPECT_EQ(result.oneSided, 0.5);
  EXPECT_EQ(result.twoSided, 1.0);
}

TEST(CriticalValues, FollowTheLevel) {
  EXPECT_NEAR(criticalValues(90.0).z, 1.6448536269514722, 1e-15);
  EXPECT_NEAR(at95.z, 1.959963984540054, 1e-15);
  EXPECT_NEAR(criticalValues(99.0).z, 2.5758293035489004, 1e-15);
  EXPECT_NEAR(at95.alpha, 0.05, 1e-16);
}

TEST(CriticalValues, AreOneAndZeroAtLevelZero) {
  EXPECT_EQ(criticalValues(0.0).alpha, 1.0);
  EXPECT_EQ(criticalValues(0.0).z, 0.0);
}

TEST(OneSampleEstimates, StayMissingWithoutTrials) {
  const OneSampleEstimates none = estimate(OneSampleCounts{});
  EXPECT_FALSE(none.goodData);
  EXPECT_TRUE(none.completeData);
  EXPECT_EQ(none.prop, MCMV::Missing);
  EXPECT_EQ(none.estDiff, MCMV::Missing);
  EXPECT_EQ(none.aseDiff0, MCMV::Missing);
  EXPECT_EQ(none.aseDiff1, MCMV::Missing);
}

TEST(OneSampleEstimates, OfAllSuccessesAreIncomplete) {
  const OneSampleEstimates all = estimate(OneSampleCounts{10, 0, 0.3});
  EXPECT_TRUE(all.goodData);
  EXPECT_FALSE(all.completeData);
  EXPECT_EQ(all.prop, 1.0);
  EXPECT_EQ(all.aseDiff1, 0.0);
}

TEST(OneSampleIntervals, OfNoSuccessInTen) {
  const OneSampleCounts none{0, 10, 0.5};
  EXPECT_EQ(clopperPearson(none, at95).lower, 0.0);
  EXPECT_GT(jeffreys(none, at95).lower, 0.0);
  expectInterval(logit(none, at95), MCMV::Missing, MCMV::Missing);
  expectInterval(wald(none, at95), 0.0, 0.0);
  expectInterval(waldCorrected(none, at95), 0.0, 0.05);
  EXPECT_EQ(wilsonScore(none, at95).lower, 0.0);
  EXPECT_GT(anscombe(none, at95).lower, 0.0);
}

TEST(OneSampleIntervals, OfSuccessesOnly) {
  const OneSampleCounts all{10, 0, 0.5};
  EXPECT_EQ(clopperPearson(all, at95).upper, 1.0);
  EXPECT_LT(jeffreys(all, at95).upper, 1.0);
  expectInterval(logit(all, at95), MCMV::Missing, MCMV::Missing);
  expectInterval(wald(all, at95), 1.0, 1.0);
  EXPECT_EQ(wilsonScore(all, at95).upper, 1.0);
}

TEST(OneSampleIntervals, OfWilsonEndExactlyAtTheEnds) {
  for (const double n : {1.0, 3.0, 17.0, 1000.0, 123457.0, 1e12})
    for (const double level : {0.0, 50.0, 95.0, 99.9}) {
      const CriticalValues critical = criticalValues(level);
      EXPECT_EQ(wilsonScore(OneSampleCounts{0, n, 0.5}, critical).lower, 0.0);
      EXPECT_EQ(wilsonScore(OneSampleCounts{n, 0, 0.5}, critical).upper, 1.0);
    }
}

TEST(OneSampleIntervals, OfWilsonKeepTheirSmallDigits) {
  // One of 1e12: the lower bound is p^2 / (m + h), not the difference of two numbers like it.
  const double z = at95.z;
  const double root = 1.0 + z * z / 2.0 + z * std::sqrt(1.0 - 1e-12 + z * z / 4.0);
  const double lower = wilsonScore(OneSampleCounts{1, 1e12 - 1, 0.5}, at95).lower;
  EXPECT_NEAR(lower * root / 1e-12, 1.0, 1e-14);
}

TEST(OneSampleIntervals, KeepNotANumberThroughTheClamp) {
  const Interval low = wilsonScoreCorrected(OneSampleCounts{0, 10, 0.5}, criticalValues(80.0));
  EXPECT_TRUE(std::isnan(low.lower));
  EXPECT_GT(low.upper, 0.0);
  const Interval high = wilsonScoreCorrected(OneSampleCounts{10, 0, 0.5}, criticalValues(80.0));
  EXPECT_LT(high.lower, 1.0);
  EXPECT_TRUE(std::isnan(high.upper));
}

TEST(OneSampleIntervals, KeepNotANumberAtLevelZero) {
  EXPECT_TRUE(
      std::isnan(wilsonScoreCorrected(OneSampleCounts{0, 10, 0.5}, criticalValues(0.0)).lower));
}

TEST(OneSampleIntervals, ShrinkToTheirCentreAtLevelZero) {
  const OneSampleCounts counts{3, 7, 0.5};
  const CriticalValues none = criticalValues(0.0);
  expectInterval(agrestiCoull(counts, none), 0.3, 0.3);
  expectInterval(anscombe(counts, none), 3.5 / 11.0, 3.5 / 11.0);
  expectInterval(logit(counts, none), 0.3, 0.3);
  expectInterval(wald(counts, none), 0.3, 0.3);
  expectInterval(waldCorrected(counts, none), 0.25, 0.35);
  expectInterval(wilsonScore(counts, none), 0.3, 0.3);
}

TEST(OneSampleTests, OfNoSuccess) {
  const OneSampleCounts none{0, 10, 0.3};
  expectMissing(waldTest(none));
  expectMissing(waldCorrectedTest(none));
  EXPECT_LT(scoreTest(none).statistic, 0.0);
  // P(X <= -1) is 0 without an error, so the upper tail is 1 and the lower is the smaller.
  EXPECT_NEAR(exactTest(none).oneSided, std::pow(0.7, 10.0), 1e-16);
}

TEST(OneSampleTests, OfSuccessesOnlyHaveNoWald) {
  expectMissing(waldTest(OneSampleCounts{10, 0, 0.3}));
  expectMissing(waldCorrectedTest(OneSampleCounts{10, 0, 0.3}));
}

TEST(OneSampleTests, OfTheTestValueItself) {
  const OneSampleCounts equal{3, 7, 0.3};
  expectNoEvidence(scoreTest(equal));
  expectNoEvidence(scoreCorrectedTest(equal));
  expectNoEvidence(waldCorrectedTest(equal));
  EXPECT_EQ(estimate(equal).estDiff, 0.0);
}

TEST(OneSampleTests, WithinTheCorrectionAreZeroOnlyWhenCorrected) {
  // 5 of 10 against 0.5499: the difference is just below 1 / 20.
  const OneSampleCounts close{5, 5, 0.5499};
  expectNoEvidence(scoreCorrectedTest(close));
  expectNoEvidence(waldCorrectedTest(close));
  EXPECT_LT(scoreTest(close).statistic, 0.0);
  EXPECT_LT(waldTest(close).statistic, 0.0);
}

TEST(OneSampleTests, TakeTheSmallerTailInEitherDirection) {
  const TestResult above = scoreTest(OneSampleCounts{90, 10, 0.5});
  const TestResult below = scoreTest(OneSampleCounts{10, 90, 0.5});
  EXPECT_EQ(above.statistic, 8.0);
  EXPECT_EQ(below.statistic, -8.0);
  EXPECT_EQ(above.oneSided, below.oneSided);
  EXPECT_EQ(above.oneSided, MCDistFun::CdfStdNorm(-8.0));
  EXPECT_EQ(above.twoSided, 2.0 * above.oneSided);
}

TEST(OneSampleTests, KeepDeepUpperTails) {
  // All of 1000 successes: P(X >= 1000) is 2^-1000, which one minus P(X <= 999) would round to 0.
  const TestResult exact = exactTest(OneSampleCounts{1000, 0, 0.5});
  EXPECT_NEAR(exact.oneSided / 0x1p-1000, 1.0, 1e-12);
  EXPECT_NEAR(midpTest(OneSampleCounts{1000, 0, 0.5}).oneSided / 0x1p-1001, 1.0, 1e-12);
  EXPECT_NEAR(scoreTest(OneSampleCounts{1000, 0, 0.5}).oneSided,
              MCDistFun::CdfStdNorm(-std::sqrt(1000.0)), 0.0);
}

TEST(OneSampleTests, NeverLeaveTheRangeOfProbabilities) {
  for (const double p0 : {1e-6, 0.1, 0.5, 0.9, 1.0 - 1e-6})
    for (double x = 0.0; x <= 7.0; ++x) {
      const OneSampleCounts counts{x, 7.0 - x, p0};
      EXPECT_LE(exactTest(counts).twoSided, 1.0);
      EXPECT_LE(midpTest(counts).twoSided, 1.0);
      EXPECT_GE(midpTest(counts).oneSided, 0.0);
    }
}

TEST(OneSampleTests, OfAMillionMillionTrialsAgreeWithTheNormal) {
  // One standard deviation is 500,000; at 4 of them the skewness is 0 and the rest is below 1e-11.
  const double x = 5e11 + 2e6;
  const TestResult exact = exactTest(OneSampleCounts{x, 1e12 - x, 0.5});
  const double corrected = MCDistFun::CdfStdNorm(-(2e6 - 0.5) / 5e5);
  EXPECT_NEAR(exact.oneSided / corrected, 1.0, 1e-10);
}

}  // namespace
