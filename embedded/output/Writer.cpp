#include "embedded/output/Writer.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "embedded/output/Values.h"

namespace embedded::output {

namespace {

std::size_t mix(std::size_t seed, std::size_t value) {
  return (seed ^ value) * 0x9E3779B97F4A7C15ULL;
}

bool holds(const std::vector<TextPtr>& notes, const TextPtr& note) {
  return std::any_of(notes.begin(), notes.end(), [&](const TextPtr& n) { return *n == *note; });
}

// Marks the category and every group above it as having cells.
void markUsed(Dimension& dimension, Index node) {
  while (node != none && !dimension.nodes[node].hasCells) {
    dimension.nodes[node].hasCells = true;
    node = dimension.nodes[node].parent;
  }
}

State stateOf(double value) {
  if (isSystemMissing(value)) {
    return State::Missing;
  }
  return std::isnan(value) ? State::NotANumber : State::Valid;
}

}  // namespace

std::size_t Writer::PlaceHash::operator()(const Place& place) const noexcept {
  std::size_t hash = 0;
  for (const Index index : place) {
    hash = mix(hash, index);
  }
  return hash ^ (hash >> 32);
}

void Writer::beginSplit(Index split, bool separateTables) {
  split_ = split;
  separate_ = separateTables;
}

void Writer::release() {
  if (separate_) {
    document_->tables.clear();
    open_.clear();
    titles_.clear();
  }
  for (Table& table : document_->tables) {
    table.cells.clear();
  }
  for (Open& open : open_) {
    open.cells.clear();
  }
  cells_ = 0;
}

Index Writer::table(const TextPtr& title) {
  const Index owner = separate_ ? split_ : none;
  const std::size_t hash = mix(hashOf(*title), owner);
  const auto [begin, end] = titles_.equal_range(hash);
  for (auto it = begin; it != end; ++it) {
    const Table& table = document_->tables[it->second];
    if (table.split == owner && *table.title == *title) {
      open_[it->second].current = {};
      return it->second;
    }
  }
  Table table;
  table.title = title;
  table.split = owner;
  table.splitRows = split_ != none && !separate_;
  document_->tables.push_back(std::move(table));
  open_.emplace_back();
  const auto index = static_cast<Index>(document_->tables.size() - 1);
  titles_.emplace(hash, index);
  return index;
}

Index Writer::dimension(Index table, const TextPtr& label) {
  auto& dimensions = document_->tables[table].dimensions;
  for (Index i = 0; i < dimensions.size(); ++i) {
    if (*dimensions[i].label == *label) {
      return i;
    }
  }
  if (dimensions.size() == maxDimensions) {
    return static_cast<Index>(maxDimensions - 1);
  }
  Dimension dimension;
  dimension.label = label;
  dimension.nodes.push_back({.label = label, .isGroup = true, .children = {}, .footnotes = {}});
  dimensions.push_back(std::move(dimension));
  return static_cast<Index>(dimensions.size() - 1);
}

void Writer::position(Index table, Index dimension, Axis axis, int level, bool labelsInside,
                      bool hidden) {
  Dimension& target = document_->tables[table].dimensions[dimension];
  target.axis = axis;
  target.level = level;
  target.labelsInside = labelsInside;
  target.hidden = hidden;
}

Index Writer::node(Index table, Index dimension, Index parent, const TextPtr& label, bool isGroup) {
  auto& nodes = document_->tables[table].dimensions[dimension].nodes;
  auto& labels = open_[table].labels[dimension];
  const std::size_t hash = mix(hashOf(*label), parent * 2 + (isGroup ? 1 : 0));
  const auto [begin, end] = labels.equal_range(hash);
  for (auto it = begin; it != end; ++it) {
    const Node& node = nodes[it->second];
    if (node.parent == parent && node.isGroup == isGroup && *node.label == *label) {
      return it->second;
    }
  }
  const auto index = static_cast<Index>(nodes.size());
  nodes.push_back(
      {.label = label, .parent = parent, .isGroup = isGroup, .children = {}, .footnotes = {}});
  nodes[parent].children.push_back(index);
  labels.emplace(hash, index);
  return index;
}

void Writer::select(Index table, Index dimension, Index category) {
  open_[table].current[dimension] = category;
}

Cell& Writer::cellHere(Index index) {
  Table& table = document_->tables[index];
  Open& open = open_[index];
  if (open.split != split_) {
    open.cells.clear();
    open.split = split_;
  }
  const auto [found, isNew] =
      open.cells.try_emplace(open.current, static_cast<Index>(table.cells.size()));
  if (isNew) {
    Cell cell;
    cell.at = open.current;
    cell.split = separate_ ? none : split_;
    table.cells.push_back(cell);
    ++cells_;
    for (std::size_t d = 0; d < table.dimensions.size(); ++d) {
      markUsed(table.dimensions[d], open.current[d]);
    }
  }
  return table.cells[found->second];
}

void Writer::cell(Index table, double value, NumberFormat format) {
  Cell& cell = cellHere(table);
  cell.state = stateOf(value);
  cell.value = cell.state == State::Valid ? value : 0.0;
  cell.format = format;
}

Index Writer::noteList(Index index, std::vector<TextPtr> notes) {
  std::size_t hash = notes.size();
  for (const TextPtr& note : notes) {
    hash = mix(hash, hashOf(*note));
  }
  auto& lists = document_->tables[index].footnoteLists;
  const auto [begin, end] = open_[index].noteLists.equal_range(hash);
  for (auto it = begin; it != end; ++it) {
    const auto& known = lists[it->second];
    if (std::equal(known.begin(), known.end(), notes.begin(), notes.end(),
                   [](const TextPtr& a, const TextPtr& b) { return *a == *b; })) {
      return it->second;
    }
  }
  lists.push_back(std::move(notes));
  const auto list = static_cast<Index>(lists.size() - 1);
  open_[index].noteLists.emplace(hash, list);
  return list;
}

void Writer::cellNote(Index table, const TextPtr& note) {
  Cell& cell = cellHere(table);
  std::vector<TextPtr> notes;
  if (cell.footnotes != none) {
    notes = document_->tables[table].footnoteLists[cell.footnotes];
  }
  if (!holds(notes, note)) {
    notes.push_back(note);
    cell.footnotes = noteList(table, std::move(notes));
  }
}

void Writer::categoryNote(Index table, Index dimension, Index category, const TextPtr& note) {
  auto& notes = document_->tables[table].dimensions[dimension].nodes[category].footnotes;
  if (!holds(notes, note)) {
    notes.push_back(note);
  }
}

}  // namespace embedded::output
