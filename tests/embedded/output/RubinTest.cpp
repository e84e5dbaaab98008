// Rubin's rules on small numbers that can be followed by hand, and at their limits.
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

}  // namespace
