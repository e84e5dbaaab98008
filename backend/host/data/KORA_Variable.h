// One variable of the dictionary, as a procedure sees it.
#pragma once

#include <string_view>

#include "host/Api.h"
#include "host/data/KORA_Format.h"
#include "host/data/OBS.h"

// Owned by the data source; a pointer to it stays valid as long as the data source lives.
class HOST_API KORA_Variable {
 public:
  virtual ~KORA_Variable();

  // 0 for a numeric variable, else the width in bytes of a string variable. [any time]
  virtual int GetType() const = 0;
  // The name as defined, and its upper-case form. UTF-8; valid as long as the variable. [any time]
  virtual std::string_view GetName() const = 0;
  virtual std::string_view GetUpperName() const = 0;
  // The print format. [any time]
  virtual KORA_Format GetFormat() const = 0;
  // Whether the value at `observation` is missing: system-missing, or one of the variable's
  // user-missing values. `observation` points to the value's first word. [during run]
  virtual bool IsMissing(const OBS* observation) const = 0;
};
