// Pivot tables: dimensions of nested groups and categories, and cells where they meet.
//
// The objects here are handles: light to copy, valid until the host's output of the run is
// closed; releasing one closes nothing. Tables of the same title within a run are one pivot
// table: opening a title again adds to it, starting with no current categories. (With split
// groups that have tables of their own, each group begins anew.)
#pragma once

#include <memory>

#include "host/Api.h"
#include "host/output/BpCellText.h"

// A leaf of a dimension.
class HOST_API BpCategory {
 public:
  // Writes the cell where the current categories of all dimensions meet; a second write
  // replaces the first. [during run]
  void Cell(const BpNumber& number);
  // Attaches a footnote to the cell where the current categories meet. [during run]
  void CellNote(const BpAnnotation& note);
  // Attaches a footnote to this category itself, and so to all its cells. [during run]
  void Note(const BpAnnotation& note);

  struct Impl;
  explicit BpCategory(std::shared_ptr<Impl> impl) : impl_(std::move(impl)) {}

 private:
  std::shared_ptr<Impl> impl_;
};

// A node that holds categories and groups. Labels are equal when their identifiers and
// arguments are; adding a label that is there already gives the node that is there.
class HOST_API BpGroup {
 public:
  enum Sort { SortAscending = 0, SortDescending = 1, SortAsAdded = 2 };

  // Adds a category and makes it the current one of its dimension. [during run]
  BpCategory Category(const BpCellText& label);
  // Adds a group; `shown` says whether its label is printed. [during run]
  BpGroup Group(const BpCellText& label, bool shown, Sort sort);

  struct Impl;
  explicit BpGroup(std::shared_ptr<Impl> impl) : impl_(std::move(impl)) {}

 protected:
  std::shared_ptr<Impl> impl_;
};

class HOST_API BpDimension : public BpGroup {
 public:
  enum Place { Rows = 0, Columns = 1, Layers = 2 };

  // Where the dimension stands: its place, and its level there, 1 outermost. `labelsInside` is
  // true when the dimension's own name need not be printed beside its labels; `hidden` when the
  // whole dimension is not to be shown. Called once, right after the dimension was made.
  // [during run]
  void Position(Place place, int level, bool labelsInside, bool hidden);

  using BpGroup::BpGroup;
};

class HOST_API BpPivotTable {
 public:
  // Adds a dimension; with a label that is there already, gives that one. [during run]
  BpDimension Dimension(const BpCellText& label, BpGroup::Sort sort);

  struct Impl;
  explicit BpPivotTable(std::shared_ptr<Impl> impl) : impl_(std::move(impl)) {}

 private:
  std::shared_ptr<Impl> impl_;
};
