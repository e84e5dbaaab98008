#include "embedded/text/Nearest.h"

#include <unicode/unistr.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace embedded::text {

namespace {

constexpr std::size_t longest = 200;  // bytes; longer names are not compared

icu::UnicodeString folded(std::string_view name) {
  return icu::UnicodeString::fromUTF8(
             icu::StringPiece(name.data(), static_cast<std::int32_t>(name.size())))
      .foldCase();
}

std::size_t edits(const icu::UnicodeString& a, const icu::UnicodeString& b) {
  std::vector<std::size_t> row(static_cast<std::size_t>(b.length()) + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::int32_t i = 0; i < a.length(); ++i) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 1; j < row.size(); ++j) {
      const bool same = a[i] == b[static_cast<std::int32_t>(j) - 1];
      const std::size_t replaced = diagonal + (same ? 0U : 1U);
      diagonal = row[j];
      row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string nearest(std::string_view name, std::span<const std::string> candidates) {
  std::string found;
  if (name.size() > longest) {
    return found;
  }
  const icu::UnicodeString wanted = folded(name);
  std::size_t least = std::max<std::size_t>(1, static_cast<std::size_t>(wanted.length()) / 3) + 1;
  for (const std::string& candidate : candidates) {
    if (candidate.size() > longest) {
      continue;
    }
    if (const std::size_t distance = edits(wanted, folded(candidate)); distance < least) {
      least = distance;
      found = candidate;
    }
  }
  return found;
}

}  // namespace embedded::text
