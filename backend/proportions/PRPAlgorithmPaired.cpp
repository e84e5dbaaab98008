// Paired samples: counts, estimates, and the tables of statistics, intervals and tests of each
// pair.
#include "PRPAlgorithm.h"
#include "statistics/PairedMethods.h"

namespace {

constexpr std::string_view MissingNote = "Stat miss not enough cases ...";

// The columns of one measurement in the statistics table.
class MeasurementColumns {
 public:
  void Write(PRPResultTable& table, double successes, double trials, double proportion,
             double error) const {
    table.AddCount(table.Statistics(), fSuccesses, successes);
    table.AddCount(table.Statistics(), fTrials, trials);
    table.AddStat(table.Statistics(), fProportion, proportion);
    table.AddNotedStat(table.Statistics(), fError, error);
  }

 private:
  BpString fSuccesses = PRPText("Successes");
  BpString fTrials = PRPText("Trials");
  BpString fProportion = PRPText("Proportion");
  BpString fError = PRPText("Asymptotic Standard Error");
};

}  // namespace

bool PRPAlgorithm::ComputePairedSamples(ProcDSIterator& iterator) {
  StartComputation();
  TallyPairedSamples(iterator);
  if (!EstimateAll(fvPropZPairSamp))
    return StopWithoutData("Not enough valid cases ...",
                           "Not enough valid cases for split [%1 = %2:,^1 = ^2:]1 ...");
  for (const PropZPairSamp& record : fvPropZPairSamp) {
    if (!record._bGoodData) WarnPair(record);
    AddPairStatsTable(record);
    AddPairCITable(record);
    AddPairTestsTable(record);
  }
  return true;
}

void PRPAlgorithm::TallyPairedSamples(ProcDSIterator& iterator) {
  const bool oneList = fvpVarCatInfo2.empty();
  TallyCases(iterator, [&](const Codes& codes, const Codes& codes2, std::int32_t, double weight) {
    const Codes& second = oneList ? codes : codes2;
    for (PropZPairSamp& record : fvPropZPairSamp)
      record.Count(codes[static_cast<std::size_t>(record._varInd1)],
                   second[static_cast<std::size_t>(record._varInd2)], weight);
  });
}

PRPAlgorithm::TestVar PRPAlgorithm::GetSecondVar(const PropZPairSamp& record) const {
  return GetTestVar(fvpVarCatInfo2.empty() ? PRPAggregation::List1 : PRPAggregation::List2,
                    record._varInd2);
}

void PRPAlgorithm::WarnPair(const PropZPairSamp& record) const {
  const BpNumber pair(record._pairInd + 1, BpProcedure::Count());
  const BpVariable first(GetTestVar(PRPAggregation::List1, record._varInd1).variable,
                         BpVariable::ShowAsPreferred);
  const BpVariable second(GetSecondVar(record).variable, BpVariable::ShowAsPreferred);
  WarnPart("Not enough valid cases pair ^1 var ^2 ^3 ...",
           "Not enough valid cases pair ^1 var ^2 ^3 for split [%1 = %2:,^1 = ^2:]4 ...",
           {&pair, &first, &second});
}

void PRPAlgorithm::AddPairStatsTable(const PropZPairSamp& record) const {
  PRPResultTable table(*fpProcedure, "Paired-Samples Proportions Statistics", nullptr, MissingNote);
  BpComposite pairText("Pair ^1", true);
  pairText.Add(BpNumber(record._pairInd + 1, BpProcedure::Count()));
  pairText.Finish();
  BpGroup pair = table.Variables().Group(pairText, true, BpGroup::SortAsAdded);
  const MeasurementColumns columns;

  AddVariable(GetTestVar(PRPAggregation::List1, record._varInd1), table.Variables(), pair,
              "pSuccCellText1 != 0");
  if (record._bGoodData)
    columns.Write(table, record._n1p, record._nObs, record._prop1, record._ase1);
  AddVariable(GetSecondVar(record), table.Variables(), pair, "pSuccCellText2 != 0");
  if (record._bGoodData)
    columns.Write(table, record._np1, record._nObs, record._prop2, record._ase2);
}

void PRPAlgorithm::AddPairCITable(const PropZPairSamp& record) const {
  const BpString rows = PRPText("Interval Type");
  PRPResultTable table(*fpProcedure, "Paired-Samples Proportions Confidence Intervals", &rows,
                       MissingNote);
  table.Variables().Category(*MakePairCellText(record));
  if (!record._bGoodData) return;

  const PRPDifferenceColumns difference;
  const PRPIntervalColumns columns("^1% Confidence Interval of the Difference", fCILevelPct);
  PRPAddIntervalRows(table, columns, statistics::pairedIntervals, fvbCITypes, record.Counts(),
                     fCritical,
                     [&] { difference.Write(table, record._estDiff, record._aseDiff1); });
}

void PRPAlgorithm::AddPairTestsTable(const PropZPairSamp& record) const {
  const BpString rows = PRPText("Test Type");
  PRPResultTable table(*fpProcedure, "Paired-Samples Proportions Tests", &rows, MissingNote);
  table.Variables().Category(*MakePairCellText(record));
  if (!record._bGoodData) return;

  const PRPDifferenceColumns difference;
  PRPAddTestRows(table, statistics::pairedTests, fvbTestTypes, record.Counts(),
                 [&] { difference.Write(table, record._estDiff, record._aseDiff1); });
}
