// Validators of variables and of their values.
#include "host/command/VarSpecObj.h"

#include <algorithm>
#include <cstring>

#include "scripted_host/command/Description.h"
#include "scripted_host/command/Tokens.h"
#include "scripted_host/session/Session.h"

using scripted::Phase;
using scripted::session;

struct VarSpecObj::Impl {
  const ProcedureDataSource& source;
  std::string name;  // of the parameter, or of the subcommand
  bool allowQualifiers = false;
  bool reports = true;
  std::vector<std::int32_t> variables;
  scripted::Tokens qualifiers;
  std::int32_t last = -1;

  bool enter(const std::string& operation) const {
    const bool refused = session().enter("VarSpecObj::" + operation, {name});
    session().expectPhase(Phase::AfterParse, operation);
    return refused || session().script.data.refusingValidators.contains(name);
  }
  bool refuse(const std::string& operation, std::vector<std::string> args) const {
    if (reports) session().message("error", "host", operation, std::move(args));
    return false;
  }
  void accept(std::int32_t index) {
    variables.push_back(index);
    last = index;
    session().inUse.insert(index);
  }
};

VarSpecObj::VarSpecObj(const ProcedureDataSource& source, std::string_view subcommand,
                       std::string_view parameter)
    : impl_(new Impl{.source = source,
                     .name = std::string(parameter.empty() ? subcommand : parameter),
                     .variables = {},
                     .qualifiers = {}}) {
  session().enter("VarSpecObj", {std::string(subcommand), std::string(parameter)});
  session().created("VarSpecObj");
}

VarSpecObj::~VarSpecObj() {
  session().leave("VarSpecObj");
  session().destroyed("VarSpecObj");
  session().expect(session().live["ProcedureDataSource"] > 0,
                   "the data source outlives its validators");
}

bool VarSpecObj::SetVariables(std::span<const std::int32_t> variables,
                              UPSpecTypes::RepeatVarOptions repeats) {
  const bool refused = impl_->enter("SetVariables");
  const std::set<std::int32_t> distinct(variables.begin(), variables.end());
  const bool repeated = repeats == UPSpecTypes::RepeatRefused && distinct.size() < variables.size();
  if (refused || repeated) return impl_->refuse("SetVariables", {impl_->name});
  for (const std::int32_t index : variables) impl_->accept(index);
  return true;
}

bool VarSpecObj::SetVariable(std::int32_t variable) {
  if (impl_->enter("SetVariable")) return impl_->refuse("SetVariable", {impl_->name});
  impl_->accept(variable);
  return true;
}

bool VarSpecObj::ValidateVariables(const TokenList& tokens, UPSpecTypes::RepeatVarOptions repeats) {
  const bool refused = impl_->enter("ValidateVariables");
  std::vector<std::int32_t> found;
  for (const TokenInfoObj& info : tokens) {
    const scripted::Token& token = info.impl().token;
    if (token.qualifier && impl_->allowQualifiers) {
      impl_->qualifiers.push_back(token);
      continue;
    }
    const bool name = !token.qualifier && token.code == TokenSequenceBase::NoOperator;
    const int index = name ? session().indexOf(token.text) : -1;
    const bool repeated =
        repeats == UPSpecTypes::RepeatRefused && std::ranges::find(found, index) != found.end();
    if (refused || index < 0 || repeated) return impl_->refuse("ValidateVariables", {impl_->name});
    found.push_back(index);
  }
  for (const std::int32_t index : found) impl_->accept(index);
  return true;
}

std::int32_t VarSpecObj::ValidateVariable(const TokenInfoObj& token) {
  const bool refused = impl_->enter("ValidateVariable");
  const int index = refused ? -1 : session().indexOf(token.impl().token.text);
  if (index < 0)
    impl_->refuse("ValidateVariable", {impl_->name});
  else
    impl_->accept(index);
  return index;
}

bool VarSpecObj::CheckCommonVars(const VarSpecObj& other) {
  const bool refused = impl_->enter("CheckCommonVars");
  const bool common = std::ranges::any_of(impl_->variables, [&](std::int32_t index) {
    return std::ranges::find(other.impl_->variables, index) != other.impl_->variables.end();
  });
  if (!refused && !common) return true;
  return impl_->refuse("CheckCommonVars", {impl_->name, other.impl_->name});
}

std::vector<std::int32_t> VarSpecObj::GetValidVarList() const {
  impl_->enter("GetValidVarList");
  return impl_->variables;
}

void VarSpecObj::SetAllowQualifiers(bool allowed) {
  impl_->enter("SetAllowQualifiers");
  impl_->allowQualifiers = allowed;
}

TokenList VarSpecObj::GetQualTokenList() const {
  impl_->enter("GetQualTokenList");
  return scripted::tokenList(impl_->qualifiers);
}

void VarSpecObj::SetErrorReport(bool reports) {
  impl_->enter("SetErrorReport");
  impl_->reports = reports;
}

namespace {

// The number that a text stands for among the values of the variable.
std::optional<double> numberOf(const scripted::Variable& variable, const std::string& text) {
  if (const auto found = variable.categoryTexts.find(text); found != variable.categoryTexts.end())
    return found->second;
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0') return std::nullopt;
  return number;
}

}  // namespace

bool VarSpecObj::ValidateCatValue(std::string_view text, OwnedOBS& value, KORA_Format& format) {
  const bool refused = impl_->enter("ValidateCatValue");
  const scripted::Variable& variable = session().variable(impl_->last);
  const std::string given(text);
  const std::optional<double> number =
      variable.width == 0 ? numberOf(variable, given) : std::optional(0.0);
  const bool fits = variable.width == 0 || given.size() <= static_cast<std::size_t>(variable.width);
  if (refused || !number || !fits || variable.rejectedTexts.contains(given))
    return impl_->refuse("ValidateCatValue", {impl_->name, given});
  const std::size_t words = ObsWords(variable.width);
  format = impl_->source.GetVariable(impl_->last)->GetFormat();
  if (session().script.data.keepsCategoryValues) return true;
  value = std::make_unique<OBS[]>(words);
  if (variable.width == 0) {
    value[0].number = *number;
  } else {
    auto* bytes = reinterpret_cast<char*>(value.get());
    std::memset(bytes, ' ', words * sizeof(OBS));
    std::memcpy(bytes, given.data(), given.size());
  }
  return true;
}
