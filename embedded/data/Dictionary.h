// The dictionary: the variables of the active data, with what a relation and a sidecar say of
// them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/output/Text.h"
#include "host/data/KORA_Format.h"
#include "host/data/KORA_Variable.h"
#include "host/data/OBS.h"

namespace embedded::data {

// A range of user-missing numbers, both ends included.
struct MissingRange {
  double min = 0.0;
  double max = 0.0;
  std::string label;
};

// One variable. It is also what procedures see of it.
//
// A procedure asks of every value whether it is missing: what that needs stands first, in one line
// of a processor's cache.
class alignas(64) Variable final : public KORA_Variable {
 public:
  std::vector<double> missingNumbers;
  std::vector<MissingRange> missingRanges;
  int type = 0;  // 0 numeric, else the width in bytes
  KORA_Format format;
  std::string name;
  std::string upperName;
  std::string presentedAs;  // the name that procedures see, in capital letters; empty: its own
  output::ValueKind kind = output::ValueKind::Number;
  std::vector<std::string> missingStrings;  // without trailing blanks
  // The values that the field declares as its categories; empty optional when it declares none.
  std::optional<std::vector<double>> declaredNumbers;
  std::optional<std::vector<std::string>> declaredStrings;
  bool categoriesOrdered = false;
  std::string columnType;  // the relation's own name of the type, for describe
  bool supported = true;   // false for lists, structs, blobs: refused when used
  // A string's width is known from the start when the schema declares it, else once the values
  // were measured; until then `type` is 1.
  int declaredWidth = 0;
  bool widthKnown = true;
  // Texts of the data that stand for no value, for true and for false.
  std::vector<std::string> nullTexts;
  std::vector<std::string> trueTexts;
  std::vector<std::string> falseTexts;
  output::VariablePtr info;  // name, label and value labels, shared with the document

  int GetType() const override { return type; }
  std::string_view GetName() const override { return presentedAs.empty() ? name : presentedAs; }
  std::string_view GetUpperName() const override {
    return presentedAs.empty() ? upperName : presentedAs;
  }
  KORA_Format GetFormat() const override { return format; }
  bool IsMissing(const OBS* observation) const override;

  // Of the value at `observation`: system-missing (a number), or all NUL bytes (a string).
  bool isSystemMissing(const OBS* observation) const;
  // Whether the value, not system-missing, is one of the user-missing ones.
  bool isUserMissing(const OBS* observation) const;
  // Whether any value can be user-missing.
  bool hasUserMissing() const;
};

struct Dictionary {
  std::vector<Variable> variables;
  int weight = -1;          // index, or negative
  std::vector<int> splits;  // indices, outermost first

  // Index by name: an exact match first, else one without regard to case; -1 when there is none.
  int find(std::string_view name) const;
  // The name most like `name`, for messages; empty when none is near.
  std::string nearest(std::string_view name) const;
};

}  // namespace embedded::data
