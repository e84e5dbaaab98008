// Both tails of the beta distribution, each with its relative digits.
#pragma once

#include "embedded/distributions/BetaDensity.h"

namespace embedded::distributions {

enum class Tail { Lower, Upper };

inline Tail other(Tail tail) {
  return tail == Tail::Lower ? Tail::Upper : Tail::Lower;
}

// I_x(a, b) (Lower) or 1 - I_x(a, b) (Upper) for shapes a, b from 1e-20 to 1e100 and
// 0 <= x <= 1; NaN where the continued fraction did not converge, which is not known to happen.
//
// The tail on the far side of the mean is the density times a ratio of moderate size, and the
// other is its complement. Largest errors by region: see the tests' report. A tail near a shape
// below 1/2 has an absolute error of some 1e-17.
double betaTail(double x, double a, double b, Tail tail);

// A tail with the density x^a (1 - x)^b / B(a, b), of which it is a multiple.
struct TailAndDensity {
  double tail;
  double density;
  // Where the tail is the one beyond the point, away from the mean: the logarithm of the density
  // and the tail's ratio to it, which keep their digits where tail and density underflow. Else the
  // ratio is 0.
  DoubleDouble logDensity;
  DoubleDouble ratio;
};
TailAndDensity betaTail(const BetaDensity& density, const Fraction& point, Tail tail);

// a - (a + b) x, which has no digits of its own near the mean unless formed like this.
double distanceToMean(const BetaDensity& density, const Fraction& point);

// The ratio I_x(a, b) B(a, b) / (x^a (1 - x)^b) for points at or below the mean, x <= a / (a + b),
// and its regimes.
DoubleDouble tailRatio(const BetaDensity& density, const Fraction& point);

// By the power series 2F1(a + b, 1; a + 1; x) / a, whose terms are positive: for x far below the
// mean. Abramowitz and Stegun 26.5.4.
DoubleDouble tailRatioBySeries(const BetaDensity& density, const Fraction& point);

// By continued fraction: for any shapes; near the mean the number of terms grows with the root of
// the smaller shape, and is not-a-number where a thousand are not enough. Didonato and Morris
// (1992), Algorithm 708, equation (9).
double tailRatioByFraction(const BetaDensity& density, const Fraction& point);

// By Gauss-Legendre quadrature of the density over the log-odds below the point, at a cost that
// does not depend on the shapes: for a >= 20 and b >= 1/2. Preferred where both shapes are at least
// kQuadratureFrom, and where b < 2 makes the fraction lose digits.
double tailRatioByQuadrature(const BetaDensity& density, const Fraction& point);

// As the complement of the other tail, taken where that is nearly 1 without losing what is missing
// of it: for b < 1/2 and x so near to 1 that the series of the other tail is short, where the
// fraction converges slowly.
double tailRatioByComplement(const BetaDensity& density, const Fraction& point);

inline constexpr double kQuadratureFrom = 2000;

}  // namespace embedded::distributions
