#include "embedded/distributions/BetaQuantile.h"

#include <algorithm>
#include <boost/math/special_functions/erf.hpp>
#include <cmath>
#include <utility>

#include "embedded/distributions/Policy.h"

namespace embedded::distributions {

namespace {

constexpr int kMostSteps = 100;
// A step of fourth order from a tail this near (relatively) has all digits.
constexpr double kLastStepFrom = 3e-5;
// Beyond this the tail is far from its Taylor polynomial: Newton's step, which cannot diverge.
constexpr double kNewtonFrom = 0.3;
constexpr double kLongestStep = 20;
// x below which it is found directly, and above which its complement is searched for.
constexpr double kTinyLog = -600;
constexpr double kTiny = 1e-260;
constexpr double kMirrorFrom = 0.75;
constexpr double kSqrt2 = 1.4142135623730951;

// A quantile problem whose probability is at most 1/2.
struct Problem {
  BetaDensity density;
  double p;
  Tail tail;

  Problem mirrored() const { return {density.mirrored(), p, other(tail)}; }
};

// The logarithm of the lower quantile under the leading power; see quantileByLeadingPower.
DoubleDouble leadingPowerLog(double p, const BetaDensity& density) {
  const DoubleDouble a = density.a();
  const DoubleDouble b = density.b();
  const DoubleDouble n = density.total();
  const DoubleDouble factor = log(p) + log(a) - density.logScale();
  return (factor - b * log(n / b)) / a - log(n / a);
}

// The log-odds to begin with. z is the normal quantile of the same tail.
double start(const Problem& problem) {
  const double a = problem.density.a();
  const double b = problem.density.b();
  const double deviate = kSqrt2 * boost::math::erfc_inv(2 * problem.p, Quiet());
  const double z = problem.tail == Tail::Upper ? deviate : -deviate;
  if (std::min(a, b) >= 3) return quantileStartByNormal(z, a, b);
  // The probability below x, or below 1 - x, without a difference where it is the small one.
  const double upper = 1 - problem.p;
  if (a <= b) {
    return quantileStartByGamma(problem.tail == Tail::Lower ? problem.p : upper, z,
                                problem.density);
  }
  return -quantileStartByGamma(problem.tail == Tail::Upper ? problem.p : upper, -z,
                               problem.density.mirrored());
}

// The step in log-odds towards the root of log(tail) - log(p) = off, by its first three
// derivatives: h, h (l - h), h ((l - h)(l - 2 h) - v) with h = tail' / tail, l = a - n x and
// v = n x (1 - x).
double logOddsStep(double off, double h, double l, double v) {
  const double newton = -off / h;
  if (std::abs(off) > kNewtonFrom) return newton;
  const double second = h * (l - h);
  const double third = h * ((l - h) * (l - 2 * h) - v);
  double step = newton;
  for (int i = 0; i < 4; ++i) step = -off / (h + step * (second / 2 + step * third / 6));
  return step;
}

// Where x lands when its log-odds change by `step`, as the change of x.
double changeBy(double step, double x, double y) {
  const double growth = std::expm1(step);
  return x * y * growth / (1 + x * growth);
}

// The quantile where it is too small to be searched for; see quantileByLeadingPower.
double tinyQuantile(const Problem& problem) {
  const double lower = problem.tail == Tail::Lower ? problem.p : 1 - problem.p;
  return quantileByLeadingPower(lower, problem.density);
}

// One step of the search: its length in log-odds, and how far the tail is from p.
struct Step {
  double length;
  double off;
};

Step stepFrom(const Problem& problem, const Fraction& point, const TailAndDensity& found) {
  const double excess = (found.tail - problem.p) / problem.p;
  const double off =
      std::abs(excess) < 0.5 ? std::log1p(excess) : std::log(found.tail) - std::log(problem.p);
  const double h = (problem.tail == Tail::Lower ? 1 : -1) * found.density / found.tail;
  const double variance = problem.density.total().hi * point.x.hi * point.complement.hi;
  return {logOddsStep(off, h, distanceToMean(problem.density, point), variance), off};
}

// Searches from x; the result is the quantile, or its complement when `flipped`.
std::optional<double> search(Problem problem, double x, bool flipped) {
  double longest = kLongestStep;
  bool inside = false;
  for (int i = 0; i < kMostSteps; ++i) {
    const Fraction point = Fraction::of(x);
    const double y = point.complement.hi;
    const TailAndDensity found = betaTail(problem.density, point, problem.tail);
    if (std::isnan(found.tail)) return std::nullopt;
    // Too far out, where there is no tail: back until there is one, and no such step again.
    if (!(found.tail > 0) && inside) longest /= 2;
    inside = found.tail > 0;
    const double inward = problem.tail == Tail::Lower ? longest : -longest;
    const Step step = inside ? stepFrom(problem, point, found) : Step{inward, 1};
    const double change = changeBy(std::clamp(step.length, -longest, longest), x, y);
    const double complement = y + (point.complement.lo - change);
    x += change;
    if (std::abs(step.off) < kLastStepFrom) return flipped ? complement : x;
    if (x > kMirrorFrom) {
      x = complement;
      problem = problem.mirrored();
      flipped = !flipped;
    }
    if (x < kTiny) return flipped ? 1 - tinyQuantile(problem) : tinyQuantile(problem);
  }
  return std::nullopt;
}

}  // namespace

double quantileStartByNormal(double z, double a, double b) {
  const double skew = (z * z - 3) / 6;
  const double fromA = 1 / (2 * a - 1);
  const double fromB = 1 / (2 * b - 1);
  const double h = 2 / (fromA + fromB);
  const double root = std::sqrt(std::max(h + skew, 0.25 * h));
  const double w = z * root / h + (fromB - fromA) * (skew + 5.0 / 6 - 2 / (3 * h));
  return std::log(a / b) + 2 * w;
}

double quantileStartByGamma(double p, double z, const BetaDensity& density) {
  const double a = density.a();
  const double root = 1 - 1 / (9 * a) + z / (3 * std::sqrt(a));
  if (root < 0.4) {
    const double logX = std::min(leadingPowerLog(p, density).hi, -0.1);
    return logX - std::log1p(-std::exp(logX));
  }
  const double rate = a * root * root * root / std::max(density.b() + (a - 1) / 2, density.b() / 2);
  return std::log(std::expm1(rate));
}

double quantileByLeadingPower(double p, const BetaDensity& density) {
  return expToDouble(leadingPowerLog(p, density));
}

std::optional<double> betaQuantile(double p, double a, double b, Tail tail) {
  if (p == 0 || p == 1) return (p == 0) == (tail == Tail::Lower) ? 0 : 1;
  if (p > 0.5) {
    p = 1 - p;  // exact
    tail = other(tail);
  }
  Problem problem{BetaDensity(a, b), p, tail};
  double logOdds = start(problem);
  if (!std::isfinite(logOdds)) logOdds = 0;
  const bool flipped = logOdds > 0;
  if (flipped) {
    problem = problem.mirrored();
    logOdds = -logOdds;
  }
  if (logOdds < kTinyLog) {
    const double x = tinyQuantile(problem);
    return flipped ? 1 - x : x;
  }
  return search(problem, 1 / (1 + std::exp(-logOdds)), flipped);
}

}  // namespace embedded::distributions
