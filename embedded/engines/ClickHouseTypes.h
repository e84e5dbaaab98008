// The types of ClickHouse: what they are to us, how their columns are asked for, and how their
// values lie in RowBinary.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "embedded/data/SqlServer.h"

namespace embedded::engines {

struct ClickHouseType {
  // How a value lies in a row; numbers little-endian, a text as its length and its bytes.
  enum class Wire : std::uint8_t {
    Int8,
    Int16,
    Int32,
    Int64,
    UInt8,
    UInt16,
    UInt32,
    UInt64,
    Float32,
    Float64,
    Date,
    Date32,
    DateTime,
    DateTime64,
    Text,
    Other  // delivered as a text where it is asked for at all
  };
  Wire wire = Wire::Other;
  bool nullable = false;  // a byte before the value says whether it is null
  int digits = 0;         // of a second, of DateTime64
  data::ColumnKind kind = data::ColumnKind::Unsupported;
  std::string_view base;  // the name without Nullable and LowCardinality; of the parsed text
};

// Reads a type's name, such as Nullable(DateTime64(3)).
ClickHouseType clickHouseType(std::string_view name);

// How a column is asked for.
data::SqlColumn clickHouseColumn(const data::Column& column, bool asText);

}  // namespace embedded::engines
