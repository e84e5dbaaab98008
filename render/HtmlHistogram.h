// How the resampled values of a table's statistics spread, as small pictures.
#pragma once

#include <ostream>
#include <set>
#include <string>

#include "render/ReaderTable.h"
#include "render/Renderer.h"

namespace render {

// A picture for each statistic whose distribution the table keeps, with the statistic itself and
// its interval marked. `drawn` remembers what the page shows already: statistics that rows or
// tables repeat are drawn once. Nothing without distributions.
void writeHtmlHistograms(const Table& table, const ReaderTable& shown, const Context& context,
                         std::set<std::string>& drawn, std::ostream& out);

}  // namespace render
