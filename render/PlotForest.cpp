#include "render/PlotForest.h"

#include <algorithm>
#include <cmath>

#include "render/Phrase.h"

namespace render {

namespace {

using embedded::output::Meaning;
using embedded::output::Role;
using embedded::output::State;
using embedded::output::Text;

// The columns that make an interval.
struct Columns {
  std::size_t estimate = 0;
  std::size_t lower = 0;
  std::size_t upper = 0;
  std::string level;
};

const ReaderLabel* levelOf(const ReaderColumn& column) {
  const auto found = std::find_if(column.labels.begin(), column.labels.end(),
                                  [](const ReaderLabel& l) { return l.role == Role::Level; });
  return found == column.labels.end() ? nullptr : &*found;
}

std::optional<Columns> columnsOf(const ReaderTable& table) {
  Columns columns;
  bool hasEstimate = false;
  for (std::size_t c = 0; c < table.columns.size(); ++c) {
    const Role role = table.meanings[c].role;
    if (!hasEstimate && (role == Role::Estimate || role == Role::Difference)) {
      columns.estimate = c;
      hasEstimate = true;
    }
    const ReaderLabel* level = levelOf(table.columns[c]);
    if (hasEstimate && role == Role::Lower && level != nullptr && c + 1 < table.columns.size() &&
        table.meanings[c + 1].role == Role::Upper) {
      columns.lower = c;
      columns.upper = c + 1;
      columns.level = level->text;
      return columns;
    }
  }
  return std::nullopt;
}

// The first footnote of this identifier in a table, on a cell or a category.
const Text* footnoteIn(const Table& table, std::string_view id) {
  const auto matching = [&](const std::vector<TextPtr>& notes) -> const Text* {
    const auto found =
        std::find_if(notes.begin(), notes.end(), [&](const TextPtr& n) { return n->id == id; });
    return found == notes.end() ? nullptr : found->get();
  };
  for (const auto& list : table.footnoteLists) {
    if (const Text* found = matching(list)) {
      return found;
    }
  }
  for (const Dimension& dimension : table.dimensions) {
    for (const Node& node : dimension.nodes) {
      if (const Text* found = matching(node.footnotes)) {
        return found;
      }
    }
  }
  return nullptr;
}

// `split` is that of the table, when it is one split group's own.
std::optional<PlotReference> referenceOf(const Document& document, Index split,
                                         const Meaning& meaning, const Context& context) {
  if (meaning.reference) {
    const std::string shown = shortNumber(*meaning.reference, context.decimalPoint);
    return PlotReference{*meaning.reference, phrase(context, "No effect at ^1", {shown})};
  }
  if (meaning.referenceArgumentOf.empty()) {
    return std::nullopt;
  }
  for (const Table& table : document.tables) {
    const Text* note =
        table.split == split ? footnoteIn(table, meaning.referenceArgumentOf) : nullptr;
    if (note != nullptr && !note->items.empty() && note->items[0]->kind == Text::Kind::Number) {
      return PlotReference{std::get<double>(note->items[0]->value),
                           embedded::output::readerText(*note, *context.sentences)};
    }
  }
  return std::nullopt;
}

std::optional<double> numberIn(const ReaderCell& cell) {
  if (cell.cell == nullptr || cell.cell->state != State::Valid ||
      !std::isfinite(cell.cell->value)) {
    return std::nullopt;
  }
  return cell.cell->value;
}

std::string quantityOf(const ReaderTable& table, std::size_t estimate, const Context& context) {
  const ReaderColumn& column = table.columns[estimate];
  std::string label = column.labels.empty() ? std::string() : column.labels.back().text;
  const Meaning& meaning = table.meanings[estimate];
  const std::string& direction = meaning.direction.empty() ? table.direction : meaning.direction;
  if (direction.empty()) {
    return label;
  }
  // Not by `? :`, where gcc 12's address sanitizer takes the list for out of scope as soon as one
  // of its texts cannot be made.
  return phrase(context, "Axis ^1 taken as ^2", {label, phrase(context, direction)});
}

// Which label levels, beyond those of split groups, differ between rows.
std::vector<bool> varyingLevels(const ReaderTable& table) {
  std::vector<bool> varies(table.labelColumns(), false);
  for (const ReaderRow& row : table.rows) {
    for (std::size_t h = table.splitHeads; h < varies.size(); ++h) {
      varies[h] = varies[h] || row.labels[h].text != table.rows.front().labels[h].text;
    }
  }
  return varies;
}

std::string labelsWhere(const ReaderTable& table, const ReaderRow& row,
                        const std::vector<bool>& wanted, bool value) {
  std::string out;
  for (std::size_t h = table.splitHeads; h < wanted.size(); ++h) {
    if (wanted[h] == value && !row.labels[h].text.empty()) {
      out += (out.empty() ? "" : ", ") + row.labels[h].text;
    }
  }
  return out;
}

std::string shownOr(const ReaderCell& cell, const Context& context) {
  return cell.text.empty() ? phrase(context, "missing") : markedText(cell);
}

ForestLine lineOf(const ReaderTable& table, const ReaderRow& row, const Columns& columns,
                  const Context& context) {
  ForestLine line;
  const ReaderCell& lower = row.cells[columns.lower];
  const ReaderCell& upper = row.cells[columns.upper];
  line.estimate = numberIn(row.cells[columns.estimate]);
  line.lower = numberIn(lower);
  line.upper = numberIn(upper);
  line.numbers = phrase(context, "Estimate ^1 with bounds ^2 and ^3",
                        {shownOr(row.cells[columns.estimate], context), shownOr(lower, context),
                         shownOr(upper, context)});
  if (!line.lower || !line.upper) {
    const NoteList& notes = lower.notes.empty() ? upper.notes : lower.notes;
    line.missing =
        notes.empty() ? phrase(context, "No interval")
                      : phrase(context, "No interval because ^1", {table.footnotes[notes.front()]});
  }
  return line;
}

}  // namespace

PlotAxis Forest::axis() const {
  std::vector<double> values;
  for (const ForestLine& line : lines) {
    for (const auto& value : {line.estimate, line.lower, line.upper}) {
      if (value) {
        values.push_back(*value);
      }
    }
  }
  if (reference) {
    values.push_back(reference->value);
  }
  return {values, rangeLow, rangeHigh};
}

std::optional<Forest> forestOf(const Document& document, const ReaderTable& table,
                               const Context& context) {
  const auto columns = columnsOf(table);
  if (!columns || table.rows.empty()) {
    return std::nullopt;
  }
  Forest forest;
  const Meaning& bound = table.meanings[columns->lower];
  forest.quantity = quantityOf(table, columns->estimate, context);
  forest.level = columns->level;
  forest.reference =
      referenceOf(document, table.split.empty() ? none : table.rows.front().split, bound, context);
  forest.rangeLow = bound.rangeLow;
  forest.rangeHigh = table.meanings[columns->upper].rangeHigh;
  const std::vector<bool> varies = varyingLevels(table);
  forest.common = labelsWhere(table, table.rows.front(), varies, false);
  for (const ReaderRow& row : table.rows) {
    forest.lines.push_back(lineOf(table, row, *columns, context));
    forest.lines.back().label = labelsWhere(table, row, varies, true);
  }
  return forest;
}

}  // namespace render
