#include "Rows.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace cli_tests::rows {

namespace {

using Member = std::optional<double> Row::*;

struct Extremes {
  double low, high;
  double middle() const { return (low + high) * 0.5; }
};

Extremes extremesOf(const std::vector<Row>& rows, Member member) {
  Extremes extremes{INFINITY, -INFINITY};
  for (const Row& row : rows) {
    if (row.*member) {
      extremes.low = std::min(extremes.low, *(row.*member));
      extremes.high = std::max(extremes.high, *(row.*member));
    }
  }
  return extremes;
}

bool isSuccess(Success rule, double value, const Extremes& extremes) {
  switch (rule) {
    case Success::First:
      return value == extremes.low;
    case Success::Last:
      return value == extremes.high;
    case Success::Midpoint:
      return value >= extremes.middle();
    case Success::CutPoint:
      return value >= 2.0;
    case Success::Level:
      return value == 2.0;
  }
  return false;
}

// 0, 1, or -1 for neither.
int groupOf(Grouping rule, double value, const Extremes& extremes) {
  switch (rule) {
    case Grouping::Levels:
      return value == 1.0 ? 0 : value == 2.0 ? 1 : -1;
    case Grouping::Midpoint:
      return value >= extremes.middle() ? 1 : 0;
    case Grouping::CutPoint:
      return value >= 2.0 ? 1 : 0;
  }
  return -1;
}

struct Share {
  double successes = 0.0;
  double trials = 0.0;
  void add(bool success) {
    trials += 1.0;
    successes += success ? 1.0 : 0.0;
  }
  std::optional<double> value() const {
    return trials > 0.0 ? std::optional(successes / trials) : std::nullopt;
  }
};

}  // namespace

Estimates estimate(const Analysis& analysis, const std::vector<Row>& sample,
                   const std::vector<Row>& original) {
  const Extremes ofV = extremesOf(original, &Row::v);
  const Extremes ofU = extremesOf(original, &Row::u);
  const Extremes ofG = extremesOf(original, &Row::g);
  Share shares[2];
  for (const Row& row : sample) {
    if (!row.v) {
      continue;
    }
    const bool success = isSuccess(analysis.success, *row.v, ofV);
    if (analysis.design == Design::OneSample) {
      shares[0].add(success);
    } else if (analysis.design == Design::Paired && row.u) {
      shares[0].add(success);
      shares[1].add(isSuccess(analysis.success, *row.u, ofU));
    } else if (analysis.design == Design::Independent && row.g) {
      const int group = groupOf(analysis.grouping, *row.g, ofG);
      if (group >= 0) {
        shares[group].add(success);
      }
    }
  }
  Estimates estimates{shares[0].value(), shares[1].value(), {}, {}};
  if (estimates.first && estimates.second) {
    estimates.difference = *estimates.first - *estimates.second;
  }
  if (estimates.first) {
    estimates.error = std::sqrt(*estimates.first * (1.0 - *estimates.first) / shares[0].trials);
  }
  return estimates;
}

std::vector<Estimates> resample(const Analysis& analysis, const std::vector<Row>& original,
                                int samples, std::uint64_t seed) {
  std::mt19937_64 random(seed);
  std::uniform_int_distribution<std::size_t> anyRow(0, original.size() - 1);
  std::vector<Estimates> all;
  std::vector<Row> sample(original.size());
  for (int i = 0; i < samples; ++i) {
    for (Row& row : sample) {
      row = original[anyRow(random)];
    }
    all.push_back(estimate(analysis, sample, original));
  }
  return all;
}

}  // namespace cli_tests::rows
