// The standard normal distribution: against references by region, and its regimes at borders.
#include <gtest/gtest.h>

#include <cmath>

#include "ReferenceTable.h"
#include "embedded/distributions/StandardNormal.h"

using embedded::distributions::normalQuantile;
using embedded::distributions::normalTail;

namespace {

void measureQuantile(const std::string& file, int count) {
  reference::Report report("normal quantile, " + file);
  for (const auto& row : reference::rowsOf(file)) {
    report.add(reference::sizeName("|z|", std::abs(row[1]), {0.01, 0.67, 3, 20}),
               reference::ulps(normalQuantile(row[0]), row[1]));
  }
  report.print();
  EXPECT_EQ(report.count(), count);
  EXPECT_LE(report.largest(), 1);
}

TEST(NormalQuantile, StaysWithinOneUlpOnTheGrid) {
  measureQuantile("normal-quantile.csv", 733);
}

TEST(NormalQuantile, StaysWithinOneUlpInHardPlaces) {
  measureQuantile("normal-quantile-hard.csv", 600);
}

TEST(NormalTail, StaysWithinTwoUlp) {
  reference::Report report("normal tail");
  for (const auto& row : reference::rowsOf("normal-tail.csv")) {
    report.add(reference::sizeName("z", row[0], {-38, -20, -3, 0}),
               reference::ulps(normalTail(row[0]), row[1]));
  }
  report.print();
  EXPECT_EQ(report.count(), 600);
  EXPECT_LE(report.largest(), 2);
}

TEST(NormalTail, ReachesTheSmallestDoubles) {
  EXPECT_GT(normalTail(-38.4), 0);
  EXPECT_EQ(normalTail(-39), 0);
  EXPECT_EQ(normalTail(-1e300), 0);
  EXPECT_EQ(normalTail(9), 1);
  EXPECT_EQ(normalTail(1e300), 1);
}

TEST(NormalQuantile, IsOdd) {
  for (const double p : {0.03125, 0.125, 0.375, 0.4375}) {  // 1 - p is exact
    EXPECT_EQ(normalQuantile(p), -normalQuantile(1 - p));
  }
  EXPECT_EQ(normalQuantile(0.5), 0);
}

TEST(NormalQuantile, GrowsAcrossTheBordersOfItsRegimes) {
  // z = -3, p = 1/4 and p = 1e-290.
  for (const double border : {0.0013498980316300946, 0.25, 1e-290}) {
    double before = -40;
    for (int i = -1000; i <= 1000; ++i) {
      const double z = normalQuantile(border * (1 + i * 1e-13));
      EXPECT_GE(z, before);
      before = z;
    }
  }
}

TEST(NormalQuantile, RegimesAgreeWhereTheyMeet) {
  using namespace embedded::distributions;
  const double off = 1e-12;
  const double atThree = normalTail(-3);
  EXPECT_NEAR(quantileOffByCentralSeries(3 - off, atThree),
              quantileOffByErrorFunction(3 - off, atThree), 1e-15);
  const double far = normalTail(-36.25);
  EXPECT_NEAR(quantileOffByErrorFunction(36.25 - off, far),
              quantileOffByMillsRatio(36.25 - off, far), 3e-15);
}

TEST(NormalQuantile, InvertsTheTail) {
  for (double z = -37; z < 5; z += 0.37) {
    EXPECT_NEAR(normalQuantile(normalTail(z)), z, 1e-15 * (1 + std::exp(z * z / 2 * (z > 0)))) << z;
  }
}

}  // namespace
