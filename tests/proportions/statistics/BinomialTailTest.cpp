// Binomial tails by value: against 50-digit quadratures, in time, and at the borders of regimes.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "host/distributions/MCDistFun.h"
#include "statistics/BinomialTail.h"

namespace {

using namespace statistics;

std::vector<std::vector<double>> rowsOf(const std::string& file) {
  std::ifstream input(std::string(TEST_DATA) + "/statistics/" + file);
  std::vector<std::vector<double>> rows;
  std::string line;
  std::getline(input, line);
  while (std::getline(input, line)) {
    std::istringstream fields(line);
    auto& row = rows.emplace_back();
    for (std::string field; std::getline(fields, field, ',');) row.push_back(std::stod(field));
  }
  return rows;
}

double below(double x, double n, double p) {
  long error = 0;
  return MCDistFun::CdfBin(x - 1.0, n, p, error);
}

TEST(UpperTail, KeepsTwelveDigitsUpToAMillionMillionTrials) {
  const auto rows = rowsOf("upper-tails.csv");
  ASSERT_GT(rows.size(), 80U);
  for (const auto& row : rows) {
    const double got = upperTail(row[0], row[1], row[2], below(row[0], row[1], row[2]));
    EXPECT_NEAR(got / row[3], 1.0, 1e-12) << row[0] << " of " << row[1] << " at " << row[2];
  }
}

TEST(UpperTail, OfAllTrialsIsThePower) {
  EXPECT_NEAR(upperTail(1.0, 1.0, 0.0001, 1.0 - 0.0001) / 0.0001, 1.0, 1e-14);
  EXPECT_NEAR(upperTail(50.0, 50.0, 0.01, 1.0) / 1e-100, 1.0, 1e-12);
}

TEST(UpperTail, IsOneMinusTheRestWhereThatLosesNothing) {
  EXPECT_EQ(upperTail(5.0, 10.0, 0.5, 0.375), 0.625);
}

TEST(UpperTailRatio, OfTheLastTermIsOne) {
  EXPECT_NEAR(*upperTailRatio(7.0, 7.0, 0.3), 1.0, 1e-15);
}

TEST(UpperTailRatio, IsTheSumOfTheRatiosOfTerms) {
  double sum = 1.0;
  double term = 1.0;
  for (double x = 40.0; x < 100.0; ++x) sum += term *= (100.0 - x) / (x + 1.0) * 0.2 / 0.8;
  EXPECT_NEAR(*upperTailRatio(40.0, 100.0, 0.2) / sum, 1.0, 1e-14);
}

TEST(SignTail, KeepsTwelveDigitsUpToAMillionMillionTrials) {
  const auto rows = rowsOf("sign-tails.csv");
  ASSERT_GT(rows.size(), 50U);
  for (const auto& row : rows) {
    const auto tail = signTail(row[0], row[1] - row[0]);
    ASSERT_TRUE(tail);
    EXPECT_NEAR(tail->sum / row[2], 1.0, 1e-12) << row[0] << " of " << row[1];
  }
}

TEST(SignTail, IsTheSameWhicheverCountIsSmaller) {
  EXPECT_EQ(signTail(3.0, 9.0)->sum, signTail(9.0, 3.0)->sum);
  EXPECT_EQ(signTail(4e6, 5e6)->sum, signTail(5e6, 4e6)->sum);
}

TEST(SignTail, OfEqualCountsIsHalfAndHalfTheMiddleTerm) {
  const auto few = signTail(10.0, 10.0);
  EXPECT_NEAR(few->sum, 0.5 + few->last / 2.0, 1e-15);
  const auto many = signTail(5e11, 5e11);
  EXPECT_EQ(many->sum, 0.5 + many->last / 2.0);
}

TEST(SignTail, HasNoSeamBetweenItsRegimes) {
  // From the plain sum of terms to the continued fraction or the sum from the middle.
  for (const double more : {1.0, 10.0, 200.0, 900.0}) {
    const double before = signTail(999.0, 999.0 + more)->sum;
    const double after = signTail(1000.0, 1000.0 + more)->sum;
    EXPECT_NEAR(after / before, 1.0, 0.001 * (1.0 + more * more / 2000.0));
    // Adding the next term by hand joins P(X <= 999) and P(X <= 1000) of the same trials.
    const auto inner = signTail(1000.0, 1000.0 + more);
    const auto outer = signTail(999.0, 1001.0 + more);
    EXPECT_NEAR((outer->sum + inner->last) / inner->sum, 1.0, 1e-13);
  }
  // From the sum from the middle to the continued fraction, at a tenth of the trials squared.
  const double trials = 1e10;
  const double edge = std::floor((trials - std::sqrt(0.1 * trials)) / 2.0);
  for (double k = edge - 2.0; k <= edge + 2.0; ++k) {
    const auto inner = signTail(k + 1.0, trials - k - 1.0);
    const auto outer = signTail(k, trials - k);
    EXPECT_NEAR((outer->sum + inner->last) / inner->sum, 1.0, 1e-13);
  }
}

TEST(SignTail, TakesMillisecondsForAMillionMillionTrials) {
  const auto start = std::chrono::steady_clock::now();
  const double distances[] = {0.0, 1e3, 1e5, 1.5e5, 1.6e5, 1e6, 1e7, 3.6e7, 4e11};
  for (const double distance : distances) ASSERT_TRUE(signTail(5e11 - distance, 5e11 + distance));
  const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - start;
  EXPECT_LT(taken.count() / std::size(distances), 20.0);
}

}  // namespace
