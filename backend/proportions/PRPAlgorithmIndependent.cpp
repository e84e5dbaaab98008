// Independent samples: counts of both groups, estimates, and the tables of group statistics,
// intervals and tests of each test variable.
#include "PRPAlgorithm.h"
#include "PRPAssert.h"
#include "statistics/IndependentMethods.h"

namespace {

constexpr std::string_view MissingNote = "Stat miss not enough cases group ...";

// The columns of one group in the group statistics table.
class GroupColumns {
 public:
  void Write(PRPResultTable& table, double successes, double trials, double proportion,
             double error) const {
    table.AddCount(table.Statistics(), fSuccesses, successes);
    table.AddCount(table.Statistics(), fTrials, trials);
    table.AddStat(table.Statistics(), fProportion, proportion);
    table.AddStat(table.Statistics(), fError, error);
  }

 private:
  BpString fSuccesses = PRPText("Successes");
  BpString fTrials = PRPText("Trials");
  BpString fProportion = PRPText("Proportion");
  BpString fError = PRPText("Asymptotic Standard Error");
};

}  // namespace

bool PRPAlgorithm::ComputeIndependentSamples(ProcDSIterator& iterator) {
  StartComputation();
  const bool anyCases = TallyIndependentSamples(iterator);
  const bool anyGood = EstimateAll(fvPropZIndSamp);
  if (!anyCases || !anyGood)
    return StopWithoutData("Not enough valid cases group ...",
                           "Not enough valid cases group for split [%1 = %2:,^1 = ^2:]1 ...");
  for (const PropZIndSamp& record : fvPropZIndSamp) {
    if (!record._bGoodData)
      WarnVariable(record._varInd, "Not enough valid cases var ^1 group ...",
                   "Not enough valid cases var ^1 group for split [%1 = %2:,^1 = ^2:]2 ...");
    AddIndGroupStatsTable(record);
    AddIndCITable(record);
    AddIndTestsTable(record);
  }
  return true;
}

bool PRPAlgorithm::TallyIndependentSamples(ProcDSIterator& iterator) {
  bool anyCases = false;
  TallyCases(iterator, [&](const Codes& codes, const Codes&, std::int32_t group, double weight) {
    anyCases |= group == 0 || group == 1;
    for (PropZIndSamp& record : fvPropZIndSamp)
      record.Count(group, codes[static_cast<std::size_t>(record._varInd)], weight);
  });
  return anyCases;
}

void PRPAlgorithm::AddIndGroupStatsTable(const PropZIndSamp& record) const {
  PRP_ASSERT(fGroupVarInd >= 0, "fGroupVarInd >= 0", "PRPAlgorithm");
  PRP_ASSERT(fpVarGroupInfo != nullptr, "fpVarGroupInfo != 0", "PRPAlgorithm");
  const BpVariable rows(GetVariable(fGroupVarInd), BpVariable::ShowAsPreferred);
  PRPResultTable table(*fpProcedure, "Independent-Samples Proportions Group Statistics", &rows,
                       MissingNote);
  AddVariable(GetTestVar(PRPAggregation::List1, record._varInd), table.Variables());
  if (!record._bGoodData) return;

  const GroupColumns columns;
  AddMidpointSelectCategories(table.Rows());
  const auto addGroup = [&](int binCateg) {
    const auto pSelectCellText = MakeSelectCellText(binCateg);
    PRP_ASSERT(pSelectCellText != nullptr, "pSelectCellText != 0", "PRPAlgorithm");
    table.Rows().Category(*pSelectCellText);
  };
  addGroup(0);
  columns.Write(table, record._nSucc1, record._nTrials1, record._prop1, record._ase1);
  addGroup(1);
  columns.Write(table, record._nSucc2, record._nTrials2, record._prop2, record._ase2);
}

void PRPAlgorithm::AddIndCITable(const PropZIndSamp& record) const {
  const BpString rows = PRPText("Interval Type");
  PRPResultTable table(*fpProcedure, "Independent-Samples Proportions Confidence Intervals", &rows,
                       MissingNote);
  AddVariable(GetTestVar(PRPAggregation::List1, record._varInd), table.Variables());
  if (!record._bGoodData) return;

  const PRPDifferenceColumns difference;
  const PRPIntervalColumns columns("^1% Confidence Interval of the Difference", fCILevelPct);
  PRPAddIntervalRows(table, columns, statistics::independentIntervals, fvbCITypes, record.Counts(),
                     fCritical,
                     [&] { difference.Write(table, record._estDiff, record._aseDiff1); });
}

void PRPAlgorithm::AddIndTestsTable(const PropZIndSamp& record) const {
  const BpString rows = PRPText("Test Type");
  PRPResultTable table(*fpProcedure, "Independent-Samples Proportions Tests", &rows, MissingNote);
  AddVariable(GetTestVar(PRPAggregation::List1, record._varInd), table.Variables());
  if (!record._bGoodData) return;

  const PRPDifferenceColumns difference;
  PRPAddTestRows(table, statistics::independentTests, fvbTestTypes, record.Counts(),
                 [&] { difference.Write(table, record._estDiff, record._aseDiff1); });
}
