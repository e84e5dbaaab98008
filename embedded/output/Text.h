// Texts of the document as values: an identifier with its arguments, never a printed sentence.
//
// Two labels are equal when identifier and arguments are equal. What a reader sees is made from a
// text by a catalogue and the template engine; what a machine reads are the identifier and the
// raw arguments.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace embedded::output {

// What a value of a variable is, for printing it.
enum class ValueKind : std::uint8_t { Number, String, Date, Time, Timestamp, Boolean };

// What the document needs to know of a variable. Shared by all texts that name it.
struct VariableInfo {
  std::string name;
  std::string label;  // empty when there is none
  ValueKind kind = ValueKind::Number;
  int decimals = -1;  // digits after the point; -1: as many as the value has
  std::map<double, std::string> numberLabels;
  std::map<std::string, std::string> stringLabels;  // keys without trailing blanks
};
using VariablePtr = std::shared_ptr<const VariableInfo>;

// A raw value; a number that is the system-missing value (the most negative finite double) is
// shown and written as missing.
using RawValue = std::variant<double, std::string>;

enum class NumberFormat : std::uint8_t { Count, GeneralStat, SigDigit };

struct Text;
using TextPtr = std::shared_ptr<const Text>;

// One text. Which members count depends on the kind.
struct Text {
  enum class Kind : std::uint8_t {
    String,     // id
    Composite,  // id is a template, items its arguments in order
    List,       // items; an argument of a composite
    Number,     // value (a double), format
    Variable,   // variable
    Value       // a value of variable; preferLabel says whether its value label is wanted
  };
  Kind kind = Kind::String;
  bool translatable = false;
  bool preferLabel = false;
  NumberFormat format = NumberFormat::GeneralStat;
  std::string id;
  std::vector<TextPtr> items;
  RawValue value = 0.0;
  VariablePtr variable;

  static TextPtr string(std::string id, bool translatable = true);
  static TextPtr composite(std::string id, std::vector<TextPtr> arguments);
  static TextPtr list(std::vector<TextPtr> items);
  static TextPtr number(double value, NumberFormat format);
  static TextPtr ofVariable(VariablePtr variable);
  static TextPtr ofValue(VariablePtr variable, RawValue value, bool preferLabel);
};

// Equality of labels: same kind, identifier and arguments; variables by name, numbers bit for
// bit. Preference and format do not count.
bool operator==(const Text& a, const Text& b);
std::size_t hashOf(const Text& text);

}  // namespace embedded::output
