// Independent samples: estimates, intervals and tests at the edges of their domain.
#include <gtest/gtest.h>

#include <cmath>

#include "host/distributions/MCDistFun.h"
#include "statistics/Independent.h"
#include "statistics/Methods.h"

namespace {

using namespace statistics;

const CriticalValues at95 = criticalValues(95.0);

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

TEST(IndependentEstimates, StayMissingWithAnEmptyGroup) {
  for (const IndependentCounts& counts :
       {IndependentCounts{3, 4, 0, 0}, IndependentCounts{0, 0, 3, 4}}) {
    const IndependentEstimates none = estimate(counts);
    EXPECT_FALSE(none.goodData);
    EXPECT_TRUE(none.completeData);
    EXPECT_EQ(none.prop1, MCMV::Missing);
    EXPECT_EQ(none.aseDiff1, MCMV::Missing);
  }
}

TEST(IndependentEstimates, AreCompleteWithBothOutcomesInOneGroup) {
  const IndependentEstimates second = estimate(IndependentCounts{5, 0, 3, 4});
  EXPECT_EQ(second.prop1, 1.0);
  EXPECT_EQ(second.ase1, 0.0);
  EXPECT_TRUE(second.completeData);
  EXPECT_FALSE(estimate(IndependentCounts{5, 0, 4, 0}).completeData);
}

TEST(IndependentEstimates, WithoutSuccessesHaveNoErrors) {
  const IndependentEstimates none = estimate(IndependentCounts{0, 5, 0, 7});
  EXPECT_EQ(none.estDiff, 0.0);
  EXPECT_EQ(none.aseDiff0, 0.0);
  EXPECT_EQ(none.aseDiff1, 0.0);
}

TEST(IndependentEstimates, LoseNothingWhenLargeGroupsNearlyAgree) {
  const IndependentEstimates close = estimate(IndependentCounts{999999999999, 1, 999999999998, 2});
  EXPECT_DOUBLE_EQ(close.estDiff, 1e-12);
  EXPECT_DOUBLE_EQ(close.ase1, std::sqrt(1e-12 * (1.0 - 1e-12) / 1e12));
}

TEST(IndependentIntervals, LieWithinTheRangeOfDifferences) {
  const IndependentCounts counts{3, 7, 7, 3};
  for (const auto& method : independentIntervals) {
    const Interval interval = method.compute(counts, at95);
    EXPECT_GE(interval.lower, -1.0) << method.keyword;
    EXPECT_LE(interval.upper, 1.0) << method.keyword;
    EXPECT_LT(interval.lower, interval.upper) << method.keyword;
  }
}

TEST(IndependentIntervals, AreCentredOnTheirAdjustedDifference) {
  const IndependentCounts counts{3, 7, 7, 3};
  const Interval caffo = agrestiCaffo(counts, at95);
  EXPECT_DOUBLE_EQ((caffo.lower + caffo.upper) / 2.0, 4.0 / 12.0 - 8.0 / 12.0);
  const Interval brownLi = brownLiJeffreys(counts, at95);
  EXPECT_DOUBLE_EQ((brownLi.lower + brownLi.upper) / 2.0, 3.5 / 11.0 - 7.5 / 11.0);
}

TEST(IndependentIntervals, OfOneAgainstZero) {
  const IndependentCounts counts{5, 0, 0, 5};
  EXPECT_EQ(wald(counts, at95).lower, 1.0);
  EXPECT_EQ(wald(counts, at95).upper, 1.0);
  EXPECT_EQ(agrestiCaffo(counts, at95).upper, 1.0);
}

TEST(IndependentIntervals, OfAGroupOfOneTrialHaveNoHauckAnderson) {
  const IndependentCounts counts{1, 0, 2, 18};
  for (const auto& method : independentIntervals) {
    const bool isMissing = method.keyword == "HAUCK_ANDERSON";
    EXPECT_EQ(method.compute(counts, at95).lower == MCMV::Missing, isMissing) << method.keyword;
    EXPECT_EQ(method.compute(counts, at95).upper == MCMV::Missing, isMissing) << method.keyword;
  }
}

TEST(IndependentIntervals, KeepNotANumberThroughTheClamp) {
  // No success in either group at 80 %: the corrected Wilson lower bounds are not numbers, and each
  // is used on one side.
  const Interval interval =
      newcombeCorrected(IndependentCounts{0, 10, 0, 12}, criticalValues(80.0));
  EXPECT_TRUE(std::isnan(interval.lower));
  EXPECT_TRUE(std::isnan(interval.upper));
}

TEST(IndependentTests, OfEqualProportions) {
  const IndependentCounts equal{2, 4, 3, 6};
  for (const auto& method : independentTests) expectNoEvidence(method.compute(equal));
}

TEST(IndependentTests, OfOneAgainstZero) {
  const IndependentCounts counts{5, 0, 0, 5};
  expectMissing(waldTest(counts));
  expectMissing(waldCorrectedTest(counts));
  expectMissing(hauckAndersonTest(counts));
  EXPECT_GT(waldH0Test(counts).statistic, 0.0);
}

TEST(IndependentTests, OfOneAgainstZeroInTwoTrialsEachHoldTheCorrectionAtItsEdge) {
  // cc = |d| = 1 is not within the correction: the comparison is strict.
  const IndependentCounts counts{1, 0, 0, 1};
  expectMissing(waldCorrectedTest(counts));
  EXPECT_EQ(waldH0CorrectedTest(counts).statistic, 0.0);
}

TEST(IndependentTests, WithoutSuccesses) {
  const IndependentCounts none{0, 5, 0, 7};
  expectMissing(waldTest(none));
  expectMissing(waldH0Test(none));
  expectNoEvidence(hauckAndersonTest(none));
  expectNoEvidence(waldCorrectedTest(none));
  expectNoEvidence(waldH0CorrectedTest(none));
}

TEST(IndependentTests, OfAGroupOfOneTrial) {
  // The correction of one half is below the difference of 0.9, so the group of one decides.
  expectMissing(hauckAndersonTest(IndependentCounts{1, 0, 2, 18}));
  // Here the difference of 0.4 lies within it, which is looked at first.
  expectNoEvidence(hauckAndersonTest(IndependentCounts{1, 0, 12, 8}));
}

TEST(IndependentTests, TakeTheLowerTailOfANegativeDifference) {
  const TestResult result = waldTest(IndependentCounts{3, 17, 12, 8});
  EXPECT_LT(result.statistic, 0.0);
  EXPECT_EQ(result.oneSided, MCDistFun::CdfStdNorm(result.statistic));
}

// Successes and failures exchanged turn the difference round. Where nearly all are successes this
// once cost Newcombe's intervals all digits, and those with added counts some.
TEST(IndependentIntervals, KeepTheirDigitsWhereNearlyAllSucceed) {
  const IndependentCounts few{3.0, 1e12, 50.0, 2e12};
  const IndependentCounts most{1e12, 3.0, 2e12, 50.0};
  for (const auto& method : independentIntervals) {
    const Interval low = method.compute(few, at95);
    const Interval high = method.compute(most, at95);
    EXPECT_NEAR(low.lower / -high.upper, 1.0, 1e-15) << method.keyword;
    EXPECT_NEAR(low.upper / -high.lower, 1.0, 1e-15) << method.keyword;
  }
}

}  // namespace
