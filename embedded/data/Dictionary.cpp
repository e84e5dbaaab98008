// Missing values and names.
#include "Dictionary.h"

#include <unicode/unistr.h>

#include <algorithm>
#include <cstring>

#include "host/distributions/MCMV.h"

namespace embedded::data {
namespace {

icu::UnicodeString folded(std::string_view name) {
  return icu::UnicodeString::fromUTF8(
             icu::StringPiece(name.data(), static_cast<std::int32_t>(name.size())))
      .foldCase();
}

// Edits that turn one name into the other: insertions, deletions, replacements.
std::size_t distance(const icu::UnicodeString& a, const icu::UnicodeString& b) {
  std::vector<std::size_t> row(static_cast<std::size_t>(b.length()) + 1);
  for (std::size_t j = 0; j < row.size(); ++j) row[j] = j;
  for (std::int32_t i = 0; i < a.length(); ++i) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 1; j < row.size(); ++j) {
      const std::size_t replaced =
          diagonal + (a[i] == b[static_cast<std::int32_t>(j) - 1] ? 0U : 1U);
      diagonal = row[j];
      row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

bool Variable::isSystemMissing(const OBS* observation) const {
  if (type == 0) return observation->number == MCMV::Missing;
  const char* bytes = observation->bytes;
  return std::all_of(bytes, bytes + type, [](char byte) { return byte == '\0'; });
}

bool Variable::isUserMissing(const OBS* observation) const {
  if (type == 0) {
    const double value = observation->number;
    return std::ranges::find(missingNumbers, value) != missingNumbers.end() ||
           std::ranges::any_of(missingRanges, [&](const MissingRange& range) {
             return range.min <= value && value <= range.max;
           });
  }
  if (missingStrings.empty()) return false;
  std::string_view text(observation->bytes, static_cast<std::size_t>(type));
  text = text.substr(0, text.find_last_not_of(' ') + 1);
  return std::ranges::find(missingStrings, text) != missingStrings.end();
}

bool Variable::hasUserMissing() const {
  return !missingNumbers.empty() || !missingRanges.empty() || !missingStrings.empty();
}

bool Variable::IsMissing(const OBS* observation) const {
  return isSystemMissing(observation) || isUserMissing(observation);
}

int Dictionary::find(std::string_view name) const {
  for (std::size_t i = 0; i < variables.size(); ++i)
    if (variables[i].name == name) return static_cast<int>(i);
  const icu::UnicodeString wanted = folded(name);
  for (std::size_t i = 0; i < variables.size(); ++i)
    if (folded(variables[i].name) == wanted) return static_cast<int>(i);
  return -1;
}

std::string Dictionary::nearest(std::string_view name) const {
  const icu::UnicodeString wanted = folded(name);
  std::size_t best = static_cast<std::size_t>(wanted.length()) / 2 + 1;
  std::string result;
  for (const Variable& variable : variables) {
    const std::size_t edits = distance(wanted, folded(variable.name));
    if (edits >= best) continue;
    best = edits;
    result = variable.name;
  }
  return result;
}

}  // namespace embedded::data
