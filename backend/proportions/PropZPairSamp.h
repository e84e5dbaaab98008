// The statistics record of one pair of variables, measured on the same cases.
//
// 1 is success and 0 failure, the first index of the first measurement; p marks a margin.
#pragma once

#include <cstdint>

#include "host/distributions/MCMV.h"
#include "statistics/Paired.h"

struct PropZPairSamp {
  std::int32_t _pairInd = -1;
  // Positions among the test variables; the second one in the second list when there is one.
  std::int32_t _varInd1 = -1;
  std::int32_t _varInd2 = -1;
  // Weighted counts.
  double _n11 = 0.0;
  double _n10 = 0.0;
  double _n01 = 0.0;
  double _n00 = 0.0;
  double _n1p = 0.0;
  double _np1 = 0.0;
  double _n0p = 0.0;
  double _np0 = 0.0;
  double _nObs = 0.0;
  double _p11 = MCMV::Missing;
  double _p10 = MCMV::Missing;
  double _p01 = MCMV::Missing;
  double _p00 = MCMV::Missing;
  double _prop1 = MCMV::Missing;
  double _prop2 = MCMV::Missing;
  double _estDiff = MCMV::Missing;  // _prop1 less _prop2
  double _ase1 = MCMV::Missing;
  double _ase2 = MCMV::Missing;
  double _aseDiff0 = MCMV::Missing;  // of the difference, if there were none
  double _aseDiff1 = MCMV::Missing;  // of the difference as observed
  bool _bGoodData = true;
  bool _bCompleteData = true;

  // Counts one case of this weight; it counts only when both codes are 0 or 1.
  void Count(std::int32_t code1, std::int32_t code2, double weight);
  // The counts as the formulas take them.
  statistics::PairedCounts Counts() const;
  // Fills in estimates and flags from the counts.
  void Estimate();
  // Writes itself as lines of diagnostic text.
  void Display() const;
};
