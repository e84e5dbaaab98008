// The outermost split variable of a run over samples or imputations, told apart from the user's
// own.
#pragma once

#include <cstdint>
#include <vector>

#include "embedded/output/Description.h"
#include "embedded/output/Document.h"

namespace embedded::output {

// For each split group of a document: the number of its sample or imputation, and the user's
// group that it belongs to (`none` without split variables of the user's).
struct PooledSplits {
  std::vector<std::int64_t> number;
  std::vector<Index> user;
  std::vector<SplitGroup> userGroups;  // in the order of the data
};

PooledSplits readPooledSplits(const Document& document);

// Where a statistic stands: a cell's place and the user's split group.
struct PlaceKey {
  std::array<Index, maxDimensions> at{};
  Index user = none;
  friend bool operator==(const PlaceKey&, const PlaceKey&) = default;
};
struct PlaceKeyHash {
  std::size_t operator()(const PlaceKey& key) const noexcept;
};

// The column dimension of a table (its last one on that axis), or `none`.
Index statisticsDimension(const Table& table);

// The meaning of each node of a table's statistics dimension.
std::vector<Meaning> meaningsOf(const Table& table, const Description& description);

// The category of this label below `parent` of a dimension, made when it is new.
Index childNode(Dimension& dimension, Index parent, const TextPtr& label, bool isGroup);

// The footnote list of a table that holds this text alone, made when it is new.
Index footnoteList(Table& table, TextPtr text);

// Marks categories and groups that have cells anew.
void markCells(Table& table);

}  // namespace embedded::output
