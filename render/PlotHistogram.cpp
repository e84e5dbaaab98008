#include "render/PlotHistogram.h"

#include <fmt/format.h>

#include <algorithm>

namespace render {

namespace {

constexpr double fullHeight = 100.0;
constexpr double thinnest = 0.6;  // percent of the axis, of bars of single values

std::vector<double> coveredBy(const embedded::output::Distribution& distribution) {
  std::vector<double> values{distribution.value,
                             distribution.counts.front().first - distribution.width / 2,
                             distribution.counts.back().first + distribution.width / 2};
  for (const auto& bound : {distribution.lower, distribution.upper}) {
    if (bound) {
      values.push_back(*bound);
    }
  }
  return values;
}

// Half the width of a bar: of its bin, or of a stick that is thinner than the values are apart.
double halfWidth(const embedded::output::Distribution& distribution, const PlotAxis& axis) {
  const double scale = 100.0 / (axis.high() - axis.low());
  if (distribution.width > 0.0) {
    return distribution.width * scale / 2;
  }
  double apart = 100.0;
  for (std::size_t i = 1; i < distribution.counts.size(); ++i) {
    apart =
        std::min(apart, (distribution.counts[i].first - distribution.counts[i - 1].first) * scale);
  }
  return std::max(thinnest, std::min(apart * 0.4, 2.0)) / 2;
}

}  // namespace

Histogram histogramOf(const embedded::output::Distribution& distribution,
                      std::optional<double> rangeLow, std::optional<double> rangeHigh) {
  Histogram histogram{.axis = PlotAxis(coveredBy(distribution), rangeLow, rangeHigh), .path = {}};
  for (const auto& [value, count] : distribution.counts) {
    histogram.highest = std::max(histogram.highest, count);
  }
  const double half = halfWidth(distribution, histogram.axis);
  for (const auto& [value, count] : distribution.counts) {
    const double middle = histogram.axis.percent(value);
    const double height = fullHeight * count / std::max(1U, histogram.highest);
    histogram.path +=
        fmt::format("M{:.2f} 100v{:.1f}h{:.2f}v{:.1f}z", middle - half, -height, 2 * half, height);
  }
  return histogram;
}

}  // namespace render
