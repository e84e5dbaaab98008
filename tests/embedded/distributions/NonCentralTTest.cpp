// The non-centrality parameter: by the tail it came from, and by a tail computed another way.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "embedded/distributions/NonCentralT.h"
#include "embedded/distributions/StandardNormal.h"

using embedded::distributions::findNonCentrality;
using embedded::distributions::nonCentralTTail;
using embedded::distributions::normalTail;

namespace {

// P(T <= t) as the mean of P(Z <= t s - delta) over s = sqrt(chi^2 / f), by Simpson's rule.
double tailByIntegration(double t, double freedom, double delta) {
  const double logScale =
      std::log(2) + freedom / 2 * std::log(freedom / 2) - std::lgamma(freedom / 2);
  const auto at = [&](double s) {
    if (s == 0) return 0.0;
    return std::exp(logScale + (freedom - 1) * std::log(s) - freedom * s * s / 2) *
           normalTail(t * s - delta);
  };
  constexpr int kSteps = 4000;
  const double width = 5.0 / kSteps;
  double sum = at(0) + at(5);
  for (int i = 1; i < kSteps; ++i) sum += (i % 2 == 1 ? 4 : 2) * at(i * width);
  return sum * width / 3;
}

TEST(FindNonCentrality, GivesBackTheProbability) {
  for (int t = 2; t >= -4; --t) {
    for (const double q : {0.975, 0.025}) {
      const auto delta = findNonCentrality(t, 5, q, 1e-6, 1e-12);
      ASSERT_TRUE(delta) << t << " " << q;
      EXPECT_NEAR(nonCentralTTail(t, 5, *delta), q, 1e-12);
      EXPECT_NEAR(tailByIntegration(t, 5, *delta), q, 2e-12) << t << " " << q;
    }
  }
}

TEST(FindNonCentrality, IsMirrored) {
  for (const double t : {0.0, 0.7, 3.0}) {
    const auto right = findNonCentrality(t, 8, 0.25, 1e-6, 1e-13);
    const auto left = findNonCentrality(-t, 8, 0.75, 1e-6, 1e-13);
    ASSERT_TRUE(right && left);
    EXPECT_NEAR(*right, -*left, 1e-12);
  }
}

TEST(FindNonCentrality, IsANormalQuantileAtZero) {
  // P(T <= 0 | delta) = P(Z <= -delta).
  const auto delta = findNonCentrality(0, 5, 0.975, 1e-6, 1e-12);
  ASSERT_TRUE(delta);
  EXPECT_NEAR(*delta, -1.959963984540054, 1e-11);
}

TEST(FindNonCentrality, TakesAnyStepAndTolerance) {
  const auto fine = findNonCentrality(1.5, 12, 0.1, 1e-9, 1e-300);
  const auto coarse = findNonCentrality(1.5, 12, 0.1, 50, 1e-6);
  ASSERT_TRUE(fine && coarse);
  EXPECT_NEAR(*fine, *coarse, 2e-6);
}

TEST(FindNonCentrality, RefusesWhatHasNoAnswer) {
  const double nan = std::nan("");
  EXPECT_FALSE(findNonCentrality(nan, 5, 0.5, 1e-6, 1e-12));
  EXPECT_FALSE(findNonCentrality(1, 0, 0.5, 1e-6, 1e-12));
  EXPECT_FALSE(findNonCentrality(1, -3, 0.5, 1e-6, 1e-12));
  EXPECT_FALSE(findNonCentrality(1, nan, 0.5, 1e-6, 1e-12));
  for (const double q : {0.0, 1.0, -0.1, 1.1, nan}) {
    EXPECT_FALSE(findNonCentrality(1, 5, q, 1e-6, 1e-12)) << q;
  }
  EXPECT_FALSE(findNonCentrality(1, 5, 0.5, 0, 1e-12));
  EXPECT_FALSE(findNonCentrality(1, 5, 0.5, -1, 1e-12));
  EXPECT_FALSE(findNonCentrality(1, 5, 0.5, nan, 1e-12));
  EXPECT_FALSE(findNonCentrality(1, 5, 0.5, 1e-6, 0));
  EXPECT_FALSE(findNonCentrality(1, 5, 0.5, 1e-6, nan));
}

TEST(FindNonCentrality, RefusesInfiniteArguments) {
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double endless : {infinity, -infinity}) {
    EXPECT_FALSE(findNonCentrality(endless, 5, 0.5, 1e-6, 1e-12));
    EXPECT_FALSE(findNonCentrality(1, endless, 0.5, 1e-6, 1e-12));
    EXPECT_FALSE(findNonCentrality(1, 5, endless, 1e-6, 1e-12));
    EXPECT_FALSE(findNonCentrality(1, 5, 0.5, endless, 1e-12));
  }
}

// The steps from 0 meet these roots exactly.
TEST(FindNonCentrality, IsExactWhereAStepMeetsTheRoot) {
  for (const double root : {-4.0, -1.0, 1.0, 4.0}) {
    EXPECT_EQ(findNonCentrality(1, 5, nonCentralTTail(1, 5, root), 1, 1e-12), root);
  }
}

}  // namespace
