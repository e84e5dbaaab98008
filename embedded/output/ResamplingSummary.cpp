// The statistics of a bootstrap distribution.
#include <algorithm>
#include <boost/math/distributions/normal.hpp>
#include <cmath>
#include <limits>

#include "embedded/output/Resampling.h"

namespace embedded::output {

namespace {

using Policy = boost::math::policies::policy<boost::math::policies::promote_double<false>>;
using Normal = boost::math::normal_distribution<double, Policy>;

// Values that differ by no more than this share of the largest are one value: the same fraction
// reached by other counts may round to a neighbouring double.
constexpr double rounding = 64.0 * std::numeric_limits<double>::epsilon();

double phi(double z) {
  return boost::math::cdf(Normal(), z);
}
double phiInverse(double p) {
  return boost::math::quantile(Normal(), p);
}

double slackOf(const std::vector<double>& sorted) {
  return rounding * std::max(std::abs(sorted.front()), std::abs(sorted.back()));
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
  const double slack = std::max(slackOf(sorted), rounding * std::abs(statistic));
  const auto begin = std::lower_bound(sorted.begin(), sorted.end(), statistic - slack);
  const auto end = std::upper_bound(begin, sorted.end(), statistic + slack);
  const auto less = static_cast<double>(begin - sorted.begin());
  const auto ties = static_cast<double>(end - begin);
  return (less + 0.5 * ties) / static_cast<double>(sorted.size());
}

// The level that BCa looks up in place of the tail with the normal quantile `zTail`. At the pole of
// the acceleration and beyond it, the level has reached the end that it tends to.
double bcaTail(double zTail, double bias, double acceleration) {
  const double z = bias + zTail;
  const double left = 1.0 - acceleration * z;
  if (left <= 0.0) {
    return z > 0.0 ? 1.0 : 0.0;
  }
  return phi(bias + z / left);
}

// Bias and standard error.
void addMoments(BootstrapSummary& summary, const std::optional<double>& statistic,
                const std::vector<double>& sorted) {
  const auto count = static_cast<double>(sorted.size());
  // Sums of deviations from a value among them, so that equal samples have none.
  const double origin = statistic.value_or(sorted.front());
  double sum = 0.0;
  for (const double value : sorted) {
    sum += value - origin;
  }
  const double mean = origin + sum / count;
  double squares = 0.0;
  for (const double value : sorted) {
    squares += (value - mean) * (value - mean);
  }
  if (statistic) {
    summary.bias = sum / count;
  }
  summary.standardError = std::sqrt(squares / (count - 1.0));
}

// The levels at which a BCa interval looks its bounds up; false when the bias is not finite.
bool correctTails(double& low, double& high, double statistic, const std::vector<double>& sorted,
                  double acceleration) {
  const double share = shareBelow(sorted, statistic);
  if (share <= 0.0 || share >= 1.0) {
    return false;
  }
  const double bias = phiInverse(share);
  const double z = phiInverse(low);
  low = bcaTail(z, bias, acceleration);
  high = bcaTail(-z, bias, acceleration);
  return true;
}

}  // namespace

BootstrapSummary summarise(const std::optional<double>& statistic, std::vector<double> samples,
                           double levelPercent, BootstrapInterval interval, double acceleration) {
  BootstrapSummary summary;
  if (samples.size() < 2) {
    summary.lacking = BootstrapLack::TooFewSamples;
    return summary;
  }
  std::sort(samples.begin(), samples.end());
  addMoments(summary, statistic, samples);
  if (samples.back() - samples.front() <= slackOf(samples)) {
    summary.standardError = 0.0;
    summary.lacking = BootstrapLack::SamplesAgree;
    return summary;
  }
  double low = (1.0 - levelPercent / 100.0) / 2.0;
  double high = 1.0 - low;
  if (interval == BootstrapInterval::Bca) {
    if (!statistic) {
      summary.lacking = BootstrapLack::NoStatistic;
      return summary;
    }
    if (!correctTails(low, high, *statistic, samples, acceleration)) {
      summary.lacking = BootstrapLack::StatisticOutside;
      return summary;
    }
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
  double largest = 0.0;
  for (std::size_t k = 0; k < values.size(); ++k) {
    if (values[k]) {
      const auto weight = static_cast<double>(counts[k]);
      const double influence = mean - *values[k];
      squares += weight * influence * influence;
      cubes += weight * influence * influence * influence;
      largest = std::max(largest, std::abs(influence));
    }
  }
  // What is left by rounding alone is no skewness.
  if (largest <= rounding * std::abs(mean)) {
    return 0.0;
  }
  return cubes / (6.0 * squares * std::sqrt(squares));
}

}  // namespace embedded::output
