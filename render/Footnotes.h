// The footnotes of a cell: its own first, then those of its categories and their groups.
#pragma once

#include <vector>

#include "embedded/output/Document.h"

namespace render {

inline std::vector<embedded::output::TextPtr> footnotesOf(const embedded::output::Table& table,
                                                          const embedded::output::Cell& cell) {
  using embedded::output::none;
  std::vector<embedded::output::TextPtr> notes;
  if (cell.footnotes != none) {
    notes = table.footnoteLists[cell.footnotes];
  }
  for (std::size_t d = 0; d < table.dimensions.size(); ++d) {
    const auto& nodes = table.dimensions[d].nodes;
    for (auto node = cell.at[d]; node != none; node = nodes[node].parent) {
      notes.insert(notes.end(), nodes[node].footnotes.begin(), nodes[node].footnotes.end());
    }
  }
  return notes;
}

}  // namespace render
