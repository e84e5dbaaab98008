// The distinct texts of one column of a CSV file, each with a code: 0, 1, 2, ...
//
// All threads that read a file share the codes; each thread remembers by itself those that it has
// seen, so that it asks for each text only once.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace embedded::data {

// What all threads share.
class CsvTexts {
 public:
  // A column with more texts than this is not one of few values.
  static constexpr std::uint32_t most = 4096;
  static constexpr std::uint32_t none = ~std::uint32_t{0};

  // The code of a text, a new one when it is new; none when there would be too many. Safe to call
  // from several threads.
  std::uint32_t code(std::string_view text);
  // By code; once all threads have ended.
  const std::vector<std::string>& texts() const { return texts_; }

 private:
  std::mutex mutex_;
  std::unordered_map<std::string, std::uint32_t> codes_;
  std::vector<std::string> texts_;
};

// What one thread remembers of it. Texts of up to seven bytes are found by one look at a number
// that their bytes make.
class CsvTextCodes {
 public:
  explicit CsvTextCodes(CsvTexts& shared) : shared_(&shared), slots_(64) {}

  // The code of the text of `length` bytes at `text`, of which eight bytes can be read; or none.
  std::uint32_t code(const char* text, std::size_t length);

 private:
  struct Slot {
    std::uint64_t key = unused;
    std::uint32_t code = 0;
  };
  static constexpr std::uint64_t unused = ~std::uint64_t{0};
  static constexpr std::size_t longestShort = 7;
  static std::uint64_t keyOf(const char* text, std::size_t length);
  std::size_t slotOf(std::uint64_t key) const;
  std::uint32_t learnShort(std::uint64_t key, std::string_view text);
  std::uint32_t longCode(std::string_view text);

  CsvTexts* shared_;
  std::vector<Slot> slots_;  // of short texts: open addressing
  std::size_t used_ = 0;
  std::unordered_map<std::string, std::uint32_t> long_;
  std::string last_;  // the long text of the last case, and its code
  std::uint32_t lastCode_ = CsvTexts::none;
};

// What follows is done once for each field: compiled into the loop over the lines.

// The bytes of a short text, and its length in the one that is left: no two texts have the same.
inline std::uint64_t CsvTextCodes::keyOf(const char* text, std::size_t length) {
  std::uint64_t bytes = 0;
  std::memcpy(&bytes, text, sizeof bytes);
  const std::size_t others = 8 * (sizeof bytes - length);
  if constexpr (std::endian::native == std::endian::little)
    return (bytes & (~std::uint64_t{0} >> 8U >> (others - 8))) | std::uint64_t{length} << 56U;
  else
    return (bytes & (~std::uint64_t{0} << 8U << (others - 8))) | length;
}

inline std::uint32_t CsvTextCodes::code(const char* text, std::size_t length) {
  if (length > longestShort) return longCode({text, length});
  const std::uint64_t key = keyOf(text, length);
  const Slot& slot = slots_[slotOf(key)];
  return slot.key == key ? slot.code : learnShort(key, {text, length});
}

inline std::size_t CsvTextCodes::slotOf(std::uint64_t key) const {
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = (key * 0x9E3779B97F4A7C15ULL) >> 40U & mask;
  while (slots_[slot].key != key && slots_[slot].key != unused) slot = (slot + 1) & mask;
  return slot;
}

}  // namespace embedded::data
