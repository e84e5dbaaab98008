// A table as a reader sees it: its title, headers, row labels, texts and footnotes, all in one
// language. What every renderer for readers starts from.
#pragma once

#include <string>
#include <vector>

#include "render/Grid.h"
#include "render/Numbers.h"
#include "render/Renderer.h"

namespace render {

// Footnotes as indices into those of the table.
using NoteList = std::vector<std::size_t>;

// A label of a row or column header; `role` is what the module's description says of it.
struct ReaderLabel {
  std::string text;
  NoteList notes;
  embedded::output::Role role = embedded::output::Role::None;
};

// The header of a row dimension or split variable, over as many columns of row labels as its
// deepest category needs.
struct RowHead {
  std::string text;
  std::size_t width = 1;
};

// A column: its labels, outermost first, and how many of them it shares with the column before.
struct ReaderColumn {
  std::vector<ReaderLabel> labels;
  std::size_t shared = 0;
};

// A shown cell. `cell` is null when nothing was ever written there.
struct ReaderCell {
  std::string text;
  bool isAtRangeEnd = false;
  NoteList notes;
  const Cell* cell = nullptr;
};

// A row: its labels, outermost first, as many as the table's row heads are wide (those that a
// shallow category does not need are empty), and how many of them it shares with the row before.
struct ReaderRow {
  std::vector<ReaderLabel> labels;
  std::size_t shared = 0;
  std::vector<ReaderCell> cells;
  Index split = none;
};

struct ReaderTable {
  std::string title;
  std::string split;      // of a table of its own for a split group: "region = North"
  std::string direction;  // identifier of how all its differences are taken; often empty
  std::vector<RowHead> rowHeads;
  std::size_t splitHeads = 0;  // so many of them, the first ones, are split variables
  std::vector<ReaderColumn> columns;
  std::vector<embedded::output::Meaning> meanings;  // by column
  std::vector<ReaderRow> rows;
  std::vector<std::string> footnotes;
  std::vector<std::string> notes;  // what the module's description says of the table and its rows

  std::size_t labelColumns() const;
};

// The letter of the n-th footnote: a, b, ..., z, aa, ab, ...
std::string footnoteLetter(std::size_t n);
// The letters of footnotes with commas between them.
std::string footnoteMarks(const NoteList& notes);

// The text of a cell with the mark of a bound at the end of its range, without footnotes.
std::string markedText(const ReaderCell& cell);

// The values of a split group as a reader sees them: "region = North, sex = F".
std::string splitSentence(const Document& document, Index split,
                          const embedded::output::Sentences& sentences);

// The values of the row's split group, where they are its first labels: "region = North, sex = F".
std::string splitOfRow(const ReaderTable& table, const ReaderRow& row);

// Takes memory for the whole table. Refers to the table's cells, which must outlive the result.
ReaderTable readerTable(const Document& document, const Table& table, const Context& context);

// A header cell over the columns [begin, end) and the header lines [top, bottom].
struct HeadCell {
  std::size_t begin = 0;
  std::size_t end = 0;
  std::size_t top = 0;
  std::size_t bottom = 0;
  const ReaderLabel* label = nullptr;
};

// The header cells over the columns [begin, end), by their first line, each from left to right.
// A column's own label reaches down to the last line; the labels above it span their columns.
std::vector<std::vector<HeadCell>> headLines(const ReaderTable& table, std::size_t begin,
                                             std::size_t end);

}  // namespace render
