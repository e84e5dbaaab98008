// Both tails of the beta distribution, each with its relative digits.
#pragma once

#include "embedded/distributions/BetaDensity.h"

namespace embedded::distributions {

enum class Tail { Lower, Upper };

inline Tail other(Tail tail) {
  return tail == Tail::Lower ? Tail::Upper : Tail::Lower;
}

// I_x(a, b) (Lower) or 1 - I_x(a, b) (Upper) for shapes a, b > 0 and 0 <= x <= 1; NaN where the
// continued fraction did not converge, which no shape of 1/2 and more meets.
//
// The tail on the far side of the mean is the density times a ratio of moderate size, and the
// other is its complement. Largest errors by region: see the tests' report.
double betaTail(double x, double a, double b, Tail tail);

// A tail with the density x^a (1 - x)^b / B(a, b), of which it is a multiple.
struct TailAndDensity {
  double tail;
  double density;
};
TailAndDensity betaTail(const BetaDensity& density, const Fraction& point, Tail tail);

// a - (a + b) x, which has no digits of its own near the mean unless formed like this.
double distanceToMean(const BetaDensity& density, const Fraction& point);

// The ratio I_x(a, b) B(a, b) / (x^a (1 - x)^b) for points at or below the mean, x <= a / (a + b),
// and its regimes.
double tailRatio(const BetaDensity& density, const Fraction& point);

// By the power series 2F1(a + b, 1; a + 1; x) / a, whose terms are positive: for x far below the
// mean. Abramowitz and Stegun 26.5.4.
double tailRatioBySeries(const BetaDensity& density, const Fraction& point);

// By continued fraction: for any shapes; near the mean the number of terms grows with the root of
// the smaller shape. Didonato and Morris (1992), Algorithm 708, equation (9).
double tailRatioByFraction(const BetaDensity& density, const Fraction& point);

// By Gauss-Legendre quadrature of the density over the log-odds below the point, at a cost that
// does not depend on the shapes: for a >= 20 and b >= 1/2. Preferred where both shapes are at least
// kQuadratureFrom, and where b < 2 makes the fraction lose digits.
double tailRatioByQuadrature(const BetaDensity& density, const Fraction& point);

inline constexpr double kQuadratureFrom = 2000;

}  // namespace embedded::distributions
