// Wilson's interval and its continuity-corrected form.
#include "statistics/WilsonBounds.h"

#include <cmath>

namespace statistics {

namespace {

// The smaller root, as the roots' product over the larger: it keeps its digits when it is small,
// and is 0 exactly for a proportion of 0.
double smallerRoot(double proportion, double correction, double half) {
  const double larger = correction + proportion + half;
  return larger > 0.0 ? proportion * proportion / larger : 0.0;
}

}  // namespace

Interval wilsonBounds(double proportion, double trials, double z) {
  const double zSquared = z * z;
  const double correction = zSquared / (2.0 * trials);
  const double complement = 1.0 - proportion;
  const double half =
      z * std::sqrt(zSquared / (trials * 4.0 * trials) + complement * proportion / trials);
  const double lower = smallerRoot(proportion, correction, half);
  // Above one half the distance from 1 is the small number.
  const double upper = proportion > 0.5
                           ? 1.0 - smallerRoot(complement, correction, half)
                           : (correction + proportion + half) / (zSquared / trials + 1.0);
  return {lower, upper};
}

Interval correctedWilsonBounds(double successes, double proportion, double trials, double z) {
  const double zSquared = z * z;
  const double failures = trials - successes;
  const double common = zSquared - 1.0 / trials + 4.0 * successes * (failures / trials);
  const double centre = 2.0 * successes + zSquared;
  const double denominator = 2.0 * (trials + zSquared);
  const double below = 1.0 + z * std::sqrt(common + 4.0 * proportion - 2.0);
  const double above = 1.0 + z * std::sqrt(common - 4.0 * proportion + 2.0);
  return {(centre - below) / denominator, (centre + above) / denominator};
}

double wilsonHalf(double successes, double failures, double z) {
  const double trials = successes + failures;
  const double variance = failures / trials * (successes / trials) / trials;
  return z * std::sqrt(z * z / (trials * 4.0 * trials) + variance);
}

Distances wilsonDistances(double successes, double failures, double z) {
  const double trials = successes + failures;
  const double perTrial = z * z / trials;
  const double half = wilsonHalf(successes, failures, z);
  // The larger distance lies on the side of 1/2; the product of both is z^2 p (1 - p) / (n d).
  const double larger =
      (half + perTrial * (std::fabs(failures - successes) / (2.0 * trials))) / (1.0 + perTrial);
  if (!(larger > 0.0)) return {0.0, 0.0};
  const double product = perTrial * (failures / trials) * (successes / trials) / (1.0 + perTrial);
  const double smaller = product / larger;
  return successes > failures ? Distances{larger, smaller} : Distances{smaller, larger};
}

Distances correctedWilsonDistances(double successes, double failures, double z) {
  const double trials = successes + failures;
  const double zSquared = z * z;
  const double common = zSquared - 1.0 / trials + 4.0 * successes * (failures / trials);
  // 2 p - 1.
  const double skew = (successes - failures) / trials;
  const double denominator = 2.0 * (trials + zSquared);
  return {(zSquared * skew + 1.0 + z * std::sqrt(common + 2.0 * skew)) / denominator,
          (1.0 - zSquared * skew + z * std::sqrt(common - 2.0 * skew)) / denominator};
}

}  // namespace statistics
