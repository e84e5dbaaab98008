// The passes over the cases of one split group: weights, validity, counts.
#include <algorithm>
#include <cmath>

#include "PRPAlgorithm.h"
#include "PRPAssert.h"
#include "host/distributions/MCMV.h"

namespace {

// Weights are rounded to whole numbers, halves upwards; 0 makes a case invalid.
double RoundedWeight(double weight) {
  // Most data are not weighted at all.
  if (weight == 1.0) return 1.0;
  return weight != MCMV::Missing && weight >= 0.5 ? std::floor(weight + 0.5) : 0.0;
}

}  // namespace

// --- Preparation --------------------------------------------------------------------------------

std::unique_ptr<VarCatInfo> PRPAlgorithm::MakeInfo(std::int32_t ind) const {
  auto info = std::make_unique<VarCatInfo>();
  info->_varInd = ind;
  info->_stringVar = GetVariable(ind).GetFormat().IsString();
  return info;
}

PRPAlgorithm::Infos PRPAlgorithm::MakeInfos(const VarInds& inds) const {
  Infos infos;
  infos.reserve(inds.size());
  for (const std::int32_t ind : inds) infos.push_back(MakeInfo(ind));
  return infos;
}

void PRPAlgorithm::PrepareTallies() {
  PRP_ASSERT(fvpVarCatInfo.empty(), "fvpVarCatInfo.empty()", "PRPAlgorithm");
  PRP_ASSERT(fvpVarCatInfo2.empty(), "fvpVarCatInfo2.empty()", "PRPAlgorithm");
  fvpVarCatInfo = MakeInfos(fvTestVarInds);
  fvpVarCatInfo2 = MakeInfos(fvTestVarInds2);
  if (fGroupVarInd >= 0) fpVarGroupInfo = MakeInfo(fGroupVarInd);
  if (fpAggregation != nullptr && !fpAggregation->IsSetUp()) SetUpAggregation();
  MakeRecords();
}

void PRPAlgorithm::MakeRecords() {
  const auto nVars = static_cast<std::int32_t>(fvTestVarInds.size());
  const std::size_t nVars2 = fvTestVarInds2.size();
  switch (fModelType) {
    case ONE_SAMPLE:
      PRP_ASSERT(nVars2 == 0, "nVars2 == 0", "PRPAlgorithm");
      for (std::int32_t i = 0; i < nVars; ++i) fvPropZOneSamp.emplace_back()._varInd = i;
      break;
    case RELATED:
      MakePairRecords();
      break;
    case INDEPENDENT:
      for (std::int32_t i = 0; i < nVars; ++i) fvPropZIndSamp.emplace_back()._varInd = i;
      break;
    default:
      break;
  }
}

void PRPAlgorithm::MakePairRecords() {
  const auto nVars = static_cast<std::int32_t>(fvTestVarInds.size());
  const auto nVars2 = static_cast<std::int32_t>(fvTestVarInds2.size());
  const auto add = [this](std::int32_t first, std::int32_t second) {
    const auto pair = static_cast<std::int32_t>(fvPropZPairSamp.size());
    PropZPairSamp& record = fvPropZPairSamp.emplace_back();
    record._pairInd = pair;
    record._varInd1 = first;
    record._varInd2 = second;
  };
  for (std::int32_t i = 0; i < nVars; ++i) {
    if (nVars2 == 0) {
      // One list: every variable with every later one.
      for (std::int32_t j = i + 1; j < nVars; ++j) add(i, j);
    } else if (!fbOrderPair) {
      for (std::int32_t j = 0; j < nVars2; ++j) add(i, j);
    } else if (i < nVars2) {
      add(i, i);
    }
  }
}

void PRPAlgorithm::BeginPass() {
  const PRPValueOptions options{.userMissingIncluded = fbUserMissingIncluded,
                                .ignoreCase = fbIgnoreCase,
                                .upperCase = fbPrintUpperCase};
  const auto resolve = [&](const Infos& infos, const BinInfoElems& elems, CaseVars& vars) {
    vars.clear();
    vars.reserve(infos.size());
    for (std::size_t i = 0; i < infos.size(); ++i) {
      const auto& pVarCatInfo = infos[i];
      PRP_ASSERT(pVarCatInfo != nullptr, "pVarCatInfo != 0", "PRPAlgorithm");
      vars.emplace_back(GetVariable(pVarCatInfo->_varInd), *pVarCatInfo, elems[i], options);
    }
  };
  resolve(fvpVarCatInfo, fvBinInfoElems, fvCaseVars);
  resolve(fvpVarCatInfo2, fvBinInfoElems2, fvCaseVars2);
  fGroupCaseVar.reset();
  if (fpVarGroupInfo != nullptr)
    fGroupCaseVar.emplace(GetVariable(fGroupVarInd), *fpVarGroupInfo, fGroupInfoElem, options);
}

void PRPAlgorithm::EndPass() {
  // Given back whole: there may be very many analysis objects.
  fvCaseVars = {};
  fvCaseVars2 = {};
  fGroupCaseVar.reset();
}

// --- Passes -------------------------------------------------------------------------------------

bool PRPAlgorithm::InitialPass(ProcDSIterator& iterator, PRPAggregation& aggregation) {
  if (fbNeedAggregation) fpAggregation = &aggregation;
  PrepareTallies();
  const bool result = PassSplitGroup(iterator);
  if (result) EndInitialPass();
  return result;
}

bool PRPAlgorithm::PassSplitGroup(ProcDSIterator& iterator) {
  bool result = true;
  Codes codes;
  Codes codes2;
  std::int32_t group = -1;
  double weight = 1.0;
  BeginPass();
  if (!ReadCase(iterator, codes, codes2, group, weight)) {
    // No case at all: the data are exhausted. Otherwise all were invalid.
    result = fNAllCases != 0;
  } else {
    result = ReadPooling(iterator);
    while (ReadCase(iterator, codes, codes2, group, weight)) {
    }
  }
  EndPass();
  return result;
}

bool PRPAlgorithm::EndInitialPass() {
  fbInitialPass = false;
  if (fNValidCases < 1) {
    if (fbSplitFile)
      fInpAdaptMsg.NoValidCasesSplit();
    else
      fInpAdaptMsg.NoValidCases();
    fbGoodData = false;
    return false;
  }
  for (const auto& info : fvpVarCatInfo) info->SetMiddlePoint();
  for (const auto& info : fvpVarCatInfo2) info->SetMiddlePoint();
  if (fpVarGroupInfo != nullptr) fpVarGroupInfo->SetMiddlePoint();
  if (fpAggregation != nullptr && fPoolSampleInd == 0) {
    if (fbNeedSuccessAggregation) {
      RecordSuccessValues(PRPAggregation::List1);
      RecordSuccessValues(PRPAggregation::List2);
    }
    if (fbNeedSelectAggregation) RecordGroupValue();
  }
  return true;
}

// --- One case -----------------------------------------------------------------------------------

bool PRPAlgorithm::ReadCase(ProcDSIterator& iterator, Codes& codes, Codes& codes2,
                            std::int32_t& group, double& weight) {
  weight = 1.0;
  if (!iterator.NextCase()) return false;
  if (fNAllCases == 0 && fbSplitFile && !iterator.SplitGroupEnd()) fpProcedure->SplitChange();
  do {
    if (iterator.SplitGroupEnd()) return false;
    if (CountCase(iterator, codes, codes2, group, weight)) return true;
  } while (iterator.NextCase());
  return false;
}

bool PRPAlgorithm::CountCase(const ProcDSIterator& iterator, Codes& codes, Codes& codes2,
                             std::int32_t& group, double& weight) {
  const double rounded = RoundedWeight(iterator.Weight());
  ++fNAllCases;
  fWeightedNAllCases += rounded;
  if (rounded > 0.0 && IsValid(iterator, codes, codes2, group)) {
    ++fNValidCases;
    fWeightedNValidCases += rounded;
    weight = rounded;
    return true;
  }
  ++fNInvalidCases;
  fWeightedNInvalidCases += rounded;
  return false;
}

bool PRPAlgorithm::IsValid(const ProcDSIterator& iterator, Codes& codes, Codes& codes2,
                           std::int32_t& group) {
  if (!fbScopeAnalysis && !IsComplete(iterator)) return false;
  group = -1;
  if (fbInitialPass) {
    if (fGroupCaseVar && IsPresent(*fGroupCaseVar, iterator)) fGroupCaseVar->CollectGroup();
    Collect(iterator, fvCaseVars, codes);
    Collect(iterator, fvCaseVars2, codes2);
    return true;
  }
  if (fGroupCaseVar && IsPresent(*fGroupCaseVar, iterator)) group = fGroupCaseVar->Group(iterator);
  bool usable = !fGroupCaseVar || group >= 0;
  usable &= Classify(iterator, fvCaseVars, codes);
  usable &= Classify(iterator, fvCaseVars2, codes2);
  return usable || fbScopeAnalysis;
}

bool PRPAlgorithm::IsComplete(const ProcDSIterator& iterator) {
  const auto isPresent = [&](PRPCaseVar& var) { return var.Fetch(iterator); };
  return (!fGroupCaseVar || isPresent(*fGroupCaseVar)) &&
         std::all_of(fvCaseVars.begin(), fvCaseVars.end(), isPresent) &&
         std::all_of(fvCaseVars2.begin(), fvCaseVars2.end(), isPresent);
}

// After the test of the whole case there is nothing left to fetch or to be missing.
bool PRPAlgorithm::IsPresent(PRPCaseVar& var, const ProcDSIterator& iterator) const {
  return !fbScopeAnalysis || var.Fetch(iterator);
}

void PRPAlgorithm::Collect(const ProcDSIterator& iterator, CaseVars& vars, Codes& codes) {
  codes.assign(vars.size(), -1);
  for (PRPCaseVar& var : vars)
    if (IsPresent(var, iterator)) var.Collect(iterator);
}

// Whether no value was missing.
bool PRPAlgorithm::Classify(const ProcDSIterator& iterator, CaseVars& vars, Codes& codes) {
  codes.resize(vars.size());
  bool complete = true;
  for (std::size_t i = 0; i < vars.size(); ++i) {
    const bool present = IsPresent(vars[i], iterator);
    codes[i] = present ? vars[i].Classify(iterator) : -1;
    complete &= present;
  }
  return complete;
}
