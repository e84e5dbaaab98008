// How numbers are shown to readers: the one place where digits are chosen.
//
// Counts are whole; statistics have three decimals; p-values too, and `<.001` below; the level
// in a label has just the digits it has. The two bounds of an interval are rounded together, to
// as many decimals as keep different bounds apart. Not-a-number is shown as such, a missing
// statistic is empty. A bound at an end of its range is marked.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "render/Grid.h"
#include "render/Renderer.h"

namespace render {

// What stands for not-a-number, and after a bound at an end of its range.
inline constexpr std::string_view notANumber = "NaN";
inline constexpr std::string_view atRangeEnd = "\u2020";

// The cells of a row as text, by column; a cell that was never written is empty.
class CellPrinter {
 public:
  CellPrinter(const Grid& grid, const Context& context);
  std::vector<std::string> print(const Row& row) const;

 private:
  std::string printCell(const Row& row, std::size_t column) const;
  int boundDecimals(const Row& row, std::size_t column) const;

  const Context* context_;
  std::vector<embedded::output::Meaning> meanings_;  // by column
  std::vector<std::size_t> partners_;  // by column: that of the other bound, or the column itself
};

// Whether a cell of this meaning lies at an end of its range.
bool liesAtRangeEnd(const Cell& cell, const embedded::output::Meaning& meaning);

}  // namespace render
