#include "render/JsonLabels.h"

#include <cmath>
#include <cstdint>
#include <nlohmann/json.hpp>

#include "render/JsonText.h"

namespace render {

namespace {

using embedded::output::Text;
using embedded::output::ValueKind;

// Whole numbers are written without a fraction, as people write them.
std::string numberOf(double number) {
  constexpr double exactUpTo = 9007199254740992.0;
  const bool whole = number == std::floor(number) && std::abs(number) <= exactUpTo;
  const bool negativeZero = number == 0.0 && std::signbit(number);
  return whole && !negativeZero ? std::to_string(static_cast<std::int64_t>(number))
                                : nlohmann::json(number).dump();
}

std::string argumentOf(const Text& text) {
  switch (text.kind) {
    case Text::Kind::Variable:
      return jsonText(text.variable->name);
    case Text::Kind::Number:
    case Text::Kind::Value:
      return jsonValue(text);
    case Text::Kind::String:
      return jsonText(text.id);
    case Text::Kind::Composite:
      return jsonText(embedded::output::machineText(text));
    case Text::Kind::List:
      return jsonArguments(text);
  }
  return "null";
}

}  // namespace

std::string jsonValue(const Text& text) {
  const auto* number = std::get_if<double>(&text.value);
  if (number == nullptr) {
    return jsonText(embedded::output::rawText(*text.variable, text.value));
  }
  if (embedded::output::isSystemMissing(*number) || !std::isfinite(*number)) {
    return "null";
  }
  const bool plain = !text.variable || text.variable->kind == ValueKind::Number ||
                     text.variable->kind == ValueKind::Boolean;
  return plain ? numberOf(*number)
               : jsonText(embedded::output::isoText(text.variable->kind, *number));
}

std::string jsonArguments(const Text& text) {
  return jsonArray(text.items,
                   [](const embedded::output::TextPtr& item) { return argumentOf(*item); });
}

std::string jsonLabel(const Text& text, const embedded::output::Sentences& sentences) {
  const bool isTemplate = text.kind == Text::Kind::String || text.kind == Text::Kind::Composite;
  const std::string id = jsonText(isTemplate ? text.id : embedded::output::machineText(text));
  const std::string shown = jsonText(embedded::output::readerText(text, sentences));
  if (text.kind == Text::Kind::Composite) {
    return jsonObject({{"id", id}, {"arguments", jsonArguments(text)}, {"text", shown}});
  }
  return jsonObject({{"id", id}, {"text", shown}});
}

}  // namespace render
