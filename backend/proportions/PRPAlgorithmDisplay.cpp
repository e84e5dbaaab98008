// The diagnostic dumps of the analysis object and of every record it owns.
//
// Labels are written to the letter, "Asymtotic" included.
#include <algorithm>
#include <limits>

#include "PRPAlgorithm.h"
#include "PRPValidSpecsDisplay.h"
#include "VarValue.h"
#include "host/display/ACACommonDisplay.h"

using ACACommonDisplay::DisplayB;
using ACACommonDisplay::DisplayD;
using ACACommonDisplay::DisplayDV;
using ACACommonDisplay::DisplayI;
using ACACommonDisplay::DisplayIV;
using ACACommonDisplay::DisplayS;
using ACACommonDisplay::DisplaySV;

namespace {

// Counts beyond what the display can show stop at its largest number.
void DisplayCount(std::string_view label, std::int64_t count) {
  constexpr std::int64_t largest = std::numeric_limits<std::int32_t>::max();
  DisplayI(label, static_cast<std::int32_t>(std::min(count, largest)));
}

// The lines that end the dump of a record in every design.
template <class Record>
void DisplayErrorsAndFlags(const Record& record) {
  DisplayD("_aseDiff0", record._aseDiff0);
  DisplayD("_aseDiff1", record._aseDiff1);
  DisplayB("Good Data indicator", record._bGoodData);
  DisplayB("Complete Data indicator", record._bCompleteData);
}

// Those of a record that compares two proportions.
template <class Record>
void DisplayComparison(const Record& record) {
  DisplayD("Estimated difference", record._estDiff);
  DisplayD("Asymtotic standard error for the first proportion", record._ase1);
  DisplayD("Asymtotic standard error for the second proportion", record._ase2);
  DisplayErrorsAndFlags(record);
}

template <class Records>
void DisplayAll(const Records& records) {
  for (const auto& record : records) record.Display();
}

}  // namespace

void VarValue::Display() const {
  PRPDisplayLine("VarValue display start");
  if (_stringVar)
    DisplayS("String Value", _strValue);
  else
    DisplayD("Numeric Value", _numValue);
  PRPDisplayLine("VarValue display end");
}

void VarCatInfo::Display() const {
  PRPDisplayLine("VarCatInfo display start");
  if (_stringVar)
    DisplaySV("String Categorical Values", {});
  else
    DisplayDV("Numeric Categorical Values", {});
  DisplayIV("Category Counts", {});
  DisplayI("Total Category Count", 0);
  DisplayDV("Weighted Category Counts", {});
  DisplayD("Weighted Total Category Count", 0.0);
  DisplayB("Has valid value flag", _bHasValid);
  DisplayD("Minimum numeric value", _minNumValue);
  DisplayD("Maximum numeric value", _maxNumValue);
  DisplayD("Middle point", _middlePoint);
  DisplayS("Minimum string value", _minStrValue);
  DisplayS("Maximum string value", _maxStrValue);
  PRPDisplayLine("VarCatInfo display end");
}

void PropZOneSamp::Display() const {
  PRPDisplayLine("PropZOneSamp display start");
  DisplayI("Local variable index", _varInd);
  DisplayD("Number of successes", _nSucc);
  DisplayD("Number of failures", _nFail);
  DisplayD("Number of trials", _nTrials);
  DisplayD("Population proportion", _prop);
  DisplayD("Estimated difference", _estDiff);
  DisplayErrorsAndFlags(*this);
  PRPDisplayLine("PropZOneSamp display end");
}

void PropZPairSamp::Display() const {
  PRPDisplayLine("PropZPairSamp display start");
  DisplayI("Variable pair index", _pairInd);
  DisplayI("First local variable index", _varInd1);
  DisplayI("Second local variable index", _varInd2);
  DisplayD("_n11", _n11);
  DisplayD("_n10", _n10);
  DisplayD("_n01", _n01);
  DisplayD("_n00", _n00);
  DisplayD("_n1p", _n1p);
  DisplayD("_np1", _np1);
  DisplayD("_n0p", _n0p);
  DisplayD("_np0", _np0);
  DisplayD("Number of observations", _nObs);
  DisplayD("_p11", _p11);
  DisplayD("_p10", _p10);
  DisplayD("_p01", _p01);
  DisplayD("_p00", _p00);
  DisplayD("Proportion for the first measurement", _prop1);
  DisplayD("Proportion for the second measurement", _prop2);
  DisplayComparison(*this);
  PRPDisplayLine("PropZPairSamp display end");
}

void PropZIndSamp::Display() const {
  PRPDisplayLine("PropZIndSamp display start");
  DisplayI("Local variable index", _varInd);
  DisplayD("Number of successes for group 1", _nSucc1);
  DisplayD("Number of failures for group 1", _nFail1);
  DisplayD("Number of trials for group 1", _nTrials1);
  DisplayD("Number of successes for group 2", _nSucc2);
  DisplayD("Number of failures for group 2", _nFail2);
  DisplayD("Number of trials for group 2", _nTrials2);
  DisplayD("Number of observations", _nObs);
  DisplayD("Population proportion for group 1", _prop1);
  DisplayD("Population proportion for group 2", _prop2);
  DisplayComparison(*this);
  PRPDisplayLine("PropZIndSamp display end");
}

void PRPAlgorithm::DisplayCounts() const {
  DisplayCount("Number of all cases", fNAllCases);
  DisplayCount("Number of valid cases", fNValidCases);
  DisplayCount("Number of invalid cases", fNInvalidCases);
  DisplayD("Weighted number of all cases", fWeightedNAllCases);
  DisplayD("Weighted number of valid cases", fWeightedNValidCases);
  DisplayD("Weighted number of invalid cases", fWeightedNInvalidCases);
}

void PRPAlgorithm::DisplayPooling() const {
  DisplayB("Need aggregation flag", fbNeedAggregation);
  DisplayB("Need success aggregation flag", fbNeedSuccessAggregation);
  DisplayB("Need select aggregation flag", fbNeedSelectAggregation);
  DisplayB("Bootstrapping flag", fbBootstrap);
  DisplayB("Multiple Imputation flag", fbMultImpute);
  DisplayI("Pooling Variable Index", fPoolVarInd);
  DisplayI("Pooling Sample Index", fPoolSampleInd);
  if (fvUserSplitInds.empty())
    PRPDisplayLine("User Split Indices are not defined");
  else
    DisplayIV("User Split Indices", fvUserSplitInds);
}

void PRPAlgorithm::Display() const {
  PRPDisplayBanner();
  PRPDisplayLine("PRPAlgorithm display start");
  DisplayB("Initial data pass indicator", fbInitialPass);
  if (fWeightVarInd < 0)
    PRPDisplayLine("Weight variable is not defined");
  else
    DisplayI("Weight variable index", fWeightVarInd);
  DisplayB("Split file indicator", fbSplitFile);
  DisplayB("Splits as Rows indicator", fbSplitsAsRows);
  DisplayB("Good Data indicator", fbGoodData);
  DisplayB("Complete Data indicator", fbCompleteData);
  DisplayCounts();
  DisplayD("Alpha level", fCritical.alpha);
  DisplayD("IDF Normal value of adjusted confidence level", fCritical.z);
  DisplayPooling();
  for (const auto& info : fvpVarCatInfo) info->Display();
  for (const auto& info : fvpVarCatInfo2) info->Display();
  DisplayAll(fvPropZOneSamp);
  DisplayAll(fvPropZPairSamp);
  DisplayAll(fvPropZIndSamp);
  PRPDisplayLine("PRPAlgorithm display end");
}
