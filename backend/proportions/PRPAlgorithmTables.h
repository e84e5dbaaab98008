// What the result tables share: how a table is opened, how cells are written and footnoted, and the
// rows of interval and test tables.
//
// Texts that every row repeats are made once for a table.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "host/output/BpCellText.h"
#include "host/output/BpPivotTable.h"
#include "host/output/BpProcedure.h"
#include "statistics/MethodRow.h"
#include "statistics/Results.h"

// A text that the host may look up and translate, like every text of this module.
inline BpString PRPText(std::string_view text) {
  return {text, true};
}

// A table with its dimensions, while it is written.
class PRPResultTable {
 public:
  // Opens the table: `rows` labels its first row dimension (null: it has none); "Variables" and
  // "Statistics" follow. Statistics that are missing get the footnote `missingNote`.
  PRPResultTable(BpProcedure& output, std::string_view title, const BpCellText* rows,
                 std::string_view missingNote);

  // Only of a table that has a first row dimension.
  BpDimension& Rows() { return *fRows; }
  BpDimension& Variables() { return fVariables; }
  BpDimension& Statistics() { return fStatistics; }

  BpGroup Group(const BpCellText& label) {
    return fStatistics.Group(label, true, BpGroup::SortAsAdded);
  }
  // Each adds the category `label` and writes its cell: a count, a statistic, a statistic that
  // is footnoted when it is missing.
  void AddCount(BpGroup& parent, const BpCellText& label, double count) const;
  BpCategory AddStat(BpGroup& parent, const BpCellText& label, double value) const;
  void AddNotedStat(BpGroup& parent, const BpCellText& label, double value);

 private:
  std::unique_ptr<BpDimension> MakeRows(const BpCellText* rows);
  BpDimension MakeDimension(std::string_view label, BpDimension::Place place, int level);

  BpPivotTable fTable;
  std::unique_ptr<BpDimension> fRows;
  BpDimension fVariables;
  BpDimension fStatistics;
  BpFormatSpec fCountFormat;
  BpFormatSpec fStatFormat;
  std::string_view fMissingText;
  // Made when the first statistic is missing.
  std::optional<BpAnnotation> fMissingNote;
};

// The columns of an interval: "Lower" and "Upper" under the level.
class PRPIntervalColumns {
 public:
  // `levelTemplate` labels the group, with the level in percent as ^1.
  PRPIntervalColumns(std::string_view levelTemplate, double levelPct);
  void Write(PRPResultTable& table, const statistics::Interval& interval) const;

 private:
  BpComposite fLevel;
  BpString fLower = PRPText("Lower");
  BpString fUpper = PRPText("Upper");
};

// The columns of a test: "Z", and both p-values under "Significance".
class PRPTestColumns {
 public:
  // The category "Z" stays without a cell in a test that has no statistic.
  void Write(PRPResultTable& table, const statistics::TestResult& result,
             bool showsStatistic) const;

 private:
  BpString fZ = PRPText("Z");
  BpString fSignificance = PRPText("Significance");
  BpString fOneSided = PRPText("One-Sided p");
  BpString fTwoSided = PRPText("Two-Sided p");
};

// The columns of an estimated difference and its standard error, in tables of two samples.
class PRPDifferenceColumns {
 public:
  void Write(PRPResultTable& table, double difference, double error) const;

 private:
  BpString fDifference = PRPText("Difference in Proportions");
  BpString fError = PRPText("Asymptotic Standard Error");
};

// Adds a row for each method that is flagged, in the order of the table of methods: its label, the
// columns that `leading` writes, then those that `result` writes for the method.
template <class Method, std::size_t Size, class Leading, class Result>
void PRPAddRows(PRPResultTable& table, const std::array<Method, Size>& methods,
                const std::vector<bool>& flags, Leading leading, Result result) {
  for (std::size_t slot = 0; slot < Size && slot < flags.size(); ++slot) {
    if (!flags[slot]) continue;
    table.Rows().Category(PRPText(methods[slot].label));
    leading();
    result(methods[slot]);
  }
}

// The rows of an interval table.
template <class Method, std::size_t Size, class Counts, class Leading>
void PRPAddIntervalRows(PRPResultTable& table, const PRPIntervalColumns& columns,
                        const std::array<Method, Size>& methods, const std::vector<bool>& flags,
                        const Counts& counts, const statistics::CriticalValues& critical,
                        Leading leading) {
  PRPAddRows(table, methods, flags, leading,
             [&](const Method& method) { columns.Write(table, method.compute(counts, critical)); });
}

// The rows of a table of tests.
template <class Method, std::size_t Size, class Counts, class Leading>
void PRPAddTestRows(PRPResultTable& table, const std::array<Method, Size>& methods,
                    const std::vector<bool>& flags, const Counts& counts, Leading leading) {
  const PRPTestColumns columns;
  PRPAddRows(table, methods, flags, leading, [&](const Method& method) {
    columns.Write(table, method.compute(counts), method.showsStatistic);
  });
}
