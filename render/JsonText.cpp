#include "render/JsonText.h"

#include <fmt/format.h>

#include <cmath>
#include <nlohmann/json.hpp>

namespace render {

std::string jsonText(std::string_view text) {
  using Json = nlohmann::json;
  return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string jsonNumber(double number) {
  if (number == 0.0 && std::signbit(number)) {
    return "-0.0";  // readers take "-0" for the integer, which has no sign
  }
  return std::isfinite(number) ? fmt::format("{}", number) : "null";
}

std::string jsonObject(
    std::initializer_list<std::pair<std::string_view, std::string_view>> members) {
  std::string text = "{";
  for (const auto& [name, value] : members) {
    text += text.size() == 1 ? "" : ",";
    text += jsonText(name);
    text += ':';
    text += value;
  }
  return text + "}";
}

}  // namespace render
