// The table of types by the numbers that the protocol gives them, which never change.
#include "PostgreSqlTypes.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <limits>

namespace embedded::engines {
namespace {

using data::ColumnKind;
using data::SqlValue;

// What is done with the values of a type.
enum class Group { Boolean, Whole, Object, Real, Decimal, Text, Date, Time, Timestamp };

struct Row {
  Oid number;
  Group group;
  ColumnKind kind;
};

constexpr std::array types{
    Row{16, Group::Boolean, ColumnKind::Boolean},        // bool
    Row{20, Group::Whole, ColumnKind::Integer},          // int8
    Row{21, Group::Whole, ColumnKind::Integer},          // int2
    Row{23, Group::Whole, ColumnKind::Integer},          // int4
    Row{26, Group::Object, ColumnKind::Integer},         // oid
    Row{700, Group::Real, ColumnKind::Real},             // float4
    Row{701, Group::Real, ColumnKind::Real},             // float8
    Row{1700, Group::Decimal, ColumnKind::Real},         // numeric
    Row{18, Group::Text, ColumnKind::Text},              // "char"
    Row{19, Group::Text, ColumnKind::Text},              // name
    Row{25, Group::Text, ColumnKind::Text},              // text
    Row{1042, Group::Text, ColumnKind::Text},            // char(n)
    Row{1043, Group::Text, ColumnKind::Text},            // varchar(n)
    Row{2950, Group::Text, ColumnKind::Text},            // uuid
    Row{1082, Group::Date, ColumnKind::Date},            // date
    Row{1083, Group::Time, ColumnKind::Time},            // time
    Row{1114, Group::Timestamp, ColumnKind::Timestamp},  // timestamp
    Row{1184, Group::Timestamp, ColumnKind::Timestamp},  // timestamp with time zone
};

const Row* find(Oid type) {
  const auto* found = std::ranges::find(types, type, &Row::number);
  return found == types.end() ? nullptr : found;
}

// Days and microseconds from 1970 to 2000, where the server's count begins.
constexpr std::int32_t daysTo2000 = 10957;
constexpr std::int64_t microsecondsTo2000 = std::int64_t{daysTo2000} * 86400 * 1000000;

template <class T>
T bigEndian(const char* bytes) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < sizeof(T); ++i)
    value = value << 8U | static_cast<unsigned char>(bytes[i]);
  return static_cast<T>(value);
}

// The two extreme counts stand for the infinities.
template <class T>
bool isInfinite(T count) {
  return count == std::numeric_limits<T>::max() || count == std::numeric_limits<T>::min();
}

SqlValue dateOf(std::int32_t days) {
  if (isInfinite(days)) return SqlValue::ofReal(std::numeric_limits<double>::infinity());
  return SqlValue::ofReal(static_cast<double>(days) + daysTo2000);
}

SqlValue timestampOf(std::int64_t microseconds) {
  if (isInfinite(microseconds)) return SqlValue::ofReal(std::numeric_limits<double>::infinity());
  return SqlValue::ofReal(static_cast<double>(microseconds + microsecondsTo2000) / 1e6);
}

SqlValue wholeOf(const char* bytes, int length) {
  if (length == 2) return SqlValue::ofSigned(bigEndian<std::int16_t>(bytes));
  if (length == 4) return SqlValue::ofSigned(bigEndian<std::int32_t>(bytes));
  return SqlValue::ofSigned(bigEndian<std::int64_t>(bytes));
}

SqlValue realOf(const char* bytes, int length) {
  if (length == 4) return SqlValue::ofReal(std::bit_cast<float>(bigEndian<std::uint32_t>(bytes)));
  return SqlValue::ofReal(std::bit_cast<double>(bigEndian<std::uint64_t>(bytes)));
}

std::string when(const std::string& condition, const std::string& value) {
  return "(CASE WHEN " + condition + " THEN " + value + " END)";
}

// Texts in the order of their bytes, and different when their bytes are, whatever the collation.
data::SqlColumn textColumn(const std::string& name) {
  data::SqlColumn asked;
  asked.value =
      data::filled(data::postgreSqlDialect.withoutBlanks, "(" + name + ")::text COLLATE \"C\"");
  asked.type = "text";
  asked.key = asked.value;
  return asked;
}

}  // namespace

ColumnKind postgreSqlKind(Oid type, bool isEnumeration) {
  if (isEnumeration) return ColumnKind::Text;
  const Row* row = find(type);
  return row == nullptr ? ColumnKind::Unsupported : row->kind;
}

data::SqlColumn postgreSqlColumn(const data::Column& column, Oid type, bool asText) {
  const data::SqlDialect& dialect = data::postgreSqlDialect;
  const std::string name = dialect.identifier(column.name);
  if (asText || isText(column.kind)) return textColumn(name);
  const Row* row = find(type);
  data::SqlColumn asked{name, column.typeName, name, data::filled(dialect.real, name)};
  switch (row == nullptr ? Group::Text : row->group) {
    case Group::Boolean:
      asked.number = data::filled(dialect.real, "(" + name + ")::int");
      break;
    case Group::Object:
      asked.value = asked.key = "(" + name + ")::int8";
      asked.number = data::filled(dialect.real, asked.value);
      break;
    case Group::Decimal:
      asked.value = "(" + name + ")::text";  // all its digits
      [[fallthrough]];
    case Group::Real:
      asked.key = when(data::filled(dialect.isFinite, name), name);
      break;
    case Group::Date:
    case Group::Timestamp:
      asked.key = when("isfinite(" + name + ")", name);
      [[fallthrough]];
    case Group::Time:
      asked.number.clear();
      break;
    default:
      break;
  }
  return asked;
}

SqlValue postgreSqlValue(const PGresult* result, int row, int field) {
  if (PQgetisnull(result, row, field) != 0) return {};
  const char* bytes = PQgetvalue(result, row, field);
  const int length = PQgetlength(result, row, field);
  const Row* type = find(PQftype(result, field));
  switch (type == nullptr ? Group::Text : type->group) {
    case Group::Boolean:
      return SqlValue::ofUnsigned(*bytes != 0 ? 1 : 0);
    case Group::Whole:
      return wholeOf(bytes, length);
    case Group::Object:
      return SqlValue::ofUnsigned(bigEndian<std::uint32_t>(bytes));
    case Group::Real:
      return realOf(bytes, length);
    case Group::Date:
      return dateOf(bigEndian<std::int32_t>(bytes));
    case Group::Time:
      return SqlValue::ofReal(static_cast<double>(bigEndian<std::int64_t>(bytes)) / 1e6);
    case Group::Timestamp:
      return timestampOf(bigEndian<std::int64_t>(bytes));
    default:  // decimals are asked for as texts
      break;
  }
  return SqlValue::ofText({bytes, static_cast<std::size_t>(length)});
}

}  // namespace embedded::engines
