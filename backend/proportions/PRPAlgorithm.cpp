// The analysis object: what it copies from the specification, and where its second pass goes.
#include "PRPAlgorithm.h"

#include <utility>

#include "PRPAssert.h"
#include "PRPParserNames.h"

PRPAlgorithm::PRPAlgorithm(ProcedureDataSource& source, BpProcedure& output,
                           const PRPValidSpecs& specs)
    : fDataSource(source),
      fModelType(specs.GetModelType()),
      fpProcedure(&output),
      fpSpecs(&specs),
      fpVarValidSpecs(specs.GetVarValidSpecs()),
      fvTestVarInds(specs.GetTestVarInds()),
      fvBinInfoElems(specs.GetBinInfoElems()),
      fvTestVarInds2(specs.GetTestVarInds2()),
      fvBinInfoElems2(specs.GetBinInfoElems2()),
      fTestValue(specs.GetTestValue()),
      fbOrderPair(specs.GetOrderPair()),
      fGroupVarInd(specs.GetGroupVarInd()),
      fGroupInfoElem(specs.GetGroupInfoElem()),
      fCILevelPct(specs.GetCILevelPct()),
      fvbTestTypes(specs.GetTestTypes()),
      fvbCITypes(specs.GetCITypes()),
      fbIgnoreCase(specs.GetIgnoreCase()),
      fbScopeAnalysis(specs.GetScopeAnalysis()),
      fbUserMissingIncluded(specs.GetUserMissingIncluded()),
      fbPrintUpperCase(specs.GetPrintUpperCase()),
      fbPrintCategoryOrder(specs.GetPrintCategoryOrder()),
      fWeightVarInd(source.GetWeightVarIndex()),
      fbSplitFile(source.GetNSplitVars() != 0),
      fbSplitsAsRows(fbSplitFile && !source.SplitsAsSeparateTables()),
      fCritical{.alpha = 1.0 - fCILevelPct / 100.0, .z = 0.0},
      fInpAdaptMsg(source),
      fParserMessage(prp::Command, prp::Title) {
  SetAggregationFlags();
  if (fbNeedAggregation) ClassifySplitVars();
}

void PRPAlgorithm::SetAggregationFlags() {
  if (!fbSplitsAsRows || fvBinInfoElems.empty()) return;
  // The first element speaks for all: one definition applies to all test variables.
  const BinomialOption option = fvBinInfoElems.front()._binOption;
  fbNeedSuccessAggregation = option == FIRST || option == LAST || option == MIDPOINT;
  fbNeedSelectAggregation = fGroupVarInd >= 0 && fGroupInfoElem._binOption == MIDPOINT;
  fbNeedAggregation = fbNeedSuccessAggregation || fbNeedSelectAggregation;
}

void PRPAlgorithm::ClassifySplitVars() {
  VarInds userSplitInds;
  const int nSplitVars = fDataSource.GetNSplitVars();
  for (int i = 0; i < nSplitVars; ++i) {
    const std::int32_t ind = fDataSource.GetSplitVarIndex(i);
    const KORA_Variable& variable = GetVariable(ind);
    const bool numeric = variable.GetType() == 0;
    if (numeric && variable.GetName() == "$bootstrap_split") {
      fPoolVarInd = ind;
      fbBootstrap = true;
      const bool bBootstrap = QBOOTSTRAPPING();
      PRP_ASSERT(bBootstrap, "bBootstrap", "PRPAlgorithm");
    } else if (numeric && variable.GetUpperName() == "IMPUTATION_") {
      fPoolVarInd = ind;
      fbMultImpute = true;
    } else {
      userSplitInds.push_back(ind);
    }
  }
  if (fPoolVarInd >= 0) fvUserSplitInds = std::move(userSplitInds);
}

const KORA_Variable& PRPAlgorithm::GetVariable(std::int32_t ind) const {
  return *fDataSource.GetVariable(ind);
}

bool PRPAlgorithm::ComputeAndDisplay(ProcDSIterator& iterator) {
  switch (fModelType) {
    case ONE_SAMPLE:
      return ComputeOneSample(iterator);
    case RELATED:
      return ComputePairedSamples(iterator);
    case INDEPENDENT:
      return ComputeIndependentSamples(iterator);
    default:
      // No design, nothing to do, and nothing wrong.
      return true;
  }
}

void PRPAlgorithm::StartComputation() {
  fCritical = statistics::criticalValues(fCILevelPct);
  fNAllCases = fNValidCases = fNInvalidCases = 0;
  fWeightedNAllCases = fWeightedNValidCases = fWeightedNInvalidCases = 0.0;
}

bool PRPAlgorithm::StopWithoutData(std::string_view plain, std::string_view split) {
  fbGoodData = false;
  WarnGroup(plain, split);
  return false;
}
