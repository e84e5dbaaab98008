// A pivot table as rows and columns, in the order in which they are shown.
//
// Row dimensions stand outermost first by their levels, split groups before them in the order of
// the data; column dimensions likewise. Rows and columns without cells do not exist here.
#pragma once

#include <array>
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

// The nodes from a dimension's outermost group down to the node, without the dimension itself.
std::vector<Index> pathOf(const Dimension& dimension, Index node);

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
  // A split group: where its cells stand among all cells.
  struct Group {
    Index split = none;
    std::size_t begin = 0;
    std::size_t end = 0;
  };

  // Refers to the table, which must outlive the grid.
  explicit Grid(const Table& table);

  const Table& table() const { return *table_; }
  // Indices of the table's dimensions on each axis, outermost first.
  const std::vector<std::size_t>& rowDimensions() const { return rows_; }
  const std::vector<std::size_t>& columnDimensions() const { return columns_; }
  const std::vector<Column>& columns() const { return shown_; }

  // The split groups that have cells, in the order of their first cells; one group of all cells in
  // a table without split rows.
  const std::vector<Group>& groups() const { return groups_; }

  // Calls `visit` with every row, in order; the row is the grid's and changes after the call.
  // Takes memory for one split group at a time where the cells of a group stand together.
  void forEachRow(const std::function<void(const Row&)>& visit) const;
  // The same, of one split group.
  void forEachRow(const Group& group, const std::function<void(const Row&)>& visit) const;

 private:
  // Display ranks of a cell's nodes on one axis, outermost first; compared as they stand.
  using Key = std::array<Index, embedded::output::maxDimensions>;
  struct Placed {
    Key row;
    const Cell* cell;
  };

  Key keyOn(const std::vector<std::size_t>& dimensions, const Cell& cell) const;
  void findColumns();
  void findGroups();
  std::size_t columnOf(const Cell& cell, std::size_t guess) const;
  const Cell& cellAt(std::size_t i) const {
    return sorted_.empty() ? table_->cells[i] : *sorted_[i];
  }
  void visitRows(std::vector<Placed>& cells, Row& row,
                 const std::function<void(const Row&)>& visit) const;

  const Table* table_;
  std::vector<std::size_t> rows_;
  std::vector<std::size_t> columns_;
  std::vector<std::vector<Index>> rank_;  // by dimension and node: the place in display order
  std::vector<Key> columnKeys_;           // ascending; of the columns shown
  std::vector<Column> shown_;
  // All cells with those of a split group together; empty when they stand so already.
  std::vector<const Cell*> sorted_;
  std::vector<Group> groups_;
};

}  // namespace render
