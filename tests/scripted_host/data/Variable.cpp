// The variables of the script, as a module sees them.
#include <algorithm>
#include <cstring>
#include <string>
#include <variant>

#include "host/data/KORA_Variable.h"
#include "scripted_host/data/Current.h"
#include "scripted_host/session/Session.h"

namespace scripted {

namespace {

std::string upperCase(std::string text) {
  for (char& c : text)
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  return text;
}

class ScriptedVariable : public KORA_Variable {
 public:
  explicit ScriptedVariable(const Variable& given)
      : given_(given), upperName_(upperCase(given.name)) {}

  int GetType() const override {
    session().enter("KORA_Variable::GetType", {given_.name});
    return given_.width;
  }
  std::string_view GetName() const override {
    session().enter("KORA_Variable::GetName", {given_.name});
    return given_.name;
  }
  std::string_view GetUpperName() const override {
    session().enter("KORA_Variable::GetUpperName", {given_.name});
    return upperName_;
  }
  KORA_Format GetFormat() const override {
    session().enter("KORA_Variable::GetFormat", {given_.name});
    const FormatType usual = given_.width > 0 ? FormatType::String : FormatType::Number;
    const int width = given_.width > 0 ? given_.width : 8;
    return {given_.formatType.value_or(usual), 0, static_cast<std::uint16_t>(width)};
  }
  bool IsMissing(const OBS* observation) const override {
    session().enter("KORA_Variable::IsMissing", {given_.name});
    return given_.width == 0 ? isMissing(observation->number) : isMissing(textOf(observation));
  }

 private:
  std::string textOf(const OBS* observation) const {
    const auto* bytes = reinterpret_cast<const char*>(observation);
    std::string text(bytes, static_cast<std::size_t>(given_.width));
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
  }
  bool isMissing(double value) const {
    if (value == MCMV::Missing ||
        std::ranges::find(given_.userMissing, Value(value)) != given_.userMissing.end())
      return true;
    return std::ranges::any_of(given_.missingRanges, [&](const auto& range) {
      return range.first <= value && value <= range.second;
    });
  }
  bool isMissing(const std::string& text) const {
    const bool null = text.find_first_not_of('\0') == std::string::npos && !text.empty();
    return null || std::ranges::find(given_.userMissing, Value(text)) != given_.userMissing.end();
  }

  const Variable& given_;
  std::string upperName_;
};

}  // namespace

std::unique_ptr<KORA_Variable> makeVariable(int index) {
  const auto& variables = session().script.data.variables;
  if (index < 0 || static_cast<std::size_t>(index) >= variables.size()) return nullptr;
  return std::make_unique<ScriptedVariable>(session().variable(index));
}

}  // namespace scripted

KORA_Variable::~KORA_Variable() = default;
