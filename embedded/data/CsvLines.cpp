// Finds the ends of fields eight bytes at a time.
#include "CsvLines.h"

#include <unicode/ustring.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace embedded::data {
namespace {

constexpr std::uint64_t ones = 0x0101010101010101ULL;

// The high bit of the lowest zero byte is set, and of none below it (Mycroft 1987).
std::uint64_t zeroBytes(std::uint64_t word) {
  return (word - ones) & ~word & (ones << 7U);
}

// The first delimiter or line feed at or behind `at`; there is one.
const char* fieldEnd(const char* at, std::uint64_t delimiters) {
  if constexpr (std::endian::native == std::endian::little) {
    for (;; at += sizeof(std::uint64_t)) {
      std::uint64_t word = 0;
      std::memcpy(&word, at, sizeof word);
      const std::uint64_t ends = zeroBytes(word ^ delimiters) | zeroBytes(word ^ (ones * '\n'));
      if (ends != 0) return at + std::countr_zero(ends) / 8;
    }
  } else {
    const char delimiter = static_cast<char>(delimiters & 0xFFU);
    while (*at != delimiter && *at != '\n') ++at;
    return at;
  }
}

bool isUtf8(std::span<const char> text) {
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8(nullptr, 0, nullptr, text.data(), static_cast<std::int32_t>(text.size()), &status);
  return status != U_INVALID_CHAR_FOUND;
}

std::vector<int> numbersOnly(std::size_t columns) {
  return std::vector<int>(columns, 0);
}

}  // namespace

CsvLines::CsvLines(char delimiter, bool returns, std::size_t fields,
                   std::span<const std::size_t> wanted, std::vector<CsvTexts>& texts)
    : delimiters_(ones * static_cast<unsigned char>(delimiter)),
      returns_(returns),
      fieldOf_(fields, -1),
      table_(numbersOnly(wanted.size()), false) {
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    fieldOf_[wanted[i]] = static_cast<int>(i);
    fields_.push_back({CsvTextCodes(texts[i]), std::vector<OBS>(linesAtOnce)});
  }
}

// Loops without branches, for the vector unit.
bool CsvLines::isPlain(std::span<const char> lines) const {
  unsigned odd = 0;
  unsigned high = 0;
  for (const char c : lines) {
    const auto byte = static_cast<unsigned char>(c);
    odd |= static_cast<unsigned>(byte == '"') | static_cast<unsigned>(byte == '\0');
    high |= byte;
  }
  if (odd != 0 || ((high & 0x80U) != 0 && !isUtf8(lines))) return false;
  const auto count = [&](char wanted) { return std::ranges::count(lines, wanted); };
  // That each stands before a line feed is seen where the lines are read.
  return count('\r') == (returns_ ? count('\n') : 0);
}

bool CsvLines::add(std::span<const char> lines) {
  if (!isPlain(lines)) return false;
  const char* at = lines.data();
  const char* const end = at + lines.size();
  while (at != end) {
    at = codeLines(at, end);
    if (at == nullptr || !count()) return false;
  }
  return true;
}

// As many lines as are counted at once; null when one is not plain.
const char* CsvLines::codeLines(const char* at, const char* end) {
  while (at != end && lines_ < linesAtOnce) {
    at = codeLine(at);
    if (at == nullptr) return nullptr;
    ++lines_;
  }
  return at;
}

// The place behind a line; null when it is not plain.
const char* CsvLines::codeLine(const char* at) {
  const char* const line = at;
  const std::size_t last = fieldOf_.size() - 1;
  for (std::size_t column = 0; column <= last; ++column) {
    const char* end = fieldEnd(at, delimiters_);
    if ((*end == '\n') != (column == last)) return nullptr;
    const char* const next = end + 1;
    if (column == last) {
      if (returns_ && (end == at || end[-1] != '\r')) return nullptr;
      if (returns_) --end;
      if (end == line) return nullptr;  // a blank line
    }
    if (const int field = fieldOf_[column]; field >= 0) {
      Field& wanted = fields_[static_cast<std::size_t>(field)];
      const std::uint32_t code = wanted.codes.code(at, static_cast<std::size_t>(end - at));
      if (code == CsvTexts::none) return nullptr;
      wanted.coded[lines_].number = code;
    }
    at = next;
  }
  return at;
}

bool CsvLines::count() {
  std::vector<const OBS*> columns;
  columns.reserve(fields_.size());
  for (const Field& field : fields_) columns.push_back(field.coded.data());
  counted_ += lines_;
  return table_.add(columns, std::exchange(lines_, 0));
}

}  // namespace embedded::data
