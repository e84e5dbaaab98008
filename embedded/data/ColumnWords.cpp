// Tight loops: one for each physical type, no call a value.
#include "ColumnWords.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

#include "DuckDbFunctions.h"
#include "embedded/errors/Error.h"
#include "host/distributions/MCMV.h"

namespace embedded::data {
namespace {

constexpr double exactLimit = 9007199254740992.0;  // 2^53

struct Target {
  OBS* out;
  std::size_t stride;
  std::size_t count;
  std::size_t first = 0;  // of the values, the first to be written
};

bool isValid(const std::uint64_t* validity, std::size_t row) {
  return validity == nullptr || (validity[row / 64] >> (row % 64) & 1U) != 0;
}

// Calls `put(place, index)` for all values. Values that lie side by side have a loop of their own,
// which the compiler can turn into one for the vector unit.
template <class Put>
void forEach(const Target& to, const Put& put) {
  if (to.stride == 1)
    for (std::size_t i = 0; i < to.count; ++i) put(to.out[i].number, i);
  else
    for (std::size_t i = 0; i < to.count; ++i) put(to.out[i * to.stride].number, i);
}

// Integers of up to 32 bits, and whatever is exact anyway.
template <class T>
void writeExact(const void* data, const Target& to) {
  const T* values = static_cast<const T*>(data) + to.first;
  forEach(to, [&](double& out, std::size_t i) { out = static_cast<double>(values[i]); });
}

// 64 bits: exact when what is left after the trailing zero bits fits 53.
template <class T>
void writeWide(const void* data, const Target& to, ColumnFaults& faults,
               const std::uint64_t* validity) {
  const T* values = static_cast<const T*>(data) + to.first;
  bool large = false;
  forEach(to, [&](double& out, std::size_t i) {
    out = static_cast<double>(values[i]);
    large |= std::fabs(out) >= exactLimit;
  });
  if (!large) return;
  for (std::size_t i = 0; i < to.count; ++i) {
    if (!isValid(validity, i)) continue;
    const double number = to.out[i * to.stride].number;
    faults.suspect |= std::fabs(number) >= static_cast<double>(std::numeric_limits<T>::max()) ||
                      static_cast<T>(number) != values[i];
  }
}

// 128 bits, by the engine's own conversion there and back.
template <class Wide, auto ToDouble, auto FromDouble>
void writeHuge(const void* data, const Target& to, ColumnFaults& faults,
               const std::uint64_t* validity) {
  const Wide* values = static_cast<const Wide*>(data) + to.first;
  for (std::size_t i = 0; i < to.count; ++i) {
    if (!isValid(validity, i)) continue;
    const double number = ToDouble(values[i]);
    to.out[i * to.stride].number = number;
    if (std::fabs(number) < exactLimit) continue;
    const Wide back = FromDouble(number);
    faults.suspect |= back.lower != values[i].lower || back.upper != values[i].upper;
  }
}

template <class T>
void writeReal(const void* data, const Target& to, ColumnFaults& faults, bool wholeAreTexts,
               const std::uint64_t* validity, const std::uint64_t* multiplicity) {
  const T* values = static_cast<const T*>(data) + to.first;
  bool odd = false;
  forEach(to, [&](double& out, std::size_t i) {
    out = static_cast<double>(values[i]) + 0.0;  // -0 becomes 0
    odd |= !(std::fabs(out) < exactLimit);
  });
  if (!odd) return;
  for (std::size_t i = 0; i < to.count; ++i) {
    if (!isValid(validity, i)) continue;
    double& number = to.out[i * to.stride].number;
    if (!std::isfinite(number)) {
      number = MCMV::Missing;
      faults.nonFinite += multiplicity == nullptr ? 1 : multiplicity[i];
    } else if (wholeAreTexts && std::fabs(number) >= exactLimit) {
      faults.suspect = true;
    }
  }
}

// Counts of some unit: days, or parts of a second. The two extreme counts are the infinities.
template <class T>
void writeTime(const void* data, const Target& to, double unitsASecond, ColumnFaults& faults,
               const std::uint64_t* validity, const std::uint64_t* multiplicity) {
  const T* values = static_cast<const T*>(data) + to.first;
  bool infinite = false;
  const auto isInfinite = [](T value) {
    return value == std::numeric_limits<T>::max() || value == -std::numeric_limits<T>::max();
  };
  for (std::size_t i = 0; i < to.count; ++i) {
    to.out[i * to.stride].number = static_cast<double>(values[i]) / unitsASecond;
    infinite |= isInfinite(values[i]);
  }
  if (!infinite) return;
  for (std::size_t i = 0; i < to.count; ++i) {
    if (!isInfinite(values[i])) continue;
    if (!isValid(validity, i)) continue;
    to.out[i * to.stride].number = MCMV::Missing;
    faults.nonFinite += multiplicity == nullptr ? 1 : multiplicity[i];
  }
}

template <class T>
void writeScaled(const void* data, const Target& to, double scale) {
  const T* values = static_cast<const T*>(data) + to.first;
  forEach(to, [&](double& out, std::size_t i) { out = static_cast<double>(values[i]) / scale; });
}

// Decimals: a whole number over a power of ten, one division, so correctly rounded where both
// are exact.
void writeDecimal(const DecimalType& type, const void* data, const Target& to, ColumnFaults& faults,
                  const std::uint64_t* validity) {
  const int digits = type.scale;
  const double scale = std::pow(10.0, digits);
  switch (type.storedAs) {
    case DUCKDB_TYPE_SMALLINT:
      return writeScaled<std::int16_t>(data, to, scale);
    case DUCKDB_TYPE_INTEGER:
      return writeScaled<std::int32_t>(data, to, scale);
    case DUCKDB_TYPE_BIGINT:
      if (digits == 0) return writeWide<std::int64_t>(data, to, faults, validity);
      return writeScaled<std::int64_t>(data, to, scale);
    default:
      break;
  }
  ColumnFaults ofDigits;  // digits after the point may be lost, as in any real number
  writeHuge<duckdb_hugeint, duckdb_hugeint_to_double, duckdb_double_to_hugeint>(
      data, to, digits == 0 ? faults : ofDigits, validity);
  for (std::size_t i = 0; digits > 0 && i < to.count; ++i) to.out[i * to.stride].number /= scale;
}

void writeStrings(const void* data, const Target& to, int width, ColumnFaults& faults,
                  const std::uint64_t* validity) {
  const auto* values = static_cast<const duckdb_string_t*>(data) + to.first;
  const auto room = static_cast<std::size_t>(width);
  const std::size_t bytes = ObsWords(width) * sizeof(OBS);
  for (std::size_t i = 0; i < to.count; ++i) {
    char* out = to.out[i * to.stride].bytes;
    if (!isValid(validity, i)) {
      std::memset(out, 0, bytes);
      continue;
    }
    const auto& value = values[i].value;
    const std::size_t length = value.inlined.length;
    const std::size_t copied = std::min(length, room);
    const char* text =
        length <= sizeof value.inlined.inlined ? value.inlined.inlined : value.pointer.ptr;
    std::memset(out, ' ', bytes);
    std::memcpy(out, text, copied);
    for (std::size_t k = room; k < length; ++k) faults.tooLong |= text[k] != ' ';
  }
}

void setNulls(const Target& to, const std::uint64_t* validity) {
  if (validity == nullptr) return;
  for (std::size_t i = 0; i < to.count; ++i)
    if (!isValid(validity, i)) to.out[i * to.stride].number = MCMV::Missing;
}

}  // namespace

void ColumnWriter::findType(duckdb_vector vector) {
  duckdb_logical_type logical = duckdb_vector_get_column_type(vector);
  const std::unique_ptr<duckdb_logical_type, void (*)(duckdb_logical_type*)> owner(
      &logical, duckdb_destroy_logical_type);
  type_ = duckdb_get_type_id(logical);
  if (type_ == DUCKDB_TYPE_DECIMAL)
    decimal_ = {duckdb_decimal_scale(logical), duckdb_decimal_internal_type(logical)};
}

void ColumnWriter::write(duckdb_vector vector, std::size_t count, OBS* out, std::size_t stride,
                         ColumnFaults& faults, const std::uint64_t* multiplicity,
                         std::size_t first) {
  if (type_ == DUCKDB_TYPE_INVALID) findType(vector);
  const void* data = duckdb_vector_get_data(vector);
  const std::uint64_t* validity = duckdb_vector_get_validity(vector);
  if (validity != nullptr) validity += first / 64;
  const Target to{out, stride, count, first};
  switch (type_) {
    case DUCKDB_TYPE_VARCHAR:
      return writeStrings(data, to, width_, faults, validity);
    case DUCKDB_TYPE_BOOLEAN:
    case DUCKDB_TYPE_UTINYINT:
      writeExact<std::uint8_t>(data, to);
      break;
    case DUCKDB_TYPE_TINYINT:
      writeExact<std::int8_t>(data, to);
      break;
    case DUCKDB_TYPE_SMALLINT:
      writeExact<std::int16_t>(data, to);
      break;
    case DUCKDB_TYPE_USMALLINT:
      writeExact<std::uint16_t>(data, to);
      break;
    case DUCKDB_TYPE_INTEGER:
      writeExact<std::int32_t>(data, to);
      break;
    case DUCKDB_TYPE_UINTEGER:
      writeExact<std::uint32_t>(data, to);
      break;
    case DUCKDB_TYPE_BIGINT:
      writeWide<std::int64_t>(data, to, faults, validity);
      break;
    case DUCKDB_TYPE_UBIGINT:
      writeWide<std::uint64_t>(data, to, faults, validity);
      break;
    case DUCKDB_TYPE_HUGEINT:
      writeHuge<duckdb_hugeint, duckdb_hugeint_to_double, duckdb_double_to_hugeint>(
          data, to, faults, validity);
      break;
    case DUCKDB_TYPE_UHUGEINT:
      writeHuge<duckdb_uhugeint, duckdb_uhugeint_to_double, duckdb_double_to_uhugeint>(
          data, to, faults, validity);
      break;
    case DUCKDB_TYPE_FLOAT:
      writeReal<float>(data, to, faults, wholeAreTexts_, validity, multiplicity);
      break;
    case DUCKDB_TYPE_DOUBLE:
      writeReal<double>(data, to, faults, wholeAreTexts_, validity, multiplicity);
      break;
    case DUCKDB_TYPE_DECIMAL:
      writeDecimal(decimal_, data, to, faults, validity);
      break;
    case DUCKDB_TYPE_DATE:
      writeTime<std::int32_t>(data, to, 1.0, faults, validity, multiplicity);
      break;
    case DUCKDB_TYPE_TIMESTAMP_S:
      writeTime<std::int64_t>(data, to, 1.0, faults, validity, multiplicity);
      break;
    case DUCKDB_TYPE_TIMESTAMP_MS:
      writeTime<std::int64_t>(data, to, 1e3, faults, validity, multiplicity);
      break;
    case DUCKDB_TYPE_TIME:
    case DUCKDB_TYPE_TIMESTAMP:
    case DUCKDB_TYPE_TIMESTAMP_TZ:
      writeTime<std::int64_t>(data, to, 1e6, faults, validity, multiplicity);
      break;
    case DUCKDB_TYPE_TIMESTAMP_NS:
      writeTime<std::int64_t>(data, to, 1e9, faults, validity, multiplicity);
      break;
    default:
      throw Error(ErrorKind::Internal, "Data vector of an unknown type ...");
  }
  setNulls(to, validity);
}

}  // namespace embedded::data
