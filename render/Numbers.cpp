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
constexpr int mostDecimals = 17;
constexpr double smallestShownP = 0.001;

std::string fixed(double value, int decimals) {
  std::string text = fmt::format("{:.{}f}", value, decimals);
  // A value that rounds to zero has no sign.
  return text.find_first_not_of("-0.") == std::string::npos && text.front() == '-' ? text.substr(1)
                                                                                   : text;
}

std::string withDecimalPoint(std::string text, std::string_view point) {
  const std::size_t at = text.find('.');
  return at == std::string::npos || point == "." ? text : text.replace(at, 1, point);
}

std::string pValue(double value) {
  return value < smallestShownP ? "<.001" : fixed(value, usualDecimals);
}

bool isBound(const Meaning& meaning) {
  return meaning.role == Role::Lower || meaning.role == Role::Upper;
}

bool isProbability(const Meaning& meaning) {
  return meaning.role == Role::POneSided || meaning.role == Role::PTwoSided;
}

std::string lastLabelId(const Dimension& dimension, Index node) {
  return dimension.nodes[node].label->id;
}

}  // namespace

bool liesAtRangeEnd(const Cell& cell, const Meaning& meaning) {
  return isBound(meaning) && cell.state == State::Valid &&
         ((meaning.rangeLow && cell.value == *meaning.rangeLow) ||
          (meaning.rangeHigh && cell.value == *meaning.rangeHigh));
}

CellPrinter::CellPrinter(const Grid& grid, const Context& context) : context_(&context) {
  const auto& columns = grid.columns();
  for (const Column& column : columns) {
    Meaning meaning;
    for (std::size_t i = 0; i < column.nodes.size(); ++i) {
      const auto& dimension = grid.table().dimensions[grid.columnDimensions()[i]];
      Meaning found =
          context.description->of(grid.table().title->id, lastLabelId(dimension, column.nodes[i]));
      if (found.role != Role::None) {
        meaning = std::move(found);
      }
    }
    meanings_.push_back(std::move(meaning));
  }
  for (std::size_t c = 0; c < columns.size(); ++c) {
    const bool before =
        c > 0 && meanings_[c].role == Role::Upper && meanings_[c - 1].role == Role::Lower;
    const bool after = c + 1 < columns.size() && meanings_[c].role == Role::Lower &&
                       meanings_[c + 1].role == Role::Upper;
    partners_.push_back(before ? c - 1 : after ? c + 1 : c);
  }
}

int CellPrinter::boundDecimals(const Row& row, std::size_t column) const {
  const Cell* cell = row.cells[column];
  const Cell* other = row.cells[partners_[column]];
  int decimals = usualDecimals;
  if (other == nullptr || other->state != State::Valid || other->value == cell->value) {
    return decimals;
  }
  while (decimals < mostDecimals && fixed(cell->value, decimals) == fixed(other->value, decimals)) {
    ++decimals;
  }
  return decimals;
}

std::string CellPrinter::printCell(const Row& row, std::size_t column) const {
  const Cell* cell = row.cells[column];
  if (cell == nullptr || cell->state == State::Missing) {
    return {};
  }
  if (cell->state == State::NotANumber) {
    return std::string(notANumber);
  }
  const Meaning& meaning = meanings_[column];
  std::string text;
  if (cell->format == NumberFormat::Count) {
    text = fmt::format("{:.0f}", cell->value);
  } else if (cell->format == NumberFormat::SigDigit) {
    text = embedded::output::shortest(cell->value);
  } else if (isProbability(meaning)) {
    text = pValue(cell->value);
  } else {
    text = fixed(cell->value, boundDecimals(row, column));
  }
  text = withDecimalPoint(std::move(text), context_->decimalPoint);
  return liesAtRangeEnd(*cell, meaning) ? text + std::string(atRangeEnd) : text;
}

std::vector<std::string> CellPrinter::print(const Row& row) const {
  std::vector<std::string> texts;
  texts.reserve(row.cells.size());
  for (std::size_t c = 0; c < row.cells.size(); ++c) {
    texts.push_back(printCell(row, c));
  }
  return texts;
}

}  // namespace render
