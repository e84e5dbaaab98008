// A forest plot as part of a page: a line for each row of the table, drawn in SVG between its label
// and its numbers, over an axis that all lines share.
#pragma once

#include <ostream>

#include "render/PlotForest.h"

namespace render {

void writeHtmlForest(const ReaderTable& table, const Forest& forest, const Context& context,
                     std::ostream& out);

}  // namespace render
