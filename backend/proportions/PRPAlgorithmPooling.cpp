// Bootstrap samples and imputations: which original a split group belongs to, and what it takes
// over from it.
//
// A sample is judged by the values that FIRST, LAST and MIDPOINT find in the original data of the
// same user split group, not by its own.
#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <utility>

#include "PRPAlgorithm.h"
#include "PRPAssert.h"
#include "VarValue.h"
#include "host/distributions/MCMV.h"

namespace {

// Observation words of a key entry of so many bytes.
std::size_t KeyWords(std::int16_t entry) {
  return entry <= 8 ? 1 : (static_cast<std::size_t>(entry) + 7) / 8;
}

// 0 <= v rounded to a whole number, the largest there is at most.
std::int32_t Rounded(double v) {
  constexpr double largest = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::min(std::floor(v + 0.5), largest));
}

double RecordedNumber(const VarCatInfo& info, std::int32_t binOption, PRPAggregation::List list) {
  switch (binOption) {
    case FIRST:
      // Of the first list no smallest value is recorded, on purpose.
      return list == PRPAggregation::List2 ? info._minNumValue : MCMV::Missing;
    case LAST:
      return info._maxNumValue;
    case MIDPOINT:
      return info._middlePoint;
    default:
      return MCMV::Missing;
  }
}

std::string RecordedText(const VarCatInfo& info, std::int32_t binOption) {
  if (binOption == FIRST) return info._minStrValue;
  if (binOption == LAST) return info._maxStrValue;
  return {};
}

// The success value of a group.
VarValue RecordedValue(const VarCatInfo& info, std::int32_t binOption, PRPAggregation::List list) {
  VarValue value;
  value._stringVar = info._stringVar;
  if (info._stringVar)
    value._strValue = RecordedText(info, binOption);
  else
    value._numValue = RecordedNumber(info, binOption, list);
  return value;
}

}  // namespace

// --- While the first pass reads -----------------------------------------------------------------

void PRPAlgorithm::SetUpAggregation() const {
  if (!fvUserSplitInds.empty()) PRP_ASSERT(fPoolVarInd >= 0, "fPoolVarInd >= 0", "PRPAlgorithm");
  fpAggregation->SetUp(fDataSource, fvpVarCatInfo.size(), fvpVarCatInfo2.size(), fGroupVarInd >= 0,
                       fvUserSplitInds);
}

bool PRPAlgorithm::ReadPooling(const ProcDSIterator& iterator) {
  if (fPoolVarInd < 0 || fpAggregation == nullptr) return true;
  const double v = iterator.GetNumericValue(fPoolVarInd);
  // The system-missing value is negative too.
  const bool valid = v >= 0.0;
  fPoolSampleInd = valid ? Rounded(v) : -1;
  if (!valid)
    fParserMessage.GenericError(fbBootstrap ? "Invalid bootstrap index ..."
                                            : "Invalid imputation index ...");
  if (!fvUserSplitInds.empty() && fpSplitKey == nullptr) ReadSplitKey(iterator);
  return valid;
}

void PRPAlgorithm::ReadSplitKey(const ProcDSIterator& iterator) {
  const int nKeyObs = fpAggregation->SplitKeyMap()->CellSize() - 1;
  PRP_ASSERT(nKeyObs > 0, "nKeyObs > 0", "PRPAlgorithm");
  const auto nWords = static_cast<std::size_t>(nKeyObs);
  fpSplitKey = std::make_unique<OBS[]>(nWords);
  std::size_t shift = 0;
  for (std::size_t i = 0; i < fvUserSplitInds.size(); ++i) {
    const OBS* value = iterator.GetObsPointer(fvUserSplitInds[i]);
    const std::size_t words = KeyWords(fpAggregation->KeySpec()[i]);
    // Nothing is written beyond a key that the host has sized otherwise.
    PRP_ASSERT(shift + words <= nWords, "shift == nKeyObs", "PRPAlgorithm");
    std::copy_n(value, words, fpSplitKey.get() + shift);
    shift += words;
  }
  PRP_ASSERT(shift == nWords, "shift == nKeyObs", "PRPAlgorithm");
}

void PRPAlgorithm::RecordSuccessValues(List list) {
  const bool first = list == PRPAggregation::List1;
  const Infos& infos = first ? fvpVarCatInfo : fvpVarCatInfo2;
  const BinInfoElems& elems = first ? fvBinInfoElems : fvBinInfoElems2;
  for (std::size_t i = 0; i < infos.size(); ++i)
    fpAggregation->RecordSuccess(list, i, RecordedValue(*infos[i], elems[i]._binOption, list));
}

void PRPAlgorithm::RecordGroupValue() {
  VarValue value;
  value._stringVar = fpVarGroupInfo->_stringVar;
  if (!value._stringVar) value._numValue = fpVarGroupInfo->_middlePoint;
  fpAggregation->RecordGroup(std::move(value));
}

// --- Between the passes -------------------------------------------------------------------------

bool PRPAggregation::PoolSplitGroups(std::vector<PRPAlgorithm*> algorithms) {
  if (algorithms.size() < 2) return true;
  const PRPAlgorithm* pFirstAlgor = algorithms.front();
  PRP_ASSERT(pFirstAlgor != nullptr, "pFirstAlgor != 0", "PRPAlgorithm");
  if (pFirstAlgor->fPoolVarInd < 0 || pFirstAlgor->fpAggregation == nullptr) return true;
  PRP_ASSERT(pFirstAlgor->fbBootstrap || pFirstAlgor->fbMultImpute,
             "pFirstAlgor->fbBootstrap || pFirstAlgor->fbMultImpute", "PRPAlgorithm");

  Positions originals(algorithms.size(), -1);
  if (fpSplitKeyMap != nullptr) {
    KeepOriginals(algorithms);
    if (!FindOriginals(algorithms, originals)) return false;
  } else {
    // Without user splits there is one original, the first group.
    for (std::size_t i = 0; i < algorithms.size(); ++i)
      if (algorithms[i]->fPoolSampleInd != 0) originals[i] = 0;
  }
  for (std::size_t i = 0; i < algorithms.size(); ++i) {
    const std::int32_t origSplitInd = originals[i];
    if (origSplitInd >= 0)
      algorithms[i]->CopyExtremes(*algorithms[static_cast<std::size_t>(origSplitInd)]);
  }
  return true;
}

void PRPAggregation::KeepOriginals(const std::vector<PRPAlgorithm*>& algorithms) {
  for (std::size_t i = 0; i < algorithms.size(); ++i) {
    const PRPAlgorithm* pAlgor = algorithms[i];
    PRP_ASSERT(pAlgor != nullptr, "pAlgor != 0", "PRPAlgorithm");
    const OBS* key = pAlgor->fpSplitKey.get();
    if (pAlgor->fPoolSampleInd == 0 && key != nullptr && !fpSplitKeyMap->Contains(key))
      *fpSplitKeyMap->Insert(key) = static_cast<double>(i);
  }
}

bool PRPAggregation::FindOriginals(const std::vector<PRPAlgorithm*>& algorithms,
                                   Positions& originals) {
  for (std::size_t i = 0; i < algorithms.size(); ++i) {
    PRPAlgorithm* pAlgor = algorithms[i];
    PRP_ASSERT(pAlgor != nullptr, "pAlgor != 0", "PRPAlgorithm");
    const OBS* key = pAlgor->fpSplitKey.get();
    if (pAlgor->fPoolSampleInd == 0 || key == nullptr) continue;
    if (!fpSplitKeyMap->Contains(key)) {
      pAlgor->fParserMessage.GenericError(pAlgor->fbBootstrap
                                              ? "Boot split values not consistent ..."
                                              : "Impute split values not consistent ...");
      return false;
    }
    originals[i] = Rounded(*fpSplitKeyMap->Insert(key));
  }
  return true;
}

void PRPAlgorithm::CopyExtremes(const PRPAlgorithm& original) {
  const auto copy = [](const Infos& infos, const Infos& origInfos) {
    for (std::size_t i = 0; i < infos.size(); ++i) {
      const auto& pVarCatInfo = infos[i];
      const auto& pOrigVarCatInfo = origInfos[i];
      PRP_ASSERT(pVarCatInfo != nullptr, "pVarCatInfo != 0", "PRPAlgorithm");
      PRP_ASSERT(pOrigVarCatInfo != nullptr, "pOrigVarCatInfo != 0", "PRPAlgorithm");
      pVarCatInfo->CopyExtremes(*pOrigVarCatInfo);
    }
  };
  if (fbNeedSuccessAggregation) {
    copy(fvpVarCatInfo, original.fvpVarCatInfo);
    copy(fvpVarCatInfo2, original.fvpVarCatInfo2);
  }
  if (fbNeedSelectAggregation) {
    PRP_ASSERT(original.fpVarGroupInfo != nullptr, "pOrigAlgor->fpVarGroupInfo != 0",
               "PRPAlgorithm");
    fpVarGroupInfo->CopyExtremes(*original.fpVarGroupInfo);
  }
}
