// Paired samples: estimates, intervals and tests at the edges of their domain.
#include <gtest/gtest.h>

#include <cmath>

#include "statistics/Methods.h"
#include "statistics/Paired.h"
#include "statistics/WilsonBounds.h"

namespace {

using namespace statistics;

const CriticalValues at95 = criticalValues(95.0);

void expectInterval(const Interval& interval, double lower, double upper) {
  EXPECT_NEAR(interval.lower, lower, 1e-15);
  EXPECT_NEAR(interval.upper, upper, 1e-15);
}

void expectResult(const TestResult& result, double statistic, double oneSided, double twoSided) {
  EXPECT_DOUBLE_EQ(result.statistic, statistic);
  EXPECT_DOUBLE_EQ(result.oneSided, oneSided);
  EXPECT_DOUBLE_EQ(result.twoSided, twoSided);
}

void expectMissing(const TestResult& result) {
  expectResult(result, MCMV::Missing, MCMV::Missing, MCMV::Missing);
}

TEST(PairedEstimates, StayMissingWithoutCases) {
  const PairedEstimates none = estimate(PairedCounts{});
  EXPECT_FALSE(none.goodData);
  EXPECT_TRUE(none.completeData);
  EXPECT_EQ(none.prop1, MCMV::Missing);
  EXPECT_EQ(none.aseDiff1, MCMV::Missing);
}

TEST(PairedEstimates, OfConcordantCasesAreIncomplete) {
  const PairedEstimates equal = estimate(PairedCounts{6, 0, 0, 4});
  EXPECT_TRUE(equal.goodData);
  EXPECT_FALSE(equal.completeData);
  EXPECT_EQ(equal.aseDiff0, 0.0);
  EXPECT_EQ(equal.aseDiff1, 0.0);
}

TEST(PairedEstimates, HoldTheShareOfEachCell) {
  const PairedEstimates result = estimate(PairedCounts{3, 1, 2, 4});
  EXPECT_EQ(result.p11, 0.3);
  EXPECT_EQ(result.p10, 0.1);
  EXPECT_EQ(result.p01, 0.2);
  EXPECT_EQ(result.p00, 0.4);
}

TEST(PairedEstimates, HaveNoErrorOfAnEmptyMargin) {
  const PairedEstimates none = estimate(PairedCounts{0, 0, 3, 7});
  EXPECT_EQ(none.prop1, 0.0);
  EXPECT_EQ(none.ase1, MCMV::Missing);
  EXPECT_NE(none.ase2, MCMV::Missing);
}

TEST(PairedEstimates, DivideTheErrorByTheMargin) {
  const PairedEstimates result = estimate(PairedCounts{3, 1, 2, 4});
  EXPECT_DOUBLE_EQ(result.ase1, std::sqrt(0.6 * 0.4 / 4.0));
  EXPECT_DOUBLE_EQ(result.ase2, std::sqrt(0.5 * 0.5 / 5.0));
}

TEST(PairedEstimates, NeedAVarianceToBeComplete) {
  EXPECT_TRUE(estimate(PairedCounts{1, 2, 1, 0}).completeData);
  // All cases discordant in one direction, or no success on one of the measurements.
  EXPECT_FALSE(estimate(PairedCounts{0, 5, 0, 0}).completeData);
  EXPECT_FALSE(estimate(PairedCounts{0, 0, 5, 5}).completeData);
}

TEST(PairedIntervals, OfConcordantCases) {
  const PairedCounts equal{6, 0, 0, 4};
  expectInterval(wald(equal, at95), 0.0, 0.0);
  expectInterval(waldCorrected(equal, at95), -0.1, 0.1);
  for (const auto method : {&agrestiMin, &bonettPrice}) {
    const Interval interval = method(equal, at95);
    EXPECT_DOUBLE_EQ(interval.lower, -interval.upper);
    EXPECT_GT(interval.upper, 0.0);
  }
}

TEST(PairedIntervals, OfAnEmptyMarginCombineTheWilsonIntervalsWithoutCorrelation) {
  const PairedCounts all{7, 3, 0, 0};
  const Interval first = wilsonBounds(1.0, 10.0, at95.z);
  const Interval second = wilsonBounds(0.7, 10.0, at95.z);
  expectInterval(newcombe(all, at95), 0.3 - std::hypot(1.0 - first.lower, second.upper - 0.7),
                 0.3 + std::hypot(first.upper - 1.0, 0.7 - second.lower));
}

TEST(PairedIntervals, TakeNoCorrelationWhenTwiceADeterminantIsTheCases) {
  // n11 n00 - b c = 10 is half of 20 cases.
  const PairedCounts half{6, 4, 5, 5};
  ASSERT_EQ(2.0 * (half.n11 * half.n00 - half.n10 * half.n01), half.cases());
  const Interval first = wilsonBounds(half.prop1(), 20.0, at95.z);
  const Interval second = wilsonBounds(half.prop2(), 20.0, at95.z);
  expectInterval(newcombe(half, at95),
                 -0.05 - std::hypot(half.prop1() - first.lower, second.upper - half.prop2()),
                 -0.05 + std::hypot(first.upper - half.prop1(), half.prop2() - second.lower));
}

TEST(PairedIntervals, DoNotCorrectASmallPositiveCorrelation) {
  // n11 n00 - b c = 1 lies between 0 and half of the cases, where the textbook has phi = 0. Here
  // the correlation narrows the interval.
  const PairedCounts counts{5, 4, 6, 5};
  ASSERT_EQ(counts.n11 * counts.n00 - counts.n10 * counts.n01, 1.0);
  const Interval first = wilsonBounds(counts.prop1(), 20.0, at95.z);
  const Interval second = wilsonBounds(counts.prop2(), 20.0, at95.z);
  const double plain = std::hypot(counts.prop1() - first.lower, second.upper - counts.prop2());
  const double lower = newcombe(counts, at95).lower;
  EXPECT_GT(lower, counts.difference() - plain);
  EXPECT_NEAR(lower, counts.difference() - plain, 0.01);
}

TEST(PairedTests, WithoutDiscordantCases) {
  const PairedCounts equal{6, 0, 0, 4};
  expectResult(exactTest(equal), MCMV::Missing, 1.0, 1.0);
  expectResult(midpTest(equal), MCMV::Missing, 0.5, 1.0);
  expectMissing(mcNemarTest(equal));
  expectMissing(waldTest(equal));
  expectResult(mcNemarCorrectedTest(equal), 0.0, 0.5, 1.0);
  expectResult(waldCorrectedTest(equal), 0.0, 0.5, 1.0);
}

TEST(PairedTests, OfFiveAgainstNone) {
  const PairedCounts counts{3, 5, 0, 4};
  expectResult(exactTest(counts), MCMV::Missing, 0.03125, 0.0625);
  expectResult(midpTest(counts), MCMV::Missing, 0.015625, 0.03125);
}

TEST(PairedTests, OfOneDiscordantCaseAreZeroWhenCorrected) {
  expectResult(mcNemarCorrectedTest(PairedCounts{3, 1, 0, 4}), 0.0, 0.5, 1.0);
  expectResult(mcNemarCorrectedTest(PairedCounts{3, 0, 1, 4}), 0.0, 0.5, 1.0);
}

TEST(PairedTests, OfAllCasesInOneDirectionHaveNoWald) {
  expectMissing(waldTest(PairedCounts{0, 5, 0, 0}));
  expectMissing(waldCorrectedTest(PairedCounts{0, 5, 0, 0}));
}

TEST(PairedTests, CapTheTwoSidedP) {
  EXPECT_EQ(exactTest(PairedCounts{1, 4, 4, 1}).twoSided, 1.0);
  EXPECT_LE(midpTest(PairedCounts{1, 4, 4, 1}).twoSided, 1.0);
}

// Two pairs that disagree each in its own way: the correlation is -1, the product of the margins 1,
// and the limits are as far from 0 as those of two proportions of 1/2 taken together.
TEST(PairedIntervals, OfTwoOppositePairsAreTheSumOfTheirParts) {
  const double z2 = at95.z * at95.z;
  const double part = at95.z * std::sqrt(0.25 / 2.0 + z2 / 16.0) / (1.0 + z2 / 2.0);
  expectInterval(newcombe(PairedCounts{0, 1, 1, 0}, at95), -2.0 * part, 2.0 * part);
}

TEST(PairedCounts, ThatAreNoNumbersGiveNoInterval) {
  const Interval interval = newcombe(PairedCounts{1.0, 2.0, 1.0, std::nan("")}, at95);
  EXPECT_EQ(interval.lower, MCMV::Missing);
  EXPECT_EQ(interval.upper, MCMV::Missing);
}

}  // namespace
