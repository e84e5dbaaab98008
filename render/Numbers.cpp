#include "render/Numbers.h"

#include <fmt/format.h>

#include <cmath>

namespace render {

namespace {

using embedded::output::Meaning;
using embedded::output::NumberFormat;
using embedded::output::Role;
using embedded::output::State;

constexpr int usualDecimals = 3;
constexpr int mostDecimals = 9;        // more are written with an exponent
constexpr int mostDigits = 17;         // tell any two doubles apart
constexpr int fewDigits = 2;           // of what is too small for decimals
constexpr double smallestP = 0.001;    // smaller ones are `<.001`
constexpr double largestFixed = 1e15;  // from here on the digits would not be meant

std::string fixed(double value, int decimals) {
  if (std::isinf(value)) {
    return value < 0 ? "-\u221e" : "\u221e";
  }
  if (std::abs(value) >= largestFixed) {
    return fmt::format("{:.{}e}", value, usualDecimals);
  }
  std::string text = fmt::format("{:.{}f}", value, decimals);
  // A value that rounds to zero has no sign.
  return text.front() == '-' && text.find_first_not_of("-0.") == std::string::npos ? text.substr(1)
                                                                                   : text;
}

std::string withExponent(double value, int digits) {
  return value == 0.0 ? fixed(value, usualDecimals) : fmt::format("{:.{}e}", value, digits - 1);
}

std::string withDecimalPoint(std::string text, std::string_view point) {
  const std::size_t at = text.find('.');
  return at == std::string::npos || point == "." ? text : text.replace(at, 1, point);
}

std::string pValue(double value) {
  return value >= 0.0 && value < smallestP ? "<.001" : fixed(value, usualDecimals);
}

// The decimals that show two digits of an amount.
int decimalsFor(double amount) {
  return fewDigits - 1 - static_cast<int>(std::floor(std::log10(amount)));
}

// The bound with as many digits as keep it apart from the other: where three decimals do not, two
// digits of what lies between them are shown.
std::string bound(double value, double other) {
  std::string text = fixed(value, usualDecimals);
  const double between = std::abs(value - other);
  if (!(between > 0.0) || text != fixed(other, usualDecimals)) {
    return text;
  }
  if (const int decimals = decimalsFor(between); decimals <= mostDecimals) {
    return fixed(value, decimals);
  }
  for (int digits = fewDigits; digits < mostDigits; ++digits) {
    text = withExponent(value, digits);
    if (text != withExponent(other, digits)) {
      return text;
    }
  }
  return withExponent(value, mostDigits);
}

// Three decimals, or two significant digits where these would hide that there is something.
std::string amount(double value) {
  const double size = std::abs(value);
  if (size == 0.0 || fixed(size, usualDecimals) != fixed(0.0, usualDecimals)) {
    return fixed(value, usualDecimals);
  }
  const int decimals = decimalsFor(size);
  return decimals <= mostDecimals ? fixed(value, decimals) : withExponent(value, fewDigits);
}

bool isBound(const Meaning& meaning) {
  return meaning.role == Role::Lower || meaning.role == Role::Upper;
}

bool isProbability(const Meaning& meaning) {
  return meaning.role == Role::POneSided || meaning.role == Role::PTwoSided;
}

// Amounts that are exactly zero when they are nothing, so that a tiny one means something.
bool isAmount(const Meaning& meaning) {
  return meaning.role == Role::Estimate || meaning.role == Role::StandardError;
}

// Whether two columns differ in their innermost label alone. Where there are two columns, some
// dimension lies on them.
bool areSiblings(const Grid& grid, const Column& a, const Column& b) {
  const Dimension& inner = grid.table().dimensions[grid.columnDimensions().back()];
  return std::equal(a.nodes.begin(), a.nodes.end() - 1, b.nodes.begin(), b.nodes.end() - 1) &&
         inner.nodes[a.nodes.back()].parent == inner.nodes[b.nodes.back()].parent;
}

}  // namespace

std::vector<Meaning> columnMeanings(const Grid& grid, const embedded::output::Description& of) {
  std::vector<Meaning> meanings;
  for (const Column& column : grid.columns()) {
    meanings.emplace_back();
    for (std::size_t i = 0; i < column.nodes.size(); ++i) {
      const Dimension& dimension = grid.table().dimensions[grid.columnDimensions()[i]];
      const std::string& label = dimension.nodes[column.nodes[i]].label->id;
      if (Meaning found = of.of(grid.table().title->id, label); found.role != Role::None) {
        meanings.back() = std::move(found);
      }
    }
  }
  return meanings;
}

std::vector<std::size_t> boundPartners(const Grid& grid, const std::vector<Meaning>& meanings) {
  std::vector<std::size_t> partners;
  for (std::size_t c = 0; c < meanings.size(); ++c) {
    partners.push_back(c);
    if (c > 0 && meanings[c - 1].role == Role::Lower && meanings[c].role == Role::Upper &&
        areSiblings(grid, grid.columns()[c - 1], grid.columns()[c])) {
      partners[c - 1] = c;
      partners[c] = c - 1;
    }
  }
  return partners;
}

bool liesAtRangeEnd(const Cell& cell, const Meaning& meaning) {
  return isBound(meaning) && cell.state == State::Valid &&
         ((meaning.rangeLow && cell.value == *meaning.rangeLow) ||
          (meaning.rangeHigh && cell.value == *meaning.rangeHigh));
}

std::string shownNumber(double value, int decimals, std::string_view decimalPoint) {
  return withDecimalPoint(fixed(value, decimals), decimalPoint);
}

std::string shortNumber(double value, std::string_view decimalPoint) {
  return withDecimalPoint(embedded::output::shortest(value), decimalPoint);
}

CellPrinter::CellPrinter(const Grid& grid, const Context& context)
    : decimalPoint_(context.decimalPoint),
      meanings_(columnMeanings(grid, *context.description)),
      partners_(boundPartners(grid, meanings_)) {}

std::string CellPrinter::printStatistic(const Row& row, std::size_t column) const {
  const Meaning& meaning = meanings_[column];
  const double value = row.cells[column]->value;
  if (isProbability(meaning)) {
    return pValue(value);
  }
  if (isBound(meaning)) {
    const Cell* other = row.cells[partners_[column]];
    return bound(value, other != nullptr && other->state == State::Valid ? other->value : value);
  }
  return isAmount(meaning) ? amount(value) : fixed(value, usualDecimals);
}

std::string CellPrinter::printCell(const Row& row, std::size_t column) const {
  const Cell* cell = row.cells[column];
  if (cell == nullptr || cell->state == State::Missing) {
    return {};
  }
  if (cell->state == State::NotANumber) {
    return std::string(notANumber);
  }
  switch (cell->format) {
    case NumberFormat::Count:
      return fmt::format("{:.0f}", cell->value);
    case NumberFormat::SigDigit:
      return withDecimalPoint(embedded::output::shortest(cell->value), decimalPoint_);
    case NumberFormat::GeneralStat:
      return withDecimalPoint(printStatistic(row, column), decimalPoint_);
  }
  return {};
}

void CellPrinter::print(const Row& row, std::vector<CellText>& texts) const {
  texts.resize(row.cells.size());
  for (std::size_t c = 0; c < row.cells.size(); ++c) {
    texts[c].text = printCell(row, c);
    texts[c].isAtRangeEnd = row.cells[c] != nullptr && liesAtRangeEnd(*row.cells[c], meanings_[c]);
  }
}

}  // namespace render
