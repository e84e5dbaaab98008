// The axis of a plot: which numbers it covers, where its ticks are, and where a value lies on it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace render {

class PlotAxis {
 public:
  // Covers all finite values that it is given, from one tick to another, and goes beyond an end of
  // the values' possible range only where a value does.
  PlotAxis(const std::vector<double>& values, std::optional<double> rangeLow,
           std::optional<double> rangeHigh);

  double low() const { return low_; }
  double high() const { return high_; }
  // Between four and nine of them, at round numbers, ascending.
  const std::vector<double>& ticks() const { return ticks_; }
  // A tick as text, with the digits that tell the ticks apart.
  std::string label(double tick, std::string_view decimalPoint) const;

  // Where a value lies, in percent of the axis; 0 to 100 for values that it covers.
  double percent(double value) const;

 private:
  double low_ = 0.0;
  double high_ = 1.0;
  int decimals_ = 0;
  std::vector<double> ticks_;
};

// Per cent as the length of SVG and CSS, with two decimals: "12.5%".
std::string percentText(double percent);

}  // namespace render
