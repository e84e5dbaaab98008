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

// 1 - phi for phi = a / sqrt(product), a > 0, with the digits that the difference would lose:
// product - a^2 is cases (n11 n10 n01 + ... + n10 n01 n00), and if a is corrected by half the cases
// also cases (a + cases / 4).
double complementOf(const PairedCounts& counts, double a, bool corrected, double product) {
  const double cases = counts.cases();
  const double triples = counts.n11 * counts.n00 * (counts.n10 + counts.n01) +
                         counts.n10 * counts.n01 * (counts.n11 + counts.n00);
  const double rest = corrected ? a + cases / 4.0 : 0.0;
  const double root = std::sqrt(product);
  return cases / root * ((triples + rest) / (root + a));
}

// 1 less the correlation of the two measurements; missing when it cannot be formed. The three cases
// of a positive A, and the tolerance, are as they are on purpose.
double correlationComplement(const PairedCounts& counts) {
  if (counts.n1p() == 0.0 || counts.n0p() == 0.0 || counts.np1() == 0.0 || counts.np0() == 0.0)
    return 1.0;
  const double cases = counts.cases();
  const double a = counts.n00 * counts.n11 - counts.n01 * counts.n10;
  if (std::fabs(2.0 * a - cases) < 1e-12) return 1.0;
  const double product = counts.n0p() * counts.n1p() * counts.np1() * counts.np0();
  if (!(product > 0.0)) return MCMV::Missing;
  if (!(a > 0.0)) return 1.0 - a / std::sqrt(product);
  const bool corrected = 2.0 * a > cases;
  return complementOf(counts, corrected ? a - cases / 2.0 : a, corrected, product);
}

// The length of v - w when phi is the cosine of the angle between them: the root of
// v^2 + w^2 - 2 phi v w as (v - w)^2 + 2 (1 - phi) v w, which is never negative.
double hybrid(double v, double w, double apart, double complement) {
  return std::sqrt(apart * apart + 2.0 * complement * v * w);
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
  const double complement = correlationComplement(counts);
  if (complement == MCMV::Missing) return {};
  const double z = critical.z;
  const Distances first = wilsonDistances(counts.n1p(), counts.n0p(), z);
  const Distances second = wilsonDistances(counts.np1(), counts.np0(), z);
  const double difference = counts.difference();
  // first.below - second.above and second.below - first.above, without taking differences of what
  // is nearly equal: both have the factor z^2 / N (p1 + p2 - 1) / d.
  const double halves =
      wilsonHalf(counts.n1p(), counts.n0p(), z) + wilsonHalf(counts.np1(), counts.np0(), z);
  const double share = halves > 0.0 ? difference / halves : 0.0;
  const double perCase = z * z / cases;
  const double common = perCase * ((counts.n11 - counts.n00) / cases) / (1.0 + perCase);
  return inDifferenceRange(
      difference - hybrid(first.below, second.above, common * (1.0 - share), complement),
      difference + hybrid(first.above, second.below, common * (1.0 + share), complement));
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
