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
  for (; node != 0 && node != none; node = dimension.nodes[node].parent) {
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

// All cells with those of a split group together, the groups in the order of their first cells;
// nothing when they stand so already.
std::vector<const Cell*> Grid::cellsBySplit() const {
  const auto& cells = table_->cells;
  std::map<Index, std::size_t> first;
  bool together = true;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (i == 0 || cells[i].split != cells[i - 1].split) {
      together = first.try_emplace(cells[i].split, i).second && together;
    }
  }
  std::vector<const Cell*> sorted;
  if (!together) {
    for (const Cell& cell : cells) {
      sorted.push_back(&cell);
    }
    std::stable_sort(sorted.begin(), sorted.end(), [&](const Cell* a, const Cell* b) {
      return first.find(a->split)->second < first.find(b->split)->second;
    });
  }
  return sorted;
}

void Grid::visitGroup(std::vector<Placed>& group, Row& row,
                      const std::function<void(const Row&)>& visit) const {
  const auto before = [](const Placed& a, const Placed& b) { return a.row < b.row; };
  if (!std::is_sorted(group.begin(), group.end(), before)) {
    std::stable_sort(group.begin(), group.end(), before);
  }
  std::size_t column = 0;
  for (std::size_t i = 0; i < group.size();) {
    const Key& key = group[i].row;
    const Cell& first = *group[i].cell;
    row.split = table_->split == none ? first.split : table_->split;
    for (std::size_t d = 0; d < rows_.size(); ++d) {
      row.nodes[d] = first.at[rows_[d]];
    }
    std::fill(row.cells.begin(), row.cells.end(), nullptr);
    for (column = 0; i < group.size() && group[i].row == key; ++i) {
      column = columnOf(*group[i].cell, column);
      row.cells[column++] = group[i].cell;
    }
    visit(row);
  }
}

void Grid::forEachRow(const std::function<void(const Row&)>& visit) const {
  const std::vector<const Cell*> sorted = cellsBySplit();
  const auto cellAt = [&](std::size_t i) { return sorted.empty() ? &table_->cells[i] : sorted[i]; };
  Row row;
  row.nodes.resize(rows_.size());
  row.cells.resize(shown_.size());
  std::vector<Placed> group;
  for (std::size_t i = 0; i < table_->cells.size();) {
    const Index split = cellAt(i)->split;
    group.clear();
    for (; i < table_->cells.size() && cellAt(i)->split == split; ++i) {
      group.push_back({keyOn(rows_, *cellAt(i)), cellAt(i)});
    }
    visitGroup(group, row, visit);
  }
}

}  // namespace render
