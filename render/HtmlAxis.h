// Parts that all pictures of a page are drawn with. Lengths along the axis are percentages, so that
// a picture is as wide as its place.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include "render/PlotAxis.h"
#include "render/Renderer.h"

namespace render {

// The axis as SVG: a line with ticks and their numbers, and the quantity's name below.
void writeHtmlAxis(const PlotAxis& axis, const std::string& quantity, const Context& context,
                   std::ostream& out);

// A line from top to bottom at a value of the axis.
std::string htmlVertical(std::string_view cssClass, const PlotAxis& axis, double value);

}  // namespace render
