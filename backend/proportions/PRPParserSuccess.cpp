// SUCCESS: which values of a test variable are a success, worked out for each of them.

#include <algorithm>
#include <set>
#include <utility>

#include "PRPAssert.h"
#include "PRPParser.h"
#include "PRPParserNames.h"

bool PRPParser::ParseSuccess(const SubComObj* subCom) {
  const Definition definition = ReadSuccess(subCom);
  BinInfoElem& elem = fSpecs.GetSuccessInfoElem();
  elem._binOption = definition.option;
  elem._bCategorical = definition.categorical;
  return BuildAllElems(definition);
}

PRPParser::Definition PRPParser::ReadSuccess(const SubComObj* subCom) {
  const ParamObj* value = subCom == nullptr ? nullptr : subCom->getParamObj(prp::Value);
  if (value == nullptr) return {};
  Definition definition = ReadDefinition(*value);
  if (definition.levels != nullptr) {
    definition.tokens = definition.levels->getTokenList();
    PRP_ASSERT(!definition.tokens.empty(), "!levelTokens.empty()", "PRPParser");
    DropRepeatedLevels(definition.tokens);
  }
  return definition;
}

// A level is compared with those that were kept: two numbers by value, anything else by text as it
// was written. So 1 and 1.0 are one level, and so are 1 and "1", but 1 and "1.0" are two.
void PRPParser::DropRepeatedLevels(TokenList& levels) {
  std::set<double> numbers;
  std::set<std::string> numberTexts;
  std::set<std::string> texts;
  const auto repeated = [&](const TokenInfoObj& level) {
    const std::string text = level.getString();
    if (texts.contains(text)) return true;
    if (level.IsNumber() ? !numbers.insert(level.getNumeric()).second : numberTexts.contains(text))
      return true;
    (level.IsNumber() ? numberTexts : texts).insert(text);
    return false;
  };
  if (std::erase_if(levels, repeated) > 0)
    fMessages.GenericWarning("Duplicate SUCCESS LEVEL values ...");
}

bool PRPParser::BuildAllElems(const Definition& definition) {
  const VarInds& testVarInds = fSpecs.GetTestVarInds();
  const VarInds& testVarInds2 = fSpecs.GetTestVarInds2();
  PRPValidSpecs::BinInfoElems& elems = fSpecs.GetBinInfoElems();
  PRPValidSpecs::BinInfoElems& elems2 = fSpecs.GetBinInfoElems2();
  PRP_ASSERT(!testVarInds.empty(), "!testVarInds.empty()", "PRPParser");
  PRP_ASSERT(elems.empty(), "vBinInfoElems.empty()", "PRPParser");
  PRP_ASSERT(elems2.empty(), "vBinInfoElems2.empty()", "PRPParser");

  if (fSpecs.GetModelType() == RELATED) {
    const bool built = BuildElems(definition, "", prp::PairedSamples, testVarInds, elems);
    // The second list alone decides, on purpose: a failure of the first has been reported, and
    // the analysis runs on its elements as far as they got.
    return testVarInds2.empty()
               ? built
               : BuildElems(definition, prp::With, prp::PairedSamples, testVarInds2, elems2);
  }
  PRP_ASSERT(testVarInds2.empty(), "testVarInds2.empty()", "PRPParser");
  return BuildElems(definition, "",
                    fSpecs.GetModelType() == ONE_SAMPLE ? prp::OneSample : prp::IndependentSamples,
                    testVarInds, elems);
}

bool PRPParser::BuildElems(const Definition& definition, std::string_view paramName,
                           std::string_view subComName, const VarInds& vars,
                           PRPValidSpecs::BinInfoElems& elems) {
  elems.resize(vars.size());
  for (std::size_t i = 0; i < vars.size(); ++i)
    if (!BuildElem(definition, paramName, subComName, vars[i], elems[i])) return false;
  return true;
}

bool PRPParser::BuildElem(const Definition& definition, std::string_view paramName,
                          std::string_view subComName, std::int32_t var, BinInfoElem& elem) {
  const KORA_Variable& variable = *fDataSource.GetVariable(var);
  DefineElem(definition, variable, elem);
  if (!elem._bCategorical && variable.GetType() != 0) {
    fMessages.GenericError("Numeric var SUCCESS option ^1 ...", {definition.name});
    return false;
  }
  if (definition.option == CUTPOINT) AppendCutPoint(definition, elem);
  if (definition.option != LEVEL) return true;
  VarSpecObj validator(fDataSource, subComName, paramName);
  validator.SetVariable(var);
  return AppendSuccessLevels(definition.tokens, validator, elem);
}

bool PRPParser::AppendSuccessLevels(const TokenList& levels, VarSpecObj& validator,
                                    BinInfoElem& elem) {
  validator.SetErrorReport(false);
  const bool valid = std::ranges::all_of(
      levels, [&](const TokenInfoObj& level) { return AppendLevel(validator, level, elem); });
  if (!valid) Refuse("Invalid SUCCESS LEVEL ...");
  validator.SetErrorReport(true);
  return valid;
}
