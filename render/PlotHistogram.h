// What the picture of a distribution shows: bars over an axis, as values.
#pragma once

#include <optional>
#include <string>

#include "render/Grid.h"
#include "render/PlotAxis.h"

namespace render {

struct Histogram {
  PlotAxis axis;
  std::uint32_t highest = 0;  // the largest count of a bar
  // The outline of all bars as an SVG path, 100 wide and 100 high.
  std::string path;
};

// The distribution has at least one count.
Histogram histogramOf(const embedded::output::Distribution& distribution,
                      std::optional<double> rangeLow, std::optional<double> rangeHigh);

}  // namespace render
