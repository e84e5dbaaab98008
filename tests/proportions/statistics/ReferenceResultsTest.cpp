// Every method of every design against reference results: 2,729 tables of counts, 38 methods.
#include "ReferenceResults.h"
#include "statistics/Methods.h"

namespace {

using namespace statistics;
using reference::Line;
using reference::linesOf;

template <class Counts, std::size_t Size>
void expectIntervals(const Line& line, const Counts& counts,
                     const std::array<IntervalMethod<Counts>, Size>& methods) {
  const CriticalValues critical = criticalValues(line.level());
  for (std::size_t slot = 0; slot < Size; ++slot) {
    const Interval interval = methods[slot].compute(counts, critical);
    EXPECT_TRUE(line.agrees(interval.lower, "ci", slot, 0));
    EXPECT_TRUE(line.agrees(interval.upper, "ci", slot, 1));
  }
}

template <class Counts, std::size_t Size>
void expectTests(const Line& line, const Counts& counts,
                 const std::array<TestMethod<Counts>, Size>& methods) {
  for (std::size_t slot = 0; slot < Size; ++slot) {
    const TestResult result = methods[slot].compute(counts);
    EXPECT_TRUE(line.agrees(result.statistic, "t", slot, 0));
    EXPECT_TRUE(line.agrees(result.oneSided, "t", slot, 1));
    EXPECT_TRUE(line.agrees(result.twoSided, "t", slot, 2));
  }
}

void expectEstimates(const Line& line, std::initializer_list<double> numbers, bool good,
                     bool complete) {
  std::size_t place = 0;
  for (const double number : numbers) EXPECT_TRUE(line.agreesEstimate(number, place++));
  EXPECT_TRUE(line.agreesFlag(good, place++));
  EXPECT_TRUE(line.agreesFlag(complete, place));
}

TEST(ReferenceResults, OneSample) {
  const auto lines = linesOf("one-sample.jsonl");
  ASSERT_EQ(lines.size(), 966U);
  for (const auto& json : lines) {
    const Line line(json);
    const OneSampleCounts counts{line.count("x"), line.count("f"), line.count("p0")};
    const OneSampleEstimates est = estimate(counts);
    EXPECT_TRUE(line.agreesEstimate(est.prop, 0));
    // The difference from the test value is that of two doubles: 0 when they are the same.
    EXPECT_TRUE(line.agreesEstimate(est.estDiff, 1, 0x1p-53 * counts.proportion()));
    EXPECT_TRUE(line.agreesEstimate(est.aseDiff0, 2));
    EXPECT_TRUE(line.agreesEstimate(est.aseDiff1, 3));
    EXPECT_TRUE(line.agreesFlag(est.goodData, 4));
    EXPECT_TRUE(line.agreesFlag(est.completeData, 5));
    expectIntervals(line, counts, oneSampleIntervals);
    expectTests(line, counts, oneSampleTests);
  }
}

TEST(ReferenceResults, Paired) {
  const auto lines = linesOf("paired.jsonl");
  ASSERT_EQ(lines.size(), 848U);
  for (const auto& json : lines) {
    const Line line(json);
    const PairedCounts counts{line.count("n11"), line.count("n10"), line.count("n01"),
                              line.count("n00")};
    const PairedEstimates est = estimate(counts);
    expectEstimates(
        line, {est.prop1, est.prop2, est.estDiff, est.ase1, est.ase2, est.aseDiff0, est.aseDiff1},
        est.goodData, est.completeData);
    expectIntervals(line, counts, pairedIntervals);
    expectTests(line, counts, pairedTests);
  }
}

TEST(ReferenceResults, Independent) {
  const auto lines = linesOf("independent.jsonl");
  ASSERT_EQ(lines.size(), 915U);
  for (const auto& json : lines) {
    const Line line(json);
    const IndependentCounts counts{line.count("s1"), line.count("f1"), line.count("s2"),
                                   line.count("f2")};
    const IndependentEstimates est = estimate(counts);
    expectEstimates(
        line, {est.prop1, est.prop2, est.estDiff, est.ase1, est.ase2, est.aseDiff0, est.aseDiff1},
        est.goodData, est.completeData);
    expectIntervals(line, counts, independentIntervals);
    expectTests(line, counts, independentTests);
  }
}

}  // namespace
