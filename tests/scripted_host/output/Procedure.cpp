// The procedure's output object, its notes and its warnings.
#include "host/output/BpProcedure.h"
#include "scripted_host/output/Pivot.h"
#include "scripted_host/output/Text.h"
#include "scripted_host/session/Session.h"

using scripted::Phase;
using scripted::session;

struct BpProcedure::Impl {};

BpHeading::~BpHeading() = default;

BpProcedure::BpProcedure(const std::string& title, int kind) {
  session().enter("BpProcedure", {title, std::to_string(kind)});
  session().created("BpProcedure");
}

BpProcedure::~BpProcedure() {
  session().leave("BpProcedure");
  session().destroyed("BpProcedure");
}

void BpProcedure::SplitChange() {
  session().enter("BpProcedure::SplitChange");
  session().expect(session().onCase, "a split group begins with a case that was read");
  session().expect(!session().script.data.splits.empty(), "a split group begins in split data");
  session().onSplitGroup = true;
  session().splitRow = session().row;
  session().event("splitchange", std::to_string(session().group));
}

BpFormatSpec BpProcedure::Count() {
  return {BpFormatSpec::CountFormat};
}
BpFormatSpec BpProcedure::GeneralStat() {
  return {BpFormatSpec::GeneralStatFormat};
}
BpFormatSpec BpProcedure::SigDigit(double) {
  return {BpFormatSpec::SigDigitFormat};
}

BpPivotTable BpHeading::PivotTable(const BpCellText& title, const BpCellText& identity,
                                   bool shown) {
  session().enter("BpHeading::PivotTable", {title.Replicate()->text});
  session().expectPhase(Phase::DuringRun, "PivotTable");
  session().event("table", std::to_string(session().log.tables.size()));
  auto table = std::make_shared<scripted::Table>();
  table->title = title.Replicate();
  table->identity = identity.Replicate();
  table->shown = shown;
  table->group = session().group;
  session().log.tables.push_back(table);
  return BpPivotTable(std::make_shared<BpPivotTable::Impl>(std::move(table)));
}

void BpError(const BpCellText& text, BpErrorShow show, BpErrorLevel level) {
  const BpTextHandle handle = text.Replicate();
  session().enter("BpError", {handle->text});
  session().expectPhase(Phase::DuringRun, "BpError");
  session().event("warning", handle->text);
  session().log.warnings.push_back({handle, show, level, session().group});
}

void AddNotes(int kind, const BpCellText& label, const BpCellText& text) {
  session().enter("AddNotes", {label.Replicate()->text});
  session().expectPhase(Phase::AfterParse, "AddNotes");
  session().event("note", label.Replicate()->text);
  session().log.notes.push_back({kind, label.Replicate(), text.Replicate()});
}
