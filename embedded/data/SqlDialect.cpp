// Quoting.
#include "SqlDialect.h"

#include "DataMessages.h"

namespace embedded::data {
namespace {

std::string quoted(std::string_view text, char quote, bool backslashEscapes) {
  if (text.find('\0') != std::string_view::npos)
    fail(messages::unreadable, {std::string(text.substr(0, text.find('\0'))), "a NUL byte"});
  std::string result(1, quote);
  for (const char byte : text) {
    if (byte == quote) result += quote;
    if (byte == '\\' && backslashEscapes) result += '\\';
    result += byte;
  }
  return result + quote;
}

}  // namespace

std::string SqlDialect::identifier(std::string_view name) const {
  if (longestIdentifier != 0 && name.size() > longestIdentifier)
    fail(messages::unreadable, {std::string(name), "the name is longer than the engine keeps"});
  return quoted(name, identifierQuote, backslashEscapes);
}

std::string SqlDialect::text(std::string_view value) const {
  return quoted(value, '\'', backslashEscapes);
}

}  // namespace embedded::data
