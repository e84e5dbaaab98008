// Every interval and test against references: errors in ulp over 1 + the result's condition.
#include <gtest/gtest.h>

#include <cmath>

#include "Errors.h"
#include "statistics/IndependentMethods.h"
#include "statistics/OneSampleMethods.h"
#include "statistics/PairedMethods.h"

using namespace statistics;
using accuracy::Report;
using accuracy::Rows;

namespace {

template <class Methods>
const auto& methodOf(const Methods& methods, const std::string& keyword) {
  for (const auto& method : methods) {
    if (method.keyword == keyword) return method;
  }
  throw std::out_of_range("no method " + keyword);
}

template <class Counts, class Intervals, class Tests>
double resultOf(const Rows& rows, std::size_t i, const Counts& counts, const Intervals& intervals,
                const Tests& tests) {
  const std::string& keyword = rows.text(i, "method");
  const std::string& place = rows.text(i, "place");
  if (rows.text(i, "kind") == "interval") {
    const CriticalValues critical = criticalValues(rows.number(i, "level"));
    const Interval interval = methodOf(intervals, keyword).compute(counts, critical);
    return place == "0" ? interval.lower : interval.upper;
  }
  const TestResult result = methodOf(tests, keyword).compute(counts);
  return place == "0" ? result.statistic : place == "1" ? result.oneSided : result.twoSided;
}

template <class CountsOf, class Intervals, class Tests>
void measure(const std::string& design, const CountsOf& countsOf, const Intervals& intervals,
             const Tests& tests) {
  const Rows rows("references/" + design + ".csv");
  ASSERT_GT(rows.size(), 1000U);
  Report report;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const double got = resultOf(rows, i, countsOf(rows, i), intervals, tests);
    const double error = accuracy::ulps(got, rows.number(i, "hi"), rows.number(i, "lo"));
    const std::string name = design + " " + rows.text(i, "kind") + " " + rows.text(i, "method");
    report.add(name, error / (1 + rows.number(i, "condition")));
  }
  report.printAndExpect("ulp / (1 + condition)");
}

template <class Counts>
Counts fourCounts(const Rows& rows, std::size_t i) {
  return {rows.number(i, "c1"), rows.number(i, "c2"), rows.number(i, "c3"), rows.number(i, "c4")};
}

TEST(Accuracy, OfTheMethodsForOneSample) {
  measure(
      "one-sample",
      [](const Rows& rows, std::size_t i) {
        return OneSampleCounts{rows.number(i, "x"), rows.number(i, "f"), rows.number(i, "p0")};
      },
      oneSampleIntervals, oneSampleTests);
}

TEST(Accuracy, OfTheMethodsForPairedSamples) {
  measure("paired", fourCounts<PairedCounts>, pairedIntervals, pairedTests);
}

TEST(Accuracy, OfTheMethodsForIndependentSamples) {
  measure("independent", fourCounts<IndependentCounts>, independentIntervals, independentTests);
}

}  // namespace
