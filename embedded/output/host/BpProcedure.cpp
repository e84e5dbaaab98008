// A procedure's output: where tables begin, and its notes and warnings.
#include "host/output/BpProcedure.h"

#include "embedded/output/host/PivotHandles.h"
#include "embedded/output/host/TextContent.h"
#include "embedded/session/Session.h"

using embedded::Session;
using embedded::output::textOf;

BpHeading::~BpHeading() = default;

BpPivotTable BpHeading::PivotTable(const BpCellText& title, const BpCellText& /*identity*/,
                                   bool /*shown*/) {
  return BpPivotTable(std::make_shared<BpPivotTable::Impl>(
      BpPivotTable::Impl{Session::current().writer.table(textOf(title))}));
}

// The output itself belongs to the session.
struct BpProcedure::Impl {};

BpProcedure::BpProcedure(const std::string& title, int /*kind*/) {
  Session::current().document.procedure = title;
}
BpProcedure::~BpProcedure() = default;

void BpProcedure::SplitChange() {
  Session::current().beginSplitGroup();
}

BpFormatSpec BpProcedure::Count() {
  return {BpFormatSpec::CountFormat};
}
BpFormatSpec BpProcedure::GeneralStat() {
  return {BpFormatSpec::GeneralStatFormat};
}
BpFormatSpec BpProcedure::SigDigit(double /*value*/) {
  return {BpFormatSpec::SigDigitFormat};
}

void BpError(const BpCellText& text, BpErrorShow show, BpErrorLevel level) {
  Session& session = Session::current();
  embedded::output::Message message;
  message.severity = embedded::output::Severity::Warning;
  message.text = textOf(text);
  message.show = static_cast<int>(show);
  message.level = static_cast<int>(level);
  message.split = session.currentSplit;
  session.document.messages.push_back(std::move(message));
}

void AddNotes(int kind, const BpCellText& label, const BpCellText& text) {
  Session& session = Session::current();
  session.accepted = true;
  session.document.notes.push_back({kind, textOf(label), textOf(text)});
}
