// The output: texts that outlive what they were made from, and a table written cell by cell.
#include "conformance/Checks.h"
#include "conformance/Parsed.h"
#include "host/output/BpPivotTable.h"
#include "host/output/BpProcedure.h"

namespace conformance {

namespace {

void checkTextHandles(const Parsed& parsed, Report& report) {
  BpTextHandle kept;
  {
    const std::string identifier = "Proportion";
    kept = BpString(identifier, true).Replicate();
  }
  report.expect(kept != nullptr, "BpCellText::Replicate: a lasting copy of the text");
  BpComposite composite("^1 = [%1:, ^1:]2", true);
  composite.Add(BpVariable(*parsed.source.GetVariable(0), BpVariable::ShowAsPreferred));
  composite.Sublist();
  composite.Add(BpNumber(1, BpProcedure::GeneralStat()));
  composite.Add(BpDataValue(*parsed.source.GetVariable(1), "beta", BpDataValue::LabelAsPreferred));
  composite.EndSublist();
  composite.Finish();
  report.expect(composite.Replicate() != nullptr,
                "BpComposite::Replicate: a lasting copy of the text and its arguments");
}

void writeTable(BpProcedure& output) {
  BpPivotTable table =
      output.PivotTable(BpString("Host check", true), BpString("Host check", true), true);
  BpDimension rows = table.Dimension(BpString("Rows", true), BpGroup::SortAsAdded);
  rows.Position(BpDimension::Rows, 1, false, false);
  BpDimension columns = table.Dimension(BpString("Statistics", true), BpGroup::SortAsAdded);
  columns.Position(BpDimension::Columns, 1, true, false);
  rows.Category(BpString("first", false));
  BpGroup group = columns.Group(BpString("Observed", true), true, BpGroup::SortAsAdded);
  BpCategory cell = group.Category(BpString("Count", true));
  cell.Cell(BpNumber(3, BpProcedure::Count()));
  cell.CellNote({BpString("a note", true).Replicate()});
  cell.Note({BpString("another", true).Replicate()});
}

}  // namespace

void checkOutput(Host& host, Report& report) {
  runChecked(host, plainCommand, report, "output: does not throw", [&] {
    BpProcedure output("Host check", 10);
    const Parsed parsed;
    if (!parsed.accepted) return;
    AddNotes(4, BpString("Cases Used", true), BpString("all", true));
    VarSpecObj validator(parsed.source, "LIST", "");
    parsed.accept(validator);
    checkTextHandles(parsed, report);
    writeTable(output);
    BpError(BpString("a warning", true), BpErrorShowOutput, BpErrorWarning);
  });
}

}  // namespace conformance
