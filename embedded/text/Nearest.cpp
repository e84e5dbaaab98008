#include "embedded/text/Nearest.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "host/text/KORAMBstr.h"

namespace embedded::text {

namespace {

constexpr std::size_t longest = 200;  // names longer than this are not compared

std::string folded(std::string_view name) {
  std::string text(name);
  KORAMBstrupr_A(text);
  return text;
}

std::size_t edits(const std::string& a, const std::string& b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string nearest(std::string_view name, std::span<const std::string> candidates) {
  const std::string wanted = folded(name);
  std::size_t least = std::max<std::size_t>(1, wanted.size() / 3) + 1;
  std::string found;
  if (wanted.size() > longest) {
    return found;
  }
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
