// Labelled lines of diagnostic text.
//
// Where they go and how values are printed is the host's affair; nothing here is part of a
// command's results.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/Api.h"

// A line of plain text that can be assigned and appended to.
class HOST_API BP_Character {
 public:
  BP_Character() = default;
  explicit BP_Character(std::string_view text) : text_(text) {}
  BP_Character& operator=(std::string_view text) {
    text_ = text;
    return *this;
  }
  BP_Character& operator+=(std::string_view text) {
    text_ += text;
    return *this;
  }
  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

// Writes one plain line; `channel` 1 is the diagnostic text. [any time]
HOST_API void BP_ToFront(int channel, const BP_Character& text);

// One line: the label and the value. [any time]
namespace ACACommonDisplay {

HOST_API void DisplayB(std::string_view label, bool value);
HOST_API void DisplayI(std::string_view label, std::int32_t value);
HOST_API void DisplayD(std::string_view label, double value);
HOST_API void DisplayS(std::string_view label, std::string_view value);
HOST_API void DisplayIV(std::string_view label, std::span<const std::int32_t> values);
HOST_API void DisplayDV(std::string_view label, std::span<const double> values);
HOST_API void DisplaySV(std::string_view label, std::span<const std::string> values);
HOST_API void DisplayBV(std::string_view label, const std::vector<bool>& values);

}  // namespace ACACommonDisplay

// The host's own list of a command's variables; it prints their names.
class HOST_API ACAVarValidSpecs {
 public:
  virtual ~ACAVarValidSpecs();

  // Writes itself, and the names of its variables, as diagnostic lines. [any time]
  virtual void Display() const = 0;
  virtual void DisplayNames() const = 0;
};
