#include "render/HtmlText.h"

#include <algorithm>

#include "render/Columns.h"

namespace render {

namespace {

std::string_view entityOf(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return {};
  }
}

}  // namespace

std::string htmlText(std::string_view text) {
  std::string out;
  for (const char c : visible(text)) {
    const std::string_view entity = entityOf(c);
    out += entity.empty() ? std::string_view(&c, 1) : entity;
  }
  return out;
}

std::string htmlLines(std::string_view text) {
  std::string out;
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    out += (at == 0 ? "" : "\n") + htmlText(text.substr(at, end - at));
    at = end + 1;
  }
  return out;
}

std::string htmlId(std::string_view prefix, std::size_t number) {
  return std::string(prefix) + std::to_string(number);
}

}  // namespace render
