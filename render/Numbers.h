// How numbers are shown to readers: the one place where digits are chosen.
//
// Counts are whole; statistics have three decimals; p-values too, and `<.001` below; the level
// in a label has just the digits it has. The two bounds of an interval are rounded together, to
// as many digits as keep different bounds apart. A proportion or standard error that three
// decimals would show as zero, and is not, has two significant digits. Not-a-number is shown as
// such, a missing statistic is empty. A bound at an end of its range is marked.
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

// What the module's description says of each column of a grid, from its innermost label that
// means something.
std::vector<embedded::output::Meaning> columnMeanings(const Grid& grid,
                                                      const embedded::output::Description& of);

// By column: the column of the other bound of an interval, or the column itself.
std::vector<std::size_t> boundPartners(const Grid& grid,
                                       const std::vector<embedded::output::Meaning>& meanings);

// A cell as text; empty when it is missing or was never written.
struct CellText {
  std::string text;
  bool isAtRangeEnd = false;
};

class CellPrinter {
 public:
  CellPrinter(const Grid& grid, const Context& context);

  // The cells of a row, by column.
  void print(const Row& row, std::vector<CellText>& texts) const;
  const std::vector<embedded::output::Meaning>& meanings() const { return meanings_; }

 private:
  std::string printCell(const Row& row, std::size_t column) const;
  std::string printStatistic(const Row& row, std::size_t column) const;

  std::string_view decimalPoint_;
  std::vector<embedded::output::Meaning> meanings_;  // by column
  std::vector<std::size_t> partners_;
};

// Numbers outside of tables, such as those on the axis of a plot.
std::string shownNumber(double value, int decimals, std::string_view decimalPoint);

// A number with just the digits that it has, such as a level or a reference value.
std::string shortNumber(double value, std::string_view decimalPoint);

// Whether a cell of this meaning lies at an end of its range.
bool liesAtRangeEnd(const Cell& cell, const embedded::output::Meaning& meaning);

}  // namespace render
