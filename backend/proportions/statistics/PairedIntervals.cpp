// Estimates and confidence intervals of the difference of two paired proportions.
#include <cmath>

#include "statistics/Bounds.h"
#include "statistics/Paired.h"
#include "statistics/WilsonBounds.h"

namespace statistics {
namespace {

double errorOfMargin(double successes, double failures, double cases) {
  if (!(successes > 0.0)) return MCMV::Missing;
  return std::sqrt(failures / cases * (successes / cases) / successes);
}

// Discordant cases, successes on both measurements, and a difference that varies.
bool isComplete(const PairedCounts& counts) {
  return counts.n10 + counts.n01 > 0.0 && counts.n1p() > 0.0 && counts.np1() > 0.0 &&
         counts.spread() > 0.0;
}

// A difference (b - c) / cases and its standard error, `added` put to b and to c in the variance.
struct Difference {
  double value, error;
};

Difference differenceOf(const PairedCounts& counts, double added, double cases) {
  const double value = (counts.n10 - counts.n01) / cases;
  const double variance =
      ((counts.n01 + added) / cases + (counts.n10 + added) / cases - value * value) / cases;
  return {value, std::sqrt(variance)};
}

Interval around(const Difference& difference, const CriticalValues& critical) {
  const double half = critical.z * difference.error;
  return inDifferenceRange(difference.value - half, difference.value + half);
}

// The correlation of the two measurements; missing when it cannot be formed. The three cases of a
// positive A, and the tolerance, are as they are on purpose.
double correlation(const PairedCounts& counts) {
  if (counts.n1p() == 0.0 || counts.n0p() == 0.0 || counts.np1() == 0.0 || counts.np0() == 0.0)
    return 0.0;
  const double cases = counts.cases();
  const double a = counts.n00 * counts.n11 - counts.n01 * counts.n10;
  if (std::fabs(2.0 * a - cases) < 1e-12) return 0.0;
  const double product = counts.n0p() * counts.n1p() * counts.np1() * counts.np0();
  if (!(product > 0.0)) return MCMV::Missing;
  const double corrected = 2.0 * a > cases ? a - cases / 2.0 : a;
  return corrected / std::sqrt(product);
}

// The length of v - w when phi is the cosine of the angle between them.
double hybrid(double v, double w, double phi) {
  return std::sqrt(v * v + w * w - 2.0 * phi * v * w);
}

}  // namespace

PairedEstimates estimate(const PairedCounts& counts) {
  PairedEstimates result;
  const double cases = counts.cases();
  result.goodData = cases > 0.0;
  if (!result.goodData) return result;
  result.completeData = isComplete(counts);
  result.p11 = counts.n11 / cases;
  result.p10 = counts.n10 / cases;
  result.p01 = counts.n01 / cases;
  result.p00 = counts.n00 / cases;
  result.prop1 = counts.prop1();
  result.prop2 = counts.prop2();
  result.estDiff = counts.difference();
  result.ase1 = errorOfMargin(counts.n1p(), counts.n0p(), cases);
  result.ase2 = errorOfMargin(counts.np1(), counts.np0(), cases);
  result.aseDiff0 = std::sqrt((result.p10 + result.p01) / cases);
  result.aseDiff1 = std::sqrt(counts.spread() / cases / cases / cases);
  return result;
}

Interval agrestiMin(const PairedCounts& counts, const CriticalValues& critical) {
  return around(differenceOf(counts, 0.5, counts.cases() + 2.0), critical);
}

Interval bonettPrice(const PairedCounts& counts, const CriticalValues& critical) {
  return around(differenceOf(counts, 1.0, counts.cases() + 2.0), critical);
}

Interval newcombe(const PairedCounts& counts, const CriticalValues& critical) {
  const double cases = counts.cases();
  const double p1 = counts.prop1();
  const double p2 = counts.prop2();
  const auto [l1, u1] = wilsonBounds(p1, cases, critical.z);
  const auto [l2, u2] = wilsonBounds(p2, cases, critical.z);
  const double phi = correlation(counts);
  if (phi == MCMV::Missing) return {};
  const double difference = counts.difference();
  return inDifferenceRange(difference - hybrid(p1 - l1, u2 - p2, phi),
                           difference + hybrid(u1 - p1, p2 - l2, phi));
}

Interval wald(const PairedCounts& counts, const CriticalValues& critical) {
  return around(differenceOf(counts, 0.0, counts.cases()), critical);
}

Interval waldCorrected(const PairedCounts& counts, const CriticalValues& critical) {
  const auto [value, error] = differenceOf(counts, 0.0, counts.cases());
  const double half = 1.0 / counts.cases() + critical.z * error;
  return inDifferenceRange(value - half, value + half);
}

}  // namespace statistics
