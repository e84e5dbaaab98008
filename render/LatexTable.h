// One table of a LaTeX document.
#pragma once

#include <string>

#include "render/LatexText.h"
#include "render/ReaderTable.h"

namespace render {

// The table with its caption, footnotes and notes, on as many pages as it needs, its head on each.
// A wide one has smaller letters, then pages on their side; one that is wider still is split by
// columns, with its row labels repeated.
std::string latexTable(const ReaderTable& table, const Context& context, LatexText& text);

}  // namespace render
