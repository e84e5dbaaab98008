// JSON as text, put together from the texts of its parts. Trees of the JSON library are not made:
// to free one takes memory, and where there is none the program would end.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace render {

// The text in quotes; bytes that are no UTF-8 become replacement characters.
std::string jsonText(std::string_view text);

// A double as the shortest JSON number that reads back as the same double; null for an infinite
// one, which JSON cannot say.
std::string jsonNumber(double number);

// An object of these members, whose values are JSON, in this order.
std::string jsonObject(
    std::initializer_list<std::pair<std::string_view, std::string_view>> members);

// An array of the JSON that `json` makes of each item.
template <class Items, class Json>
std::string jsonArray(const Items& items, const Json& json) {
  std::string text = "[";
  for (const auto& item : items) {
    text += text.size() == 1 ? "" : ",";
    text += json(item);
  }
  return text + "]";
}

}  // namespace render
