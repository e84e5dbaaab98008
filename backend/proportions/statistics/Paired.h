// Paired samples: two measurements on the same cases, and the difference of their proportions.
//
// Five intervals for the difference, first minus second, and six tests that it is 0, pure functions
// of the two-by-two table. All need at least one case. In IEEE doubles, without fused
// multiply-add.
#pragma once

#include "statistics/Results.h"

namespace statistics {

// The two-by-two table, whole numbers up to 2^52: 1 is success, 0 failure, first measurement
// first. A `p` marks a margin.
struct PairedCounts {
  double n11 = 0.0;
  double n10 = 0.0;  // success on the first only, "b"
  double n01 = 0.0;  // success on the second only, "c"
  double n00 = 0.0;

  double n1p() const { return n11 + n10; }
  double np1() const { return n11 + n01; }
  double n0p() const { return n01 + n00; }
  double np0() const { return n10 + n00; }
  double cases() const { return n1p() + n0p(); }
  double prop1() const { return n1p() / cases(); }
  double prop2() const { return np1() / cases(); }

  // prop1 - prop2, and N (b + c) - (b - c)^2, of which cancellation takes no digits: the latter is
  // (b + c)(n11 + n00) + 4bc.
  double difference() const { return (n10 - n01) / cases(); }
  double spread() const { return (n10 + n01) * (n11 + n00) + 4.0 * n10 * n01; }
};

// What is reported beside the methods. Without a case (goodData false) the numbers are missing
// and completeData stays true: nobody reads it then.
struct PairedEstimates {
  double p11 = MCMV::Missing;
  double p10 = MCMV::Missing;
  double p01 = MCMV::Missing;
  double p00 = MCMV::Missing;
  double prop1 = MCMV::Missing;
  double prop2 = MCMV::Missing;
  double estDiff = MCMV::Missing;  // prop1 - prop2
  // Divided by the margin's count of successes, not by the cases, on purpose; missing when that
  // count is 0.
  double ase1 = MCMV::Missing;
  double ase2 = MCMV::Missing;
  double aseDiff0 = MCMV::Missing;  // of the difference, if there were none
  double aseDiff1 = MCMV::Missing;  // of the difference as observed
  bool goodData = true;             // there are cases
  bool completeData = true;         // discordant cases, successes on both, and a variance
};

PairedEstimates estimate(const PairedCounts& counts);

// --- Intervals for prop1 - prop2, clamped to [-1, 1] --------------------------------------------

// Wald's interval after one half was added to each cell. Agresti and Min 2005.
Interval agrestiMin(const PairedCounts& counts, const CriticalValues& critical);

// Wald's interval after one was added to each discordant cell. Bonett and Price 2012.
Interval bonettPrice(const PairedCounts& counts, const CriticalValues& critical);

// The square-and-add interval of the two Wilson intervals, with the correlation phi of the
// measurements. Newcombe 1998, method 10, but for the correction of phi: there it is
// max(A - N/2, 0) for A = n11 n00 - n10 n01 > 0. Here phi is 0 only when 2A = N within 1e-12 (or a
// margin is 0), and 0 < A < N/2 is not corrected at all, on purpose.
// Both bounds are missing when phi cannot be formed.
Interval newcombe(const PairedCounts& counts, const CriticalValues& critical);

// The difference and z standard errors; a single point when no case is discordant. Wald 1943.
Interval wald(const PairedCounts& counts, const CriticalValues& critical);

// Wald's interval, each side wider by 1 / N. Fleiss, Levin and Paik 2003.
Interval waldCorrected(const PairedCounts& counts, const CriticalValues& critical);

// --- Tests of prop1 = prop2 ---------------------------------------------------------------------

// The sign test of the discordant cases: P(X <= min(n10, n01)) for X ~ Bin(n10 + n01, 1/2), and
// twice that, at most 1. No statistic. Missing when a call of the host's probability function
// fails. Relative digits hold deep in the tail; a million million cases take milliseconds.
// McNemar 1947.
TestResult exactTest(const PairedCounts& counts);

// The sign test with half the probability of what was observed. Failures as for exactTest.
// Lancaster 1961; Fagerland, Lydersen and Laake 2013.
TestResult midpTest(const PairedCounts& counts);

// (b - c) / sqrt(b + c). Missing when no case is discordant. McNemar 1947.
TestResult mcNemarTest(const PairedCounts& counts);

// McNemar's test with |b - c| drawn one whole count towards 0. Z is 0 when b and c agree within
// 1e-12, looked at before anything else, so also when no case is discordant. Edwards 1948.
TestResult mcNemarCorrectedTest(const PairedCounts& counts);

// The difference over its standard error as observed. Missing when that is 0. Wald 1943.
TestResult waldTest(const PairedCounts& counts);

// Wald's test with the correction of mcNemarCorrectedTest: one whole count, not one half.
// Missing when b and c differ and the variance is not positive.
TestResult waldCorrectedTest(const PairedCounts& counts);

}  // namespace statistics
