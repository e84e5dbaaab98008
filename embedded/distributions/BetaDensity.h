// The beta density over the log-odds of its argument: the factor of every incomplete beta value.
#pragma once

#include "embedded/distributions/DoubleDouble.h"

namespace embedded::distributions {

// A point of (0, 1) with its complement, so that both keep their relative digits.
struct Fraction {
  DoubleDouble x;
  DoubleDouble complement;  // 1 - x

  // The point x itself; its complement is exact.
  static Fraction of(double x) { return {x, twoSum(1, -x)}; }
  Fraction mirrored() const { return {complement, x}; }
};

// x^a (1 - x)^b / B(a, b) for fixed shapes a, b > 0. What does not depend on x is formed once.
//
// The saddle-point form of Loader (2000): sqrt(a b / (2 pi n)) times e to the Stirling errors and
// a log(n x / a) + b log(n (1 - x) / b), n = a + b, all of it one exponent in double-double. The
// relative error is about 1 ulp for shapes up to 1e13, also where the value is near 1e-300.
class BetaDensity {
 public:
  BetaDensity(double a, double b);

  double at(const Fraction& point) const;
  // The logarithm of the same, which does not underflow.
  DoubleDouble logAt(const Fraction& point) const;

  double a() const { return a_; }
  double b() const { return b_; }
  DoubleDouble total() const { return total_; }
  // log(sqrt(a b / (2 pi n))) and the Stirling errors.
  DoubleDouble logScale() const { return logScale_; }
  // The same density with the shapes exchanged: that of 1 - x.
  BetaDensity mirrored() const;

 private:
  double a_;
  double b_;
  DoubleDouble total_;  // n = a + b
  DoubleDouble overA_;  // n / a
  DoubleDouble overB_;  // n / b
  DoubleDouble logScale_;
};

}  // namespace embedded::distributions
