#include "embedded/distributions/BetaQuantile.h"

#include <algorithm>
#include <boost/math/special_functions/erf.hpp>
#include <cmath>
#include <limits>
#include <utility>

#include "embedded/distributions/Policy.h"

namespace embedded::distributions {

namespace {

constexpr int kMostSteps = 100;
// A step of fourth order from a tail this near (relatively) has all digits.
constexpr double kLastStepFrom = 3e-5;
constexpr double kLastLength = 0.01;
// An excess of the tail from which its own digits are enough.
constexpr double kRoughFrom = 1e-4;
constexpr double kSmallestNormal = std::numeric_limits<double>::min();
// Beyond this the tail is far from its Taylor polynomial: Newton's step, which cannot diverge.
constexpr double kNewtonFrom = 0.3;
constexpr double kLongestStep = 20;
// x below which it is found directly, and above which its complement is searched for.
constexpr double kTinyLog = -600;
constexpr double kTiny = 1e-260;
constexpr double kMirrorFrom = 0.75;
constexpr double kSqrt2 = 1.4142135623730951;
constexpr double kHalfUlp = 0x1p-54;
// Shapes beyond which a distribution is a limit of others to all digits.
constexpr double kSmallestShape = 1e-20;
constexpr double kLargestShape = 1e100;
constexpr double kBothLarge = 1e16;

// A quantile problem whose probability is at most 1/2.
struct Problem {
  BetaDensity density;
  double p;
  DoubleDouble logP;
  Tail tail;

  Problem mirrored() const { return {density.mirrored(), p, logP, other(tail)}; }
};

// The logarithm of the lower quantile under the leading power; see quantileByLeadingPower.
DoubleDouble leadingPowerLog(double p, const BetaDensity& density) {
  const DoubleDouble a = density.a();
  const DoubleDouble b = density.b();
  const DoubleDouble n = density.total();
  const DoubleDouble factor = log(p) + log(a) - density.logScale();
  return (factor - b * log(n / b)) / a - log(n / a);
}

// The normal quantile of a tail p <= 1/2.
double deviateOf(double p, Tail tail) {
  const double deviate = kSqrt2 * boost::math::erfc_inv(2 * p, Quiet());
  return tail == Tail::Upper ? deviate : -deviate;
}

// How far the quantile's log-odds lie from log(a / b); see quantileStartByNormal.
double shiftByNormal(double z, double a, double b) {
  const double skew = (z * z - 3) / 6;
  const double fromA = 1 / (2 * a - 1);
  const double fromB = 1 / (2 * b - 1);
  const double h = 2 / (fromA + fromB);
  const double root = std::sqrt(std::max(h + skew, 0.25 * h));
  return 2 * (z * root / h + (fromB - fromA) * (skew + 5.0 / 6 - 2 / (3 * h)));
}

// The log-odds to begin with. z is the normal quantile of the same tail.
double start(const Problem& problem) {
  const double a = problem.density.a();
  const double b = problem.density.b();
  const double z = deviateOf(problem.p, problem.tail);
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

// The tail's logarithm less that of p. Beyond the mean it is a sum of logarithms, without the
// roundings of the tail itself, which a small shape would multiply.
double offOf(const Problem& problem, const TailAndDensity& found) {
  const double excess = (found.tail - problem.p) / problem.p;
  const bool isRough = std::abs(excess) > kRoughFrom && found.tail > kSmallestNormal;
  if (found.ratio.hi > 0 && !isRough) {
    return (found.logDensity - problem.logP + log(found.ratio)).hi;
  }
  return std::abs(excess) < 0.5 ? std::log1p(excess) : std::log(found.tail) - std::log(problem.p);
}

// One step of the search: its length in log-odds, and how far the tail is from p.
struct Step {
  double length;
  double off;

  bool isLast() const { return std::abs(off) < kLastStepFrom && std::abs(length) < kLastLength; }
};

Step stepFrom(const Problem& problem, const Fraction& point, const TailAndDensity& found) {
  const double off = offOf(problem, found);
  const double sign = problem.tail == Tail::Lower ? 1 : -1;
  const double h = sign * (found.ratio.hi > 0 ? 1 / found.ratio.hi : found.density / found.tail);
  const double variance = problem.density.total().hi * point.x.hi * point.complement.hi;
  return {logOddsStep(off, h, distanceToMean(problem.density, point), variance), off};
}

// Steps from x; the result is the quantile, or its complement when `flipped`. Nothing when a shape
// is so small that the tail is flat to the last digit over a long way.
std::optional<double> searchBySteps(Problem problem, double x, bool flipped) {
  double longest = kLongestStep;
  bool inside = false;
  for (int i = 0; i < kMostSteps; ++i) {
    const Fraction point = Fraction::of(x);
    const double y = point.complement.hi;
    const TailAndDensity found = betaTail(problem.density, point, problem.tail);
    if (std::isnan(found.tail)) return std::nullopt;
    // Too far out, where there is no tail: back until there is one, and no such step again.
    const bool hasTail = found.ratio.hi > 0 || found.tail > 0;
    if (!hasTail && inside) longest /= 2;
    inside = hasTail;
    const double inward = problem.tail == Tail::Lower ? longest : -longest;
    const Step step = inside ? stepFrom(problem, point, found) : Step{inward, 1};
    const double change = changeBy(std::clamp(step.length, -longest, longest), x, y);
    const double complement = y + (point.complement.lo - change);
    x += change;
    const bool settled = std::abs(change) < kHalfUlp * x;
    if (step.isLast() || settled) return flipped ? complement : x;
    if (x > kMirrorFrom) {
      x = complement;
      problem = problem.mirrored();
      flipped = !flipped;
    }
    if (x < kTiny) return flipped ? 1 - tinyQuantile(problem) : tinyQuantile(problem);
  }
  return std::nullopt;
}

// Whether the quantile lies below these log-odds; nothing where there is no tail.
std::optional<bool> isBelow(const Problem& problem, double logOdds) {
  const double x = 1 / (1 + std::exp(std::abs(logOdds)));
  const bool flipped = logOdds > 0;
  const Problem own = flipped ? problem.mirrored() : problem;
  const TailAndDensity found = betaTail(own.density, Fraction::of(x), own.tail);
  if (std::isnan(found.tail)) return std::nullopt;
  return (offOf(own, found) > 0) == (problem.tail == Tail::Lower);
}

// The quantile between two log-odds by halving: slow, but for any tail that grows.
std::optional<double> searchByHalves(const Problem& problem) {
  double low = kTinyLog;
  double high = -kTinyLog;
  for (int i = 0; i < kMostSteps; ++i) {
    const double middle = low + (high - low) / 2;
    const auto below = isBelow(problem, middle);
    if (!below) return std::nullopt;
    (*below ? high : low) = middle;
  }
  if (high <= kTinyLog / 2) return std::min(tinyQuantile(problem), 1.0);
  return 1 / (1 + std::exp(-low));
}

// With a shape at a limit, p <= 1/2: all probability at the ends, normal log-odds, or a scaled
// gamma variate.
std::optional<double> extremeQuantile(double p, double a, double b, Tail tail) {
  if (std::min(a, b) < kSmallestShape) {
    const double mean = 1 / (1 + b / a);
    const double complement = 1 / (1 + a / b);
    return (tail == Tail::Lower ? p <= complement : p >= mean) ? 0 : 1;
  }
  if (std::min(a, b) > kBothLarge) {
    return 1 / (1 + b / a * std::exp(-shiftByNormal(deviateOf(p, tail), a, b)));
  }
  if (a > b) return 1;
  const auto scaled = betaQuantile(p, a, kLargestShape, tail);
  if (!scaled) return std::nullopt;
  return *scaled * (kLargestShape / b);
}

}  // namespace

double quantileStartByNormal(double z, double a, double b) {
  return std::log(a / b) + shiftByNormal(z, a, b);
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
  const auto [least, most] = std::minmax(a, b);
  if (least < kSmallestShape || least > kBothLarge || most > kLargestShape) {
    return extremeQuantile(p, a, b, tail);
  }
  const Problem given{BetaDensity(a, b), p, log(p), tail};
  Problem problem = given;
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
  const auto found = searchBySteps(problem, 1 / (1 + std::exp(-logOdds)), flipped);
  return found && *found >= 0 && *found <= 1 ? found : searchByHalves(given);
}

}  // namespace embedded::distributions
