// Tests of one proportion against the test value.
#include <algorithm>
#include <cmath>
#include <optional>

#include "statistics/BinomialTail.h"
#include "statistics/NormalTest.h"
#include "statistics/OneSample.h"

namespace statistics {
namespace {

// min(P(X <= x), P(X >= x)). Both distribution functions are asked for, whichever is needed: an
// error of either leaves no tail.
std::optional<double> smallerTail(const OneSampleCounts& counts) {
  const double x = counts.successes;
  const double n = counts.trials();
  const double p0 = counts.testValue;
  const auto upTo = binomialCdf(x, n, p0);
  const auto below = binomialCdf(x - 1.0, n, p0);
  if (!upTo || !below) return std::nullopt;
  if (*upTo <= 1.0 - *below) return upTo;
  return upperTail(x, n, p0, *below);
}

TestResult binomialTest(double oneSided) {
  return {.oneSided = oneSided, .twoSided = std::min(1.0, 2.0 * oneSided)};
}

// Successes less those expected, one half nearer to 0; 0 when the correction is larger than the
// difference of the proportions. A difference of exactly 0 is always within the correction.
double correctedExcess(const OneSampleCounts& counts) {
  const double n = counts.trials();
  const double difference = counts.proportion() - counts.testValue;
  if (1.0 / (2.0 * n) > std::fabs(difference)) return 0.0;
  const double excess = counts.successes - n * counts.testValue;
  return difference > 0.0 ? excess - 0.5 : excess + 0.5;
}

bool varies(const OneSampleCounts& counts) {
  return counts.successes > 0.0 && counts.failures > 0.0;
}

double observedError(const OneSampleCounts& counts) {
  return std::sqrt(counts.complement() * counts.successes);
}

}  // namespace

TestResult exactTest(const OneSampleCounts& counts) {
  const auto tail = smallerTail(counts);
  return tail ? binomialTest(*tail) : TestResult{};
}

TestResult midpTest(const OneSampleCounts& counts) {
  const auto tail = smallerTail(counts);
  const auto observed = binomialPdf(counts.successes, counts.trials(), counts.testValue);
  if (!tail || !observed) return {};
  return binomialTest(std::max(0.0, *tail - *observed / 2.0));
}

TestResult scoreTest(const OneSampleCounts& counts) {
  const double n = counts.trials();
  const double p0 = counts.testValue;
  return normalTest((counts.successes - n * p0) / std::sqrt((1.0 - p0) * n * p0));
}

TestResult scoreCorrectedTest(const OneSampleCounts& counts) {
  const double n = counts.trials();
  const double p0 = counts.testValue;
  return normalTest(correctedExcess(counts) / std::sqrt(p0 * n * (1.0 - p0)));
}

TestResult waldTest(const OneSampleCounts& counts) {
  if (!varies(counts)) return {};
  const double excess = counts.successes - counts.trials() * counts.testValue;
  return normalTest(excess / observedError(counts));
}

TestResult waldCorrectedTest(const OneSampleCounts& counts) {
  if (!varies(counts)) return {};
  return normalTest(correctedExcess(counts) / observedError(counts));
}

}  // namespace statistics
