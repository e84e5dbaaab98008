// The format has no header and no end mark: types are known beforehand, the end is that of the
// answer.
#include "RowBinary.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstring>

namespace embedded::engines {
namespace {

using data::SqlValue;
using Wire = ClickHouseType::Wire;

constexpr char mark = static_cast<char>(165);
constexpr std::size_t kept = 65536;  // of an answer that is no rows

std::size_t widthOf(Wire wire) {
  switch (wire) {
    case Wire::Int8:
    case Wire::UInt8:
      return 1;
    case Wire::Int16:
    case Wire::UInt16:
    case Wire::Date:
      return 2;
    case Wire::Int32:
    case Wire::UInt32:
    case Wire::Float32:
    case Wire::Date32:
    case Wire::DateTime:
      return 4;
    default:
      return 8;
  }
}

}  // namespace

static_assert(std::endian::native == std::endian::little, "values are copied as they come");

RowBinary::RowBinary(HttpAnswer& answer, const std::vector<std::string>& types, bool marked)
    : answer_(answer), names_(types), marked_(marked), texts_(types.size()) {
  for (const std::string& name : names_) types_.push_back(clickHouseType(name));
}

// Whether so many bytes are still to come; reads on until they are here.
bool RowBinary::has(std::size_t bytes) {
  while (buffer_.size() - at_ < bytes) {
    if (row_ > 0) {  // what was delivered makes room
      buffer_.erase(0, row_);
      at_ -= row_;
      for (auto& text : texts_) text.first -= std::min(text.first, row_);
      row_ = 0;
    }
    if (!answer_.read(buffer_)) return false;
  }
  return true;
}

template <class T>
T RowBinary::take() {
  T value{};
  std::memcpy(&value, buffer_.data() + at_, sizeof value);
  at_ += sizeof value;
  return value;
}

// Seven bits a byte, the lowest first.
bool RowBinary::takeLength(std::size_t& length) {
  length = 0;
  for (unsigned shift = 0; shift < 63; shift += 7) {
    if (!has(1)) return false;
    const auto byte = take<std::uint8_t>();
    length |= static_cast<std::size_t>(byte & 0x7fU) << shift;
    if (byte < 0x80) return true;
  }
  return false;
}

SqlValue RowBinary::fixed(const ClickHouseType& type) {
  switch (type.wire) {
    case Wire::Int8:
      return SqlValue::ofSigned(take<std::int8_t>());
    case Wire::Int16:
      return SqlValue::ofSigned(take<std::int16_t>());
    case Wire::Int32:
      return SqlValue::ofSigned(take<std::int32_t>());
    case Wire::Int64:
      return SqlValue::ofSigned(take<std::int64_t>());
    case Wire::UInt8:
      return SqlValue::ofUnsigned(take<std::uint8_t>());
    case Wire::UInt16:
      return SqlValue::ofUnsigned(take<std::uint16_t>());
    case Wire::UInt32:
      return SqlValue::ofUnsigned(take<std::uint32_t>());
    case Wire::UInt64:
      return SqlValue::ofUnsigned(take<std::uint64_t>());
    case Wire::Float32:
      return SqlValue::ofReal(take<float>());
    case Wire::Date:
      return SqlValue::ofReal(take<std::uint16_t>());
    case Wire::Date32:
      return SqlValue::ofReal(take<std::int32_t>());
    case Wire::DateTime:
      return SqlValue::ofReal(take<std::uint32_t>());
    case Wire::DateTime64:
      return SqlValue::ofReal(static_cast<double>(take<std::int64_t>()) /
                              std::pow(10.0, type.digits));
    default:
      return SqlValue::ofReal(take<double>());
  }
}

bool RowBinary::takeValue(const ClickHouseType& type, SqlValue& value) {
  value = {};
  if (type.nullable) {
    if (!has(1)) return false;
    if (take<std::uint8_t>() != 0) return true;
  }
  if (type.wire != Wire::Text) {
    if (!has(widthOf(type.wire))) return false;
    value = fixed(type);
    return true;
  }
  std::size_t length = 0;
  if (!takeLength(length) || !has(length)) return false;
  value.kind = SqlValue::Kind::Text;
  value.whole = static_cast<std::int64_t>(length);
  at_ += length;
  return true;
}

RowBinary::Step RowBinary::next(std::vector<SqlValue>& row) {
  row_ = at_;
  row.resize(types_.size());
  if (!has(1)) return Step::End;
  if (marked_ && take<char>() != mark) return Step::Broken;
  for (std::size_t i = 0; i < types_.size(); ++i) {
    if (!takeValue(types_[i], row[i])) return Step::Broken;
    if (row[i].kind != SqlValue::Kind::Text) continue;
    const auto length = static_cast<std::size_t>(row[i].whole);
    texts_[i] = {at_ - length, length};
  }
  // The buffer stays where it is until the next row is asked for.
  for (std::size_t i = 0; i < types_.size(); ++i)
    if (row[i].kind == SqlValue::Kind::Text)
      row[i].text = std::string_view(buffer_).substr(texts_[i].first, texts_[i].second);
  return Step::Row;
}

std::string RowBinary::rest() {
  at_ = row_;
  while (buffer_.size() - at_ < kept && answer_.read(buffer_)) continue;
  return buffer_.substr(at_, kept);
}

}  // namespace embedded::engines
