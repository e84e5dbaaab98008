// One variable in one pass over the cases: how its value is read, tested for missing, and then
// collected or judged.
//
// All that can be known before the first case is resolved when the object is made. The way of a
// number is written for speed: it stands here whole, so that it compiles into the loop over the
// cases; a number costs two host calls and no allocation, and what it needs of the object stands in
// one line of a processor's cache.
#pragma once

#include <algorithm>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "PRPValidSpecs.h"
#include "VarCatInfo.h"
#include "host/data/CaseIterator.h"
#include "host/data/KORA_Variable.h"
#include "host/distributions/MCMV.h"

// What the command says about missing values and letter case.
struct PRPValueOptions {
  bool userMissingIncluded = false;
  bool ignoreCase = false;
  bool upperCase = true;
};

class alignas(64) PRPCaseVar {
 public:
  // `variable`, `info` and `elem` must outlive the object; `info` must hold the extremes when the
  // object is to judge.
  PRPCaseVar(const KORA_Variable& variable, VarCatInfo& info, const BinInfoElem& elem,
             const PRPValueOptions& options);

  // Fetches the value of the current case; false when it is missing. The others work on the value
  // that was fetched, on the same case.
  bool Fetch(const ProcDSIterator& iterator);

  // First pass: takes the value into the extremes.
  void Collect(const ProcDSIterator& iterator);
  // The same for the grouping variable, which needs only those of numbers.
  void CollectGroup();
  // Second pass: 1 success, 0 failure.
  std::int32_t Classify(const ProcDSIterator& iterator);
  // Second pass: group 0 or 1, -1 when the case is in no group.
  std::int32_t Group(const ProcDSIterator& iterator);

 private:
  // The rules of success and of groups, without regard to where their values come from.
  enum class Rule : std::uint8_t { Never, Equal, AtLeast, OneOf };
  enum class MissingTest : std::uint8_t { None, SystemMissing, Variable };

  void ResolveNumber(const BinInfoElem& elem);
  void ResolveText(const BinInfoElem& elem);
  // Puts the string value of the case into fText, trimmed and folded.
  void ReadText(const ProcDSIterator& iterator);
  std::int32_t ClassifyText(const ProcDSIterator& iterator);
  std::int32_t GroupOfText(const ProcDSIterator& iterator);

  const KORA_Variable* fpVariable;
  VarCatInfo* fpInfo;
  // The number that was fetched, and what numbers are judged by.
  double fValue = MCMV::Missing;
  double fBound = MCMV::Missing;
  std::span<const double> fvNumbers;
  std::int32_t fVarInd;
  MissingTest fMissingTest;
  Rule fRule = Rule::Never;
  bool fbString;
  // The same for strings.
  bool fbIgnoreCase;
  bool fbUpperCase;
  std::size_t fWidth = 0;
  std::string_view fStr;
  std::span<const std::string> fvStrs;
  std::string fText;
};

inline bool PRPCaseVar::Fetch(const ProcDSIterator& iterator) {
  if (fMissingTest == MissingTest::None) return true;
  if (fMissingTest == MissingTest::SystemMissing) {
    fValue = iterator.GetNumericValue(fVarInd);
    return fValue != MCMV::Missing;
  }
  const OBS* observation = iterator.GetObsPointer(fVarInd);
  if (fpVariable->IsMissing(observation)) return false;
  if (!fbString) fValue = observation->number;
  return true;
}

inline void PRPCaseVar::CollectGroup() {
  if (!fbString) fpInfo->Collect(fValue);
}

inline void PRPCaseVar::Collect(const ProcDSIterator& iterator) {
  if (!fbString) return fpInfo->Collect(fValue);
  ReadText(iterator);
  fpInfo->Collect(fText);
}

inline std::int32_t PRPCaseVar::Classify(const ProcDSIterator& iterator) {
  if (fbString) return ClassifyText(iterator);
  if (fRule == Rule::Equal) return fValue == fBound ? 1 : 0;
  if (fRule == Rule::AtLeast) return fValue >= fBound ? 1 : 0;
  // Without a rule the list is empty, and nothing a success.
  return std::find(fvNumbers.begin(), fvNumbers.end(), fValue) != fvNumbers.end() ? 1 : 0;
}

inline std::int32_t PRPCaseVar::Group(const ProcDSIterator& iterator) {
  if (fbString) return GroupOfText(iterator);
  if (fRule == Rule::AtLeast) return fValue >= fBound ? 1 : 0;
  // The list is empty, and so every case in no group, under every other rule but levels.
  const auto found = std::find(fvNumbers.begin(), fvNumbers.end(), fValue);
  return found == fvNumbers.end() ? -1 : static_cast<std::int32_t>(found - fvNumbers.begin());
}
