// Values of a server as observations.
#include "SqlDecoder.h"

#include <unicode/ustring.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "EngineMessages.h"
#include "IsoTime.h"
#include "host/distributions/MCMV.h"

namespace embedded::data {
namespace {

constexpr double exactLimit = 0x1p53;
// A server's rows have no numbers.
constexpr const char* noRow = "?";

output::ValueKind valueKind(ColumnKind kind) {
  switch (kind) {
    case ColumnKind::Boolean:
      return output::ValueKind::Boolean;
    case ColumnKind::Date:
      return output::ValueKind::Date;
    case ColumnKind::Time:
      return output::ValueKind::Time;
    case ColumnKind::Timestamp:
      return output::ValueKind::Timestamp;
    default:
      return output::ValueKind::Number;
  }
}

bool isAscii(std::string_view text) {
  return std::ranges::all_of(text, [](char byte) { return static_cast<signed char>(byte) >= 0; });
}

bool isUtf8(std::string_view text) {
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8(nullptr, 0, &length, text.data(), static_cast<std::int32_t>(text.size()), &status);
  return status != U_INVALID_CHAR_FOUND;
}

// The digits of a whole number without sign, leading zeros, and a fraction of zeros; empty when
// the text is no such number.
std::string_view wholeDigits(std::string_view text) {
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
  if (const std::size_t point = text.find('.'); point != std::string_view::npos) {
    if (text.find_first_not_of('0', point + 1) != std::string_view::npos) return {};
    text = text.substr(0, point);
  }
  return text.find_first_not_of("0123456789") == std::string_view::npos ? text : std::string_view();
}

// Whether a double holds the whole number that a text writes out.
bool isExact(std::string_view text, double value) {
  const std::string_view digits = wholeDigits(text);
  if (digits.empty()) return true;
  std::array<char, 400> buffer{};
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), std::fabs(value),
                                     std::chars_format::fixed, 0);
  return digits == std::string_view(buffer.data(), written.ptr);
}

// Not-a-number and the infinities, as engines and people write them.
bool isNonFinite(std::string_view text) {
  if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
  constexpr std::array<std::string_view, 3> words{"nan", "inf", "infinity"};
  return std::ranges::any_of(words, [&](std::string_view word) {
    return std::ranges::equal(word, text, [](char a, char b) {
      return a == static_cast<char>(std::tolower(static_cast<unsigned char>(b)));
    });
  });
}

bool isIn(const std::vector<std::string>& texts, std::string_view text) {
  return std::ranges::find(texts, text) != texts.end();
}

}  // namespace

void SqlDecoder::inexact(const std::string& text) const {
  fail(messages::inexactNumber, {source_, noRow, name_, text});
}

std::string_view SqlDecoder::validText(std::string_view text) const {
  if (!isAscii(text) && !isUtf8(text)) fail(messages::textEncoding, {source_, name_});
  // As an observation such a text could pass for a null one.
  if (text.find('\0') != std::string_view::npos)
    fail(messages::unreadable, {source_ + ", " + name_, "Reason holds a NUL byte ..."});
  return text;
}

void SqlDecoder::pad(std::string_view text, OBS* out) const {
  text = text.substr(0, text.find_last_not_of(' ') + 1);
  const auto room = static_cast<std::size_t>(read_.width);
  if (text.size() > room && read_.widthDeclared)
    fail(messages::widerString,
         {source_, noRow, name_, std::to_string(text.size()), std::to_string(room)});
  if (text.size() > room) fail(messages::dataChanged, {source_});  // it was measured before
  std::memset(out->bytes, ' ', ObsWords(read_.width) * sizeof(OBS));
  if (!text.empty()) std::memcpy(out->bytes, validText(text).data(), text.size());
}

double SqlDecoder::whole(const SqlValue& value) const {
  const bool isSigned = value.kind == SqlValue::Kind::Signed;
  const auto natural = static_cast<std::uint64_t>(value.whole);
  const double number = isSigned ? static_cast<double>(value.whole) : static_cast<double>(natural);
  if (std::fabs(number) < exactLimit) return number;
  const std::string text = isSigned ? std::to_string(value.whole) : std::to_string(natural);
  if (!isExact(text, number)) inexact(text);
  return number;
}

double SqlDecoder::parsed(std::string_view text, bool& infinite) const {
  if (text.empty() || isIn(read_.nullTexts, text)) return MCMV::Missing;
  if (isIn(read_.trueTexts, text)) return 1.0;
  if (isIn(read_.falseTexts, text)) return 0.0;
  if (const auto number = numberOf(text, valueKind(read_.as))) {
    if (std::fabs(*number) >= exactLimit && !isExact(text, *number)) inexact(std::string(text));
    return *number + 0.0;
  }
  infinite = isNonFinite(text);
  if (infinite) return MCMV::Missing;
  // A whole number that no double comes near.
  if (!wholeDigits(text).empty()) inexact(std::string(text));
  fail(messages::badValue, {source_, noRow, name_, std::string(text)});
}

double SqlDecoder::number(const SqlValue& value, bool& infinite) const {
  infinite = false;
  switch (value.kind) {
    case SqlValue::Kind::Real:
      infinite = !std::isfinite(value.real);
      return infinite ? MCMV::Missing : value.real + 0.0;  // -0 becomes 0
    case SqlValue::Kind::Signed:
    case SqlValue::Kind::Unsigned:
      return whole(value);
    case SqlValue::Kind::Text:
      return parsed(value.text, infinite);
    case SqlValue::Kind::Null:
      break;
  }
  return MCMV::Missing;
}

bool SqlDecoder::write(const SqlValue& value, OBS* out) const {
  bool infinite = false;
  if (read_.width == 0)
    out->number = number(value, infinite);
  else if (value.kind == SqlValue::Kind::Text)
    pad(value.text, out);
  else
    std::memset(out->bytes, 0, ObsWords(read_.width) * sizeof(OBS));
  return infinite;
}

}  // namespace embedded::data
