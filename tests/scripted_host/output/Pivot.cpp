// Pivot tables: every opening is a table of its own in the log, nothing is merged.
#include "scripted_host/output/Pivot.h"

#include <algorithm>

#include "host/output/BpPivotTable.h"
#include "scripted_host/output/Text.h"
#include "scripted_host/session/Session.h"

using scripted::Entry;
using scripted::Path;
using scripted::session;

struct BpGroup::Impl {
  std::shared_ptr<scripted::Table> table;
  std::size_t dimension;
  Path path;

  scripted::Dimension& node() const { return table->dimensions[dimension]; }
};

struct BpCategory::Impl {
  std::shared_ptr<scripted::Table> table;
  std::size_t entry;
  std::size_t dimension;
  Path path;

  Entry& node() const { return table->entries[entry]; }
};

namespace {

Path below(const Path& parent, const BpCellText& label) {
  Path path = parent;
  path.push_back(label.Replicate());
  return path;
}

bool positioned(const scripted::Table& table) {
  return std::ranges::all_of(table.dimensions, &scripted::Dimension::positioned);
}

}  // namespace

BpDimension BpPivotTable::Dimension(const BpCellText& label, BpGroup::Sort sort) {
  session().enter("BpPivotTable::Dimension", {label.Replicate()->text});
  session().expect(positioned(*impl_->table), "a dimension is placed right after it was made");
  impl_->table->dimensions.push_back({.label = label.Replicate(), .sort = sort});
  const std::size_t number = impl_->table->dimensions.size() - 1;
  return BpDimension(std::make_shared<BpGroup::Impl>(impl_->table, number, Path()));
}

void BpDimension::Position(Place place, int level, bool labelsInside, bool hidden) {
  session().enter("BpDimension::Position");
  scripted::Dimension& dimension = impl_->node();
  session().expect(!dimension.positioned, "a dimension is placed once");
  dimension.positioned = true;
  dimension.place = place;
  dimension.level = level;
  dimension.labelsInside = labelsInside;
  dimension.hidden = hidden;
}

BpGroup BpGroup::Group(const BpCellText& label, bool shown, Sort sort) {
  session().enter("BpGroup::Group", {label.Replicate()->text});
  session().expect(shown && sort == SortAsAdded, "groups are shown, in the order of adding");
  return BpGroup(std::make_shared<Impl>(impl_->table, impl_->dimension, below(impl_->path, label)));
}

BpCategory BpGroup::Category(const BpCellText& label) {
  session().enter("BpGroup::Category", {label.Replicate()->text});
  session().expect(positioned(*impl_->table), "categories are added to placed dimensions");
  scripted::Dimension& dimension = impl_->node();
  const Path path = below(impl_->path, label);
  dimension.added.push_back(path);
  dimension.current = path;
  Entry entry{.dimension = impl_->dimension, .current = {}, .cell = {}, .categoryNotes = {}};
  for (const scripted::Dimension& other : impl_->table->dimensions)
    entry.current.push_back(other.current);
  impl_->table->entries.push_back(std::move(entry));
  const std::size_t number = impl_->table->entries.size() - 1;
  return BpCategory(
      std::make_shared<BpCategory::Impl>(impl_->table, number, impl_->dimension, path));
}

void BpCategory::Cell(const BpNumber& number) {
  session().enter("BpCategory::Cell");
  const auto& dimensions = impl_->table->dimensions;
  session().expect(dimensions[impl_->dimension].current == impl_->path,
                   "a cell is written through the current category");
  session().expect(
      std::ranges::all_of(dimensions, [](const auto& other) { return other.current.has_value(); }),
      "a cell is written where all dimensions have a current category");
  impl_->node().cell = {number.value(), number.format(), {}};
}

void BpCategory::CellNote(const BpAnnotation& note) {
  session().enter("BpCategory::CellNote", {note.text->text});
  session().expect(impl_->node().cell.has_value(), "a footnote is attached to a written cell");
  session().expect(note.reference == -1 && note.flags == 0, "a footnote's fixed fields");
  if (impl_->node().cell) impl_->node().cell->notes.push_back(note);
}

void BpCategory::Note(const BpAnnotation& note) {
  session().enter("BpCategory::Note", {note.text->text});
  session().expect(note.reference == -1 && note.flags == 0, "a footnote's fixed fields");
  impl_->node().categoryNotes.push_back(note);
}
