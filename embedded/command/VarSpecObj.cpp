// Validators: variables and values of a command against the dictionary of the session.
#include "host/command/VarSpecObj.h"

#include <algorithm>
#include <exception>
#include <set>
#include <string>

#include "embedded/command/CategoryValue.h"
#include "embedded/command/CommandMessages.h"
#include "embedded/command/Tokens.h"
#include "embedded/session/Session.h"

using embedded::Session;
using embedded::command::CommandMessage;
using embedded::command::Spot;
using embedded::command::TokenKind;
using embedded::data::Dictionary;
namespace messages = embedded::command::messages;

namespace {

const Dictionary& dictionary() {
  return Session::current().dictionary;
}

const std::string& nameOf(std::int32_t variable) {
  return dictionary().variables[static_cast<std::size_t>(variable)].name;
}

constexpr std::size_t mostRefusals = 20;  // of one list that are told
constexpr std::size_t longestName = 200;  // in bytes, of a name that others are compared with

std::string nearest(const std::string& name) {
  return name.size() > longestName ? std::string() : dictionary().nearest(name);
}

// Variables that `*` does not stand for: the weight and what splits the data.
bool standsApart(std::int32_t variable) {
  const auto& splits = dictionary().splits;
  return variable == dictionary().weight ||
         std::find(splits.begin(), splits.end(), variable) != splits.end();
}

// Widths of strings are wanted from here on. What goes wrong with the data ends the run; it does
// not cross the procedure.
void measureStrings() {
  Session& session = Session::current();
  if (!session.cases || session.fatal) {
    return;
  }
  try {
    session.cases->measure(session.dictionary, session.columnsInUse);
  } catch (...) {
    session.fatal = std::current_exception();
  }
}

}  // namespace

struct VarSpecObj::Impl {
  std::string subcommand;
  std::string parameter;
  std::vector<std::int32_t> variables;
  std::vector<Spot> places;  // of each variable, where it was named
  TokenList qualifiers;
  bool allowsQualifiers = false;
  bool reports = true;
  mutable std::size_t refusals = 0;  // since the validator was last given something to read

  // How messages name what this validator is for.
  std::string name() const { return parameter.empty() ? subcommand : subcommand + " " + parameter; }

  bool refuse(const CommandMessage& message, const std::vector<std::string>& arguments,
              const Spot& place, std::string nearest = {}) const {
    if (reports && refusals++ < mostRefusals) {
      embedded::command::report(message, arguments, place, std::move(nearest));
    }
    return false;
  }

  void accept(std::int32_t variable, const Spot& place) {
    variables.push_back(variable);
    places.push_back(place);
    Session::current().useColumn(variable);
  }

  // The index of a variable by name; negative, and reported, when there is none.
  std::int32_t find(const std::string& name, const Spot& place) const {
    const std::int32_t found = dictionary().find(name);
    if (found < 0) {
      refuse(messages::unknownVariable, {name}, place, nearest(name));
    }
    return found;
  }

  bool addRange(const TokenInfoObj::Impl& range) {
    const std::int32_t first = find(range.text, range.firstPlace);
    const std::int32_t last = find(range.last, range.lastPlace);
    if (first < 0 || last < 0) {
      return false;
    }
    if (last < first) {
      return refuse(messages::backwardRange, {range.text, range.last}, range.place);
    }
    for (std::int32_t variable = first; variable <= last; ++variable) {
      accept(variable, range.place);
    }
    return true;
  }

  void addAll(const Spot& place) {
    for (std::int32_t i = 0; i < static_cast<std::int32_t>(dictionary().variables.size()); ++i) {
      if (!standsApart(i)) {
        accept(i, place);
      }
    }
  }

  bool add(const TokenInfoObj& token) {
    const TokenInfoObj::Impl& impl = token.impl();
    switch (impl.kind) {
      case TokenKind::Range:
        return addRange(impl);
      case TokenKind::Star:
        addAll(impl.place);
        return true;
      case TokenKind::Number:
        return refuse(messages::notAVariable, {impl.text}, impl.place);
      case TokenKind::Qualifier:
        if (!allowsQualifiers) {
          return refuse(messages::qualifierRefused, {impl.text}, impl.place);
        }
        qualifiers.push_back(token);
        return true;
      case TokenKind::Word:
      case TokenKind::Quoted:
        break;
    }
    if (impl.code != TokenSequenceBase::NoOperator) {
      return refuse(messages::reservedWord, {impl.text}, impl.place);
    }
    const std::int32_t found = find(impl.text, impl.place);
    if (found >= 0) {
      accept(found, impl.place);
    }
    return found >= 0;
  }

  // The first variable that is named again, by its place in the list; the list's length if none.
  std::size_t firstRepeat() const {
    std::set<std::int32_t> seen;
    std::size_t i = 0;
    while (i < variables.size() && seen.insert(variables[i]).second) {
      ++i;
    }
    return i;
  }
};

VarSpecObj::VarSpecObj(const ProcedureDataSource& /*source*/, std::string_view subcommand,
                       std::string_view parameter)
    : impl_(std::make_unique<Impl>()) {
  impl_->subcommand = subcommand;
  impl_->parameter = parameter;
}
VarSpecObj::~VarSpecObj() = default;

bool VarSpecObj::SetVariables(std::span<const std::int32_t> variables,
                              UPSpecTypes::RepeatVarOptions repeats) {
  impl_->variables.clear();
  impl_->places.clear();
  const Spot nowhere;
  for (const std::int32_t variable : variables) {
    impl_->variables.push_back(variable);
    impl_->places.push_back(nowhere);
    // Weights and split variables are read anyway, and are none that is analysed.
    if (!standsApart(variable)) {
      Session::current().useColumn(variable);
    }
  }
  measureStrings();
  const std::size_t repeat = impl_->firstRepeat();
  if (repeats == UPSpecTypes::RepeatRefused && repeat < variables.size()) {
    return impl_->refuse(messages::repeatedVariable, {nameOf(variables[repeat]), impl_->name()},
                         nowhere);
  }
  return true;
}

bool VarSpecObj::SetVariable(std::int32_t variable) {
  const std::int32_t one[] = {variable};
  return SetVariables(one, UPSpecTypes::RepeatPassedThrough);
}

bool VarSpecObj::ValidateVariables(const TokenList& tokens, UPSpecTypes::RepeatVarOptions repeats) {
  impl_->variables.clear();
  impl_->places.clear();
  impl_->qualifiers.clear();
  impl_->refusals = 0;
  bool valid = true;
  for (const TokenInfoObj& token : tokens) {
    // Qualifiers end the list.
    if (!impl_->qualifiers.empty() && token.impl().kind != TokenKind::Qualifier) {
      const TokenInfoObj::Impl& qualifier = impl_->qualifiers.back().impl();
      valid = impl_->refuse(messages::qualifierRefused, {qualifier.text}, qualifier.place);
      break;
    }
    valid = impl_->add(token) && valid;
    if (impl_->refusals >= mostRefusals) {
      break;
    }
  }
  measureStrings();
  auto& focus = Session::current().commandFocus;
  if (valid && impl_->variables.empty()) {
    return impl_->refuse(messages::emptyList, {impl_->name()}, focus.value_or(Spot{}));
  }
  // What is said of repeats belongs to the repeated name.
  if (const std::size_t repeat = impl_->firstRepeat(); repeat < impl_->variables.size()) {
    focus = impl_->places[repeat];
    if (repeats == UPSpecTypes::RepeatRefused) {
      return impl_->refuse(messages::repeatedVariable,
                           {nameOf(impl_->variables[repeat]), impl_->name()}, *focus);
    }
  } else if (!impl_->places.empty()) {
    focus = impl_->places.front();
  }
  return valid;
}

std::int32_t VarSpecObj::ValidateVariable(const TokenInfoObj& token) {
  if (!ValidateVariables({token}, UPSpecTypes::RepeatRefused)) {
    return -1;
  }
  if (impl_->variables.size() != 1) {
    impl_->refuse(messages::oneVariable, {token.impl().text}, token.impl().place);
    return -1;
  }
  return impl_->variables.front();
}

bool VarSpecObj::CheckCommonVars(const VarSpecObj& other) {
  for (std::size_t i = 0; i < impl_->variables.size(); ++i) {
    const std::int32_t variable = impl_->variables[i];
    const auto& others = other.impl_->variables;
    if (std::find(others.begin(), others.end(), variable) != others.end()) {
      return impl_->refuse(messages::commonVariable,
                           {nameOf(variable), impl_->name(), other.impl_->name()},
                           impl_->places[i]);
    }
  }
  return true;
}

std::vector<std::int32_t> VarSpecObj::GetValidVarList() const {
  return impl_->variables;
}

void VarSpecObj::SetAllowQualifiers(bool allowed) {
  impl_->allowsQualifiers = allowed;
}

TokenList VarSpecObj::GetQualTokenList() const {
  if (!impl_->qualifiers.empty()) {
    Session::current().commandFocus = impl_->qualifiers.back().impl().place;
  }
  return impl_->qualifiers;
}

void VarSpecObj::SetErrorReport(bool reports) {
  impl_->reports = reports;
}

bool VarSpecObj::ValidateCatValue(std::string_view text, OwnedOBS& value, KORA_Format& format) {
  if (impl_->variables.size() != 1) {
    return false;
  }
  const auto& variable = dictionary().variables[static_cast<std::size_t>(impl_->variables.front())];
  value = embedded::command::categoryValue(variable, text);
  format = variable.format;
  if (value == nullptr) {
    return impl_->refuse(messages::invalidValue, {std::string(text), variable.name},
                         Session::current().commandFocus.value_or(Spot{}));
  }
  return true;
}
