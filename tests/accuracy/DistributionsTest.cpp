// The distribution functions against references, in ulp.
#include <gtest/gtest.h>

#include "Errors.h"
#include "embedded/distributions/BetaQuantile.h"
#include "embedded/distributions/Binomial.h"
#include "embedded/distributions/NonCentralT.h"
#include "embedded/distributions/StandardNormal.h"

using accuracy::Report;
using accuracy::Rows;
using accuracy::ulps;
using embedded::distributions::Tail;

namespace {

Tail tailOf(const Rows& rows, std::size_t i) {
  return rows.text(i, "upper") == "1" ? Tail::Upper : Tail::Lower;
}

double errorOf(double got, const Rows& rows, std::size_t i) {
  return ulps(got, rows.number(i, "hi"), rows.number(i, "lo"));
}

TEST(Accuracy, OfTheNormalDistribution) {
  const Rows rows("references/normal.csv");
  Report report;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const double argument = rows.number(i, "argument");
    const bool isTail = rows.text(i, "function") == "tail";
    const double got = isTail ? embedded::distributions::normalTail(argument)
                              : embedded::distributions::normalQuantile(argument);
    report.add(isTail ? "normal tail" : "normal quantile", errorOf(got, rows, i));
  }
  report.printAndExpect("ulp");
}

TEST(Accuracy, OfTheBetaQuantile) {
  const Rows rows("references/beta-quantile.csv");
  Report report;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto got = embedded::distributions::betaQuantile(
        rows.number(i, "tail"), rows.number(i, "a"), rows.number(i, "b"), tailOf(rows, i));
    ASSERT_TRUE(got) << "row " << i;
    const bool lower = rows.text(i, "upper") == "0";
    report.add(lower ? "beta quantile lower" : "beta quantile upper", errorOf(*got, rows, i));
  }
  report.printAndExpect("ulp");
}

TEST(Accuracy, OfBinomialTails) {
  const Rows rows("references/binomial-tail.csv");
  Report report;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto got = embedded::distributions::binomialTail(rows.number(i, "x"), rows.number(i, "n"),
                                                           rows.number(i, "p"), tailOf(rows, i));
    ASSERT_TRUE(got) << "row " << i;
    const bool lower = rows.text(i, "upper") == "0";
    report.add(lower ? "binomial tail lower" : "binomial tail upper", errorOf(*got, rows, i));
  }
  report.printAndExpect("ulp");
}

TEST(Accuracy, OfTheNonCentralityOfT) {
  // The search ends within its tolerance: errors are in units of it.
  constexpr double kTolerance = 1e-12;
  const Rows rows("references/noncentral-t.csv");
  Report report;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const auto got = embedded::distributions::findNonCentrality(
        rows.number(i, "t"), rows.number(i, "freedom"), rows.number(i, "q"), 1e-6, kTolerance);
    ASSERT_TRUE(got) << "row " << i;
    report.add("t non-centrality", std::abs(*got - rows.number(i, "hi")) / kTolerance);
  }
  report.printAndExpect("units of 1e-12");
}

}  // namespace
