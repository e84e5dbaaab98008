// The shape of a bootstrap distribution, for pictures of it.
#include <algorithm>
#include <cmath>

#include "embedded/output/Resampling.h"

namespace embedded::output {

namespace {

// Values so few are counted one by one; more of them are put into bins.
constexpr std::size_t mostValues = 60;
constexpr double bins = 40.0;

using Counts = std::vector<std::pair<double, std::uint32_t>>;

// How often each value occurs; stops when there are too many.
Counts countValues(const std::vector<double>& sorted) {
  Counts counts;
  for (const double value : sorted) {
    if (!counts.empty() && counts.back().first == value) {
      ++counts.back().second;
    } else if (counts.size() > mostValues) {
      return counts;
    } else {
      counts.emplace_back(value, 1);
    }
  }
  return counts;
}

}  // namespace

void addHistogram(Distribution& distribution, std::vector<double> samples) {
  std::sort(samples.begin(), samples.end());
  distribution.width = 0.0;
  distribution.counts = countValues(samples);
  if (distribution.counts.size() <= mostValues) {
    return;
  }
  const double low = samples.front();
  distribution.width = (samples.back() - low) / bins;
  distribution.counts.clear();
  double lastBin = -1.0;
  for (const double value : samples) {
    const double bin = std::min(std::floor((value - low) / distribution.width), bins - 1.0);
    if (bin != lastBin) {
      distribution.counts.emplace_back(low + (bin + 0.5) * distribution.width, 0);
      lastBin = bin;
    }
    ++distribution.counts.back().second;
  }
}

}  // namespace embedded::output
