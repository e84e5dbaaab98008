// Diagnostic text: every line goes to the log.
#include "host/display/ACACommonDisplay.h"
#include "scripted_host/session/Session.h"

using scripted::session;

namespace {

void write(std::string_view writer, std::string_view label, std::vector<double> numbers,
           std::vector<std::string> texts = {}) {
  session().enter("ACACommonDisplay::Display" + std::string(writer), {std::string(label)});
  session().log.lines.push_back(
      {std::string(writer), std::string(label), std::move(numbers), std::move(texts)});
}

}  // namespace

void BP_ToFront(int channel, const BP_Character& text) {
  session().enter("BP_ToFront", {text.text()});
  session().expect(channel == 1, "diagnostic text goes to channel 1");
  session().log.lines.push_back({"line", text.text(), {}, {}});
}

namespace ACACommonDisplay {

void DisplayB(std::string_view label, bool value) {
  write("B", label, {value ? 1.0 : 0.0});
}
void DisplayI(std::string_view label, std::int32_t value) {
  write("I", label, {static_cast<double>(value)});
}
void DisplayD(std::string_view label, double value) {
  write("D", label, {value});
}
void DisplayS(std::string_view label, std::string_view value) {
  write("S", label, {}, {std::string(value)});
}
void DisplayIV(std::string_view label, std::span<const std::int32_t> values) {
  write("IV", label, {values.begin(), values.end()});
}
void DisplayDV(std::string_view label, std::span<const double> values) {
  write("DV", label, {values.begin(), values.end()});
}
void DisplaySV(std::string_view label, std::span<const std::string> values) {
  write("SV", label, {}, {values.begin(), values.end()});
}
void DisplayBV(std::string_view label, const std::vector<bool>& values) {
  write("BV", label, {values.begin(), values.end()});
}

}  // namespace ACACommonDisplay

ACAVarValidSpecs::~ACAVarValidSpecs() = default;
