// What samples say of a statistic: bias, standard error, percentile and BCa intervals.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>
#include <random>
#include <string>
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
  EXPECT_NEAR(summary.bias.value(), 1.0, 1e-12);
  EXPECT_NEAR(summary.standardError.value(), std::sqrt(99.0 * 100.0 / 12.0), 1e-12);
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

// 1 - 0.7 and 0.3 are one value, although not one double: the two samples count half each.
TEST(BootstrapSummary, ValuesThatDifferByRoundingAreTies) {
  const double same = 1.0 - 0.7;
  ASSERT_NE(same, 0.3);
  const std::vector<double> samples{0.1, 0.2, same, 0.3, 0.4, 0.5};
  const auto bca = summarise(0.3, samples, 50.0, BootstrapInterval::Bca, 0.0);
  const auto percentile = summarise(0.3, samples, 50.0, BootstrapInterval::Percentile, 0.0);
  EXPECT_NEAR(bca.lower.value(), percentile.lower.value(), 1e-9);
  EXPECT_NEAR(bca.upper.value(), percentile.upper.value(), 1e-9);
}

TEST(BootstrapSummary, DifferencesThatAreZeroButForRoundingAreTies) {
  const std::vector<double> samples{-0.3, -0.2, 0.1 + 0.2 - 0.3, 0.0, 0.2, 0.3};
  const auto bca = summarise(0.0, samples, 50.0, BootstrapInterval::Bca, 0.0);
  const auto percentile = summarise(0.0, samples, 50.0, BootstrapInterval::Percentile, 0.0);
  EXPECT_NEAR(bca.lower.value(), percentile.lower.value(), 1e-9);
}

TEST(BootstrapSummary, SamplesThatAllAgreeHaveNoInterval) {
  const auto summary = summarise(1.0, {1.0, 1.0, 1.0}, 95.0, BootstrapInterval::Percentile, 0.0);
  EXPECT_EQ(summary.bias.value(), 0.0);
  EXPECT_EQ(summary.standardError.value(), 0.0);
  EXPECT_FALSE(summary.lower.has_value());
  EXPECT_FALSE(summary.upper.has_value());
  EXPECT_EQ(summary.lacking, BootstrapLack::SamplesAgree);
}

TEST(BootstrapSummary, SamplesThatAgreeButForRoundingHaveNoInterval) {
  const auto summary =
      summarise(0.3, {0.3, 1.0 - 0.7, 0.3}, 95.0, BootstrapInterval::Percentile, 0.0);
  EXPECT_EQ(summary.standardError.value(), 0.0);
  EXPECT_EQ(summary.lacking, BootstrapLack::SamplesAgree);
}

TEST(BootstrapSummary, SamplesThatAgreeElsewhereAreBiased) {
  const auto summary = summarise(0.25, {0.75, 0.75}, 95.0, BootstrapInterval::Bca, 0.0);
  EXPECT_EQ(summary.bias.value(), 0.5);
  EXPECT_EQ(summary.lacking, BootstrapLack::SamplesAgree);
}

TEST(BootstrapSummary, OfOneSampleIsMissing) {
  for (const std::vector<double>& samples : {std::vector<double>{}, {0.5}}) {
    const auto summary = summarise(0.5, samples, 95.0, BootstrapInterval::Percentile, 0.0);
    EXPECT_FALSE(summary.bias || summary.standardError || summary.lower || summary.upper);
    EXPECT_EQ(summary.lacking, BootstrapLack::TooFewSamples);
  }
}

TEST(BootstrapSummary, WithoutAStatisticHasNeitherBiasNorBca) {
  const auto bca = summarise(std::nullopt, oneTo(99), 90.0, BootstrapInterval::Bca, 0.0);
  EXPECT_FALSE(bca.bias.has_value());
  EXPECT_NEAR(bca.standardError.value(), std::sqrt(99.0 * 100.0 / 12.0), 1e-12);
  EXPECT_EQ(bca.lacking, BootstrapLack::NoStatistic);
  const auto percentile =
      summarise(std::nullopt, oneTo(99), 90.0, BootstrapInterval::Percentile, 0.0);
  EXPECT_NEAR(percentile.lower.value(), 5.0, 1e-9);
}

TEST(BootstrapSummary, BcaOfAStatisticOutsideItsSamplesHasNoInterval) {
  const auto summary = summarise(9.0, {1.0, 2.0, 3.0}, 95.0, BootstrapInterval::Bca, 0.0);
  EXPECT_FALSE(summary.lower.has_value());
  EXPECT_EQ(summary.lacking, BootstrapLack::StatisticOutside);
  EXPECT_EQ(summary.bias.value(), -7.0);
}

// 1 - a z reaches 0 at z = 2.5: the upper tail has run to its end, and does not come back below
// the lower one.
TEST(BootstrapSummary, BcaBeyondThePoleOfItsAccelerationIsTheEndOfTheSamples) {
  for (const double acceleration : {0.4, 0.6}) {
    const auto up = summarise(50.0, oneTo(99), 99.0, BootstrapInterval::Bca, acceleration);
    EXPECT_EQ(up.upper.value(), 99.0);
    EXPECT_LT(up.lower.value(), up.upper.value());
    const auto down = summarise(50.0, oneTo(99), 99.0, BootstrapInterval::Bca, -acceleration);
    EXPECT_EQ(down.lower.value(), 1.0);
    EXPECT_LT(down.lower.value(), down.upper.value());
  }
}

TEST(BootstrapSummary, BcaIsNestedInItsLevel) {
  double lower = 0.0;
  double upper = 0.0;
  for (const double level : {50.0, 80.0, 90.0, 95.0, 99.0}) {
    const auto bca = summarise(400.0, oneTo(999), level, BootstrapInterval::Bca, 0.05);
    if (lower > 0.0) {
      EXPECT_LT(bca.lower.value(), lower);
      EXPECT_GT(bca.upper.value(), upper);
    }
    lower = bca.lower.value();
    upper = bca.upper.value();
  }
}

// --- Published ----------------------------------------------------------------------------------

// The spatial test data, A, of Efron and Tibshirani (1993), table 14.1; the statistic of section
// 14.3 is the variance with divisor n.
const std::vector<double> spatial{48, 36, 20, 29, 42, 42, 20, 42, 22, 41, 45, 14, 6,
                                  0,  33, 28, 34, 4,  32, 24, 47, 41, 24, 26, 30, 41};

double variance(const std::vector<double>& values) {
  const auto n = static_cast<double>(values.size());
  const double mean = std::accumulate(values.begin(), values.end(), 0.0) / n;
  double squares = 0.0;
  for (const double value : values) {
    squares += (value - mean) * (value - mean);
  }
  return squares / n;
}

// The acceleration of a statistic, leaving out one row at a time.
template <class Statistic>
double accelerationOf(const std::vector<double>& data, Statistic statistic) {
  std::vector<std::optional<double>> values;
  for (std::size_t i = 0; i < data.size(); ++i) {
    std::vector<double> others = data;
    others.erase(others.begin() + static_cast<std::ptrdiff_t>(i));
    values.emplace_back(statistic(others));
  }
  return jackknifeAcceleration(values, std::vector<std::uint64_t>(data.size(), 1));
}

TEST(PublishedBca, AccelerationOfAVariance) {
  EXPECT_NEAR(variance(spatial), 171.5, 0.05);
  EXPECT_NEAR(accelerationOf(spatial, variance), 0.061, 0.0005);
}

// Davison and Hinkley (1997), the air-conditioning data: for the mean a = 0.0938.
TEST(PublishedBca, AccelerationOfAMean) {
  const std::vector<double> times{3, 5, 7, 18, 43, 85, 91, 98, 100, 130, 230, 487};
  const auto mean = [](const std::vector<double>& values) {
    return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
  };
  EXPECT_NEAR(mean(times), 108.083, 0.0005);
  EXPECT_NEAR(accelerationOf(times, mean), 0.0938, 0.00005);
}

// Efron and Tibshirani (1993), section 14.3: with z0 = 0.146 and a = 0.061 the 90% interval looks
// up the levels 0.110 and 0.985 in place of 0.05 and 0.95. The samples 1 to 1999 stand at the
// levels of 2000ths; 0.558 of them below the statistic is z0 = 0.146.
TEST(PublishedBca, LevelsThatAreLookedUp) {
  const auto bca = summarise(1116.5, oneTo(1999), 90.0, BootstrapInterval::Bca, 0.061);
  EXPECT_NEAR(bca.lower.value() / 2000.0, 0.110, 0.0006);
  EXPECT_NEAR(bca.upper.value() / 2000.0, 0.985, 0.0006);
}

// The same section's interval of the variance, (115.8, 259.6) from 2000 samples. How far it and
// ours may lie apart is computed from the spread of ours: five standard errors of a quantile, with
// the samples of both.
TEST(PublishedBca, IntervalOfAVariance) {
  std::mt19937_64 random(1);
  std::uniform_int_distribution<std::size_t> any(0, spatial.size() - 1);
  std::vector<double> samples;
  for (int i = 0; i < 20000; ++i) {
    std::vector<double> sample(spatial.size());
    std::ranges::generate(sample, [&] { return spatial[any(random)]; });
    samples.push_back(variance(sample));
  }
  const double acceleration = accelerationOf(spatial, variance);
  const auto bca =
      summarise(variance(spatial), samples, 90.0, BootstrapInterval::Bca, acceleration);
  std::ranges::sort(samples);
  // z0 comes from 2000 samples too, and moves either level with it: counted as once more as much.
  const auto errorAt = [&](double level) {
    const double reach = std::sqrt(level * (1.0 - level) * (1.0 / 2000 + 1.0 / 20000)) * 2.0;
    const auto at = [&](double p) {
      return samples[static_cast<std::size_t>(std::clamp(p, 0.0, 1.0) * 19999.0)];
    };
    return (at(level + reach) - at(level - reach)) / 2.0;
  };
  EXPECT_NEAR(bca.lower.value(), 115.8, 2.5 * errorAt(0.110));
  EXPECT_NEAR(bca.upper.value(), 259.6, 2.5 * errorAt(0.985));
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

// Three kinds of rows, standing for the pairs (1, 0), (0, 1) and (1, 1): the statistic is the
// difference of both shares without one row.
TEST(JackknifeAcceleration, OfADifferenceIsTheSameOverRowsAndPatterns) {
  const double counts[] = {17.0, 5.0, 9.0};
  const auto without = [&](int k) {
    return (counts[0] - (k == 0 ? 1 : 0) - counts[1] + (k == 1 ? 1 : 0)) / 30.0;
  };
  std::vector<std::optional<double>> rows;
  std::vector<std::optional<double>> patterns;
  for (const int k : {0, 1, 2}) {
    patterns.emplace_back(without(k));
    rows.insert(rows.end(), static_cast<std::size_t>(counts[k]), without(k));
  }
  const double byRows = jackknifeAcceleration(rows, std::vector<std::uint64_t>(31, 1));
  const double byPatterns = jackknifeAcceleration(patterns, std::vector<std::uint64_t>{17, 5, 9});
  EXPECT_NEAR(byPatterns, byRows, 1e-14);
  // The closed form: the skewness of the values 1, -1 and 0 over 6 roots of n.
  const double mean = 12.0 / 31;
  double squares = 0.0;
  double cubes = 0.0;
  const double values[] = {1.0, -1.0, 0.0};
  for (const int k : {0, 1, 2}) {
    squares += counts[k] * std::pow(values[k] - mean, 2);
    cubes += counts[k] * std::pow(values[k] - mean, 3);
  }
  EXPECT_NEAR(byPatterns, cubes / (6.0 * std::pow(squares, 1.5)), 1e-13);
}

TEST(JackknifeAcceleration, LeavesOutWhatCouldNotBeComputed) {
  const std::vector<std::optional<double>> some{0.25, std::nullopt, 0.75};
  const std::vector<std::optional<double>> rest{0.25, 0.75};
  EXPECT_EQ(jackknifeAcceleration(some, std::vector<std::uint64_t>{2, 1, 3}),
            jackknifeAcceleration(rest, std::vector<std::uint64_t>{2, 3}));
}

TEST(JackknifeAcceleration, OfValuesThatDifferByRoundingIsZero) {
  const std::vector<std::optional<double>> values{0.3, 1.0 - 0.7};
  EXPECT_EQ(jackknifeAcceleration(values, std::vector<std::uint64_t>{4, 1}), 0.0);
}

TEST(JackknifeAcceleration, OfValuesThatAgreeIsZero) {
  const std::vector<std::optional<double>> values{0.5, 0.5};
  const std::vector<std::uint64_t> counts{4, 4};
  EXPECT_EQ(jackknifeAcceleration(values, counts), 0.0);
}

// --- Pictures -----------------------------------------------------------------------------------

TEST(Histogram, CountsFewValuesOneByOne) {
  Distribution distribution;
  addHistogram(distribution, {0.5, 0.25, 0.5, 0.5, 1.0});
  EXPECT_EQ(distribution.width, 0.0);
  EXPECT_EQ(distribution.counts,
            (std::vector<std::pair<double, std::uint32_t>>{{0.25, 1}, {0.5, 3}, {1.0, 1}}));
}

TEST(Histogram, PutsManyValuesIntoBinsThatHoldThemAll) {
  Distribution distribution;
  addHistogram(distribution, oneTo(400));
  EXPECT_NEAR(distribution.width, 399.0 / 40, 1e-12);
  EXPECT_EQ(distribution.counts.size(), 40U);
  std::uint32_t total = 0;
  for (const auto& [middle, count] : distribution.counts) {
    EXPECT_NEAR(count, 10.0, 1.0) << middle;
    total += count;
  }
  EXPECT_EQ(total, 400U);
}

TEST(Histogram, LeavesEmptyBinsOut) {
  Distribution distribution;
  std::vector<double> values = oneTo(100);
  values.push_back(1000.0);
  addHistogram(distribution, values);
  EXPECT_LT(distribution.counts.size(), 10U);
  EXPECT_EQ(distribution.counts.back().second, 1U);
}

// --- Tables of their own ------------------------------------------------------------------------

// A table of one row dimension, with cells of these split groups.
Table tableOf(const char* title, const std::vector<Index>& splits) {
  Table table;
  table.title = Text::string(title);
  table.splitRows = true;
  table.dimensions.push_back({.label = Text::string("Rows"),
                              .axis = Axis::Row,
                              .level = 1,
                              .labelsInside = false,
                              .hidden = false,
                              .nodes = {}});
  table.dimensions[0].nodes.push_back({.label = Text::string("Rows"),
                                       .parent = none,
                                       .isGroup = true,
                                       .hasCells = false,
                                       .children = {1},
                                       .footnotes = {}});
  table.dimensions[0].nodes.push_back({.label = Text::string("Row"),
                                       .parent = 0,
                                       .isGroup = false,
                                       .hasCells = false,
                                       .children = {},
                                       .footnotes = {}});
  for (const Index split : splits) {
    Cell cell;
    cell.at[0] = 1;
    cell.split = split;
    cell.value = split;
    table.cells.push_back(cell);
  }
  return table;
}

TEST(SeparateSplitGroups, GivesEachGroupItsTablesInTheOrderOfGroups) {
  Document document;
  document.splits.resize(3);
  document.tables.push_back(tableOf("A", {0, 0, 2}));
  document.tables.push_back(tableOf("B", {0, 1, 2}));
  separateSplitGroups(document);
  std::vector<std::pair<std::string, Index>> order;
  for (const Table& table : document.tables) {
    order.emplace_back(table.title->id, table.split);
    EXPECT_FALSE(table.splitRows);
    for (const Cell& cell : table.cells) {
      EXPECT_EQ(cell.split, none);
      EXPECT_EQ(cell.value, table.split);
    }
    EXPECT_TRUE(table.dimensions[0].nodes[1].hasCells);
  }
  // The middle group has no cells in A.
  EXPECT_EQ(order, (std::vector<std::pair<std::string, Index>>{
                       {"A", 0}, {"B", 0}, {"B", 1}, {"A", 2}, {"B", 2}}));
}

TEST(SeparateSplitGroups, KeepsATableThatHasNoCellsAtAllForEachGroup) {
  Document document;
  document.splits.resize(2);
  document.tables.push_back(tableOf("A", {}));
  separateSplitGroups(document);
  EXPECT_EQ(document.tables.size(), 2U);
}

TEST(SeparateSplitGroups, LeavesDocumentsWithoutSplitsAlone) {
  Document document;
  document.tables.push_back(tableOf("A", {none}));
  separateSplitGroups(document);
  EXPECT_EQ(document.tables.size(), 1U);
  EXPECT_EQ(document.tables[0].cells.size(), 1U);
}

}  // namespace
}  // namespace embedded::output
