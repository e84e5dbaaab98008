// The beta quantile for a probability given in either tail.
#pragma once

#include <optional>

#include "embedded/distributions/BetaTail.h"

namespace embedded::distributions {

// x with betaTail(x, a, b, tail) = p for finite shapes a, b > 0 and 0 <= p <= 1; nothing when a
// tail cannot be computed, which is not known to happen. Values below the smallest double are 0,
// those above 1 - 2^-54 are 1.
//
// Steps of fourth order on the logarithm of the smaller tail over the log-odds, where it is
// concave, so that they converge from any start; the last one starts from a value whose tail is
// known to an ulp, so that the result is good to about an ulp from shapes of 1/2 on (see the tests'
// report). Smaller shapes multiply any error of p and of the tail, by about one over the shape;
// where even the steps do not settle, log-odds are halved.
std::optional<double> betaQuantile(double p, double a, double b, Tail tail);

// The regimes of the start, as log-odds.
//
// Both shapes of 1 and more: Carter (1947), Biometrika 34, as in Abramowitz and Stegun 26.5.22.
double quantileStartByNormal(double z, double a, double b);
// a <= b: -(b + (a - 1) / 2) log(1 - x) is nearly a gamma variate; its quantile by Wilson and
// Hilferty (1931), or in its far lower tail by the leading power of x.
double quantileStartByGamma(double p, double z, const BetaDensity& density);

// The lower quantile where x is so small that I_x(a, b) = x^a / (a B(a, b)) to all digits.
double quantileByLeadingPower(double p, const BetaDensity& density);

}  // namespace embedded::distributions
