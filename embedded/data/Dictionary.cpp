// Missing values and names.
#include "Dictionary.h"

#include <unicode/unistr.h>

#include <algorithm>
#include <cstring>

#include "embedded/text/Nearest.h"
#include "host/distributions/MCMV.h"

namespace embedded::data {
namespace {

icu::UnicodeString folded(std::string_view name) {
  return icu::UnicodeString::fromUTF8(
             icu::StringPiece(name.data(), static_cast<std::int32_t>(name.size())))
      .foldCase();
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
  // Most variables are plain numbers.
  if (type == 0 && missingNumbers.empty() && missingRanges.empty())
    return observation->number == MCMV::Missing;
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
  std::vector<std::string> names;
  names.reserve(variables.size());
  for (const Variable& variable : variables) names.push_back(variable.name);
  return text::nearest(name, names);
}

}  // namespace embedded::data
