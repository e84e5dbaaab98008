// A counter-based random generator: Philox 4x32 with ten rounds (Salmon, Moraes, Dror and Shaw,
// "Parallel random numbers: as easy as 1, 2, 3", SC 2011).
//
// A stream is named by a seed, a sample and a stratum. Its numbers depend on nothing else: not on
// threads, not on which streams were drawn from before.
#pragma once

#include <array>
#include <cstdint>
#include <limits>

namespace embedded::data {

class Philox {
 public:
  using result_type = std::uint32_t;
  using Block = std::array<std::uint32_t, 4>;

  Philox(std::uint64_t seed, std::uint32_t sample, std::uint64_t stratum)
      : key_{low(seed), high(seed)}, counter_{0, sample, low(stratum), high(stratum)} {}

  static constexpr result_type min() { return 0; }
  static constexpr result_type max() { return std::numeric_limits<result_type>::max(); }

  result_type operator()() {
    if (next_ == block_.size()) {
      block_ = permute(counter_, key_);
      ++counter_[0];
      next_ = 0;
    }
    return block_[next_++];
  }

  // Ten rounds over one counter: the whole generator.
  static Block permute(Block counter, std::array<std::uint32_t, 2> key) {
    for (int round = 0; round < 10; ++round) {
      const std::uint64_t first = std::uint64_t{0xD2511F53} * counter[0];
      const std::uint64_t second = std::uint64_t{0xCD9E8D57} * counter[2];
      counter = {high(second) ^ counter[1] ^ key[0], low(second), high(first) ^ counter[3] ^ key[1],
                 low(first)};
      key[0] += 0x9E3779B9;
      key[1] += 0xBB67AE85;
    }
    return counter;
  }

 private:
  static constexpr std::uint32_t low(std::uint64_t word) {
    return static_cast<std::uint32_t>(word);
  }
  static constexpr std::uint32_t high(std::uint64_t word) {
    return static_cast<std::uint32_t>(word >> 32);
  }

  std::array<std::uint32_t, 2> key_;
  Block counter_;
  Block block_{};
  std::size_t next_ = 4;
};

}  // namespace embedded::data
