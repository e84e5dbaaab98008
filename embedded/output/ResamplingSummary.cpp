// The statistics of a bootstrap distribution.
#include <algorithm>
#include <boost/math/distributions/normal.hpp>
#include <cmath>

#include "embedded/output/Resampling.h"

namespace embedded::output {

namespace {

using Policy = boost::math::policies::policy<boost::math::policies::promote_double<false>>;
using Normal = boost::math::normal_distribution<double, Policy>;

double phi(double z) {
  return boost::math::cdf(Normal(), z);
}
double phiInverse(double p) {
  return boost::math::quantile(Normal(), p);
}

// The p quantile of the sorted values, interpolated at p (B + 1).
double orderStatistic(const std::vector<double>& sorted, double p) {
  const double place = p * (static_cast<double>(sorted.size()) + 1.0) - 1.0;
  if (place <= 0.0) {
    return sorted.front();
  }
  const auto below = static_cast<std::size_t>(place);
  if (below + 1 >= sorted.size()) {
    return sorted.back();
  }
  return sorted[below] + (place - std::floor(place)) * (sorted[below + 1] - sorted[below]);
}

// The share of samples below the statistic, those equal to it counted half.
double shareBelow(const std::vector<double>& sorted, double statistic) {
  const auto [begin, end] = std::equal_range(sorted.begin(), sorted.end(), statistic);
  const auto less = static_cast<double>(begin - sorted.begin());
  const auto ties = static_cast<double>(end - begin);
  return (less + 0.5 * ties) / static_cast<double>(sorted.size());
}

// The level that BCa looks up in place of the tail `p`.
double bcaTail(double p, double bias, double acceleration) {
  const double z = bias + phiInverse(p);
  return phi(bias + z / (1.0 - acceleration * z));
}

}  // namespace

BootstrapSummary summarise(double statistic, std::vector<double> samples, double levelPercent,
                           BootstrapInterval interval, double acceleration) {
  std::sort(samples.begin(), samples.end());
  const auto count = static_cast<double>(samples.size());
  double mean = 0.0;
  for (const double value : samples) {
    mean += value / count;
  }
  double squares = 0.0;
  for (const double value : samples) {
    squares += (value - mean) * (value - mean);
  }
  BootstrapSummary summary{.bias = mean - statistic,
                           .standardError = std::sqrt(squares / (count - 1.0)),
                           .lower = {},
                           .upper = {}};
  if (samples.front() == samples.back()) {
    summary.bias = samples.front() - statistic;
    summary.standardError = 0.0;
    return summary;
  }
  double low = (1.0 - levelPercent / 100.0) / 2.0;
  double high = 1.0 - low;
  if (interval == BootstrapInterval::Bca) {
    const double share = shareBelow(samples, statistic);
    // A statistic outside all its samples has no bias correction that is finite.
    if (share <= 0.0 || share >= 1.0) {
      return summary;
    }
    const double bias = phiInverse(share);
    low = bcaTail(low, bias, acceleration);
    high = bcaTail(high, bias, acceleration);
  }
  summary.lower = orderStatistic(samples, low);
  summary.upper = orderStatistic(samples, high);
  return summary;
}

double jackknifeAcceleration(std::span<const std::optional<double>> values,
                             std::span<const std::uint64_t> counts) {
  double cases = 0.0;
  double mean = 0.0;
  for (std::size_t k = 0; k < values.size(); ++k) {
    if (values[k]) {
      const auto weight = static_cast<double>(counts[k]);
      cases += weight;
      mean += weight * (*values[k] - mean) / cases;
    }
  }
  double squares = 0.0;
  double cubes = 0.0;
  for (std::size_t k = 0; k < values.size(); ++k) {
    if (values[k]) {
      const auto weight = static_cast<double>(counts[k]);
      const double influence = mean - *values[k];
      squares += weight * influence * influence;
      cubes += weight * influence * influence * influence;
    }
  }
  return squares > 0.0 ? cubes / (6.0 * squares * std::sqrt(squares)) : 0.0;
}

}  // namespace embedded::output
