// What samples say of a statistic: bias, standard error, percentile and BCa intervals.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <optional>
#include <vector>

#include "embedded/output/Resampling.h"

namespace embedded::output {
namespace {

std::vector<double> oneTo(int last) {
  std::vector<double> values(static_cast<std::size_t>(last));
  std::iota(values.begin(), values.end(), 1.0);
  return values;
}

TEST(BootstrapSummary, BiasIsTheSamplesMeanLessTheStatistic) {
  const auto summary = summarise(49.0, oneTo(99), 95.0, BootstrapInterval::Percentile, 0.0);
  EXPECT_NEAR(summary.bias, 1.0, 1e-12);
  EXPECT_NEAR(summary.standardError, std::sqrt(99.0 * 100.0 / 12.0), 1e-12);
}

// With B = 99 samples, p (B + 1) is whole for p = 0.05 and 0.95: the 5th and the 95th.
TEST(BootstrapSummary, PercentilesAreOrderStatistics) {
  const auto summary = summarise(50.0, oneTo(99), 90.0, BootstrapInterval::Percentile, 0.0);
  EXPECT_NEAR(summary.lower.value(), 5.0, 1e-9);
  EXPECT_NEAR(summary.upper.value(), 95.0, 1e-9);
}

TEST(BootstrapSummary, PercentilesBetweenOrderStatisticsAreInterpolated) {
  const auto summary = summarise(5.0, oneTo(9), 75.0, BootstrapInterval::Percentile, 0.0);
  EXPECT_NEAR(summary.lower.value(), 1.25, 1e-9);
  EXPECT_NEAR(summary.upper.value(), 8.75, 1e-9);
}

TEST(BootstrapSummary, PercentilesBeyondTheSamplesAreTheirEnds) {
  const auto summary = summarise(2.0, {1.0, 2.0, 3.0}, 99.0, BootstrapInterval::Percentile, 0.0);
  EXPECT_EQ(summary.lower.value(), 1.0);
  EXPECT_EQ(summary.upper.value(), 3.0);
}

// A symmetric distribution around the statistic, without acceleration: nothing to correct.
TEST(BootstrapSummary, BcaWithoutBiasAndAccelerationIsThePercentileInterval) {
  const auto bca = summarise(50.0, oneTo(99), 90.0, BootstrapInterval::Bca, 0.0);
  EXPECT_NEAR(bca.lower.value(), 5.0, 1e-9);
  EXPECT_NEAR(bca.upper.value(), 95.0, 1e-9);
}

// The statistic is the 30th of 99: share below (29 + 0.5) / 99, z0 = -0.5302..., so that the tails
// looked up are Phi(2 z0 -+ 1.6449): 0.00338... and 0.72066...
TEST(BootstrapSummary, BcaMovesTowardsTheStatistic) {
  const auto bca = summarise(30.0, oneTo(99), 90.0, BootstrapInterval::Bca, 0.0);
  const double z0 = -0.53023;  // quantile of 29.5 / 99
  const auto phi = [](double z) { return 0.5 * std::erfc(-z / std::sqrt(2.0)); };
  EXPECT_NEAR(bca.lower.value(), std::max(1.0, 100.0 * phi(2 * z0 - 1.644854)), 0.1);
  EXPECT_NEAR(bca.upper.value(), 100.0 * phi(2 * z0 + 1.644854), 0.1);
}

TEST(BootstrapSummary, TiesWithTheStatisticCountHalf) {
  // Half of the ties below: no bias to correct.
  const std::vector<double> samples{1, 2, 2, 2, 3};
  const auto bca = summarise(2.0, samples, 50.0, BootstrapInterval::Bca, 0.0);
  const auto percentile = summarise(2.0, samples, 50.0, BootstrapInterval::Percentile, 0.0);
  EXPECT_NEAR(bca.lower.value(), percentile.lower.value(), 1e-9);
  EXPECT_NEAR(bca.upper.value(), percentile.upper.value(), 1e-9);
}

TEST(BootstrapSummary, SamplesThatAllAgreeHaveNoInterval) {
  const auto summary = summarise(1.0, {1.0, 1.0, 1.0}, 95.0, BootstrapInterval::Percentile, 0.0);
  EXPECT_EQ(summary.bias, 0.0);
  EXPECT_EQ(summary.standardError, 0.0);
  EXPECT_FALSE(summary.lower.has_value());
  EXPECT_FALSE(summary.upper.has_value());
}

TEST(BootstrapSummary, BcaOfAStatisticOutsideItsSamplesHasNoInterval) {
  const auto summary = summarise(9.0, {1.0, 2.0, 3.0}, 95.0, BootstrapInterval::Bca, 0.0);
  EXPECT_FALSE(summary.lower.has_value());
}

// For a mean the jackknife's acceleration is the skewness over 6 sqrt(n): of 7 ones and 3 zeros
// (1 - 2 p) / sqrt(p (1 - p)) / (6 sqrt(n)).
TEST(JackknifeAcceleration, OfAProportionIsItsSkewnessOverSixRootsOfN) {
  const std::vector<std::optional<double>> values{6.0 / 9.0, 7.0 / 9.0};
  const std::vector<std::uint64_t> counts{7, 3};
  EXPECT_NEAR(jackknifeAcceleration(values, counts),
              (1.0 - 1.4) / std::sqrt(0.21) / (6.0 * std::sqrt(10.0)), 1e-12);
}

// Patterns with counts stand for rows.
TEST(JackknifeAcceleration, OverPatternsIsThatOverRows) {
  const std::vector<std::optional<double>> patterns{0.25, 0.5, 0.75};
  const std::vector<std::uint64_t> counts{2, 1, 3};
  const std::vector<std::optional<double>> rows{0.25, 0.25, 0.5, 0.75, 0.75, 0.75};
  const std::vector<std::uint64_t> ones(6, 1);
  EXPECT_NEAR(jackknifeAcceleration(patterns, counts), jackknifeAcceleration(rows, ones), 1e-15);
}

TEST(JackknifeAcceleration, OfValuesThatAgreeIsZero) {
  const std::vector<std::optional<double>> values{0.5, 0.5};
  const std::vector<std::uint64_t> counts{4, 4};
  EXPECT_EQ(jackknifeAcceleration(values, counts), 0.0);
}

}  // namespace
}  // namespace embedded::output
