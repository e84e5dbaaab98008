// A table as a reader sees it: its title, header rows, row labels, texts and footnote marks, all in
// one language. What every renderer for readers starts from.
#pragma once

#include <string>
#include <vector>

#include "render/Grid.h"
#include "render/Renderer.h"

namespace render {

// One shown cell.
struct ReaderCell {
  std::string text;
  std::string marks;  // letters of its footnotes
};

// One shown row: the labels of the row's headers, outermost first, and its cells.
struct ReaderRow {
  std::vector<std::string> labels;
  std::vector<ReaderCell> cells;
};

struct ReaderTable {
  std::string title;
  std::string split;                              // of a table of its own: "region = North"
  std::vector<std::string> rowHeads;              // names of the row headers, outermost first
  std::vector<std::vector<std::string>> columns;  // by column: labels, outermost first
  std::vector<std::string> columnMarks;           // by column: letters of its own footnotes
  std::vector<ReaderRow> rows;
  std::vector<std::string> footnotes;  // in the order of their letters
  std::vector<std::string> notes;      // what the module's description says of the rows
};

// The n-th letter of a footnote: a, b, ..., z, aa, ab, ...
std::string footnoteLetter(std::size_t n);

ReaderTable readerTable(const Document& document, const Table& table, const Context& context);

}  // namespace render
