// Tests that two paired proportions are equal, all on the discordant counts.
#include <algorithm>
#include <cmath>

#include "statistics/BinomialTail.h"
#include "statistics/NormalTest.h"
#include "statistics/Paired.h"

namespace statistics {
namespace {

TestResult binomialTest(double oneSided) {
  return {.oneSided = oneSided, .twoSided = std::min(1.0, 2.0 * oneSided)};
}

double differenceOf(const PairedCounts& counts) {
  return counts.n10 - counts.n01;
}

double discordantOf(const PairedCounts& counts) {
  return counts.n10 + counts.n01;
}

// The variance of the difference of counts as observed, (b + c) - (b - c)^2 / N.
double varianceOf(const PairedCounts& counts) {
  return counts.spread() / counts.cases();
}

// A statistic from a difference of counts and its variance; missing when that is not positive.
double standardised(double difference, double variance) {
  return variance > 0.0 ? difference / std::sqrt(variance) : MCMV::Missing;
}

// The same with the difference one whole count nearer to 0. Equal counts are looked at first.
double correctedStandardised(double difference, double variance) {
  if (std::fabs(difference) < 1e-12) return 0.0;
  return standardised(difference > 0.0 ? difference - 1.0 : difference + 1.0, variance);
}

}  // namespace

TestResult exactTest(const PairedCounts& counts) {
  const auto tail = signTail(counts.n10, counts.n01);
  return tail ? binomialTest(tail->sum) : TestResult{};
}

TestResult midpTest(const PairedCounts& counts) {
  const auto tail = signTail(counts.n10, counts.n01);
  return tail ? binomialTest(tail->sum - tail->last / 2.0) : TestResult{};
}

TestResult mcNemarTest(const PairedCounts& counts) {
  return normalTest(standardised(differenceOf(counts), discordantOf(counts)));
}

TestResult mcNemarCorrectedTest(const PairedCounts& counts) {
  return normalTest(correctedStandardised(differenceOf(counts), discordantOf(counts)));
}

TestResult waldTest(const PairedCounts& counts) {
  return normalTest(standardised(differenceOf(counts), varianceOf(counts)));
}

TestResult waldCorrectedTest(const PairedCounts& counts) {
  return normalTest(correctedStandardised(differenceOf(counts), varianceOf(counts)));
}

}  // namespace statistics
