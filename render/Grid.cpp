#include "render/Grid.h"

#include <algorithm>
#include <map>

namespace render {

namespace {

// Numbers the nodes in display order: depth first, children as they were added.
std::vector<Index> displayOrder(const Dimension& dimension) {
  std::vector<Index> rank(dimension.nodes.size(), 0);
  std::vector<Index> open{0};
  Index next = 0;
  while (!open.empty()) {
    const Index node = open.back();
    open.pop_back();
    rank[node] = next++;
    const auto& children = dimension.nodes[node].children;
    open.insert(open.end(), children.rbegin(), children.rend());
  }
  return rank;
}

std::vector<std::size_t> dimensionsOn(const Table& table, bool columns) {
  std::vector<std::size_t> found;
  for (std::size_t d = 0; d < table.dimensions.size(); ++d) {
    if ((table.dimensions[d].axis == Axis::Column) == columns) {
      found.push_back(d);
    }
  }
  std::stable_sort(found.begin(), found.end(), [&](std::size_t a, std::size_t b) {
    return table.dimensions[a].level < table.dimensions[b].level;
  });
  return found;
}

std::vector<Index> nodesOn(const std::vector<std::size_t>& dimensions, const Cell& cell) {
  std::vector<Index> nodes;
  for (const std::size_t d : dimensions) {
    nodes.push_back(cell.at[d]);
  }
  return nodes;
}

}  // namespace

std::vector<Index> pathOf(const Dimension& dimension, Index node) {
  std::vector<Index> path;
  for (; node != 0; node = dimension.nodes[node].parent) {
    path.push_back(node);
  }
  std::reverse(path.begin(), path.end());
  return path;
}

Grid::Grid(const Table& table)
    : table_(&table), rows_(dimensionsOn(table, false)), columns_(dimensionsOn(table, true)) {
  for (const Dimension& dimension : table.dimensions) {
    rank_.push_back(displayOrder(dimension));
  }
  findColumns();
  findGroups();
}

Grid::Key Grid::keyOn(const std::vector<std::size_t>& dimensions, const Cell& cell) const {
  Key key{};
  for (std::size_t i = 0; i < dimensions.size(); ++i) {
    key[i] = rank_[dimensions[i]][cell.at[dimensions[i]]];
  }
  return key;
}

void Grid::findColumns() {
  std::map<Key, const Cell*> found;
  for (const Cell& cell : table_->cells) {
    found.try_emplace(keyOn(columns_, cell), &cell);
  }
  for (const auto& [key, cell] : found) {
    columnKeys_.push_back(key);
    shown_.push_back({nodesOn(columns_, *cell)});
  }
}

// Cells mostly come in the order of their columns, so that the guess is mostly right.
std::size_t Grid::columnOf(const Cell& cell, std::size_t guess) const {
  const Key key = keyOn(columns_, cell);
  if (guess < columnKeys_.size() && columnKeys_[guess] == key) {
    return guess;
  }
  const auto found = std::lower_bound(columnKeys_.begin(), columnKeys_.end(), key);
  return static_cast<std::size_t>(found - columnKeys_.begin());
}

void Grid::findGroups() {
  const auto& cells = table_->cells;
  std::map<Index, std::size_t> first;
  bool together = true;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i == 0 || cells[i].split != cells[i - 1].split) {
      together = first.try_emplace(cells[i].split, i).second && together;
    }
  }
  if (!together) {
    for (const Cell& cell : cells) {
      sorted_.push_back(&cell);
    }
    std::stable_sort(sorted_.begin(), sorted_.end(), [&](const Cell* a, const Cell* b) {
      return first.find(a->split)->second < first.find(b->split)->second;
    });
  }
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i == 0 || cellAt(i).split != cellAt(i - 1).split) {
      groups_.push_back({table_->split == none ? cellAt(i).split : table_->split, i, i});
    }
    groups_.back().end = i + 1;
  }
}

void Grid::visitRows(std::vector<Placed>& cells, Row& row,
                     const std::function<void(const Row&)>& visit) const {
  const auto before = [](const Placed& a, const Placed& b) { return a.row < b.row; };
  if (!std::is_sorted(cells.begin(), cells.end(), before)) {
    std::stable_sort(cells.begin(), cells.end(), before);
  }
  std::size_t column = 0;
  for (std::size_t i = 0; i < cells.size();) {
    const Key& key = cells[i].row;
    const Cell& first = *cells[i].cell;
    for (std::size_t d = 0; d < rows_.size(); ++d) {
      row.nodes[d] = first.at[rows_[d]];
    }
    std::fill(row.cells.begin(), row.cells.end(), nullptr);
    for (column = 0; i < cells.size() && cells[i].row == key; ++i) {
      column = columnOf(*cells[i].cell, column);
      row.cells[column++] = cells[i].cell;
    }
    visit(row);
  }
}

void Grid::forEachRow(const std::function<void(const Row&)>& visit) const {
  for (const Group& group : groups_) {
    forEachRow(group, visit);
  }
}

void Grid::forEachRow(const Group& group, const std::function<void(const Row&)>& visit) const {
  Row row;
  row.split = group.split;
  row.nodes.resize(rows_.size());
  row.cells.resize(shown_.size());
  std::vector<Placed> cells;
  cells.reserve(group.end - group.begin);
  for (std::size_t i = group.begin; i < group.end; ++i) {
    cells.push_back({keyOn(rows_, cellAt(i)), &cellAt(i)});
  }
  visitRows(cells, row, visit);
}

}  // namespace render
