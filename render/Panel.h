// The rows of a part of a wide table: a table that is broken by its columns.
#pragma once

#include <vector>

#include "render/ReaderTable.h"

namespace render {

// A row of the part, as an index into those of the table, and how many leading labels it has in
// common with the row that stands above it there.
struct PanelRow {
  std::size_t row = 0;
  std::size_t shared = 0;
};

// The rows that were ever written to in the columns [begin, end); a row without cells there is
// left out.
std::vector<PanelRow> rowsOfPanel(const ReaderTable& table, std::size_t begin, std::size_t end);

}  // namespace render
