// What the scripted host keeps of a text.
#pragma once

#include <string>
#include <vector>

#include "host/output/BpCellText.h"

struct BpTextContent {
  enum Kind { String, Number, Variable, NumberValue, TextValue, Composite, List, SplitValues };

  Kind kind = String;
  bool translatable = true;
  // The text or template; of a variable its name; of a text value the value.
  std::string text{};
  double number = 0.0;
  BpFormatSpec format{};
  int preference = -1;  // of a value; of a variable how it is shown
  // Of a composite its arguments, of a list its items; of split values name, value, name, value.
  std::vector<BpTextHandle> args{};
};
