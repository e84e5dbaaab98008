// The table of types, and the expressions for each kind of them.
#include "ClickHouseTypes.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace embedded::engines {
namespace {

using data::ColumnKind;
using Wire = ClickHouseType::Wire;

struct Row {
  std::string_view name;  // with "(" at the end for a type with parameters
  Wire wire;
  ColumnKind kind;
};

constexpr std::array types{
    Row{"UInt8", Wire::UInt8, ColumnKind::Integer},
    Row{"UInt16", Wire::UInt16, ColumnKind::Integer},
    Row{"UInt32", Wire::UInt32, ColumnKind::Integer},
    Row{"UInt64", Wire::UInt64, ColumnKind::Integer},
    Row{"Int8", Wire::Int8, ColumnKind::Integer},
    Row{"Int16", Wire::Int16, ColumnKind::Integer},
    Row{"Int32", Wire::Int32, ColumnKind::Integer},
    Row{"Int64", Wire::Int64, ColumnKind::Integer},
    Row{"Int128", Wire::Other, ColumnKind::Integer},
    Row{"Int256", Wire::Other, ColumnKind::Integer},
    Row{"UInt128", Wire::Other, ColumnKind::Integer},
    Row{"UInt256", Wire::Other, ColumnKind::Integer},
    Row{"Float32", Wire::Float32, ColumnKind::Real},
    Row{"Float64", Wire::Float64, ColumnKind::Real},
    Row{"Decimal(", Wire::Other, ColumnKind::Real},
    Row{"Bool", Wire::UInt8, ColumnKind::Boolean},
    Row{"String", Wire::Text, ColumnKind::Text},
    Row{"FixedString(", Wire::Other, ColumnKind::Text},
    Row{"Enum8(", Wire::Other, ColumnKind::Text},
    Row{"Enum16(", Wire::Other, ColumnKind::Text},
    Row{"UUID", Wire::Other, ColumnKind::Text},
    Row{"Date", Wire::Date, ColumnKind::Date},
    Row{"Date32", Wire::Date32, ColumnKind::Date},
    Row{"DateTime", Wire::DateTime, ColumnKind::Timestamp},
    Row{"DateTime(", Wire::DateTime, ColumnKind::Timestamp},
    Row{"DateTime64(", Wire::DateTime64, ColumnKind::Timestamp},
};

bool strip(std::string_view& name, std::string_view wrapper) {
  if (!name.starts_with(wrapper) || !name.ends_with(')')) return false;
  name.remove_prefix(wrapper.size());
  name.remove_suffix(1);
  return true;
}

std::string wrapped(bool nullable, const char* type) {
  return nullable ? "Nullable(" + std::string(type) + ")" : type;
}

// The text of a value: fixed ones are filled up with NUL bytes.
std::string textOf(const ClickHouseType& type, const std::string& name) {
  if (type.base.starts_with("FixedString(")) return "toStringCutToZero(" + name + ")";
  return type.wire == Wire::Text ? name : "toString(" + name + ")";
}

}  // namespace

ClickHouseType clickHouseType(std::string_view name) {
  ClickHouseType type;
  strip(name, "LowCardinality(");
  type.nullable = strip(name, "Nullable(");
  type.base = name;
  const auto* found = std::ranges::find_if(types, [&](const Row& row) {
    return row.name.ends_with('(') ? name.starts_with(row.name) : name == row.name;
  });
  if (found == types.end()) return type;
  type.wire = found->wire;
  type.kind = found->kind;
  if (type.wire == Wire::DateTime64)
    std::from_chars(name.data() + found->name.size(), name.data() + name.size(), type.digits);
  return type;
}

data::SqlColumn clickHouseColumn(const data::Column& column, bool asText) {
  const data::SqlDialect& dialect = data::clickHouseDialect;
  const ClickHouseType type = clickHouseType(column.typeName);
  const std::string name = dialect.identifier(column.name);
  data::SqlColumn asked;
  const bool isNumber = type.kind == ColumnKind::Integer || type.kind == ColumnKind::Real ||
                        type.kind == ColumnKind::Boolean;
  if (asText || isText(type.kind)) {
    asked.value = data::filled(dialect.withoutBlanks, textOf(type, name));
    asked.type = wrapped(type.nullable, "String");
    asked.key = asked.value;
    return asked;
  }
  if (isNumber) asked.number = data::filled(dialect.real, name);
  asked.value = type.wire == Wire::Other ? textOf(type, name) : name;
  asked.type = type.wire == Wire::Other ? wrapped(type.nullable, "String") : column.typeName;
  asked.key = type.wire == Wire::Other ? asked.number : name;
  if (type.wire == Wire::Float32 || type.wire == Wire::Float64)
    asked.key = "(CASE WHEN " + data::filled(dialect.isFinite, name) + " THEN " + name + " END)";
  return asked;
}

}  // namespace embedded::engines
