// Opening tables, writing cells, footnotes of missing statistics.
#include "PRPAlgorithmTables.h"

#include "host/distributions/MCMV.h"

PRPResultTable::PRPResultTable(BpProcedure& output, std::string_view title, const BpCellText* rows,
                               std::string_view missingNote)
    : fTable(output.PivotTable(PRPText(title), PRPText(title), true)),
      fRows(MakeRows(rows)),
      fVariables(MakeDimension("Variables", BpDimension::Rows, fRows != nullptr ? 2 : 1)),
      fStatistics(MakeDimension("Statistics", BpDimension::Columns, 1)),
      fCountFormat(BpProcedure::Count()),
      fStatFormat(BpProcedure::GeneralStat()),
      fMissingText(missingNote) {}

std::unique_ptr<BpDimension> PRPResultTable::MakeRows(const BpCellText* rows) {
  if (rows == nullptr) return nullptr;
  auto dimension = std::make_unique<BpDimension>(fTable.Dimension(*rows, BpGroup::SortAsAdded));
  dimension->Position(BpDimension::Rows, 1, false, false);
  return dimension;
}

BpDimension PRPResultTable::MakeDimension(std::string_view label, BpDimension::Place place,
                                          int level) {
  BpDimension dimension = fTable.Dimension(PRPText(label), BpGroup::SortAsAdded);
  dimension.Position(place, level, true, false);
  return dimension;
}

void PRPResultTable::AddCount(BpGroup& parent, const BpCellText& label, double count) const {
  parent.Category(label).Cell(BpNumber(count, fCountFormat));
}

BpCategory PRPResultTable::AddStat(BpGroup& parent, const BpCellText& label, double value) const {
  BpCategory category = parent.Category(label);
  category.Cell(BpNumber(value, fStatFormat));
  return category;
}

void PRPResultTable::AddNotedStat(BpGroup& parent, const BpCellText& label, double value) {
  BpCategory category = AddStat(parent, label, value);
  if (value != MCMV::Missing) return;
  if (!fMissingNote) fMissingNote = BpAnnotation{PRPText(fMissingText).Replicate(), -1, 0};
  category.CellNote(*fMissingNote);
}

PRPIntervalColumns::PRPIntervalColumns(std::string_view levelTemplate, double levelPct)
    : fLevel(levelTemplate, true) {
  fLevel.Add(BpNumber(levelPct, BpProcedure::SigDigit(levelPct)));
  fLevel.Finish();
}

void PRPIntervalColumns::Write(PRPResultTable& table, const statistics::Interval& interval) const {
  BpGroup level = table.Group(fLevel);
  table.AddNotedStat(level, fLower, interval.lower);
  table.AddNotedStat(level, fUpper, interval.upper);
}

void PRPTestColumns::Write(PRPResultTable& table, const statistics::TestResult& result,
                           bool showsStatistic) const {
  if (showsStatistic)
    table.AddNotedStat(table.Statistics(), fZ, result.statistic);
  else
    table.Statistics().Category(fZ);
  BpGroup significance = table.Group(fSignificance);
  table.AddNotedStat(significance, fOneSided, result.oneSided);
  table.AddNotedStat(significance, fTwoSided, result.twoSided);
}

void PRPDifferenceColumns::Write(PRPResultTable& table, double difference, double error) const {
  table.AddStat(table.Statistics(), fDifference, difference);
  table.AddStat(table.Statistics(), fError, error);
}
