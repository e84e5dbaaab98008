// SELECT: how the values of the grouping variable form the two groups.

#include <cstring>

#include "PRPAssert.h"
#include "PRPParser.h"
#include "PRPParserNames.h"
#include "host/text/KORAMBstr.h"

bool PRPParser::ParseSelect(const SubComObj& subCom) {
  const std::int32_t groupVarInd = fSpecs.GetGroupVarInd();
  PRP_ASSERT(groupVarInd >= 0, "groupVarInd >= 0", "PRPParser");
  const KORA_Variable& group = *fDataSource.GetVariable(groupVarInd);
  const std::optional<Definition> definition = ReadSelect(subCom, group);
  if (!definition) return false;
  BinInfoElem& elem = fSpecs.GetGroupInfoElem();
  DefineElem(*definition, group, elem);
  if (!elem._bCategorical && group.GetType() != 0) {
    fMessages.VariableNotNumeric(KoraVarName(group.GetName()), prp::By, subCom.getSubComExtName());
    return false;
  }
  if (definition->option == CUTPOINT) AppendCutPoint(*definition, elem);
  if (definition->option != LEVEL) return true;
  return AppendGroupLevels(definition->tokens) && CheckDistinctLevels();
}

// Levels that are not given are 1 and 2; their definition has no tokens.
std::optional<PRPParser::Definition> PRPParser::ReadSelect(const SubComObj& subCom,
                                                           const KORA_Variable& group) {
  Definition definition;
  definition.option = LEVEL;
  definition.categorical = false;
  definition.name = prp::Level;
  if (const ParamObj* select = subCom.getParamObj(prp::Select))
    definition = ReadDefinition(*select);
  if (definition.option != LEVEL) return definition;
  if (definition.levels != nullptr && definition.levels->isLeadingToken()) {
    definition.tokens = definition.levels->getTokenList();
    if (definition.tokens.size() == 2) return definition;
    fMessages.GenericError("Param ^1, subcom ^2, two values ...",
                           {"SELECT LEVEL", prp::IndependentSamples});
    return std::nullopt;
  }
  if (group.GetType() == 0) return definition;
  fMessages.GenericError("Numeric SELECT LEVEL var ^1 ...", {group.GetName()});
  return std::nullopt;
}

bool PRPParser::AppendGroupLevels(const TokenList& tokens) {
  BinInfoElem& elem = fSpecs.GetGroupInfoElem();
  const auto append = [&](std::size_t i) {
    if (!tokens.empty()) return AppendLevel(fByVar, tokens[i], elem);
    const auto level = static_cast<std::int32_t>(i + 1);
    return AppendLevel(fByVar, KORAMBltoa_A(level), level, elem);
  };
  fByVar.SetErrorReport(false);
  const bool valid = append(0) && append(1);
  if (!valid)
    Refuse(tokens.empty() ? "Invalid SELECT LEVEL default ..." : "Invalid SELECT LEVEL ...");
  fByVar.SetErrorReport(true);
  return valid;
}

// Looks at the first word alone, on purpose: longer string levels that agree in their first 8
// bytes count as one.
bool PRPParser::CheckDistinctLevels() {
  const BinInfoElem& elem = fSpecs.GetGroupInfoElem();
  const OBS* first = elem._obsValues[0];
  const OBS* second = elem._obsValues[1];
  PRP_ASSERT(elem._bCategorical || elem._obsLen == 1, "obsLen == 1", "PRPParser");
  PRP_ASSERT(first != nullptr, "pQualObs1 != 0", "PRPParser");
  PRP_ASSERT(second != nullptr, "pQualObs2 != 0", "PRPParser");
  const bool distinct = elem._bCategorical
                            ? std::memcmp(first->bytes, second->bytes, sizeof(OBS)) != 0
                            : first->number != second->number;
  if (distinct) return true;
  fMessages.GenericError("Param ^1, subcom ^2, two distinct values ...",
                         {"SELECT LEVEL", prp::IndependentSamples});
  return false;
}
