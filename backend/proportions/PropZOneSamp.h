// The statistics record of one test variable of a one-sample analysis.
#pragma once

#include <cstdint>

#include "host/distributions/MCMV.h"
#include "statistics/OneSample.h"

struct PropZOneSamp {
  // Position among the test variables.
  std::int32_t _varInd = -1;
  // Weighted counts.
  double _nSucc = 0.0;
  double _nFail = 0.0;
  double _nTrials = 0.0;
  double _prop = MCMV::Missing;
  double _estDiff = MCMV::Missing;   // _prop less the test value
  double _aseDiff0 = MCMV::Missing;  // standard error at the test value
  double _aseDiff1 = MCMV::Missing;  // standard error at _prop
  bool _bGoodData = true;
  bool _bCompleteData = true;

  // Counts one case of this weight: code 1 is a success, 0 a failure, anything else no trial.
  void Count(std::int32_t code, double weight);
  // The counts as the formulas take them.
  statistics::OneSampleCounts Counts(double testValue) const;
  // Fills in estimates and flags from the counts.
  void Estimate(double testValue);
  // Writes itself as lines of diagnostic text.
  void Display() const;
};

// Once a case and variable: compiled into the loop over the cases.
inline void PropZOneSamp::Count(std::int32_t code, double weight) {
  if (code == 1)
    _nSucc += weight;
  else if (code == 0)
    _nFail += weight;
  else
    return;
  _nTrials += weight;
}
