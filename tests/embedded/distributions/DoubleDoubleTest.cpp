// Double-double arithmetic: exactness of its parts, and logarithms and exponentials as inverses.
#include <gtest/gtest.h>

#include <cmath>

#include "embedded/distributions/DoubleDouble.h"
#include "embedded/distributions/StirlingError.h"

using embedded::distributions::DoubleDouble;
using embedded::distributions::stirlingError;
using embedded::distributions::twoProduct;
using embedded::distributions::twoSum;

namespace {

TEST(DoubleDouble, KeepsWhatASumDrops) {
  const DoubleDouble sum = twoSum(1, 1e-30);
  EXPECT_EQ(sum.hi, 1);
  EXPECT_EQ(sum.lo, 1e-30);
  EXPECT_EQ((sum - 1.0).hi, 1e-30);
}

TEST(DoubleDouble, KeepsWhatAProductDrops) {
  for (const double a : {0.1, 1.0 / 3, 12345.678, 1e200, 3e-100}) {
    for (const double b : {0.7, 1e-17, 98765.4321}) {
      const DoubleDouble product = twoProduct(a, b);
      EXPECT_EQ(product.hi, a * b);
      EXPECT_EQ(product.lo, std::fma(a, b, -product.hi));
    }
  }
}

TEST(DoubleDouble, DividesBackToTheDividend) {
  const DoubleDouble third = DoubleDouble(1) / 3.0;
  EXPECT_NEAR((third * 3.0 - 1.0).hi, 0, 1e-31);
}

TEST(DoubleDouble, LogarithmUndoesTheExponential) {
  for (const double value : {-600.0, -3.0, -0.3, -1e-9, 1e-20, 0.004, 0.5, 1.0, 40.0, 600.0}) {
    const DoubleDouble back = log(embedded::distributions::exp(value));
    EXPECT_NEAR((back - value).hi, 0, 1e-25) << value;
  }
}

TEST(DoubleDouble, LogarithmIsSharpNearOne) {
  // The densities of large shapes multiply these by the shapes.
  for (const double r : {1e-4, -1e-5, 1e-7, -1e-9}) {
    const DoubleDouble value = DoubleDouble(1) + r;
    const DoubleDouble square = DoubleDouble(r) * r;
    const DoubleDouble series = DoubleDouble(r) - square / 2.0 + square * r / 3.0 -
                                square * square / 4.0 + square * square * r / 5.0 -
                                square * square * square / 6.0;
    const double left = r * r * r * r * r * r * r / 7;
    EXPECT_NEAR((log(value) - series).hi, left, 1e-30 + std::abs(left)) << r;
  }
}

TEST(DoubleDouble, LogarithmOfAProductIsTheSum) {
  for (const double a : {1e-5, 0.699, 0.7, 1.4, 3.0, 1e9}) {
    for (const double b : {0.01, 1.0001, 77.0}) {
      const DoubleDouble sum = log(DoubleDouble(a)) + log(DoubleDouble(b));
      const DoubleDouble off = log(twoProduct(a, b)) - sum;
      EXPECT_NEAR(off.hi, 0, 3e-25) << a << " " << b;
    }
  }
}

TEST(StirlingError, MatchesTheGammaFunction) {
  constexpr double kHalfLog2Pi = 0.9189385332046728;
  for (double z = 0.1; z < 40; z += 0.1) {
    const double direct = std::lgamma(z) - ((z - 0.5) * std::log(z) - z + kHalfLog2Pi);
    EXPECT_NEAR(stirlingError(z).hi, direct, 3e-14) << z;
  }
}

TEST(StirlingError, JoinsItsRegimes) {
  for (double z = 0.5; z <= 16; z += 0.5) {
    const double step = 1e-9;
    const double between = (stirlingError(z - step).hi + stirlingError(z + step).hi) / 2;
    EXPECT_NEAR(stirlingError(z).hi, between, 5e-17) << z;
  }
}

}  // namespace
