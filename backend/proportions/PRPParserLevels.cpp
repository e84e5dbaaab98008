// Definitions of a success and of the groups: what SUCCESS and SELECT have in common.

#include <algorithm>
#include <array>
#include <utility>

#include "PRPParser.h"
#include "PRPParserNames.h"

namespace {

struct NamedOption {
  std::string_view name;
  BinomialOption option;
  bool categorical;
};

// LEVEL becomes categorical variable by variable.
constexpr std::array<NamedOption, 5> NamedOptions{{{prp::Last, LAST, true},
                                                   {prp::First, FIRST, true},
                                                   {prp::MidPoint, MIDPOINT, false},
                                                   {prp::CutPoint, CUTPOINT, false},
                                                   {prp::Level, LEVEL, false}}};

}  // namespace

PRPParser::Definition PRPParser::ReadDefinition(const ParamObj& param) const {
  Definition definition;
  std::string name;
  const ParamObj* qualifier = param.getStringAndQual(name);
  if (qualifier == nullptr) return definition;
  const auto named = std::ranges::find(NamedOptions, qualifier->getParamName(), &NamedOption::name);
  if (named == NamedOptions.end()) return definition;
  definition.option = named->option;
  definition.categorical = named->categorical;
  definition.name = named->name;
  if (named->option == LEVEL) definition.levels = qualifier;
  if (named->option == CUTPOINT) {
    definition.tokens = qualifier->getTokenList();
    definition.cutPoint = fSysMissing;
    qualifier->getNumberValue(definition.cutPoint);
  }
  return definition;
}

void PRPParser::AppendCutPoint(const Definition& definition, BinInfoElem& elem) {
  OwnedOBS value = std::make_unique<OBS[]>(1);
  value[0].number = definition.cutPoint;
  const TokenList& tokens = definition.tokens;
  Append(definition.cutPoint, tokens.empty() ? std::string() : tokens.front().getString(),
         std::move(value), elem);
}

bool PRPParser::AppendLevel(VarSpecObj& validator, const TokenInfoObj& token, BinInfoElem& elem) {
  const std::string text = token.getString();
  return AppendLevel(validator, text,
                     token.IsNumber() ? std::optional(token.getNumeric()) : std::nullopt, elem);
}

bool PRPParser::AppendLevel(VarSpecObj& validator, const std::string& text,
                            std::optional<double> number, BinInfoElem& elem) {
  OwnedOBS value;
  KORA_Format format;
  if (!validator.ValidateCatValue(text, value, format)) return false;
  if (!number && !format.IsString() && value) number = value[0].number;
  Append(number.value_or(fSysMissing), text, std::move(value), elem);
  return true;
}

void PRPParser::Append(double number, std::string text, OwnedOBS value, BinInfoElem& elem) {
  const OBS* const observation = value.get();
  fvObsValues.push_back(std::move(value));
  elem._numValues.push_back(number);
  elem._strValues.push_back(std::move(text));
  elem._obsValues.push_back(observation);
}

void PRPParser::DefineElem(const Definition& definition, const KORA_Variable& variable,
                           BinInfoElem& elem) {
  const int type = variable.GetType();
  elem._binOption = definition.option;
  elem._bCategorical = definition.categorical || (definition.option == LEVEL && type != 0);
  elem._obsLen = static_cast<std::int32_t>(ObsWords(type));
  elem._format = variable.GetFormat();
}
