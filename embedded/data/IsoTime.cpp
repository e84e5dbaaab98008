// Reads ISO 8601 texts.
#include "IsoTime.h"

#include <charconv>
#include <chrono>
#include <cmath>

namespace embedded::data {
namespace {

using output::ValueKind;

std::optional<double> plainNumber(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
    return std::nullopt;
  return value + 0.0;
}

// `count` digits at the front, taken off.
std::optional<int> digits(std::string_view& text, std::size_t count) {
  int value = 0;
  if (text.size() < count) return std::nullopt;
  const auto [end, error] = std::from_chars(text.data(), text.data() + count, value);
  if (error != std::errc() || end != text.data() + count || text[0] == '-') return std::nullopt;
  text.remove_prefix(count);
  return value;
}

bool take(std::string_view& text, char c) {
  if (!text.starts_with(c)) return false;
  text.remove_prefix(1);
  return true;
}

std::optional<double> days(std::string_view& text) {
  const auto year = digits(text, 4);
  if (!year || !take(text, '-')) return std::nullopt;
  const auto month = digits(text, 2);
  if (!month || !take(text, '-')) return std::nullopt;
  const auto day = digits(text, 2);
  if (!day) return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day))};
  if (!date.ok()) return std::nullopt;
  return static_cast<double>(std::chrono::sys_days(date).time_since_epoch().count());
}

std::optional<double> seconds(std::string_view& text) {
  const auto hour = digits(text, 2);
  if (!hour || *hour > 23 || !take(text, ':')) return std::nullopt;
  const auto minute = digits(text, 2);
  if (!minute || *minute > 59) return std::nullopt;
  const double whole = 3600.0 * *hour + 60.0 * *minute;
  if (!take(text, ':')) return whole;
  constexpr std::string_view decimalDigits = "0123456789";
  if (std::min(text.find_first_not_of(decimalDigits), text.size()) != 2) return std::nullopt;
  const std::size_t end = std::min(text.find_first_not_of("0123456789."), text.size());
  const auto second = plainNumber(text.substr(0, end));
  if (!second || *second >= 60) return std::nullopt;
  text.remove_prefix(end);
  return whole + *second;
}

std::optional<double> timestamp(std::string_view text) {
  const auto day = days(text);
  if (!day) return std::nullopt;
  if (text.empty()) return *day * 86400.0;
  if (!take(text, 'T') && !take(text, ' ')) return std::nullopt;
  const auto second = seconds(text);
  take(text, 'Z');
  if (!second || !text.empty()) return std::nullopt;
  return *day * 86400.0 + *second;
}

// The text as what `part` takes off its front, where that is all of it.
std::optional<double> whole(std::string_view text,
                            std::optional<double> (*part)(std::string_view& text)) {
  const auto value = part(text);
  return text.empty() ? value : std::nullopt;
}

}  // namespace

std::optional<double> numberOf(std::string_view text, ValueKind kind) {
  switch (kind) {
    case ValueKind::Date:
      return whole(text, days);
    case ValueKind::Time:
      return whole(text, seconds);
    case ValueKind::Timestamp:
      return timestamp(text);
    case ValueKind::Boolean:
      if (text == "true") return 1.0;
      if (text == "false") return 0.0;
      return plainNumber(text);
    default:
      return plainNumber(text);
  }
}

}  // namespace embedded::data
