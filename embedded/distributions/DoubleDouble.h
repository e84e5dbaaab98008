// Numbers of about 106 bits as unevaluated sums of two doubles.
//
// The exponents of densities are small differences of large terms; formed in double-double they
// keep their absolute error near 1e-17 for sizes up to 1e13. Only what that needs is here. The
// sums follow Dekker (1971) and Knuth (TAOCP 2, 4.2.2); products are exact by splitting. All of
// it relies on rounding to nearest and on no contraction of floating-point expressions.
#pragma once

#include <cmath>

namespace embedded::distributions {

// hi + lo with |lo| <= ulp(hi) / 2. A double is one whose lo is 0.
struct DoubleDouble {
  double hi = 0;
  double lo = 0;

  constexpr DoubleDouble() = default;
  constexpr DoubleDouble(double high) : hi(high) {}  // NOLINT: a double is a number like these
  constexpr DoubleDouble(double high, double low) : hi(high), lo(low) {}
};

// a + b exactly.
inline DoubleDouble twoSum(double a, double b) {
  const double sum = a + b;
  const double part = sum - a;
  return {sum, (a - (sum - part)) + (b - part)};
}

// a + b exactly, where |a| >= |b| or a = 0.
inline DoubleDouble quickTwoSum(double a, double b) {
  const double sum = a + b;
  return {sum, b - (sum - a)};
}

// a in two halves of at most 26 bits, for |a| < 1e300. Veltkamp (1968).
inline DoubleDouble halves(double a) {
  const double wide = 134217729 * a;
  const double high = wide - (wide - a);
  return {high, a - high};
}

// a * b exactly, unless it underflows. By halves, as a fused multiply-add is a call and many times
// slower on the baseline instruction set.
inline DoubleDouble twoProduct(double a, double b) {
  const double product = a * b;
  const DoubleDouble p = halves(a);
  const DoubleDouble q = halves(b);
  return {product, ((p.hi * q.hi - product) + p.hi * q.lo + p.lo * q.hi) + p.lo * q.lo};
}

inline DoubleDouble operator-(DoubleDouble a) {
  return {-a.hi, -a.lo};
}

// Relative error below 2^-104 also where the terms cancel.
inline DoubleDouble operator+(DoubleDouble a, DoubleDouble b) {
  DoubleDouble sum = twoSum(a.hi, b.hi);
  const DoubleDouble low = twoSum(a.lo, b.lo);
  sum = quickTwoSum(sum.hi, sum.lo + low.hi);
  return quickTwoSum(sum.hi, sum.lo + low.lo);
}

inline DoubleDouble operator-(DoubleDouble a, DoubleDouble b) {
  return a + -b;
}

inline DoubleDouble operator*(DoubleDouble a, DoubleDouble b) {
  const DoubleDouble product = twoProduct(a.hi, b.hi);
  return quickTwoSum(product.hi, product.lo + (a.hi * b.lo + a.lo * b.hi));
}

inline DoubleDouble operator/(DoubleDouble a, DoubleDouble b) {
  const double first = a.hi / b.hi;
  DoubleDouble rest = a - b * first;
  const double second = rest.hi / b.hi;
  rest = rest - b * second;
  return quickTwoSum(first, second) + rest.hi / b.hi;
}

// value times a power of two, exact unless it over- or underflows.
inline DoubleDouble scaled(DoubleDouble value, double power) {
  return {value.hi * power, value.lo * power};
}

// e^value to about 100 bits, for |value| < 700.
DoubleDouble exp(DoubleDouble value);

// The natural logarithm of a value > 0, with an absolute error below 1e-25, which falls with
// the fourth power of the logarithm where that is below 1/200: what densities of large shapes need.
DoubleDouble log(DoubleDouble value);

// e^value rounded to a double, about half an ulp: underflows to 0 and overflows to infinity.
inline double expToDouble(DoubleDouble value) {
  const double head = std::exp(value.hi);
  return head + head * value.lo;
}

}  // namespace embedded::distributions
