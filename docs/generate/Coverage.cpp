#include "Coverage.h"

#include <array>
#include <cmath>
#include <functional>

namespace docs {

namespace {

using statistics::Design;
using statistics::MethodKind;

constexpr double level = 95.0;
constexpr double alpha = 0.05;

bool covers(const statistics::Interval& interval, double truth) {
  return interval.lower != MCMV::Missing && interval.upper != MCMV::Missing &&
         interval.lower <= truth && truth <= interval.upper;
}

bool rejects(const statistics::TestResult& result) {
  return result.twoSided != MCMV::Missing && result.twoSided <= alpha;
}

// log(n! / (x1! x2! ...)) of counts that add up to n.
template <std::size_t Cells>
double logWays(const std::array<int, Cells>& counts) {
  int total = 0;
  double out = 0.0;
  for (const int count : counts) {
    total += count;
    out -= std::lgamma(count + 1.0);
  }
  return out + std::lgamma(total + 1.0);
}

// The probability of counts whose cells have these probabilities, all of them above zero.
template <std::size_t Cells>
double probability(const std::array<int, Cells>& counts, double ways,
                   const std::array<double, Cells>& logs) {
  for (std::size_t i = 0; i < Cells; ++i) {
    ways += counts[i] * logs[i];
  }
  return std::exp(ways);
}

// The probability of the outcomes for which `holds` is true, by step.
std::vector<double> oneSample(int n, const std::function<bool(int successes, double p)>& holds) {
  std::vector<double> values;
  for (int step = 1; step < steps; ++step) {
    const double p = proportionAt(step);
    double sum = 0.0;
    for (int x = 0; x <= n; ++x) {
      if (holds(x, p)) {
        sum += probability<2>({x, n - x}, logWays<2>({x, n - x}), {std::log(p), std::log1p(-p)});
      }
    }
    values.push_back(sum);
  }
  return values;
}

// The probability of the tables for which `holds` is true, by step: where it does not hang on the
// proportion, these tables are listed once.
std::vector<double> paired(int n,
                           const std::function<bool(const statistics::PairedCounts&)>& holds) {
  std::vector<std::pair<std::array<int, 4>, double>> tables;
  for (int n11 = 0; n11 <= n; ++n11) {
    for (int n10 = 0; n11 + n10 <= n; ++n10) {
      for (int n01 = 0; n11 + n10 + n01 <= n; ++n01) {
        const std::array<int, 4> counts{n11, n10, n01, n - n11 - n10 - n01};
        const statistics::PairedCounts table{
            static_cast<double>(counts[0]), static_cast<double>(counts[1]),
            static_cast<double>(counts[2]), static_cast<double>(counts[3])};
        if (holds(table)) {
          tables.emplace_back(counts, logWays(counts));
        }
      }
    }
  }
  std::vector<double> values;
  for (int step = 1; step < steps; ++step) {
    const double p = proportionAt(step);
    const double shared = pairCorrelation * p * (1 - p);
    const double apart = std::log(p * (1 - p) - shared);
    const std::array<double, 4> logs{std::log(p * p + shared), apart, apart,
                                     std::log((1 - p) * (1 - p) + shared)};
    double sum = 0.0;
    for (const auto& [counts, ways] : tables) {
      sum += probability(counts, ways, logs);
    }
    values.push_back(sum);
  }
  return values;
}

std::vector<double> independent(
    int n, const std::function<bool(const statistics::IndependentCounts&)>& holds) {
  std::vector<double> values(steps - 1, 0.0);
  for (int a = 0; a <= n; ++a) {
    for (int b = 0; b <= n; ++b) {
      const statistics::IndependentCounts table{static_cast<double>(a), static_cast<double>(n - a),
                                                static_cast<double>(b), static_cast<double>(n - b)};
      if (!holds(table)) {
        continue;
      }
      const double ways = logWays<2>({a, n - a}) + logWays<2>({b, n - b});
      for (int step = 1; step < steps; ++step) {
        const double p = proportionAt(step);
        values[static_cast<std::size_t>(step - 1)] +=
            probability<2>({a + b, 2 * n - a - b}, ways, {std::log(p), std::log1p(-p)});
      }
    }
  }
  return values;
}

std::vector<double> valuesOf(Design design, MethodKind kind, std::size_t slot, int n) {
  const auto critical = statistics::criticalValues(level);
  const bool isTest = kind == MethodKind::Test;
  switch (design) {
    case Design::OneSample:
      return oneSample(n, [&](int x, double p) {
        const statistics::OneSampleCounts counts{static_cast<double>(x), static_cast<double>(n - x),
                                                 p};
        return isTest ? rejects(statistics::oneSampleTests[slot].compute(counts))
                      : covers(statistics::oneSampleIntervals[slot].compute(counts, critical), p);
      });
    case Design::Paired:
      return paired(n, [&](const statistics::PairedCounts& counts) {
        return isTest ? rejects(statistics::pairedTests[slot].compute(counts))
                      : covers(statistics::pairedIntervals[slot].compute(counts, critical), 0.0);
      });
    case Design::Independent:
      return independent(n, [&](const statistics::IndependentCounts& counts) {
        return isTest
                   ? rejects(statistics::independentTests[slot].compute(counts))
                   : covers(statistics::independentIntervals[slot].compute(counts, critical), 0.0);
      });
  }
  return {};
}

}  // namespace

std::vector<Curve> curvesOf(Design design, MethodKind kind, std::size_t slot) {
  std::vector<Curve> curves;
  for (const int n : trialsOfCurves) {
    curves.push_back({n, valuesOf(design, kind, slot, n)});
  }
  return curves;
}

}  // namespace docs
