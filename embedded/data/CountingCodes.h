// The distinct values of one column, each with a code: 0, 1, 2, ... in the order of appearance.
//
// Most columns of an analysis hold few values, and most of these are small whole numbers: such a
// value finds its code by one look into a small table; every other by hashing.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "host/data/OBS.h"

namespace embedded::data {

class CountingCodes {
 public:
  // Of a column of numbers (`width` 0), or of strings of so many bytes.
  explicit CountingCodes(int width);

  // Writes the code of each of `count` values, which lie behind one another as an observation
  // holds them: negative zero as zero, a missing number as the system-missing value.
  void encode(const OBS* values, std::size_t count, std::uint32_t* codes);

  std::size_t size() const { return size_; }
  std::size_t words() const { return words_; }  // of one value
  const OBS* value(std::uint32_t code) const { return values_.data() + code * words_; }

 private:
  static constexpr std::size_t blockSize = 64;
  void encodeNumbers(const OBS* values, std::size_t count, std::uint32_t* codes);
  bool encodeSmall(const std::array<std::uint64_t, blockSize>& whole, std::uint32_t* codes) const;
  void encodeOneByOne(const OBS* values, std::size_t count, std::uint32_t* codes);
  std::uint32_t find(const OBS* value);
  std::uint32_t add(const OBS* value);
  void grow();
  std::size_t slotOf(const OBS* value) const;
  bool equal(const OBS* a, const OBS* b) const;

  static constexpr std::size_t smallNumbers = 256;
  bool numbers_;
  std::size_t words_;
  std::size_t size_ = 0;
  std::vector<OBS> values_;                          // by code
  std::vector<std::uint32_t> slots_;                 // code + 1, open addressing; 0 when free
  std::array<std::uint32_t, smallNumbers> small_{};  // code + 1 of the numbers 0, 1, ...
};

}  // namespace embedded::data
