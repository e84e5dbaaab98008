// One table of results as an accessible HTML table.
//
// Split groups are row groups under a heading of their own; other labels that rows share span
// those rows; groups of columns span their columns. A footnote mark links to its footnote, and
// the footnote back to the first place that it explains. Rows beyond the first page stand in a
// <noscript> element, a table of their own there: a browser with scripts reads them as text, which
// costs it next to nothing, until the page's script wants them.
#pragma once

#include <ostream>
#include <string>

#include "render/ReaderTable.h"
#include "render/Renderer.h"

namespace render {

// How many rows of a table, and lines of a plot, are shown at once, or a few more.
inline constexpr std::size_t htmlPageRows = 200;

// How many rows the first page of a table has: all of a short table, and of a long one so many that
// the next split group begins there, if one begins soon.
std::size_t htmlFirstPage(const ReaderTable& table);

// Writes the table under its caption, then its footnotes and notes. `id` begins the ids of its
// elements and is unique in the page.
void writeHtmlTable(const ReaderTable& table, const std::string& id, const Context& context,
                    std::ostream& out);

}  // namespace render
