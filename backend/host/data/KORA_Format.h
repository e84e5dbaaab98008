// The print format of a variable, 32 bits that are copied as they stand.
#pragma once

#include <cstdint>

enum class FormatType : std::uint8_t {
  String = 1,     // bytes as text
  HexString = 2,  // bytes as hexadecimal digits
  Number = 3,     // general number
  Date = 4,       // days since 1970-01-01
  Time = 5,       // seconds
  Timestamp = 6,  // seconds since 1970-01-01T00:00 UTC
  Boolean = 7     // 0 or 1
};

struct KORA_Format {
  FormatType type = FormatType::Number;
  std::uint8_t decimals = 0;
  std::uint16_t width = 0;

  // The type code; 1 and 2 are the string formats, everything else is a number.
  int GetTypeCode() const { return static_cast<int>(type); }
  bool IsString() const { return type == FormatType::String || type == FormatType::HexString; }

  friend bool operator==(const KORA_Format&, const KORA_Format&) = default;
};
static_assert(sizeof(KORA_Format) == 4);
