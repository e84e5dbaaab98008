#include "embedded/distributions/StandardNormal.h"

#include <boost/math/special_functions/erf.hpp>
#include <cmath>

#include "embedded/distributions/DoubleDouble.h"
#include "embedded/distributions/Policy.h"

namespace embedded::distributions {

namespace {

constexpr DoubleDouble kInverseSqrt2{0.7071067811865476, -4.8336466567264565e-17};
constexpr DoubleDouble kInverseSqrt2Pi{0.3989422804014327, -2.4923272022777301e-17};
constexpr double kSqrt2 = 1.4142135623730951;
constexpr double kTwoOverSqrtPi = 1.1283791670955126;
constexpr double kCentralBelow = 3;
constexpr double kMillsBelow = 1e-290;

// phi(z) to all digits of the double and more.
DoubleDouble densityOf(double z) {
  return kInverseSqrt2Pi * exp(scaled(twoProduct(z, -z), 0.5));
}

}  // namespace

double normalTail(double z) {
  const DoubleDouble argument = kInverseSqrt2 * -z;
  const double head = std::erfc(argument.hi);
  const double slope = kTwoOverSqrtPi * std::exp(-argument.hi * argument.hi);
  return 0.5 * (std::isfinite(z) ? head - slope * argument.lo : std::erfc(-z));
}

double quantileOffByCentralSeries(double z, double q) {
  const DoubleDouble square = twoProduct(z, z);
  DoubleDouble term = z;
  DoubleDouble sum = z;
  for (double odd = 3; term.hi > 1e-20 * sum.hi; odd += 2) {
    term = term * square / odd;
    sum = sum + term;
  }
  const DoubleDouble phi = densityOf(z);
  return ((twoSum(0.5, -q) - phi * sum) / phi).hi;
}

double quantileOffByErrorFunction(double z, double q) {
  return (normalTail(-z) - q) / densityOf(z).hi;
}

double quantileOffByMillsRatio(double z, double q) {
  constexpr int kScale = 512;
  const double inverse = 1 / (z * z);
  double mills = 1;
  for (double odd = 15; odd > 0; odd -= 2) mills = 1 - odd * inverse * mills;
  mills /= z;
  // Both sides times 2^512, as q may be too small to have all its digits in a quotient.
  const DoubleDouble half = scaled(twoProduct(z, -z), 0.5);
  constexpr DoubleDouble kLog2ToScale{354.891356446692, 1.1873519686893054e-14};
  const double phi = expToDouble(half + kLog2ToScale) * kInverseSqrt2Pi.hi;
  return mills - std::ldexp(q, kScale) / phi;
}

double normalQuantile(double p) {
  if (p == 0.5) return 0;
  const double q = p < 0.5 ? p : 1 - p;
  const double z = kSqrt2 * (q > 0.25 ? boost::math::erf_inv(2 * (0.5 - q), Quiet())
                                      : boost::math::erfc_inv(2 * q, Quiet()));
  const double off = z < kCentralBelow ? quantileOffByCentralSeries(z, q)
                     : q > kMillsBelow ? quantileOffByErrorFunction(z, q)
                                       : quantileOffByMillsRatio(z, q);
  const double refined = z + off;
  return p < 0.5 ? -refined : refined;
}

}  // namespace embedded::distributions
