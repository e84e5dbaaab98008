// Handles of the host interface onto the tables that the session's writer fills.
#include "host/output/BpPivotTable.h"

#include "embedded/output/host/PivotHandles.h"
#include "embedded/output/host/TextContent.h"
#include "embedded/session/Session.h"

using embedded::output::Axis;
using embedded::output::Index;
using embedded::output::textOf;
using embedded::output::Writer;

namespace {

Writer& writer() {
  return embedded::Session::current().writer;
}

}  // namespace

void BpCategory::Cell(const BpNumber& number) {
  writer().select(impl_->table, impl_->dimension, impl_->node);
  writer().cell(impl_->table, number.value(), embedded::output::formatOf(number.format()));
}

void BpCategory::CellNote(const BpAnnotation& note) {
  writer().select(impl_->table, impl_->dimension, impl_->node);
  writer().cellNote(impl_->table, note.text->text);
}

void BpCategory::Note(const BpAnnotation& note) {
  writer().categoryNote(impl_->table, impl_->dimension, impl_->node, note.text->text);
}

BpCategory BpGroup::Category(const BpCellText& label) {
  const Index node =
      writer().node(impl_->table, impl_->dimension, impl_->node, textOf(label), false);
  writer().select(impl_->table, impl_->dimension, node);
  return BpCategory(
      std::make_shared<BpCategory::Impl>(BpCategory::Impl{impl_->table, impl_->dimension, node}));
}

BpGroup BpGroup::Group(const BpCellText& label, bool /*shown*/, Sort /*sort*/) {
  const Index node =
      writer().node(impl_->table, impl_->dimension, impl_->node, textOf(label), true);
  return BpGroup(std::make_shared<Impl>(Impl{impl_->table, impl_->dimension, node}));
}

void BpDimension::Position(Place place, int level, bool labelsInside, bool hidden) {
  const Axis axis = place == Rows ? Axis::Row : place == Columns ? Axis::Column : Axis::Layer;
  writer().position(impl_->table, impl_->dimension, axis, level, labelsInside, hidden);
}

BpDimension BpPivotTable::Dimension(const BpCellText& label, BpGroup::Sort /*sort*/) {
  const Index dimension = writer().dimension(impl_->table, textOf(label));
  return BpDimension(std::make_shared<BpGroup::Impl>(BpGroup::Impl{impl_->table, dimension, 0}));
}
