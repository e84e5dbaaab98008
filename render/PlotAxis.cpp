#include "render/PlotAxis.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "render/Numbers.h"

namespace render {

namespace {

constexpr double wantedTicks = 6.0;
constexpr double tolerance = 1e-9;  // of a step, for ends that are ticks but for rounding
constexpr int mostDecimals = 12;

// The round step (1, 2 or 5 times a power of ten) nearest above the given one.
double roundStep(double step) {
  const double power = std::pow(10.0, std::floor(std::log10(step)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (step <= factor * power * (1.0 + tolerance)) {
      return factor * power;
    }
  }
  return 10.0 * power;
}

// Values that are all the same need some room around them.
void makeRoom(double& low, double& high) {
  if (!(high > low)) {
    const double room = low == 0.0 ? 0.5 : std::abs(low) / 4;
    low -= room;
    high += room;
  }
}

}  // namespace

PlotAxis::PlotAxis(const std::vector<double>& values, std::optional<double> rangeLow,
                   std::optional<double> rangeHigh) {
  bool any = false;
  for (const double value : values) {
    if (std::isfinite(value)) {
      low_ = any ? std::min(low_, value) : value;
      high_ = any ? std::max(high_, value) : value;
      any = true;
    }
  }
  const double leastWanted = low_;
  const double mostWanted = high_;
  makeRoom(low_, high_);
  const double step = roundStep((high_ - low_) / wantedTicks);
  low_ = std::floor(low_ / step + tolerance) * step;
  high_ = std::ceil(high_ / step - tolerance) * step;
  if (rangeLow && low_ < *rangeLow) {
    low_ = std::min(*rangeLow, leastWanted);
  }
  if (rangeHigh && high_ > *rangeHigh) {
    high_ = std::max(*rangeHigh, mostWanted);
  }
  decimals_ =
      std::clamp(-static_cast<int>(std::floor(std::log10(step) + tolerance)), 0, mostDecimals);
  const double first = std::ceil(low_ / step - tolerance);
  const double last = std::floor(high_ / step + tolerance);
  for (double i = first; i <= last; ++i) {
    ticks_.push_back(i * step);
  }
}

double PlotAxis::percent(double value) const {
  return 100.0 * (value - low_) / (high_ - low_);
}

std::string PlotAxis::label(double tick, std::string_view decimalPoint) const {
  return shownNumber(tick, decimals_, decimalPoint);
}

std::string percentText(double percent) {
  std::string text = fmt::format("{:.2f}", percent);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.ends_with('.')) {
    text.pop_back();
  }
  return (text == "-0" ? "0" : text) + "%";
}

}  // namespace render
