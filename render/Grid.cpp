#include "render/Grid.h"

#include <algorithm>
#include <map>

namespace render {

namespace {

constexpr std::size_t noColumn = static_cast<std::size_t>(-1);

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

}  // namespace

std::vector<TextPtr> pathOf(const Dimension& dimension, Index node) {
  std::vector<TextPtr> path;
  while (node != 0 && node != none) {
    path.push_back(dimension.nodes[node].label);
    node = dimension.nodes[node].parent;
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

std::vector<Index> Grid::rowKey(const Cell& cell) const {
  std::vector<Index> key;
  key.reserve(rows_.size());
  for (const std::size_t d : rows_) {
    key.push_back(rank_[d][cell.at[d]]);
  }
  return key;
}

std::size_t Grid::columnOf(const Cell& cell) const {
  std::size_t place = 0;
  for (std::size_t i = 0; i < columns_.size(); ++i) {
    place += rank_[columns_[i]][cell.at[columns_[i]]] * stride_[i];
  }
  return place;
}

void Grid::findColumns() {
  std::size_t combinations = 1;
  stride_.assign(columns_.size(), 1);
  for (std::size_t i = columns_.size(); i-- > 0;) {
    stride_[i] = combinations;
    combinations *= table_->dimensions[columns_[i]].nodes.size();
  }
  std::vector<const Cell*> first(combinations, nullptr);
  for (const Cell& cell : table_->cells) {
    const Cell*& seen = first[columnOf(cell)];
    seen = seen == nullptr ? &cell : seen;
  }
  columnByRank_.assign(combinations, noColumn);
  for (std::size_t place = 0; place < combinations; ++place) {
    if (first[place] == nullptr) {
      continue;
    }
    columnByRank_[place] = shown_.size();
    Column column;
    for (const std::size_t d : columns_) {
      column.nodes.push_back(first[place]->at[d]);
    }
    shown_.push_back(std::move(column));
  }
}

void Grid::visitGroup(std::size_t begin, std::size_t end,
                      const std::function<void(const Row&)>& visit) const {
  std::map<std::vector<Index>, Row> found;
  for (std::size_t i = begin; i < end; ++i) {
    const Cell& cell = table_->cells[i];
    Row& row = found[rowKey(cell)];
    if (row.cells.empty()) {
      row.split = table_->split == none ? cell.split : table_->split;
      row.cells.assign(shown_.size(), nullptr);
      for (const std::size_t d : rows_) {
        row.nodes.push_back(cell.at[d]);
      }
    }
    row.cells[columnByRank_[columnOf(cell)]] = &cell;
  }
  for (const auto& [key, row] : found) {
    visit(row);
  }
}

void Grid::forEachRow(const std::function<void(const Row&)>& visit) const {
  const auto& cells = table_->cells;
  for (std::size_t begin = 0; begin < cells.size();) {
    std::size_t end = begin;
    while (end < cells.size() && cells[end].split == cells[begin].split) {
      ++end;
    }
    visitGroup(begin, end, visit);
    begin = end;
  }
}

}  // namespace render
