// One data value with its ordering.
#pragma once

#include <string>

#include "host/distributions/MCMV.h"

struct VarValue {
  bool _stringVar = false;
  // Of a numeric value; MCMV::Missing when there is none.
  double _numValue = MCMV::Missing;
  std::string _strValue;

  // Writes itself as lines of diagnostic text.
  void Display() const;
};

// The order of success values: the missing number first, numbers ascending, strings by the host's
// collation. Both values must be of one kind (asserted).
bool operator<(const VarValue& varValue1, const VarValue& varValue2);
