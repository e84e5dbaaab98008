// Sorts the cells of a table by row and imputation, and relates rows of different tables.
#include "embedded/output/ImputedTable.h"

#include <algorithm>
#include <set>

namespace embedded::output {

namespace {

// A node with the groups above it, without the dimension itself.
std::vector<const Node*> pathOf(const Dimension& dimension, Index node) {
  std::vector<const Node*> path;
  for (; node != 0; node = dimension.nodes[node].parent) {
    path.push_back(&dimension.nodes[node]);
  }
  return path;
}

// The row dimensions, one of each table, that carry the same label.
std::pair<std::size_t, std::size_t> commonDimension(const Table& a, const Table& b) {
  for (std::size_t i = 0; i < a.dimensions.size(); ++i) {
    for (std::size_t k = 0; k < b.dimensions.size(); ++k) {
      if (a.dimensions[i].axis == Axis::Row && b.dimensions[k].axis == Axis::Row &&
          *a.dimensions[i].label == *b.dimensions[k].label) {
        return {i, k};
      }
    }
  }
  return {maxDimensions, maxDimensions};
}

// Tells whether categories of two tables are about the same thing.
class Likeness {
 public:
  Likeness(const Table& a, const Table& b, const Description& description)
      : titleA_(a.title->id), titleB_(b.title->id), description_(description) {}

  bool operator()(const std::vector<const Node*>& a, const std::vector<const Node*>& b) const {
    return std::any_of(a.begin(), a.end(), [&](const Node* x) {
      return std::any_of(b.begin(), b.end(),
                         [&](const Node* y) { return alike(*x->label, *y->label); });
    });
  }

 private:
  bool alike(const Text& a, const Text& b) const {
    return a == b || (!a.items.empty() && !b.items.empty() && *a.items[0] == *b.items[0] &&
                      description_.of(titleA_, a.id).role == Role::Comparison &&
                      description_.of(titleB_, b.id).role == Role::Comparison);
  }

  const std::string& titleA_;
  const std::string& titleB_;
  const Description& description_;
};

std::vector<Index> usedNodes(const ImputedTable& table, std::size_t dimension) {
  std::set<Index> nodes;
  for (const ImputedRow& row : table.rows()) {
    nodes.insert(row.place.at[dimension]);
  }
  return {nodes.begin(), nodes.end()};
}

}  // namespace

ImputationOrder::ImputationOrder(const PooledSplits& splits) {
  std::set<std::int64_t> numbers;
  for (const std::int64_t number : splits.number) {
    if (number > 0) {
      numbers.insert(number);
    }
  }
  imputations = static_cast<int>(numbers.size());
  const std::vector<std::int64_t> sorted(numbers.begin(), numbers.end());
  for (const std::int64_t number : splits.number) {
    const auto place = std::lower_bound(sorted.begin(), sorted.end(), number) - sorted.begin();
    ofSplit.push_back(number > 0 ? static_cast<int>(place) : -1);
  }
}

ImputedTable::ImputedTable(const Table& table, const Description& description,
                           const PooledSplits& splits, const ImputationOrder& order)
    : table_(&table),
      description_(&description),
      meaning_(&description.table(table.title->id)),
      statistics_(statisticsDimension(table)),
      columns_(meaningsOf(table, description)) {
  if (statistics_ == none) {
    return;
  }
  std::unordered_map<PlaceKey, std::size_t, PlaceKeyHash> places;
  for (const Cell& cell : table.cells) {
    const int imputation = cell.split == none ? -1 : order.ofSplit[cell.split];
    if (imputation < 0) {
      continue;
    }
    PlaceKey place{cell.at, splits.user[cell.split]};
    place.at[statistics_] = 0;
    const auto [found, isNew] = places.try_emplace(place, rows_.size());
    if (isNew) {
      rows_.push_back({place, {}});
      rows_.back().cells.resize(static_cast<std::size_t>(order.imputations));
    }
    rows_[found->second].cells[static_cast<std::size_t>(imputation)].push_back(&cell);
  }
}

std::vector<Index> ImputedTable::columnsOf(const ImputedRow& row) const {
  std::vector<Index> columns;
  for (const auto& cells : row.cells) {
    for (const Cell* cell : cells) {
      const Index column = cell->at[statistics_];
      if (std::find(columns.begin(), columns.end(), column) == columns.end()) {
        columns.push_back(column);
      }
    }
  }
  return columns;
}

Index ImputedTable::columnOf(const ImputedRow& row, std::string_view label) const {
  for (const Index column : columnsOf(row)) {
    if (table_->dimensions[statistics_].nodes[column].label->id == label) {
      return column;
    }
  }
  return none;
}

Index ImputedTable::columnOf(const ImputedRow& row, Role role) const {
  for (const Index column : columnsOf(row)) {
    if (columns_[column].role == role) {
      return column;
    }
  }
  return none;
}

std::vector<const Cell*> ImputedTable::cellsOf(const ImputedRow& row, Index column) const {
  std::vector<const Cell*> found;
  for (const auto& cells : row.cells) {
    const auto cell = std::find_if(cells.begin(), cells.end(), [&](const Cell* candidate) {
      return candidate->at[statistics_] == column;
    });
    found.push_back(cell == cells.end() ? nullptr : *cell);
  }
  return found;
}

std::vector<double> ImputedTable::valuesOf(const ImputedRow& row, Index column) const {
  std::vector<double> values;
  for (const Cell* cell : cellsOf(row, column)) {
    if (cell != nullptr && cell->state == State::Valid) {
      values.push_back(cell->value);
    }
  }
  return values;
}

TextPtr ImputedTable::methodOf(const ImputedRow& row) const {
  for (std::size_t d = 0; d < table_->dimensions.size(); ++d) {
    for (const Node* node : pathOf(table_->dimensions[d], row.place.at[d])) {
      if (description_->of(table_->title->id, node->label->id).role == Role::Method) {
        return node->label;
      }
    }
  }
  return nullptr;
}

RelatedRows::RelatedRows(const ImputedTable& from, const ImputedTable& to,
                         const Description& description)
    : dimension_(maxDimensions) {
  const auto [own, other] = commonDimension(from.table(), to.table());
  if (own == maxDimensions) {
    return;
  }
  dimension_ = own;
  const Likeness alike(to.table(), from.table(), description);
  const std::vector<Index> candidates = usedNodes(from, own);
  std::unordered_map<Index, std::vector<Index>> nodes;  // of `to`: those of `from`
  for (const Index node : usedNodes(to, other)) {
    const auto path = pathOf(to.table().dimensions[other], node);
    for (const Index candidate : candidates) {
      if (alike(path, pathOf(from.table().dimensions[own], candidate))) {
        nodes[node].push_back(candidate);
      }
    }
  }
  for (const ImputedRow& row : to.rows()) {
    for (const Index node : nodes[row.place.at[other]]) {
      rows_[{node, row.place.user}].push_back(&row);
    }
  }
}

std::vector<const ImputedRow*> RelatedRows::of(const ImputedRow& row) const {
  if (dimension_ == maxDimensions) {
    return {};
  }
  const auto found = rows_.find({row.place.at[dimension_], row.place.user});
  return found == rows_.end() ? std::vector<const ImputedRow*>() : found->second;
}

}  // namespace embedded::output
