// Values as text: raw for machines, and as a reader wants to see them.
#pragma once

#include <string>
#include <string_view>

#include "embedded/output/Text.h"

namespace embedded::output {

// The system-missing value, as it stands in texts and cells.
bool isSystemMissing(double number);

// A double with 17 significant digits, so that reading it back gives the same double.
std::string fullPrecision(double number);
// The shortest decimal that reads back as the same double.
std::string shortest(double number);

// The ISO 8601 text of a date (days), time (seconds) or timestamp (seconds) as these kinds count.
std::string isoText(ValueKind kind, double number);

// A value without its label: numbers in their shortest form, dates as ISO text, strings as they
// are without trailing blanks, "." for the system-missing value.
std::string rawText(const VariableInfo& variable, const RawValue& value);
// Its value label, or nothing.
std::string valueLabel(const VariableInfo& variable, const RawValue& value);

// Turns identifiers into sentences of a language.
class Sentences {
 public:
  virtual ~Sentences() = default;
  // The sentence of the identifier, or the identifier itself.
  virtual std::string_view sentence(std::string_view identifier) const = 0;
};

// The text for a machine: identifiers as they are, arguments filled in raw.
std::string machineText(const Text& text);
// The text for a reader: sentences, variable labels, value labels.
std::string readerText(const Text& text, const Sentences& sentences);

}  // namespace embedded::output
