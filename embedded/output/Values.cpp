#include "embedded/output/Values.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>

#include "embedded/output/Template.h"

namespace embedded::output {

namespace {

// The sentence of this identifier is the decimal mark of a language; without one it is a point.
constexpr std::string_view decimalMark = "Decimal mark";

// Years that the proleptic calendar of the standard library covers.
constexpr double mostDays = 11'000'000.0;

std::string dateText(double days) {
  if (!(std::abs(days) < mostDays)) {
    return shortest(days);
  }
  const std::chrono::sys_days day{std::chrono::days{static_cast<int>(std::floor(days))}};
  const std::chrono::year_month_day date{day};
  return fmt::format("{:04}-{:02}-{:02}", static_cast<int>(date.year()),
                     static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
}

// Seconds within a day as hh:mm:ss, with the fraction that the value has.
std::string clockText(double seconds) {
  const double whole = std::floor(seconds);
  const auto total = static_cast<long long>(whole);
  std::string out = fmt::format("{:02}:{:02}:{:02}", total / 3600, total / 60 % 60, total % 60);
  // Microseconds, never rounded up to the next second.
  const long long micro = std::min(std::llround((seconds - whole) * 1e6), 999'999LL);
  if (micro > 0) {
    std::string fraction = fmt::format(".{:06}", micro);
    fraction.erase(fraction.find_last_not_of('0') + 1);
    out += fraction;
  }
  return out;
}

constexpr double secondsPerDay = 86400.0;

std::string timestampText(double seconds) {
  const double days = std::floor(seconds / secondsPerDay);
  if (!(std::abs(days) < mostDays)) {
    return shortest(seconds);
  }
  return dateText(days) + "T" + clockText(seconds - days * secondsPerDay);
}

std::string withoutTrailingBlanks(std::string text) {
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

std::string printRaw(const Text& text) {
  switch (text.kind) {
    case Text::Kind::String:
    case Text::Kind::Composite:
    case Text::Kind::List:
      return machineText(text);
    case Text::Kind::Number:
      return shortest(std::get<double>(text.value));
    case Text::Kind::Variable:
      return text.variable->name;
    case Text::Kind::Value:
      return rawText(*text.variable, text.value);
  }
  return {};
}

// The number with the decimal mark of the sentences' language.
std::string withDecimalMark(std::string number, const Sentences& sentences) {
  const std::string_view mark = sentences.sentence(decimalMark);
  const std::size_t at = number.find('.');
  return at == std::string::npos || number == "." || mark == decimalMark
             ? number
             : number.replace(at, 1, mark);
}

// The number with as many decimals as its format asks for, and never with fewer than it has.
std::string withDecimals(std::string number, int decimals) {
  if (decimals <= 0 || number.find_first_not_of("-0123456789.") != std::string::npos) {
    return number;
  }
  std::size_t point = number.find('.');
  if (point == std::string::npos) {
    point = number.size();
    number += '.';
  }
  const std::size_t wanted = point + 1 + static_cast<std::size_t>(decimals);
  return number.append(wanted > number.size() ? wanted - number.size() : 0, '0');
}

// A value without a label.
std::string printValue(const Text& text, const Sentences& sentences) {
  std::string raw = rawText(*text.variable, text.value);
  const auto* number = std::get_if<double>(&text.value);
  if (number == nullptr || text.variable->kind != ValueKind::Number || isSystemMissing(*number)) {
    return raw;
  }
  return withDecimalMark(withDecimals(std::move(raw), text.variable->decimals), sentences);
}

std::string printForReader(const Text& text, const Sentences& sentences) {
  switch (text.kind) {
    case Text::Kind::Number:
      return withDecimalMark(shortest(std::get<double>(text.value)), sentences);
    case Text::Kind::Variable:
      return text.variable->label.empty() ? text.variable->name : text.variable->label;
    case Text::Kind::Value: {
      std::string label = text.preferLabel ? valueLabel(*text.variable, text.value) : "";
      return label.empty() ? printValue(text, sentences) : label;
    }
    default:
      return readerText(text, sentences);
  }
}

}  // namespace

bool isSystemMissing(double number) {
  return number == std::numeric_limits<double>::lowest();
}

std::string fullPrecision(double number) {
  std::array<char, 32> text{};
  char* const end = text.data() + text.size();
  // Most numbers are counts; below 2^53 all their digits are fewer than seventeen.
  const bool isCount = number >= 1 && number < 0x1p53 && number == std::floor(number);
  const auto written =
      isCount ? std::to_chars(text.data(), end, static_cast<std::int64_t>(number))
              : std::to_chars(text.data(), end, number, std::chars_format::general, 17);
  return {text.data(), written.ptr};
}

std::string shortest(double number) {
  if (isSystemMissing(number)) {
    return ".";
  }
  // Whole numbers are written out as long as every digit of them is meant.
  if (std::abs(number) < 1e15 && number == std::floor(number)) {
    return fmt::format("{}", static_cast<long long>(number));
  }
  return fmt::format("{}", number);
}

std::string isoText(ValueKind kind, double number) {
  switch (kind) {
    case ValueKind::Date:
      return dateText(number);
    case ValueKind::Time:
      return number >= 0 && number <= secondsPerDay ? clockText(number) : shortest(number);
    case ValueKind::Timestamp:
      return timestampText(number);
    default:
      return shortest(number);
  }
}

std::string rawText(const VariableInfo& variable, const RawValue& value) {
  if (const auto* number = std::get_if<double>(&value)) {
    return isSystemMissing(*number) || std::isnan(*number) ? shortest(*number)
                                                           : isoText(variable.kind, *number);
  }
  return withoutTrailingBlanks(std::get<std::string>(value));
}

std::string valueLabel(const VariableInfo& variable, const RawValue& value) {
  if (const auto* number = std::get_if<double>(&value)) {
    const auto found = variable.numberLabels.find(*number);
    return found == variable.numberLabels.end() ? std::string() : found->second;
  }
  const auto found =
      variable.stringLabels.find(withoutTrailingBlanks(std::get<std::string>(value)));
  return found == variable.stringLabels.end() ? std::string() : found->second;
}

std::string machineText(const Text& text) {
  switch (text.kind) {
    case Text::Kind::String:
      return text.id;
    case Text::Kind::Composite:
      return fillTemplate(text.id, text.items, printRaw);
    case Text::Kind::List:
      return fillTemplate("[%1:, ^1:]1", {{Text::list(text.items)}}, printRaw);
    default:
      return printRaw(text);
  }
}

std::string readerText(const Text& text, const Sentences& sentences) {
  const auto print = [&](const Text& argument) { return printForReader(argument, sentences); };
  switch (text.kind) {
    case Text::Kind::String:
      return std::string(text.translatable ? sentences.sentence(text.id) : text.id);
    case Text::Kind::Composite:
      return fillTemplate(sentences.sentence(text.id), text.items, print);
    case Text::Kind::List:
      return fillTemplate("[%1:, ^1:]1", {{Text::list(text.items)}}, print);
    default:
      return print(text);
  }
}

}  // namespace embedded::output
