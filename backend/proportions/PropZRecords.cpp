// Counting and estimating: the statistics records of the three designs.
#include "PropZIndSamp.h"
#include "PropZOneSamp.h"
#include "PropZPairSamp.h"

namespace {

// What the records of all designs take over from their estimates.
template <class Record, class Estimates>
void TakeDifference(Record& record, const Estimates& estimates) {
  record._estDiff = estimates.estDiff;
  record._aseDiff0 = estimates.aseDiff0;
  record._aseDiff1 = estimates.aseDiff1;
  record._bGoodData = estimates.goodData;
  record._bCompleteData = estimates.completeData;
}

// And those that compare two proportions.
template <class Record, class Estimates>
void TakeComparison(Record& record, const Estimates& estimates) {
  record._prop1 = estimates.prop1;
  record._prop2 = estimates.prop2;
  record._ase1 = estimates.ase1;
  record._ase2 = estimates.ase2;
  TakeDifference(record, estimates);
}

}  // namespace

// --- One sample ---------------------------------------------------------------------------------

statistics::OneSampleCounts PropZOneSamp::Counts(double testValue) const {
  return {.successes = _nSucc, .failures = _nFail, .testValue = testValue};
}

void PropZOneSamp::Estimate(double testValue) {
  const statistics::OneSampleEstimates estimates = statistics::estimate(Counts(testValue));
  _prop = estimates.prop;
  TakeDifference(*this, estimates);
}

// --- Paired samples -----------------------------------------------------------------------------

void PropZPairSamp::Count(std::int32_t code1, std::int32_t code2, double weight) {
  const auto usable = [](std::int32_t code) { return code == 0 || code == 1; };
  if (!usable(code1) || !usable(code2)) return;
  double& cell = code1 == 1 ? (code2 == 1 ? _n11 : _n10) : (code2 == 1 ? _n01 : _n00);
  cell += weight;
  (code1 == 1 ? _n1p : _n0p) += weight;
  (code2 == 1 ? _np1 : _np0) += weight;
  _nObs += weight;
}

statistics::PairedCounts PropZPairSamp::Counts() const {
  return {.n11 = _n11, .n10 = _n10, .n01 = _n01, .n00 = _n00};
}

void PropZPairSamp::Estimate() {
  const statistics::PairedEstimates estimates = statistics::estimate(Counts());
  _p11 = estimates.p11;
  _p10 = estimates.p10;
  _p01 = estimates.p01;
  _p00 = estimates.p00;
  TakeComparison(*this, estimates);
}

// --- Independent samples ------------------------------------------------------------------------

void PropZIndSamp::Count(std::int32_t group, std::int32_t code, double weight) {
  if ((group != 0 && group != 1) || (code != 0 && code != 1)) return;
  if (group == 0) {
    (code == 1 ? _nSucc1 : _nFail1) += weight;
    _nTrials1 += weight;
  } else {
    (code == 1 ? _nSucc2 : _nFail2) += weight;
    _nTrials2 += weight;
  }
  _nObs += weight;
}

statistics::IndependentCounts PropZIndSamp::Counts() const {
  return {.successes1 = _nSucc1, .failures1 = _nFail1, .successes2 = _nSucc2, .failures2 = _nFail2};
}

void PropZIndSamp::Estimate() {
  const statistics::IndependentEstimates estimates = statistics::estimate(Counts());
  TakeComparison(*this, estimates);
}
