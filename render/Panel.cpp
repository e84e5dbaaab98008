#include "render/Panel.h"

#include <algorithm>

namespace render {

std::vector<PanelRow> rowsOfPanel(const ReaderTable& table, std::size_t begin, std::size_t end) {
  std::vector<PanelRow> rows;
  std::size_t shared = 0;  // with the last row that was taken
  for (std::size_t r = 0; r < table.rows.size(); ++r) {
    const ReaderRow& row = table.rows[r];
    shared = rows.empty() ? 0 : std::min(shared, row.shared);
    const bool written = std::any_of(
        row.cells.begin() + static_cast<std::ptrdiff_t>(begin),
        row.cells.begin() + static_cast<std::ptrdiff_t>(end),
        [](const ReaderCell& cell) { return cell.cell != nullptr || !cell.text.empty(); });
    if (written) {
      rows.push_back({r, shared});
      shared = row.labels.size();
    }
  }
  return rows;
}

}  // namespace render
