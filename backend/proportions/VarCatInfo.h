// What one split group knows of one variable: its extreme values.
//
// The first pass collects them, the second judges every value against them.
#pragma once

#include <cstdint>
#include <string>

#include "host/distributions/MCMV.h"

struct VarCatInfo {
  std::int32_t _varInd = -1;
  // By the variable's print format.
  bool _stringVar = false;
  bool _bHasValid = false;
  double _minNumValue = MCMV::Missing;
  double _maxNumValue = MCMV::Missing;
  // Half way between the two, once the first pass is done.
  double _middlePoint = MCMV::Missing;
  // In the host's collation.
  std::string _minStrValue;
  std::string _maxStrValue;

  // Takes a value that is not missing into account.
  void Collect(double value);
  void Collect(const std::string& value);
  // Sets the middle of a numeric variable that has valid values.
  void SetMiddlePoint();
  // Takes over the five values above, not the flag.
  void CopyExtremes(const VarCatInfo& original);

  // Writes itself as lines of diagnostic text, its category lists among them: no run fills those,
  // so they are not kept, and are shown empty.
  void Display() const;
};

// Once a case and variable: compiled into the loop over the cases.
inline void VarCatInfo::Collect(double value) {
  if (!_bHasValid) {
    _minNumValue = _maxNumValue = value;
    _bHasValid = true;
  } else {
    if (value < _minNumValue) _minNumValue = value;
    if (value > _maxNumValue) _maxNumValue = value;
  }
}
