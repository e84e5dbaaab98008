// Draws of a multinomial distribution.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "embedded/data/Philox.h"

namespace embedded::data {

// Draws as many cases as the counts hold, with replacement, from cells that hold `counts` cases:
// the number drawn from each cell. By conditional binomials over integer remainders, the
// largest cell first (ties in the order of the cells), so that a draw costs as much as there are
// cells. The counts' sum is at most 2^52. `order` is cellsBySize(counts).
std::vector<std::uint64_t> drawMultinomial(std::span<const std::uint64_t> counts,
                                           std::span<const std::uint32_t> order, Philox& random);

// The cells from the largest to the smallest.
std::vector<std::uint32_t> cellsBySize(std::span<const std::uint64_t> counts);

}  // namespace embedded::data
