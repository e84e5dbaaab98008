#include "render/JsonLabels.h"

#include <fmt/format.h>

#include <cmath>

namespace render {

namespace {

using embedded::output::Text;
using embedded::output::ValueKind;

// Whole numbers are written without a fraction, as people write them.
Json numberOf(double number) {
  constexpr double exactUpTo = 9007199254740992.0;
  const bool whole = number == std::floor(number) && std::abs(number) <= exactUpTo;
  const bool negativeZero = number == 0.0 && std::signbit(number);
  return whole && !negativeZero ? Json(static_cast<std::int64_t>(number)) : Json(number);
}

Json argumentOf(const Text& text) {
  switch (text.kind) {
    case Text::Kind::Variable:
      return text.variable->name;
    case Text::Kind::Number:
    case Text::Kind::Value:
      return jsonValue(text);
    case Text::Kind::String:
      return text.id;
    case Text::Kind::Composite:
      return embedded::output::machineText(text);
    case Text::Kind::List:
      return jsonArguments(text);
  }
  return nullptr;
}

}  // namespace

std::string jsonText(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string jsonNumber(double number) {
  if (number == 0.0 && std::signbit(number)) {
    return "-0.0";  // readers take "-0" for the integer, which has no sign
  }
  return std::isfinite(number) ? fmt::format("{}", number) : "null";
}

Json jsonValue(const Text& text) {
  const auto* number = std::get_if<double>(&text.value);
  if (number == nullptr) {
    return embedded::output::rawText(*text.variable, text.value);
  }
  if (embedded::output::isSystemMissing(*number) || !std::isfinite(*number)) {
    return nullptr;
  }
  const bool plain = !text.variable || text.variable->kind == ValueKind::Number ||
                     text.variable->kind == ValueKind::Boolean;
  return plain ? numberOf(*number) : Json(embedded::output::isoText(text.variable->kind, *number));
}

Json jsonArguments(const Text& text) {
  Json arguments = Json::array();
  for (const embedded::output::TextPtr& item : text.items) {
    arguments.push_back(argumentOf(*item));
  }
  return arguments;
}

Json jsonLabel(const Text& text, const embedded::output::Sentences& sentences) {
  const bool isTemplate = text.kind == Text::Kind::String || text.kind == Text::Kind::Composite;
  Json json;
  json["id"] = isTemplate ? text.id : embedded::output::machineText(text);
  if (text.kind == Text::Kind::Composite) {
    json["arguments"] = jsonArguments(text);
  }
  json["text"] = embedded::output::readerText(text, sentences);
  return json;
}

}  // namespace render
