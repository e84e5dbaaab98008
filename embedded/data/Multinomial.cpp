#include "embedded/data/Multinomial.h"

#include <algorithm>
#include <boost/random/binomial_distribution.hpp>
#include <numeric>

namespace embedded::data {

namespace {

// P(success) is of / total, both whole, and at most one half: a small probability keeps its digits.
std::uint64_t drawFewer(std::uint64_t trials, std::uint64_t of, std::uint64_t total,
                        Philox& random) {
  if (trials == 0 || of == 0) {
    return 0;
  }
  const double p = static_cast<double>(of) / static_cast<double>(total);
  boost::random::binomial_distribution<std::int64_t, double> binomial(
      static_cast<std::int64_t>(trials), p);
  const std::int64_t drawn = binomial(random);
  return static_cast<std::uint64_t>(
      std::clamp<std::int64_t>(drawn, 0, static_cast<std::int64_t>(trials)));
}

// P(success) is of / total, both whole.
std::uint64_t drawBinomial(std::uint64_t trials, std::uint64_t of, std::uint64_t total,
                           Philox& random) {
  return of > total - of ? trials - drawFewer(trials, total - of, total, random)
                         : drawFewer(trials, of, total, random);
}

}  // namespace

std::vector<std::uint32_t> cellsBySize(std::span<const std::uint64_t> counts) {
  std::vector<std::uint32_t> order(counts.size());
  std::iota(order.begin(), order.end(), 0U);
  std::stable_sort(order.begin(), order.end(),
                   [&](std::uint32_t a, std::uint32_t b) { return counts[a] > counts[b]; });
  return order;
}

std::vector<std::uint64_t> drawMultinomial(std::span<const std::uint64_t> counts,
                                           std::span<const std::uint32_t> order, Philox& random) {
  std::vector<std::uint64_t> drawn(counts.size(), 0);
  std::uint64_t total = std::accumulate(counts.begin(), counts.end(), std::uint64_t{0});
  std::uint64_t left = total;
  for (const std::uint32_t cell : order) {
    drawn[cell] = drawBinomial(left, counts[cell], total, random);
    left -= drawn[cell];
    total -= counts[cell];
  }
  return drawn;
}

}  // namespace embedded::data
