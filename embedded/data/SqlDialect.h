// How an engine quotes: the one place where names and values become SQL.
#pragma once

#include <string>
#include <string_view>

namespace embedded::data {

// What differs between engines. A name or value never reaches SQL but through these two.
struct SqlDialect {
  char identifierQuote = '"';
  bool backslashEscapes = false;      // whether a backslash in a text or name stands for an escape
  std::size_t longestIdentifier = 0;  // in bytes; 0 for no limit

  // `name` as a quoted identifier. Error(Data) for one with a NUL byte, and for one longer than
  // the engine keeps, since it would be cut and mean another column.
  std::string identifier(std::string_view name) const;
  // `value` as a quoted text. Error(Data) for one with a NUL byte.
  std::string text(std::string_view value) const;
};

inline constexpr SqlDialect duckDbDialect{};
inline constexpr SqlDialect clickHouseDialect{'`', true, 0};
inline constexpr SqlDialect postgreSqlDialect{'"', false, 63};

}  // namespace embedded::data
