#include "embedded/distributions/BetaTail.h"

#include <algorithm>
#include <array>
#include <boost/math/quadrature/gauss.hpp>
#include <cmath>
#include <limits>

#include "embedded/distributions/Policy.h"

namespace embedded::distributions {

namespace {

constexpr int kMostTerms = 1000;
// Where the integrand has fallen to e^-39 the rest is below half an ulp.
constexpr double kReach = 39;
// A shape that is lost in the terms of the fraction.
constexpr double kTinyShape = 1e-8;

// sum of coefficients[k] power^k.
template <std::size_t size>
double polynomial(const std::array<double, size>& coefficients, double power) {
  double sum = 0;
  for (std::size_t k = size; k-- > 0;) sum = coefficients[k] + power * sum;
  return sum;
}

// e^s - 1 - s.
double expm1Rest(double s) {
  if (std::abs(s) > 0.3) return std::expm1(s) - s;
  constexpr std::array<double, 13> kTaylor{
      1.0 / 2,         1.0 / 6,          1.0 / 24,         1.0 / 120,     1.0 / 720,
      1.0 / 5040,      1.0 / 40320,      1.0 / 362880,     1.0 / 3628800, 1.0 / 39916800,
      1.0 / 479001600, 1.0 / 6227020800, 1.0 / 87178291200};
  return s * s * polynomial(kTaylor, s);
}

// log(1 + v) - v.
double log1pRest(double v) {
  if (v < -0.3 || v > 0.4) return std::log1p(v) - v;
  // With r = v / (2 + v): log(1 + v) = 2 (r + r^3/3 + r^5/5 + ...) and v = 2 r + r v.
  constexpr std::array<double, 11> kOdd{1.0 / 3,  1.0 / 5,  1.0 / 7,  1.0 / 9,  1.0 / 11, 1.0 / 13,
                                        1.0 / 15, 1.0 / 17, 1.0 / 19, 1.0 / 21, 1.0 / 23};
  const double r = v / (2 + v);
  return r * (2 * r * r * polynomial(kOdd, r * r) - v);
}

// The terms of b0 + a1 / (b1 + a2 / (b2 + ...)), whose inverse is the ratio.
class FractionTerms {
 public:
  struct Term {
    double numerator;
    double denominator;
  };

  FractionTerms(const BetaDensity& density, const Fraction& point)
      : a_(density.a()),
        b_(density.b()),
        total_(density.total().hi),
        x_(point.x.hi),
        y_(point.complement.hi),
        distance_(distanceToMean(density, point)) {}

  Term at(double m) const {
    const double middle = a_ + 2 * m;
    const double last = (a_ + m) / (middle + 1) * (distance_ + 1 + m * (1 + y_));
    if (m == 0) return {0, last};
    const double common = m * (b_ - m) * x_ / (middle - 1);
    return {common * x_ * (a_ + m - 1) / (middle - 1) * (total_ + m - 1), m + common + last};
  }

 private:
  double a_;
  double b_;
  double total_;
  double x_;
  double y_;
  double distance_;
};

// n times log E e^(s (X - y)) for a Bernoulli X of mean y <= 1/2, and its derivative.
struct Cumulant {
  double n;
  double y;
  double value(double s) const {
    const double rest = expm1Rest(s);
    return n * (y * rest + log1pRest(y * (s + rest)));
  }
  double slope(double s) const {
    const double grown = std::expm1(s);
    return n * y * (1 - y) * grown / (1 + y * grown);
  }
};

// Where the fraction takes long: large shapes. Where its terms alternate in sign and lose digits:
// the far tail of a small second shape, near the mean.
bool suitsQuadrature(const BetaDensity& density, const Fraction& point) {
  const double a = density.a();
  const double b = density.b();
  if (std::min(a, b) >= kQuadratureFrom) return true;
  return a >= 20 && b >= 0.5 && b < 2 && b != 1 && distanceToMean(density, point) < 3;
}

// Near a small second shape, where few terms make the other tail.
bool suitsComplement(const BetaDensity& density, const Fraction& point) {
  const double a = density.a();
  const double b = density.b();
  const double y = point.complement.hi;
  const bool isNear = a > 1 || b < kTinyShape || y < 0.01;
  return b < 0.5 && isNear && y < 0.7 && density.total().hi * y < 20;
}

}  // namespace

double distanceToMean(const BetaDensity& density, const Fraction& point) {
  return (DoubleDouble(density.a()) - density.total() * point.x).hi;
}

double tailRatioByFraction(const BetaDensity& density, const Fraction& point) {
  const FractionTerms terms(density, point);
  std::array<FractionTerms::Term, kMostTerms> kept;
  // Forward by Lentz's method only to learn how many terms it takes; backward from there, where
  // each step damps the error of those before it.
  kept[0] = terms.at(0);
  double c = kept[0].denominator;
  double d = 0;
  for (std::size_t m = 1; m < kept.size(); ++m) {
    const auto [numerator, denominator] = kept[m] = terms.at(static_cast<double>(m));
    d = 1 / (denominator + numerator * d);
    c = denominator + numerator / c;
    if (std::abs(c * d - 1) > std::numeric_limits<double>::epsilon()) continue;
    double value = denominator;
    for (; m > 0; --m) value = kept[m - 1].denominator + kept[m].numerator / value;
    return 1 / value;
  }
  return std::numeric_limits<double>::quiet_NaN();
}

DoubleDouble tailRatioBySeries(const BetaDensity& density, const Fraction& point) {
  const double total = density.total().hi;
  const double next = density.a() + 1;
  double term = 1;
  double sum = 0;  // what follows the leading 1
  for (double k = 0; k < kMostTerms && term > 1e-17; ++k) {
    term *= (total + k) / (next + k) * point.x.hi;
    sum += term;
  }
  return quickTwoSum(1, sum) / density.a();
}

double tailRatioByComplement(const BetaDensity& density, const Fraction& point) {
  const BetaDensity mirrored = density.mirrored();
  const DoubleDouble logDensity = mirrored.logAt(point.mirrored());
  const DoubleDouble logOther = logDensity + log(tailRatioBySeries(mirrored, point.mirrored()));
  return std::max(0.0, -std::expm1(logOther.hi)) * std::exp(-logDensity.hi);
}

double tailRatioByQuadrature(const BetaDensity& density, const Fraction& point) {
  using Nodes = boost::math::quadrature::gauss<double, 30, Quiet>;
  // Going down by s in log-odds takes the exponent from 0 to -distance s - K(+-s), K the
  // cumulant function written on the smaller of x and 1 - x.
  const bool left = point.x.hi <= point.complement.hi;
  const double sign = left ? -1 : 1;
  const Cumulant cumulant{density.total().hi, left ? point.x.hi : point.complement.hi};
  const double distance = std::max(0.0, distanceToMean(density, point));
  const double variance = cumulant.n * cumulant.y * (1 - cumulant.y);
  // The reach by the normal approximation, then Newton's steps on the convex exponent.
  double reach = 2 * kReach / (distance + std::sqrt(distance * distance + 2 * kReach * variance));
  double excess = kReach;
  for (int i = 0; i < 20 && std::abs(excess) > 1; ++i) {
    excess = distance * reach + cumulant.value(sign * reach) - kReach;
    reach -= excess / (distance + sign * cumulant.slope(sign * reach));
  }
  const double half = 0.5 * reach;
  double sum = 0;
  const auto& nodes = Nodes::abscissa();
  const auto& weights = Nodes::weights();
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    for (const double node : {-nodes[i], nodes[i]}) {
      const double s = half * (1 + node);
      sum += weights[i] * std::exp(-distance * s - cumulant.value(sign * s));
    }
  }
  return half * sum;
}

DoubleDouble tailRatio(const BetaDensity& density, const Fraction& point) {
  if (density.total().hi * point.x.hi < 0.2 * (density.a() + 1)) {
    return tailRatioBySeries(density, point);
  }
  if (suitsComplement(density, point)) return tailRatioByComplement(density, point);
  if (suitsQuadrature(density, point)) return tailRatioByQuadrature(density, point);
  return tailRatioByFraction(density, point);
}

TailAndDensity betaTail(const BetaDensity& density, const Fraction& point, Tail tail) {
  if (distanceToMean(density, point) < 0) {
    return betaTail(density.mirrored(), point.mirrored(), other(tail));
  }
  const DoubleDouble logDensity = density.logAt(point);
  const double top = expToDouble(logDensity);
  // The ratio is of no use to a complement of 1 to all digits.
  if (tail == Tail::Upper && top == 0) return {1, 0, logDensity, 0};
  const DoubleDouble ratio = tailRatio(density, point);
  const double own = top * ratio.hi;
  if (tail == Tail::Upper) return {1 - own, top, logDensity, 0};
  return {own, top, logDensity, ratio};
}

double betaTail(double x, double a, double b, Tail tail) {
  if (x == 0 || x == 1) return (x == 1) == (tail == Tail::Lower) ? 1 : 0;
  return betaTail(BetaDensity(a, b), Fraction::of(x), tail).tail;
}

}  // namespace embedded::distributions
