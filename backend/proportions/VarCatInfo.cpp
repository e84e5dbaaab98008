// Extreme values of a variable, and the order of data values.
#include "VarCatInfo.h"

#include <algorithm>

#include "PRPAssert.h"
#include "VarValue.h"
#include "host/text/KORAMBstr.h"

namespace {

// Whether `a` sorts before `b`, over the length of the longer one.
bool CollatesBefore(const std::string& a, const std::string& b) {
  const std::size_t n = std::max(a.size(), b.size());
  return n != 0 && KORAMBstrncoll_A(a, b, n) < 0;
}

}  // namespace

bool operator<(const VarValue& varValue1, const VarValue& varValue2) {
  PRP_ASSERT(varValue1._stringVar == varValue2._stringVar,
             "varValue1._stringVar == varValue2._stringVar", "PRPAlgorithm");
  if (varValue1._stringVar) return CollatesBefore(varValue1._strValue, varValue2._strValue);
  if (varValue1._numValue == MCMV::Missing) return varValue2._numValue != MCMV::Missing;
  if (varValue2._numValue == MCMV::Missing) return false;
  return varValue2._numValue > varValue1._numValue;
}

void VarCatInfo::Collect(const std::string& value) {
  if (!_bHasValid) {
    _minStrValue = _maxStrValue = value;
    _bHasValid = true;
    return;
  }
  // One of the extremes themselves moves neither: no collation for columns of two values.
  if (value == _minStrValue || value == _maxStrValue) return;
  if (CollatesBefore(value, _minStrValue)) _minStrValue = value;
  if (CollatesBefore(_maxStrValue, value)) _maxStrValue = value;
}

void VarCatInfo::SetMiddlePoint() {
  if (!_stringVar && _bHasValid) _middlePoint = (_minNumValue + _maxNumValue) * 0.5;
}

void VarCatInfo::CopyExtremes(const VarCatInfo& original) {
  _minNumValue = original._minNumValue;
  _maxNumValue = original._maxNumValue;
  _middlePoint = original._middlePoint;
  _minStrValue = original._minStrValue;
  _maxStrValue = original._maxStrValue;
}
