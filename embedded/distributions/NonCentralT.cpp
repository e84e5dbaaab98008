#include "embedded/distributions/NonCentralT.h"

#include <algorithm>
#include <boost/math/distributions/non_central_t.hpp>
#include <boost/math/tools/roots.hpp>
#include <cmath>
#include <cstdint>
#include <limits>

#include "embedded/distributions/Policy.h"

namespace embedded::distributions {

namespace {

constexpr std::uintmax_t kMostEvaluations = 200;

struct Bracket {
  double low;
  double high;
};

// Steps away from 0 to the side of the root, doubling, until the excess changes its sign: it is not
// negative at the lower end, and not positive at the upper one.
template <class Excess>
std::optional<Bracket> bracketFromZero(const Excess& excess, double step) {
  const double atZero = excess(0.0);
  if (std::isnan(atZero)) return std::nullopt;
  const double side = atZero > 0 ? 1 : -1;  // the tail falls with delta
  double near = 0;
  for (double far = step; near < kMostNonCentrality; far *= 2) {
    far = std::min(far, kMostNonCentrality);
    const double value = excess(side * far);
    if (std::isnan(value)) return std::nullopt;
    if (value * side <= 0) {
      return side > 0 ? Bracket{near, far} : Bracket{-far, -near};
    }
    near = far;
  }
  return std::nullopt;
}

}  // namespace

double nonCentralTTail(double t, double freedom, double delta) {
  const boost::math::non_central_t_distribution<double, Quiet> distribution(freedom, delta);
  return boost::math::cdf(distribution, t);
}

std::optional<double> findNonCentrality(double t, double freedom, double q, double step,
                                        double tolerance) {
  const bool valid = std::isfinite(t) && freedom > 0 && std::isfinite(freedom) && q > 0 && q < 1 &&
                     step > 0 && std::isfinite(step) && tolerance > 0;
  if (!valid) return std::nullopt;
  const auto excess = [&](double delta) { return nonCentralTTail(t, freedom, delta) - q; };
  const auto bracket = bracketFromZero(excess, step);
  if (!bracket) return std::nullopt;
  const double low = excess(bracket->low);
  const double high = excess(bracket->high);
  if (low == 0) return bracket->low;
  if (high == 0) return bracket->high;
  const auto settled = [tolerance](double left, double right) {
    const double digits =
        4 * std::numeric_limits<double>::epsilon() * std::max(std::abs(left), std::abs(right));
    return right - left <= std::max(tolerance, digits);
  };
  std::uintmax_t evaluations = kMostEvaluations;
  const auto [left, right] = boost::math::tools::toms748_solve(
      excess, bracket->low, bracket->high, low, high, settled, evaluations, Quiet());
  if (!settled(left, right)) return std::nullopt;
  return left + (right - left) / 2;
}

}  // namespace embedded::distributions
