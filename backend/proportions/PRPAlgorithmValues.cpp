// What a variable's values are judged by, and how its strings are read.
#include "PRPAlgorithmValues.h"

#include <algorithm>
#include <cstring>

#include "host/text/KORAMBstr.h"

PRPCaseVar::PRPCaseVar(const KORA_Variable& variable, VarCatInfo& info, const BinInfoElem& elem,
                       const PRPValueOptions& options)
    : fpVariable(&variable),
      fpInfo(&info),
      fVarInd(info._varInd),
      fbString(info._stringVar),
      fbIgnoreCase(options.ignoreCase),
      fbUpperCase(options.upperCase) {
  if (!options.userMissingIncluded)
    fMissingTest = MissingTest::Variable;
  else
    fMissingTest = fbString ? MissingTest::None : MissingTest::SystemMissing;
  if (fbString) {
    fWidth = static_cast<std::size_t>(std::max(variable.GetType(), 0));
    ResolveText(elem);
  } else {
    ResolveNumber(elem);
  }
}

void PRPCaseVar::ResolveNumber(const BinInfoElem& elem) {
  switch (elem._binOption) {
    case FIRST:
      fRule = Rule::Equal;
      fBound = fpInfo->_minNumValue;
      break;
    case LAST:
      fRule = Rule::Equal;
      fBound = fpInfo->_maxNumValue;
      break;
    case MIDPOINT:
      fRule = Rule::AtLeast;
      fBound = fpInfo->_middlePoint;
      break;
    case CUTPOINT:
      // Without its value, in an element that was never finished, nothing is a success.
      if (elem._numValues.empty()) break;
      fRule = Rule::AtLeast;
      fBound = elem._numValues.front();
      break;
    case LEVEL:
      fRule = Rule::OneOf;
      fvNumbers = elem._numValues;
      break;
  }
}

void PRPCaseVar::ResolveText(const BinInfoElem& elem) {
  switch (elem._binOption) {
    case FIRST:
      fRule = Rule::Equal;
      fStr = fpInfo->_minStrValue;
      break;
    case LAST:
      fRule = Rule::Equal;
      fStr = fpInfo->_maxStrValue;
      break;
    case LEVEL:
      fRule = Rule::OneOf;
      fvStrs = elem._strValues;
      break;
    case MIDPOINT:
    case CUTPOINT:
      break;
  }
}

void PRPCaseVar::ReadText(const ProcDSIterator& iterator) {
  const char* bytes = iterator.GetStringValue(fVarInd);
  const void* end = std::memchr(bytes, '\0', fWidth);
  fText.assign(bytes, end == nullptr ? bytes + fWidth : static_cast<const char*>(end));
  KORAMBstrtrim_A(fText);
  if (!fbIgnoreCase) return;
  if (fbUpperCase)
    KORAMBstrupr_A(fText);
  else
    KORAMBstrlwr_A(fText);
}

std::int32_t PRPCaseVar::ClassifyText(const ProcDSIterator& iterator) {
  if (fRule == Rule::Never) return 0;
  ReadText(iterator);
  if (fRule == Rule::Equal) return fText == fStr ? 1 : 0;
  return std::find(fvStrs.begin(), fvStrs.end(), fText) != fvStrs.end() ? 1 : 0;
}

std::int32_t PRPCaseVar::GroupOfText(const ProcDSIterator& iterator) {
  if (fRule != Rule::OneOf) return -1;
  ReadText(iterator);
  const auto found = std::find(fvStrs.begin(), fvStrs.end(), fText);
  return found == fvStrs.end() ? -1 : static_cast<std::int32_t>(found - fvStrs.begin());
}
