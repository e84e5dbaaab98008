// INDEPENDENTSAMPLES: the test variables, the grouping variable, the methods.

#include "PRPAssert.h"
#include "PRPParser.h"
#include "PRPParserLeadingTokens.h"
#include "PRPParserNames.h"

bool PRPParser::ParseIndependent(const SubComObj& subCom) {
  const bool valid = ParseIndependentVars(subCom) && ParseSelect(subCom);
  return ParseMethods(subCom, prp::IndependentSamples, statistics::Design::Independent, valid);
}

bool PRPParser::ParseIndependentVars(const SubComObj& subCom) {
  const std::optional<SplitTokens> split =
      SplitAt(prp::LeadingTokens(subCom), TokenSequenceBase::OperatorBy, "Only one BY ...");
  if (!split) return false;
  if (!split->found) return Refuse("Missing BY ...");
  if (split->before.empty()) return Refuse("No vars before BY ...");
  std::optional<VarInds> vars = ValidVars(fIndependentVars, split->before);
  if (!vars) return false;
  DropRepeatedVars(*vars, "Before ^1, subcom ^2, dupl var names ...", prp::By,
                   prp::IndependentSamples);
  fSpecs.SetTestVarInds(std::move(*vars));
  return ParseGroupVar(split->after);
}

bool PRPParser::ParseGroupVar(const TokenList& tokens) {
  if (tokens.empty()) return Refuse("No vars after BY ...");
  if (tokens.size() > 1) return Refuse("Only one var after BY ...");
  const std::int32_t group = fByVar.ValidateVariable(tokens.front());
  if (group < 0) return false;
  if (!fByVar.CheckCommonVars(fWeightVar)) return false;
  if (!fIndependentVars.CheckCommonVars(fByVar)) return false;
  fSpecs.SetGroupVarInd(group);
  return true;
}
