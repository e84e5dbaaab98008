// One sample: counts, estimates, and the tables of intervals and tests of each test variable.
#include "PRPAlgorithm.h"
#include "statistics/OneSampleMethods.h"

namespace {

constexpr std::string_view MissingNote = "Stat miss not enough cases ...";

// The columns that every row of both tables repeats.
class ObservedColumns {
 public:
  void WriteObserved(PRPResultTable& table, const PropZOneSamp& record) const {
    BpGroup observed = table.Group(fObserved);
    table.AddCount(observed, fSuccesses, record._nSucc);
    table.AddCount(observed, fTrials, record._nTrials);
    table.AddStat(observed, fProportion, record._prop);
  }
  void WriteError(PRPResultTable& table, const PropZOneSamp& record) const {
    table.AddStat(table.Statistics(), fError, record._aseDiff1);
  }

 private:
  BpString fObserved = PRPText("Observed");
  BpString fSuccesses = PRPText("Successes");
  BpString fTrials = PRPText("Trials");
  BpString fProportion = PRPText("Proportion");
  BpString fError = PRPText("Asymptotic Standard Error");
};

// The column of the difference, with the test value in its footnote.
class TestValueColumn {
 public:
  explicit TestValueColumn(double testValue) {
    BpComposite text("Test Value = ^1", true);
    text.Add(BpNumber(testValue, BpProcedure::SigDigit(testValue)));
    text.Finish();
    fNote.text = text.Replicate();
  }
  void Write(PRPResultTable& table, const PropZOneSamp& record) const {
    table.AddStat(table.Statistics(), fDifference, record._estDiff).Note(fNote);
  }

 private:
  BpString fDifference = PRPText("Observed - Test Value");
  BpAnnotation fNote;
};

}  // namespace

bool PRPAlgorithm::ComputeOneSample(ProcDSIterator& iterator) {
  StartComputation();
  TallyCases(iterator, [&](const Codes& codes, const Codes&, std::int32_t, double weight) {
    for (PropZOneSamp& record : fvPropZOneSamp)
      record.Count(codes[static_cast<std::size_t>(record._varInd)], weight);
  });
  if (!EstimateAll(fvPropZOneSamp, fTestValue))
    return StopWithoutData("Not enough valid cases ...",
                           "Not enough valid cases for split [%1 = %2:,^1 = ^2:]1 ...");
  for (const PropZOneSamp& record : fvPropZOneSamp) {
    if (!record._bGoodData)
      WarnVariable(record._varInd, "Not enough valid cases var ^1 ...",
                   "Not enough valid cases var ^1 for split [%1 = %2:,^1 = ^2:]2 ...");
    AddOneSampCITable(record);
    AddOneSampTestsTable(record);
  }
  return true;
}

void PRPAlgorithm::AddOneSampCITable(const PropZOneSamp& record) const {
  const BpString rows = PRPText("Interval Type");
  PRPResultTable table(*fpProcedure, "One-Sample Proportions Confidence Intervals", &rows,
                       MissingNote);
  AddVariable(GetTestVar(PRPAggregation::List1, record._varInd), table.Variables());
  if (!record._bGoodData) return;

  const ObservedColumns observed;
  const PRPIntervalColumns columns("^1% Confidence Interval", fCILevelPct);
  PRPAddIntervalRows(table, columns, statistics::oneSampleIntervals, fvbCITypes,
                     record.Counts(fTestValue), fCritical, [&] {
                       observed.WriteObserved(table, record);
                       observed.WriteError(table, record);
                     });
}

void PRPAlgorithm::AddOneSampTestsTable(const PropZOneSamp& record) const {
  const BpString rows = PRPText("Test Type");
  PRPResultTable table(*fpProcedure, "One-Sample Proportions Tests", &rows, MissingNote);
  AddVariable(GetTestVar(PRPAggregation::List1, record._varInd), table.Variables());
  if (!record._bGoodData) return;

  const ObservedColumns observed;
  const TestValueColumn difference(fTestValue);
  PRPAddTestRows(table, statistics::oneSampleTests, fvbTestTypes, record.Counts(fTestValue), [&] {
    observed.WriteObserved(table, record);
    difference.Write(table, record);
    observed.WriteError(table, record);
  });
}
