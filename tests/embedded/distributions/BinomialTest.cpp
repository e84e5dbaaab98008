// The binomial distribution: against references by region, and by its identities.
#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>

#include "ReferenceTable.h"
#include "embedded/distributions/Binomial.h"

using embedded::distributions::binomialTail;
using embedded::distributions::binomialTerm;
using embedded::distributions::Tail;

namespace {

double tailOf(double x, double n, double p, Tail tail) {
  return binomialTail(x, n, p, tail).value_or(std::nan(""));
}

double termOf(double x, double n, double p) {
  return binomialTerm(x, n, p).value_or(std::nan(""));
}

reference::Report measured(const std::string& file) {
  reference::Report report("binomial tail, " + file);
  for (const auto& row : reference::rowsOf(file)) {
    const double x = row[0], n = row[1], p = row[2];
    const double got = tailOf(x, n, p, row[3] == 1 ? Tail::Upper : Tail::Lower);
    report.add(reference::depthName(row[4]) + ", " + reference::sizeName("n", n, {100, 1e5, 1e9}),
               reference::ulps(got, row[4]));
  }
  report.print();
  return report;
}

TEST(BinomialTail, StaysWithinFourUlpOnTheGrid) {
  const reference::Report report = measured("binomial-tail.csv");
  EXPECT_EQ(report.count(), 1353);
  EXPECT_LE(report.largest(), 4);
}

TEST(BinomialTail, StaysWithinFourUlpInHardPlaces) {
  const reference::Report report = measured("binomial-tail-hard.csv");
  EXPECT_GT(report.count(), 1000);
  EXPECT_LE(report.largest(), 4);
}

TEST(BinomialTail, SumsItsTerms) {
  for (const double n : {1.0, 7.0, 40.0}) {
    for (const double p : {0.001, 0.3, 0.5, 0.9}) {
      double sum = 0;
      for (double x = 0; x <= n; ++x) {
        sum += termOf(x, n, p);
        EXPECT_NEAR(tailOf(x, n, p, Tail::Lower), sum, 4e-15 * sum) << x << " " << n << " " << p;
      }
    }
  }
}

TEST(BinomialTail, MirrorsSuccessesAndFailures) {
  for (const double n : {10.0, 5000.0, 1e12}) {
    for (const double p : {0.25, 0.5}) {  // 1 - p is exact
      for (const double z : {-5.0, -0.5, 0.0, 3.0}) {
        const double x = std::floor(n * p + z * std::sqrt(n * p * (1 - p)));
        EXPECT_EQ(tailOf(x, n, p, Tail::Lower), tailOf(n - x - 1, n, 1 - p, Tail::Upper));
      }
    }
  }
}

TEST(BinomialTail, GrowsWithX) {
  for (const double n : {30.0, 4100.0, 1e6, 1e12}) {
    double before = 0;
    const double middle = std::floor(0.3 * n);
    for (double x = std::max(-1.0, middle - 300); x <= std::min(n, middle + 300); ++x) {
      const double tail = tailOf(x, n, 0.3, Tail::Lower);
      EXPECT_GE(tail, before) << x << " " << n;
      before = tail;
    }
  }
}

TEST(BinomialTail, KeepsTheDigitsOfTinyTails) {
  // P(X > 0) = 1 - (1 - p)^n.
  for (const double n : {1.0, 50.0, 1e6, 1e12}) {
    const double p = 1e-30;
    EXPECT_LE(reference::ulps(tailOf(0, n, p, Tail::Upper), n * p), 3) << n;
  }
  EXPECT_LE(reference::ulps(tailOf(0, 1000, 0.5, Tail::Lower), std::ldexp(1, -1000)), 2);
}

TEST(BinomialTail, CostDoesNotGrowWithN) {
  double largest = 0;
  for (double n = 1; n <= 1e15; n *= 10) {
    for (const double p : {1e-9, 0.02, 0.5, 0.999}) {
      const double x = std::floor(n * p);
      double best = 1;
      for (int i = 0; i < 20; ++i) {
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_TRUE(binomialTail(x, n, p, Tail::Lower));
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
        best = std::min(best, taken.count());
      }
      largest = std::max(largest, best * 1e6);
    }
  }
  std::printf("binomial tail: largest %.2f us a call for n to 1e15\n", largest);
  EXPECT_LT(largest, 100);  // generous: the build may be without optimization
}

TEST(BinomialTerm, IsTheDifferenceOfTails) {
  for (const double n : {5.0, 200.0, 3e6}) {
    for (const double p : {0.1, 0.6}) {
      const double x = std::floor(n * p);
      const double difference = tailOf(x, n, p, Tail::Lower) - tailOf(x - 1, n, p, Tail::Lower);
      EXPECT_NEAR(termOf(x, n, p), difference, 1e-15) << n << " " << p;
    }
  }
}

TEST(BinomialTerm, HasItsClosedForms) {
  EXPECT_EQ(termOf(0, 0, 0.3), 1);
  EXPECT_LE(reference::ulps(termOf(2, 4, 0.5), 0.375), 2);
  EXPECT_LE(reference::ulps(termOf(0, 1000, 0.5), std::ldexp(1, -1000)), 1);
  EXPECT_LE(reference::ulps(termOf(1000, 1000, 0.5), std::ldexp(1, -1000)), 1);
  EXPECT_LE(reference::ulps(termOf(1, 1e12, 1e-20), 1e-8 * std::exp(-1e-8)), 3);
}

TEST(BinomialTerm, IsCertainAtTheEndsOfP) {
  EXPECT_EQ(termOf(0, 9, 0), 1);
  EXPECT_EQ(termOf(1, 9, 0), 0);
  EXPECT_EQ(termOf(9, 9, 1), 1);
  EXPECT_EQ(termOf(8, 9, 1), 0);
  EXPECT_EQ(tailOf(0, 9, 0, Tail::Lower), 1);
  EXPECT_EQ(tailOf(8, 9, 1, Tail::Lower), 0);
  EXPECT_EQ(tailOf(9, 9, 1, Tail::Lower), 1);
}

TEST(BinomialTail, IsCertainOrImpossibleOutsideOfTheTrials) {
  EXPECT_EQ(tailOf(-1, 9, 0.3, Tail::Lower), 0);
  EXPECT_EQ(tailOf(-1, 9, 0.3, Tail::Upper), 1);
  EXPECT_EQ(tailOf(9, 9, 0.3, Tail::Lower), 1);
  EXPECT_EQ(tailOf(10, 9, 0.3, Tail::Upper), 0);
  EXPECT_EQ(termOf(-1, 9, 0.3), 0);
  EXPECT_EQ(termOf(10, 9, 0.3), 0);
}

TEST(Binomial, GivesNothingOutsideOfItsDomain) {
  const double nan = std::nan("");
  const double infinity = std::numeric_limits<double>::infinity();
  const double wrong[][3] = {{0.5, 9, 0.3},       {nan, 9, 0.3}, {infinity, 9, 0.3},
                             {-infinity, 9, 0.3}, {1, -1, 0.3},  {1, 9.5, 0.3},
                             {1, 2e15, 0.3},      {1, nan, 0.3}, {1, infinity, 0.3},
                             {1, 9, -1e-300},     {1, 9, nan},   {1, 9, 1.0000000000000002}};
  for (const auto& [x, n, p] : wrong) {
    EXPECT_FALSE(binomialTail(x, n, p, Tail::Lower)) << x << " " << n << " " << p;
    EXPECT_FALSE(binomialTail(x, n, p, Tail::Upper)) << x << " " << n << " " << p;
    EXPECT_FALSE(binomialTerm(x, n, p)) << x << " " << n << " " << p;
  }
}

}  // namespace
