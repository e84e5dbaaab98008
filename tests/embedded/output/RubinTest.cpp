// Rubin's rules on small numbers that can be followed by hand, and at their limits. Where no other
// source is named, the numbers expected were computed from the formulas in 40 digits.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "embedded/output/Rubin.h"

namespace {

using namespace embedded::output;

constexpr double infinity = std::numeric_limits<double>::infinity();

PooledEstimate pooled(std::vector<double> estimates, std::vector<double> errors,
                      std::optional<double> completeDf = {},
                      PoolingDf rule = PoolingDf::BarnardRubin) {
  return poolEstimates(estimates, errors, completeDf, rule);
}

// Three imputations: within 0.01, between 0.01, so that total is 0.07/3 and the increase 4/3.
PooledEstimate three() {
  return pooled({0.4, 0.5, 0.6}, {0.1, 0.1, 0.1});
}

TEST(Rubin, AddsTheVarianceBetweenToTheVarianceWithin) {
  const PooledEstimate estimate = three();
  EXPECT_NEAR(estimate.estimate, 0.5, 1e-15);
  EXPECT_NEAR(estimate.within, 0.01, 1e-16);
  EXPECT_NEAR(estimate.between, 0.01, 1e-16);
  EXPECT_NEAR(estimate.total, 0.07 / 3, 1e-16);
  EXPECT_NEAR(estimate.increase, 4.0 / 3, 1e-13);
  EXPECT_NEAR(estimate.df, 6.125, 1e-12);
  EXPECT_NEAR(estimate.missingInformation, 0.665362035225049, 1e-13);
  EXPECT_NEAR(estimate.efficiency, 1.0 / (1.0 + estimate.missingInformation / 3), 1e-15);
  EXPECT_EQ(estimate.imputations, 3);
}

TEST(Rubin, LimitsDegreesOfFreedomByThoseOfCompleteData) {
  const PooledEstimate limited = pooled({0.4, 0.5, 0.6}, {0.1, 0.1, 0.1}, 99.0);
  EXPECT_NEAR(limited.df, 5.33886553234575, 1e-12);
  const PooledEstimate unlimited = pooled({0.4, 0.5, 0.6}, {0.1, 0.1, 0.1}, 99.0, PoolingDf::Rubin);
  EXPECT_NEAR(unlimited.df, 6.125, 1e-12);
}

TEST(Rubin, ComparesWithStudentsT) {
  EXPECT_NEAR(criticalValue(95.0, 6.125), 2.43485782317833, 1e-12);
  EXPECT_NEAR(criticalValue(95.0, infinity), 1.959963984540054, 1e-14);
  const auto test = pooledTest(three());
  ASSERT_TRUE(test);
  EXPECT_NEAR(test->statistic, 3.27326835353989, 1e-12);
  EXPECT_NEAR(test->oneSided, 0.00823405228411621, 1e-14);
  EXPECT_EQ(test->twoSided, 2.0 * test->oneSided);
}

TEST(Rubin, KeepsWaldsIntervalWithinItsRange) {
  const PooledInterval interval = pooledWald(three(), 95.0, 0.0, 1.0);
  EXPECT_NEAR(interval.lower, 0.128069323960996, 1e-12);
  EXPECT_NEAR(interval.upper, 0.871930676039004, 1e-12);
  const PooledInterval wide = pooledWald(pooled({0.1, 0.9}, {0.2, 0.2}), 95.0, 0.0, 1.0);
  EXPECT_EQ(wide.lower, 0.0);
  EXPECT_EQ(wide.upper, 1.0);
}

TEST(Rubin, WidensWilsonsIntervalByTheIncrease) {
  const PooledInterval interval = pooledWilson(three(), 50.0, 95.0);
  EXPECT_NEAR(interval.lower, 0.267239891963363, 1e-12);
  EXPECT_NEAR(interval.upper, 0.732760108036637, 1e-12);
}

TEST(Rubin, GivesWilsonsOwnIntervalWhereImputationsAgree) {
  // 81 of 263, Newcombe 1998: 0.2553 to 0.3662.
  const double p = 81.0 / 263.0;
  const PooledEstimate same = pooled({p, p, p}, {0.03, 0.03, 0.03});
  EXPECT_EQ(same.estimate, p);
  EXPECT_EQ(same.between, 0.0);
  EXPECT_EQ(same.df, infinity);
  EXPECT_EQ(same.missingInformation, 0.0);
  EXPECT_EQ(same.efficiency, 1.0);
  const PooledInterval interval = pooledWilson(same, 263.0, 95.0);
  EXPECT_NEAR(interval.lower, 0.2553, 5e-5);
  EXPECT_NEAR(interval.upper, 0.3662, 5e-5);
}

TEST(Rubin, GivesNewcombesOwnIntervalWhereImputationsAgree) {
  // 56 of 70 less 48 of 80, Newcombe 1998: 0.0524 to 0.3339.
  const PooledEstimate first = pooled({0.8, 0.8}, {0.05, 0.05});
  const PooledEstimate second = pooled({0.6, 0.6}, {0.05, 0.05});
  const PooledInterval interval = pooledNewcombe(first, 70.0, second, 80.0, 95.0);
  EXPECT_NEAR(interval.lower, 0.0524, 5e-5);
  EXPECT_NEAR(interval.upper, 0.3339, 5e-5);
  const PooledInterval mirrored = pooledNewcombe(second, 80.0, first, 70.0, 95.0);
  EXPECT_NEAR(mirrored.lower, -interval.upper, 1e-15);
  EXPECT_NEAR(mirrored.upper, -interval.lower, 1e-15);
}

TEST(Rubin, HasNoRoundingWhereImputationsAgree) {
  for (const double p : {0.1, 1.0 / 3.0, 0.7}) {
    const PooledEstimate same = pooled(std::vector(7, p), std::vector(7, 0.05));
    EXPECT_EQ(same.estimate, p);
    EXPECT_EQ(same.between, 0.0);
    EXPECT_EQ(same.total, same.within);
  }
}

TEST(Rubin, IsAllMissingInformationWithoutVarianceWithin) {
  const PooledEstimate estimate = pooled({0.4, 0.6}, {0.0, 0.0});
  EXPECT_EQ(estimate.increase, infinity);
  EXPECT_EQ(estimate.missingInformation, 1.0);
  EXPECT_NEAR(estimate.df, 1.0, 1e-15);
  const PooledInterval interval = pooledWilson(estimate, 10.0, 95.0);
  EXPECT_EQ(interval.lower, 0.0);
  EXPECT_EQ(interval.upper, 1.0);
}

TEST(Rubin, DoesNotTestWithoutVariance) {
  EXPECT_FALSE(pooledTest(pooled({0.0, 0.0}, {0.0, 0.0})));
}

// Proportions of so many successes each, with their own standard errors.
PooledEstimate ofCounts(const std::vector<double>& successes, double trials,
                        PoolingDf rule = PoolingDf::BarnardRubin) {
  std::vector<double> estimates;
  std::vector<double> errors;
  for (const double count : successes) {
    const double p = count / trials;
    estimates.push_back(p);
    errors.push_back(std::sqrt(p * (1.0 - p) / trials));
  }
  return poolEstimates(estimates, errors, trials - 1.0, rule);
}

TEST(Rubin, PoolsFiveImputationsOfAProportion) {
  const PooledEstimate five = ofCounts({18, 22, 20, 25, 19}, 50);
  EXPECT_NEAR(five.estimate, 0.416, 1e-15);
  EXPECT_NEAR(five.within, 0.0048096, 1e-16);
  EXPECT_NEAR(five.between, 0.00308, 1e-16);
  EXPECT_NEAR(five.standardError, 0.0922258098365094325, 1e-15);
  EXPECT_NEAR(five.increase, 0.768463073852295409, 1e-13);
  EXPECT_NEAR(five.df, 11.8007493948462008, 1e-11);
  EXPECT_NEAR(five.missingInformation, 0.510947262713714848, 1e-13);
  EXPECT_NEAR(five.efficiency, 0.907285038604758326, 1e-14);
  const PooledInterval wald = pooledWald(five, 95.0, 0.0, 1.0);
  EXPECT_NEAR(wald.lower, 0.214680279995442903, 1e-12);
  EXPECT_NEAR(wald.upper, 0.617319720004557097, 1e-12);
  const PooledInterval wilson = pooledWilson(five, 50.0, 90.0);
  EXPECT_NEAR(wilson.lower, 0.272044690159401134, 1e-12);
  EXPECT_NEAR(wilson.upper, 0.575869982896573477, 1e-12);
}

TEST(Rubin, HasItsOwnDegreesOfFreedomByOption) {
  const PooledEstimate five = ofCounts({18, 22, 20, 25, 19}, 50, PoolingDf::Rubin);
  EXPECT_NEAR(five.df, 21.1839028503963569, 1e-11);
  EXPECT_NEAR(five.missingInformation, 0.481300810843014931, 1e-13);
  EXPECT_NEAR(pooledWald(five, 95.0, 0.0, 1.0).lower, 0.224307260801598378, 1e-12);
}

TEST(Rubin, CombinesTwoPooledWilsonIntervals) {
  const PooledEstimate first = ofCounts({18, 22, 20, 25, 19}, 50);
  const PooledEstimate second = ofCounts({10, 14, 9, 12, 11}, 40);
  const PooledInterval interval = pooledNewcombe(first, 50.0, second, 40.0, 95.0);
  EXPECT_NEAR(interval.lower, -0.126287751999803692, 1e-12);
  EXPECT_NEAR(interval.upper, 0.37254825150250411, 1e-12);
}

// The numbers of a data set in which two imputations have no success at all.
TEST(Rubin, PoolsProportionsOfZeroWithOthers) {
  const PooledEstimate three = ofCounts({0, 1, 0}, 20);
  EXPECT_NEAR(three.standardError, 0.0436208410943413352, 1e-15);
  EXPECT_NEAR(three.df, 3.22951093647669353, 1e-12);
  EXPECT_EQ(pooledWald(three, 95.0, 0.0, 1.0).lower, 0.0);
  EXPECT_NEAR(pooledWald(three, 95.0, 0.0, 1.0).upper, 0.150069998017114036, 1e-12);
  EXPECT_NEAR(pooledWilson(three, 20.0, 95.0).lower, 0.00036534857767102426, 1e-15);
  EXPECT_NEAR(pooledWilson(three, 20.0, 95.0).upper, 0.440093734291272546, 1e-12);
}

TEST(Rubin, WilsonIsExactAtZeroAndOne) {
  for (const double trials : {1.0, 10.0, 1e9}) {
    const PooledInterval none = pooledWilson(ofCounts({0, 0}, trials), trials, 95.0);
    EXPECT_EQ(none.lower, 0.0);
    const double z = criticalValue(95.0, infinity);
    EXPECT_NEAR(none.upper, z * z / (trials + z * z), 1e-15);
    const PooledInterval all = pooledWilson(ofCounts({trials, trials}, trials), trials, 95.0);
    EXPECT_EQ(all.upper, 1.0);
    EXPECT_NEAR(all.lower, trials / (trials + z * z), 1e-15);
  }
}

TEST(Rubin, WilsonKeepsItsDigitsWhereSuccessesAreRare) {
  const double trials = 1e9;
  const PooledInterval rare = pooledWilson(ofCounts({3, 3, 4}, trials), trials, 95.0);
  EXPECT_NEAR(rare.lower / 1.11323339998193835e-9, 1.0, 1e-12);
  EXPECT_NEAR(rare.upper, 9.98093576971092561e-9, 3e-16);
  const PooledInterval usual =
      pooledWilson(ofCounts({trials - 3, trials - 3, trials - 4}, trials), trials, 95.0);
  EXPECT_NEAR(usual.lower, 0.99999999001906423, 3e-16);
  EXPECT_NEAR(usual.upper, 0.9999999988867666, 3e-16);
}

TEST(Rubin, WilsonIsTheEstimateAtALevelOfZero) {
  const PooledInterval point = pooledWilson(ofCounts({2, 4}, 10), 10.0, 0.0);
  EXPECT_NEAR(point.lower, 0.3, 1e-15);
  EXPECT_NEAR(point.upper, 0.3, 1e-15);
}

TEST(Rubin, WhatIsNotANumberStaysNone) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const PooledEstimate of = pooled({0.4, nan, 0.6}, {0.1, 0.1, 0.1}, 9.0);
  EXPECT_TRUE(std::isnan(of.estimate));
  EXPECT_TRUE(std::isnan(of.standardError));
  EXPECT_TRUE(std::isnan(of.df));
  EXPECT_TRUE(std::isnan(of.missingInformation));
  EXPECT_TRUE(std::isnan(of.efficiency));
  for (const PooledInterval& interval :
       {pooledWald(of, 95.0, 0.0, 1.0), pooledWilson(of, 10.0, 95.0),
        pooledNewcombe(of, 10.0, three(), 10.0, 95.0),
        pooledNewcombe(three(), 10.0, of, 10.0, 95.0)}) {
    EXPECT_TRUE(std::isnan(interval.lower));
    EXPECT_TRUE(std::isnan(interval.upper));
  }
  EXPECT_FALSE(pooledTest(of));
  const PooledEstimate errors = pooled({0.5, 0.5}, {0.1, nan}, 9.0);
  EXPECT_EQ(errors.estimate, 0.5);
  EXPECT_TRUE(std::isnan(pooledWald(errors, 95.0, 0.0, 1.0).lower));
}

TEST(Rubin, HasTheQuantileOfStudentsTForAllDegreesOfFreedom) {
  EXPECT_NEAR(criticalValue(95.0, 0.5) / 164.557673480488533, 1.0, 1e-12);
  EXPECT_NEAR(criticalValue(99.9, 0.5) / 411396.462526218163, 1.0, 1e-12);
  EXPECT_NEAR(criticalValue(95.0, 1.0), 12.7062047361747046, 1e-12);
  EXPECT_NEAR(criticalValue(95.0, 2.5), 3.57465484200368322, 1e-13);
  EXPECT_NEAR(criticalValue(99.9, 30.25), 3.64274853623106228, 1e-13);
  EXPECT_NEAR(criticalValue(95.0, 1e6), 1.95996635681410704, 1e-13);
  EXPECT_NEAR(criticalValue(95.0, 1e300), criticalValue(95.0, infinity), 1e-14);
  EXPECT_EQ(criticalValue(95.0, 1e-9), infinity);
}

// One case a group: the complete data have no degree of freedom at all.
TEST(Rubin, KnowsNothingWithoutDegreesOfFreedom) {
  const PooledEstimate one = pooled({0.0, 1.0}, {0.1, 0.1}, 0.0);
  EXPECT_EQ(one.df, 0.0);
  EXPECT_EQ(pooledWald(one, 95.0, 0.0, 1.0).lower, 0.0);
  EXPECT_EQ(pooledWald(one, 95.0, 0.0, 1.0).upper, 1.0);
  EXPECT_FALSE(pooledTest(one));
}

TEST(Rubin, PassesOverDegreesOfFreedomThatCompleteDataCannotHave) {
  EXPECT_NEAR(pooled({0.4, 0.5, 0.6}, {0.1, 0.1, 0.1}, -0.5).df, 6.125, 1e-12);
  EXPECT_EQ(pooled({0.4, 0.5, 0.6}, {0.1, 0.1, 0.1}, 0.0).df, 0.0);
}

// The variance between is positive, and so small beside the one within that nothing is missing.
TEST(Rubin, TakesImputationsThatBarelyDifferForCompleteData) {
  const PooledEstimate estimate = pooled({1e-160, 2e-160}, {1.0, 1.0});
  EXPECT_GT(estimate.between, 0.0);
  EXPECT_EQ(estimate.df, infinity);
  EXPECT_LT(estimate.missingInformation, 1e-300);
  EXPECT_EQ(estimate.efficiency, 1.0);
}

TEST(Rubin, WilsonKnowsNothingWithoutTrials) {
  const PooledInterval interval = pooledWilson(three(), 0.0, 95.0);
  EXPECT_EQ(interval.lower, 0.0);
  EXPECT_EQ(interval.upper, 1.0);
}

TEST(Rubin, WilsonIsTheEstimateItselfAtALevelOfZero) {
  for (const double share : {0.0, 1.0}) {
    const PooledInterval interval = pooledWilson(pooled({share, share}, {0.0, 0.0}), 20.0, 0.0);
    EXPECT_EQ(interval.lower, share);
    EXPECT_EQ(interval.upper, share);
  }
}

}  // namespace
