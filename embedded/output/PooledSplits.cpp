#include "embedded/output/PooledSplits.h"

#include <cmath>
#include <unordered_map>

#include "embedded/output/Values.h"

namespace embedded::output {

namespace {

std::int64_t numberOf(const Text& value) {
  const auto* number = std::get_if<double>(&value.value);
  return number == nullptr || isSystemMissing(*number)
             ? -1
             : static_cast<std::int64_t>(std::floor(*number + 0.5));
}

}  // namespace

PooledSplits readPooledSplits(const Document& document) {
  PooledSplits pooled;
  std::unordered_multimap<std::size_t, Index> known;
  for (const SplitGroup& group : document.splits) {
    pooled.number.push_back(numberOf(*group.values.front()));
    if (group.values.size() == 1) {
      pooled.user.push_back(none);
      continue;
    }
    SplitGroup user{{group.values.begin() + 1, group.values.end()}};
    std::size_t hash = 0;
    for (const TextPtr& value : user.values) {
      hash = hash * 31 + hashOf(*value);
    }
    Index found = none;
    const auto [begin, end] = known.equal_range(hash);
    for (auto it = begin; it != end && found == none; ++it) {
      const auto& values = pooled.userGroups[it->second].values;
      bool same = true;
      for (std::size_t i = 0; i < values.size(); ++i) {
        same = same && *values[i] == *user.values[i];
      }
      found = same ? it->second : none;
    }
    if (found == none) {
      found = static_cast<Index>(pooled.userGroups.size());
      pooled.userGroups.push_back(std::move(user));
      known.emplace(hash, found);
    }
    pooled.user.push_back(found);
  }
  return pooled;
}

std::size_t PlaceKeyHash::operator()(const PlaceKey& key) const noexcept {
  std::size_t hash = key.user;
  for (const Index index : key.at) {
    hash = (hash ^ index) * 0x9E3779B97F4A7C15ULL;
  }
  return hash ^ (hash >> 32);
}

Index statisticsDimension(const Table& table) {
  for (std::size_t d = table.dimensions.size(); d-- > 0;) {
    if (table.dimensions[d].axis == Axis::Column) {
      return static_cast<Index>(d);
    }
  }
  return none;
}

std::vector<Meaning> meaningsOf(const Table& table, const Description& description) {
  std::vector<Meaning> meanings;
  if (const Index d = statisticsDimension(table); d != none) {
    for (const Node& node : table.dimensions[d].nodes) {
      meanings.push_back(description.of(table.title->id, node.label->id));
    }
  }
  return meanings;
}

Index childNode(Dimension& dimension, Index parent, const TextPtr& label, bool isGroup) {
  for (const Index child : dimension.nodes[parent].children) {
    if (*dimension.nodes[child].label == *label) {
      return child;
    }
  }
  const auto index = static_cast<Index>(dimension.nodes.size());
  dimension.nodes.push_back(
      {.label = label, .parent = parent, .isGroup = isGroup, .children = {}, .footnotes = {}});
  dimension.nodes[parent].children.push_back(index);
  return index;
}

Index footnoteList(Table& table, TextPtr text) {
  for (Index i = 0; i < table.footnoteLists.size(); ++i) {
    if (table.footnoteLists[i].size() == 1 && *table.footnoteLists[i].front() == *text) {
      return i;
    }
  }
  table.footnoteLists.push_back({std::move(text)});
  return static_cast<Index>(table.footnoteLists.size() - 1);
}

void markCells(Table& table) {
  for (std::size_t d = 0; d < table.dimensions.size(); ++d) {
    auto& nodes = table.dimensions[d].nodes;
    for (Node& node : nodes) {
      node.hasCells = false;
    }
    for (const Cell& cell : table.cells) {
      for (Index node = cell.at[d]; node != none && !nodes[node].hasCells;
           node = nodes[node].parent) {
        nodes[node].hasCells = true;
      }
    }
  }
}

}  // namespace embedded::output
