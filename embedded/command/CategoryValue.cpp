#include "embedded/command/CategoryValue.h"

#include <algorithm>
#include <cstring>
#include <optional>

#include "embedded/data/IsoTime.h"
#include "host/distributions/MCMV.h"

namespace embedded::command {

namespace {

std::optional<double> labelled(const output::VariableInfo& info, std::string_view text) {
  for (const auto& [value, label] : info.numberLabels) {
    if (label == text) {
      return value;
    }
  }
  return std::nullopt;
}

std::optional<double> numericValue(const data::Variable& variable, std::string_view text) {
  auto value = data::numberOf(text, output::ValueKind::Number);
  if (!value) {
    value = labelled(*variable.info, text);
  }
  if (!value) {
    value = data::numberOf(text, variable.kind);
  }
  if (value == MCMV::Missing) {
    return std::nullopt;
  }
  if (value && variable.declaredNumbers) {
    const auto& declared = *variable.declaredNumbers;
    if (std::find(declared.begin(), declared.end(), *value) == declared.end()) {
      return std::nullopt;
    }
  }
  return value;
}

bool isDeclared(const data::Variable& variable, std::string_view text) {
  const std::string_view value = text.substr(0, text.find_last_not_of(' ') + 1);
  return !variable.declaredStrings ||
         std::find(variable.declaredStrings->begin(), variable.declaredStrings->end(), value) !=
             variable.declaredStrings->end();
}

}  // namespace

OwnedOBS categoryValue(const data::Variable& variable, std::string_view text) {
  if (variable.type == 0) {
    const auto value = numericValue(variable, text);
    if (!value) {
      return nullptr;
    }
    auto observation = std::make_unique<OBS[]>(1);
    observation[0].number = *value;
    return observation;
  }
  if (text.size() > static_cast<std::size_t>(variable.type) ||
      text.find('\0') != std::string_view::npos || !isDeclared(variable, text)) {
    return nullptr;
  }
  const std::size_t words = ObsWords(variable.type);
  auto observation = std::make_unique<OBS[]>(words);
  std::memset(observation.get(), ' ', words * sizeof(OBS));
  std::memcpy(observation.get(), text.data(), text.size());
  return observation;
}

}  // namespace embedded::command
