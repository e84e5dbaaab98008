// Diagnostic lines: label, colon, value. Doubles in the shortest form that reads back.
#include "host/display/ACACommonDisplay.h"

#include "embedded/output/Values.h"
#include "embedded/session/Session.h"

namespace {

void line(const std::string& text) {
  const auto& diagnostics = embedded::Session::current().diagnostics;
  if (diagnostics) {
    diagnostics(text);
  }
}

const char* boolText(bool value) {
  return value ? "true" : "false";
}

std::string numberText(double value) {
  return embedded::output::isSystemMissing(value) ? "missing" : embedded::output::shortest(value);
}

void labelled(std::string_view label, const std::string& value) {
  line(std::string(label) + ": " + value);
}

template <class Values, class Print>
void labelledList(std::string_view label, const Values& values, Print print) {
  std::string text;
  for (const auto& value : values) {
    text += (text.empty() ? "" : ", ") + std::string(print(value));
  }
  labelled(label, "[" + text + "]");
}

}  // namespace

void BP_ToFront(int /*channel*/, const BP_Character& text) {
  line(text.text());
}

namespace ACACommonDisplay {

void DisplayB(std::string_view label, bool value) {
  labelled(label, boolText(value));
}
void DisplayI(std::string_view label, std::int32_t value) {
  labelled(label, std::to_string(value));
}
void DisplayD(std::string_view label, double value) {
  labelled(label, numberText(value));
}
void DisplayS(std::string_view label, std::string_view value) {
  labelled(label, std::string(value));
}
void DisplayIV(std::string_view label, std::span<const std::int32_t> values) {
  labelledList(label, values, [](std::int32_t value) { return std::to_string(value); });
}
void DisplayDV(std::string_view label, std::span<const double> values) {
  labelledList(label, values, numberText);
}
void DisplaySV(std::string_view label, std::span<const std::string> values) {
  labelledList(label, values, [](const std::string& value) { return value; });
}
void DisplayBV(std::string_view label, const std::vector<bool>& values) {
  labelledList(label, values, boolText);
}

}  // namespace ACACommonDisplay

// The list of a command's variables: this host keeps none of its own.
ACAVarValidSpecs::~ACAVarValidSpecs() = default;
