// The statistics record of one test variable compared between two groups of cases.
#pragma once

#include <cstdint>

#include "host/distributions/MCMV.h"
#include "statistics/Independent.h"

struct PropZIndSamp {
  // Position among the test variables.
  std::int32_t _varInd = -1;
  // Weighted counts of the groups; group 1 has the group index 0.
  double _nSucc1 = 0.0;
  double _nFail1 = 0.0;
  double _nTrials1 = 0.0;
  double _nSucc2 = 0.0;
  double _nFail2 = 0.0;
  double _nTrials2 = 0.0;
  double _nObs = 0.0;
  double _prop1 = MCMV::Missing;
  double _prop2 = MCMV::Missing;
  double _estDiff = MCMV::Missing;  // _prop1 less _prop2
  double _ase1 = MCMV::Missing;
  double _ase2 = MCMV::Missing;
  double _aseDiff0 = MCMV::Missing;  // of the difference, with the pooled proportion
  double _aseDiff1 = MCMV::Missing;  // of the difference, not pooled
  bool _bGoodData = true;
  bool _bCompleteData = true;

  // Counts one case of this weight; only group indexes and codes 0 and 1 count.
  void Count(std::int32_t group, std::int32_t code, double weight);
  // The counts as the formulas take them.
  statistics::IndependentCounts Counts() const;
  // Fills in estimates and flags from the counts.
  void Estimate();
  // Writes itself as lines of diagnostic text.
  void Display() const;
};
