// Fills the document: opens tables, adds labels, writes cells where the current labels meet.
//
// Tables of one title are one table, equal labels within one parent are one category, a cell
// written twice keeps the last value, and equal footnotes on one target count once.
#pragma once

#include <array>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

#include "embedded/output/Document.h"

namespace embedded::output {

class Writer {
 public:
  explicit Writer(Document& document) : document_(&document) {}

  // From now on everything belongs to this split group. With `separateTables` each group has
  // tables of its own; otherwise the groups share tables, and cells carry their group.
  void beginSplit(Index split, bool separateTables);

  // How many cells the document holds that were written here.
  std::size_t cells() const { return cells_; }
  // Takes all cells out of the document, for somebody who has them already. Tables that split
  // groups share stay, without cells; those of single groups go, and their handles become void.
  void release();

  // Opens the table of this title, without current categories. Returns its handle.
  Index table(const TextPtr& title);
  // The dimension of this label in the table; made when it is new.
  Index dimension(Index table, const TextPtr& label);
  void position(Index table, Index dimension, Axis axis, int level, bool labelsInside, bool hidden);
  // The category or group of this label below `parent` (0: the dimension itself).
  Index node(Index table, Index dimension, Index parent, const TextPtr& label, bool isGroup);
  // Makes a category the current one of its dimension.
  void select(Index table, Index dimension, Index category);

  // Writes, or notes, the cell where the current categories of all dimensions meet.
  void cell(Index table, double value, NumberFormat format);
  void cellNote(Index table, const TextPtr& note);
  // Notes a category, and so all its cells.
  void categoryNote(Index table, Index dimension, Index category, const TextPtr& note);

 private:
  using Place = std::array<Index, maxDimensions>;
  struct PlaceHash {
    std::size_t operator()(const Place& place) const noexcept;
  };
  // What the writer knows of a table besides what the document holds.
  struct Open {
    Place current{};
    std::unordered_map<Place, Index, PlaceHash> cells;  // of the current split group
    Index split = none;                                 // whose cells these are
    std::array<std::unordered_multimap<std::size_t, Index>, maxDimensions> labels;
    std::unordered_multimap<std::size_t, Index> noteLists;
  };

  Cell& cellHere(Index table);
  Index noteList(Index table, std::vector<TextPtr> notes);

  Document* document_;
  std::vector<Open> open_;
  std::unordered_multimap<std::size_t, Index> titles_;
  std::size_t cells_ = 0;
  Index split_ = none;
  bool separate_ = false;
};

}  // namespace embedded::output
