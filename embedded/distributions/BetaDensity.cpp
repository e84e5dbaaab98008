#include "embedded/distributions/BetaDensity.h"

#include <cmath>
#include <utility>

#include "embedded/distributions/StirlingError.h"

namespace embedded::distributions {

namespace {

constexpr DoubleDouble kLogSqrt2Pi{0.9189385332046728, -3.8782941580672416e-17};

}  // namespace

BetaDensity::BetaDensity(double a, double b)
    : a_(a), b_(b), total_(twoSum(a, b)), overA_(total_ / a), overB_(total_ / b) {
  const DoubleDouble corrections = stirlingError(total_.hi) - stirlingError(a) - stirlingError(b);
  // a b / n as the smaller shape over n / (the larger shape): no overflow.
  const DoubleDouble spread = a < b ? DoubleDouble(a) / overB_ : DoubleDouble(b) / overA_;
  logScale_ = scaled(log(spread), 0.5) - kLogSqrt2Pi + corrections;
}

DoubleDouble BetaDensity::logAt(const Fraction& point) const {
  return log(point.x * overA_) * a_ + log(point.complement * overB_) * b_ + logScale_;
}

double BetaDensity::at(const Fraction& point) const {
  return expToDouble(logAt(point));
}

BetaDensity BetaDensity::mirrored() const {
  BetaDensity other = *this;
  std::swap(other.a_, other.b_);
  std::swap(other.overA_, other.overB_);
  return other;
}

}  // namespace embedded::distributions
