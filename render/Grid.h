// A pivot table as rows and columns, in the order in which they are shown.
//
// Row dimensions stand outermost first by their levels, split variables before them; column
// dimensions likewise. Rows and columns without cells do not exist here.
#pragma once

#include <functional>
#include <vector>

#include "embedded/output/Document.h"

namespace render {

using embedded::output::Axis;
using embedded::output::Cell;
using embedded::output::Dimension;
using embedded::output::Index;
using embedded::output::Node;
using embedded::output::none;
using embedded::output::Table;
using embedded::output::TextPtr;

// The labels from a dimension's outermost group down to the node, without the dimension itself.
std::vector<TextPtr> pathOf(const Dimension& dimension, Index node);

// A column: a node of each column dimension.
struct Column {
  std::vector<Index> nodes;
};

// A row: its split group, a node of each row dimension, and the cells by column (null: never
// written).
struct Row {
  Index split = none;
  std::vector<Index> nodes;
  std::vector<const Cell*> cells;
};

class Grid {
 public:
  // Refers to the table, which must outlive the grid.
  explicit Grid(const Table& table);

  const Table& table() const { return *table_; }
  // Indices of the table's dimensions on each axis, outermost first.
  const std::vector<std::size_t>& rowDimensions() const { return rows_; }
  const std::vector<std::size_t>& columnDimensions() const { return columns_; }
  const std::vector<Column>& columns() const { return shown_; }
  bool empty() const { return table_->cells.empty(); }

  // Calls `visit` with every row, in order. Takes memory for one split group at a time.
  void forEachRow(const std::function<void(const Row&)>& visit) const;

 private:
  // The place of a cell among the cells of its split group.
  std::vector<Index> rowKey(const Cell& cell) const;
  std::size_t columnOf(const Cell& cell) const;
  void findColumns();
  void visitGroup(std::size_t begin, std::size_t end,
                  const std::function<void(const Row&)>& visit) const;

  const Table* table_;
  std::vector<std::size_t> rows_;
  std::vector<std::size_t> columns_;
  std::vector<std::vector<Index>> rank_;  // by dimension and node: the place in display order
  std::vector<Column> shown_;
  std::vector<std::size_t> columnByRank_;  // column number of a combination of column ranks
  std::vector<std::size_t> stride_;
};

}  // namespace render
