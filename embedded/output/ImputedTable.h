// A table of a run over imputations, sorted by what all imputations say in the same row.
#pragma once

#include <string_view>
#include <unordered_map>
#include <vector>

#include "embedded/output/PooledSplits.h"

namespace embedded::output {

// For each split group, the place of its imputation among the imputations; negative for the
// original data.
struct ImputationOrder {
  std::vector<int> ofSplit;
  int imputations = 0;

  explicit ImputationOrder(const PooledSplits& splits);
};

// One row of a table in one split group of the user's.
struct ImputedRow {
  PlaceKey place;  // the statistics dimension counts as 0
  // By imputation: its cells as they were written. They are the table's.
  std::vector<std::vector<const Cell*>> cells;
};

class ImputedTable {
 public:
  // Refers to all of them; the table's cells must stay as they are.
  ImputedTable(const Table& table, const Description& description, const PooledSplits& splits,
               const ImputationOrder& order);

  const Table& table() const { return *table_; }
  const TableMeaning& meaning() const { return *meaning_; }
  Index statistics() const { return statistics_; }
  const Meaning& meaningOf(Index column) const { return columns_[column]; }
  // In the order in which they were first written.
  const std::vector<ImputedRow>& rows() const { return rows_; }

  // The columns that hold something in a row, as first written.
  std::vector<Index> columnsOf(const ImputedRow& row) const;
  // The row's column of this label, or of this role; `none` when it has none.
  Index columnOf(const ImputedRow& row, std::string_view label) const;
  Index columnOf(const ImputedRow& row, Role role) const;
  // By imputation: the cell in a column; null where there is none.
  std::vector<const Cell*> cellsOf(const ImputedRow& row, Index column) const;
  // The numbers in a column, one for each imputation; fewer where some have none.
  std::vector<double> valuesOf(const ImputedRow& row, Index column) const;
  // The label of the row's way of computing; null where rows are none.
  TextPtr methodOf(const ImputedRow& row) const;

 private:
  const Table* table_;
  const Description* description_;
  const TableMeaning* meaning_;
  Index statistics_;
  std::vector<Meaning> columns_;
  std::vector<ImputedRow> rows_;
};

// Finds, for rows of one table, the rows of another that are about the same thing: whose category
// in a dimension that both have carries the same label, or compares under the same number.
class RelatedRows {
 public:
  RelatedRows(const ImputedTable& from, const ImputedTable& to, const Description& description);

  // The related rows in the same split group, in their order.
  std::vector<const ImputedRow*> of(const ImputedRow& row) const;

 private:
  struct Key {
    Index node;
    Index user;
    friend bool operator==(const Key&, const Key&) = default;
  };
  struct KeyHash {
    std::size_t operator()(const Key& key) const noexcept {
      return (std::size_t{key.node} << 32U) ^ key.user;
    }
  };

  std::size_t dimension_;
  std::unordered_map<Key, std::vector<const ImputedRow*>, KeyHash> rows_;
};

}  // namespace embedded::output
