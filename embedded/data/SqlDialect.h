// What differs between the SQL of the engines: the one place where they are told apart, and where
// names and values become SQL.
#pragma once

#include <initializer_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::data {

// A name or value never reaches SQL but through identifier() and text(). In the patterns, ^ stands
// for an expression.
struct SqlDialect {
  char identifierQuote = '"';
  bool backslashEscapes = false;      // whether a backslash in a text or name stands for an escape
  std::size_t longestIdentifier = 0;  // in bytes; 0 for no limit

  std::string_view withoutBlanks = "rtrim(^, ' ')";  // of a text, those at its end
  std::string_view bytes = "strlen(^)";              // of a text
  std::string_view real = "CAST(^ AS DOUBLE)";       // a number as a double
  std::string_view isFinite = "isfinite(^)";         // of a double
  // A text's place in a list, ^1, as one of the numbers ^2; ^ is the text. Null stays null.
  std::string_view place = {};
  std::string_view typeOfReal = {};   // the engine's names of a double
  std::string_view typeOfCount = {};  // ... and of a count
  // A constant that begins each row of a stream, where a stream may be cut without notice.
  std::string_view mark = {};
  std::string_view typeOfMark = {};

  // `name` as a quoted identifier. Error(Data) for one with a NUL byte, and for one longer than
  // the engine keeps, since it would be cut and mean another column.
  std::string identifier(std::string_view name) const;
  // `value` as a quoted text. Error(Data) for one with a NUL byte.
  std::string text(std::string_view value) const;
  // The place of `expression` among `texts`, which has at least one.
  std::string placeOf(std::string_view expression, std::span<const std::string> texts,
                      std::span<const std::size_t> places) const;
};

// One of the patterns of a dialect with its expression.
std::string filled(std::string_view pattern, std::string_view expression);

inline constexpr SqlDialect duckDbDialect{};

inline constexpr SqlDialect clickHouseDialect{.identifierQuote = '`',
                                              .backslashEscapes = true,
                                              .withoutBlanks = "replaceRegexpOne(^, ' +$', '')",
                                              .bytes = "length(^)",
                                              .real = "toFloat64(^)",
                                              .isFinite = "isFinite(^)",
                                              .place = "transform(^, [^1], [^2], 0)",
                                              .typeOfReal = "Float64",
                                              .typeOfCount = "UInt64",
                                              .mark = "toUInt8(165)",
                                              .typeOfMark = "UInt8"};

// Not-a-number equals itself there, but its difference is never 0.
inline constexpr SqlDialect postgreSqlDialect{
    .identifierQuote = '"',
    .longestIdentifier = 63,
    .withoutBlanks = "rtrim(^, ' ')",
    .bytes = "octet_length(^)",
    .real = "(^)::float8",
    .isFinite = "((^) - (^) = 0)",
    .place = "(ARRAY[^2])[array_position(ARRAY[^1]::text[], ^)]",
    .typeOfReal = "float8",
    .typeOfCount = "bigint"};

}  // namespace embedded::data
