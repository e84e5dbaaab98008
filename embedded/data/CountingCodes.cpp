// Codes by a table of small whole numbers, and by open addressing.
#include "CountingCodes.h"

#include <bit>
#include <cstring>

namespace embedded::data {
namespace {

// Added to a whole number of less than 51 bits, this leaves the number in the low bits.
constexpr double shift = 0x1.8p52;
constexpr std::uint64_t shiftBits = std::bit_cast<std::uint64_t>(shift);

std::uint64_t bitsOf(const OBS& word) {
  return std::bit_cast<std::uint64_t>(word);
}

std::uint64_t mixed(std::uint64_t hash, std::uint64_t word) {
  hash = (hash ^ word) * 0x9E3779B97F4A7C15ULL;
  return hash ^ (hash >> 29U);
}

// Finds which numbers a block holds; false when not all of them are whole and small. One loop
// without branches, for the vector unit.
template <std::size_t size>
bool findSmall(const OBS* values, std::array<std::uint64_t, size>& whole) {
  std::uint64_t odd = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const double number = values[i].number;
    const double shifted = number + shift;
    whole[i] = std::bit_cast<std::uint64_t>(shifted) - shiftBits;
    const auto fraction =
        std::bit_cast<std::uint64_t>(shifted - shift) ^ std::bit_cast<std::uint64_t>(number);
    odd |= fraction | (whole[i] & ~std::uint64_t{255});
  }
  return odd == 0;
}

}  // namespace

CountingCodes::CountingCodes(int width)
    : numbers_(width == 0), words_(ObsWords(width)), slots_(16) {}

void CountingCodes::encode(const OBS* values, std::size_t count, std::uint32_t* codes) {
  if (numbers_) return encodeNumbers(values, count, codes);
  const OBS* last = nullptr;
  for (std::size_t i = 0; i < count; ++i, values += words_) {
    codes[i] = last != nullptr && equal(values, last) ? codes[i - 1] : find(values);
    last = values;
  }
}

void CountingCodes::encodeNumbers(const OBS* values, std::size_t count, std::uint32_t* codes) {
  std::array<std::uint64_t, blockSize> whole{};
  std::size_t i = 0;
  for (; i + blockSize <= count; i += blockSize) {
    const bool known = findSmall(values + i, whole) && encodeSmall(whole, codes + i);
    if (!known) encodeOneByOne(values + i, blockSize, codes + i);
  }
  encodeOneByOne(values + i, count - i, codes + i);
}

// The codes of a block of small whole numbers; false when one of them has none yet.
bool CountingCodes::encodeSmall(const std::array<std::uint64_t, blockSize>& whole,
                                std::uint32_t* codes) const {
  std::uint32_t unknown = 0;
  for (std::size_t i = 0; i < blockSize; ++i) {
    codes[i] = small_[whole[i]] - 1;  // all bits when there is no code, as in no code there is
    unknown |= codes[i] >> 31U;
  }
  return unknown == 0;
}

void CountingCodes::encodeOneByOne(const OBS* values, std::size_t count, std::uint32_t* codes) {
  for (std::size_t i = 0; i < count; ++i) {
    const double number = values[i].number;
    const double shifted = number + shift;
    const std::uint64_t whole = std::bit_cast<std::uint64_t>(shifted) - shiftBits;
    const bool isSmall = whole < smallNumbers && shifted - shift == number;
    const std::uint32_t known = isSmall ? small_[whole] : 0;
    codes[i] = known != 0 ? known - 1 : find(values + i);
    if (isSmall) small_[whole] = codes[i] + 1;
  }
}

bool CountingCodes::equal(const OBS* a, const OBS* b) const {
  return words_ == 1 ? bitsOf(*a) == bitsOf(*b) : std::memcmp(a, b, words_ * sizeof(OBS)) == 0;
}

// The slot that holds the value's code, or the free one where it belongs.
std::size_t CountingCodes::slotOf(const OBS* value) const {
  std::uint64_t hash = 0;
  for (std::size_t i = 0; i < words_; ++i) hash = mixed(hash, bitsOf(value[i]));
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = hash >> 7U & mask;
  while (slots_[slot] != 0 && !equal(this->value(slots_[slot] - 1), value))
    slot = (slot + 1) & mask;
  return slot;
}

std::uint32_t CountingCodes::find(const OBS* value) {
  const std::uint32_t known = slots_[slotOf(value)];
  return known != 0 ? known - 1 : add(value);
}

std::uint32_t CountingCodes::add(const OBS* value) {
  if (2 * (size_ + 1) > slots_.size()) grow();
  slots_[slotOf(value)] = static_cast<std::uint32_t>(size_) + 1;
  values_.insert(values_.end(), value, value + words_);
  return static_cast<std::uint32_t>(size_++);
}

void CountingCodes::grow() {
  slots_.assign(slots_.size() * 2, 0);
  for (std::uint32_t code = 0; code < size_; ++code) slots_[slotOf(value(code))] = code + 1;
}

}  // namespace embedded::data
