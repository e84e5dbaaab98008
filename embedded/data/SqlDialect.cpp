// Quoting, and the filling in of patterns.
#include "SqlDialect.h"

#include <string>

#include "DataMessages.h"

namespace embedded::data {
namespace {

// Where a backslash escapes, it also escapes the quote: not all of those engines know a doubled
// one.
std::string quoted(std::string_view text, char quote, bool backslashEscapes) {
  if (text.find('\0') != std::string_view::npos)
    fail(messages::unreadable,
         {std::string(text.substr(0, text.find('\0'))), "Reason holds a NUL byte ..."});
  std::string result(1, quote);
  for (const char byte : text) {
    if (byte == quote) result += backslashEscapes ? '\\' : quote;
    if (byte == '\\' && backslashEscapes) result += '\\';
    result += byte;
  }
  return result + quote;
}

}  // namespace

std::string SqlDialect::identifier(std::string_view name) const {
  if (longestIdentifier != 0 && name.size() > longestIdentifier)
    fail(messages::unreadable, {std::string(name), "Reason name too long ..."});
  return quoted(name, identifierQuote, backslashEscapes);
}

std::string SqlDialect::text(std::string_view value) const {
  return quoted(value, '\'', backslashEscapes);
}

std::string SqlDialect::placeOf(std::string_view expression, std::span<const std::string> texts,
                                std::span<const std::size_t> places) const {
  std::string keys;
  std::string numbers;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    keys += (i == 0 ? "" : ", ") + text(texts[i]);
    numbers += (i == 0 ? "" : ", ") + std::to_string(places[i]);
  }
  std::string result;
  for (std::size_t i = 0; i < place.size(); ++i) {
    if (place[i] != '^') {
      result += place[i];
      continue;
    }
    const char which = i + 1 < place.size() ? place[i + 1] : ' ';
    result += which == '1' ? keys : which == '2' ? numbers : std::string(expression);
    if (which == '1' || which == '2') ++i;
  }
  return result;
}

std::string filled(std::string_view pattern, std::string_view expression) {
  std::string result;
  for (const char byte : pattern) {
    if (byte == '^')
      result += expression;
    else
      result += byte;
  }
  return result;
}

}  // namespace embedded::data
