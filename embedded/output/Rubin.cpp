#include "embedded/output/Rubin.h"

#include <algorithm>
#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/students_t.hpp>
#include <cmath>
#include <limits>

namespace embedded::output {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

// A quantile too large for a double is infinite, and what is not a number stays none: no failures.
namespace policies = boost::math::policies;
using Policy = policies::policy<policies::promote_double<false>,
                                policies::overflow_error<policies::ignore_error>,
                                policies::domain_error<policies::ignore_error>>;
using Normal = boost::math::normal_distribution<double, Policy>;
using StudentsT = boost::math::students_t_distribution<double, Policy>;

double mean(std::span<const double> values) {
  double sum = 0.0;
  for (const double value : values) {
    sum += value;
  }
  return sum / static_cast<double>(values.size());
}

double variance(std::span<const double> values, double mean) {
  double sum = 0.0;
  for (const double value : values) {
    sum += (value - mean) * (value - mean);
  }
  return sum / static_cast<double>(values.size() - 1);
}

double meanSquare(std::span<const double> values) {
  double sum = 0.0;
  for (const double value : values) {
    sum += value * value;
  }
  return sum / static_cast<double>(values.size());
}

// Comparisons with what is not a number are false, so that it stays what it is.
double atLeast(double low, double raw) {
  return raw < low ? low : raw;
}
double atMost(double high, double raw) {
  return raw > high ? high : raw;
}

// Barnard and Rubin (1999), with lambda the share of the variance that is between.
double barnardRubinDf(double rubin, double lambda, double complete) {
  const double observed = (complete + 1.0) / (complete + 3.0) * complete * (1.0 - lambda);
  if (observed <= 0.0) {
    return observed < 0.0 ? rubin : 0.0;
  }
  return 1.0 / (1.0 / rubin + 1.0 / observed);
}

// Share of missing information, Rubin (1987), (3.1.10); the large-sample ratio when the degrees
// of freedom are infinite.
double missingInformation(double increase, double df) {
  if (std::isinf(increase)) {
    return 1.0;
  }
  return std::isinf(df) ? increase / (increase + 1.0)
                        : (increase + 2.0 / (df + 3.0)) / (increase + 1.0);
}

double upperTail(double t, double df) {
  return std::isinf(df) ? boost::math::cdf(boost::math::complement(Normal(), t))
                        : boost::math::cdf(boost::math::complement(StudentsT(df), t));
}

}  // namespace

double rubinDf(int imputations, double increase) {
  if (increase == 0.0) {
    return infinity;
  }
  const double ratio = 1.0 + 1.0 / increase;
  return (imputations - 1) * ratio * ratio;
}

PooledEstimate poolEstimates(std::span<const double> estimates,
                             std::span<const double> standardErrors,
                             std::optional<double> completeDf, PoolingDf rule) {
  PooledEstimate pooled;
  const auto m = static_cast<int>(estimates.size());
  pooled.imputations = m;
  pooled.estimate = mean(estimates);
  pooled.within = meanSquare(standardErrors);
  // Imputations that agree have no variance between them, not the rounding of one.
  const auto [least, greatest] = std::minmax_element(estimates.begin(), estimates.end());
  pooled.between = *least == *greatest ? 0.0 : variance(estimates, pooled.estimate);
  const double added = (1.0 + 1.0 / m) * pooled.between;
  pooled.total = pooled.within + added;
  pooled.standardError = std::sqrt(pooled.total);
  if (added == 0.0) {
    pooled.estimate = *least;
  } else {
    pooled.increase = pooled.within == 0.0 ? infinity : added / pooled.within;
  }
  pooled.df = rubinDf(m, pooled.increase);
  if (rule == PoolingDf::BarnardRubin && completeDf && added != 0.0) {
    pooled.df = barnardRubinDf(pooled.df, added / pooled.total, *completeDf);
  }
  if (added != 0.0) {
    pooled.missingInformation = atMost(1.0, missingInformation(pooled.increase, pooled.df));
  }
  pooled.efficiency = 1.0 / (1.0 + pooled.missingInformation / m);
  return pooled;
}

double criticalValue(double levelPercent, double df) {
  const double tail = (1.0 - levelPercent / 100.0) / 2.0;
  return std::isinf(df) ? boost::math::quantile(boost::math::complement(Normal(), tail))
                        : boost::math::quantile(boost::math::complement(StudentsT(df), tail));
}

PooledInterval pooledWald(const PooledEstimate& pooled, double levelPercent, double low,
                          double high) {
  if (pooled.df <= 0.0) {
    return {low, high};
  }
  const double half = criticalValue(levelPercent, pooled.df) * pooled.standardError;
  return {atLeast(low, pooled.estimate - half), atMost(high, pooled.estimate + half)};
}

// The bounds are the roots of (1 + w) x^2 - (2q + w) x + q^2, with w for t^2 (1 + r) / n. Each is
// written without a difference of numbers that are nearly equal: at proportions of 0 and 1 the
// bounds there are exact.
PooledInterval pooledWilson(const PooledEstimate& pooled, double trials, double levelPercent) {
  const double t = criticalValue(levelPercent, rubinDf(pooled.imputations, pooled.increase));
  const double w = t * t / trials * (1.0 + pooled.increase);
  if (std::isinf(pooled.increase) || std::isinf(w)) {
    return {0.0, 1.0};
  }
  const double q = pooled.estimate;
  const double root = std::sqrt(w * (4.0 * q * (1.0 - q) + w));
  const auto lower = [&](double p) {
    const double divisor = 2.0 * p + w + root;
    return divisor == 0.0 ? 0.0 : 2.0 * p * p / divisor;
  };
  return {atLeast(0.0, lower(q)), atMost(1.0, 1.0 - lower(1.0 - q))};
}

PooledInterval pooledNewcombe(const PooledEstimate& first, double firstTrials,
                              const PooledEstimate& second, double secondTrials,
                              double levelPercent) {
  const PooledInterval one = pooledWilson(first, firstTrials, levelPercent);
  const PooledInterval two = pooledWilson(second, secondTrials, levelPercent);
  const double difference = first.estimate - second.estimate;
  return {atLeast(-1.0,
                  difference - std::hypot(first.estimate - one.lower, two.upper - second.estimate)),
          atMost(1.0,
                 difference + std::hypot(one.upper - first.estimate, second.estimate - two.lower))};
}

std::optional<PooledTest> pooledTest(const PooledEstimate& difference) {
  if (!(difference.standardError > 0.0) || !(difference.df > 0.0)) {
    return std::nullopt;
  }
  PooledTest test;
  test.statistic = difference.estimate / difference.standardError;
  test.oneSided = upperTail(std::abs(test.statistic), difference.df);
  test.twoSided = 2.0 * test.oneSided;
  return test;
}

}  // namespace embedded::output
