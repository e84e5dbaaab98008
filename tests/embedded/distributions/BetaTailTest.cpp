// The beta tails: their regimes against each other where both hold, borders and identities.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "ReferenceTable.h"
#include "embedded/distributions/BetaTail.h"

using embedded::distributions::BetaDensity;
using embedded::distributions::betaTail;
using embedded::distributions::distanceToMean;
using embedded::distributions::Fraction;
using embedded::distributions::kQuadratureFrom;
using embedded::distributions::Tail;
using embedded::distributions::tailRatioByFraction;
using embedded::distributions::tailRatioByQuadrature;
using embedded::distributions::tailRatioBySeries;

namespace {

TEST(BetaTailRatio, FractionAndQuadratureAgree) {
  for (const double a : {20.0, 57.5, 300.0, 1999.5, 2000.0, 2000.5, 2e4}) {
    for (const double b : {2.0, 10.5, 100.0, 2000.0, 1e5, 1e9}) {
      for (const double below : {1.0, 0.999, 0.9, 0.7}) {
        const BetaDensity density(a, b);
        const Fraction point = Fraction::of(below * a / (a + b));
        if (distanceToMean(density, point) < 0) continue;
        const double byFraction = tailRatioByFraction(density, point);
        EXPECT_NEAR(tailRatioByQuadrature(density, point) / byFraction, 1, 2e-15)
            << a << " " << b << " " << below;
      }
    }
  }
}

TEST(BetaTailRatio, FractionAndSeriesAgree) {
  for (const double a : {0.5, 1.0, 4.5, 60.0, 5e3, 1e6}) {
    for (const double b : {0.5, 1.0, 30.5, 1e8}) {
      const BetaDensity density(a, b);
      for (const double part : {1e-9, 0.01, 0.199, 0.201, 0.5}) {
        const Fraction point = Fraction::of(part * a / (a + b));
        const double byFraction = tailRatioByFraction(density, point);
        EXPECT_NEAR(tailRatioBySeries(density, point).hi / byFraction, 1, 2e-15)
            << a << " " << b << " " << part;
      }
    }
  }
}

TEST(BetaTailRatio, QuadratureServesASmallSecondShape) {
  // I_x(a, 1) = x^a, so that the ratio to a x^a (1 - x) is 1 / (a (1 - x)).
  for (const double a : {20.0, 300.0, 1e6, 1e11}) {
    const BetaDensity density(a, 1);
    for (const double beyond : {1.1, 2.0, 4.0}) {
      const double y = beyond / (a + 1);
      const Fraction point = Fraction::of(y).mirrored();
      EXPECT_NEAR(tailRatioByQuadrature(density, point) * a * y, 1, 2e-15) << a << " " << beyond;
    }
  }
}

TEST(BetaTail, HasClosedForms) {
  for (const double x : {1e-300, 1e-9, 0.2, 0.5, 0.9}) {
    EXPECT_LE(reference::ulps(betaTail(x, 1, 1, Tail::Lower), x), 2) << x;
    const double root = std::sqrt(x);
    EXPECT_LE(reference::ulps(betaTail(x, 0.5, 1, Tail::Lower), root), 3) << x;
    const double arc = 2 / std::numbers::pi * std::asin(root);
    EXPECT_LE(reference::ulps(betaTail(x, 0.5, 0.5, Tail::Lower), arc), 4) << x;
  }
}

TEST(BetaTail, TailsAddUpToOneAndMirror) {
  for (const double a : {0.5, 3.0, 250.5, 3e3, 1e10}) {
    for (const double b : {0.5, 8.0, 4e3, 1e10}) {
      for (const double x : {0.125, 0.5, 0.75}) {  // 1 - x is exact
        const double lower = betaTail(x, a, b, Tail::Lower);
        const double upper = betaTail(x, a, b, Tail::Upper);
        EXPECT_NEAR(lower + upper, 1, 2.3e-16);
        EXPECT_LE(reference::ulps(lower, betaTail(1 - x, b, a, Tail::Upper)), 2);
      }
    }
  }
}

TEST(BetaTail, IsSmoothAcrossTheBorderOfTheRegimes) {
  // The regimes change at kQuadratureFrom; the tail falls with the first shape throughout.
  double before = 1;
  for (double a = kQuadratureFrom - 1e-6; a < kQuadratureFrom + 1e-6; a += 1e-8) {
    const double tail = betaTail(0.5, a, kQuadratureFrom + 80, Tail::Lower);
    EXPECT_LT(tail, before);
    before = tail;
  }
}

TEST(BetaTail, EndsAtZeroAndOne) {
  EXPECT_EQ(betaTail(0, 2, 3, Tail::Lower), 0);
  EXPECT_EQ(betaTail(0, 2, 3, Tail::Upper), 1);
  EXPECT_EQ(betaTail(1, 2, 3, Tail::Lower), 1);
  EXPECT_EQ(betaTail(1, 2, 3, Tail::Upper), 0);
}

TEST(BetaDensity, IsThatOfTheDefinition) {
  // Shapes whose beta function is a short fraction.
  EXPECT_LE(reference::ulps(BetaDensity(1, 1).at(Fraction::of(0.25)), 0.1875), 2);
  EXPECT_LE(reference::ulps(BetaDensity(2, 3).at(Fraction::of(0.5)), 0.375), 2);
  EXPECT_LE(reference::ulps(BetaDensity(0.5, 0.5).at(Fraction::of(0.5)), 0.5 / std::numbers::pi),
            2);
  EXPECT_EQ(BetaDensity(3, 7).at(Fraction::of(0.2)),
            BetaDensity(7, 3).mirrored().at(Fraction::of(0.2)));
}

// At the mean of large shapes it takes more terms than are made; the tail is found in another way.
TEST(BetaTail, SaysWhereItsFractionTakesTooManyTerms) {
  using namespace embedded::distributions;
  const BetaDensity density(1e9, 1e9);
  EXPECT_TRUE(std::isnan(tailRatioByFraction(density, Fraction::of(0.5))));
  EXPECT_NEAR(betaTail(0.5, 1e9, 1e9, Tail::Lower), 0.5, 1e-15);
}

}  // namespace
