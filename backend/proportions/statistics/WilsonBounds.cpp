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
  const double common = zSquared - 1.0 / trials + 4.0 * trials * proportion * (1.0 - proportion);
  const double centre = 2.0 * successes + zSquared;
  const double denominator = 2.0 * (trials + zSquared);
  const double below = 1.0 + z * std::sqrt(common + 4.0 * proportion - 2.0);
  const double above = 1.0 + z * std::sqrt(common - 4.0 * proportion + 2.0);
  return {(centre - below) / denominator, (centre + above) / denominator};
}

}  // namespace statistics
