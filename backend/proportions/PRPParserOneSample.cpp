// ONESAMPLE: the test variables, the test value and the methods.

#include <algorithm>

#include "PRPAssert.h"
#include "PRPParser.h"
#include "PRPParserLeadingTokens.h"
#include "PRPParserNames.h"

bool PRPParser::ParseOneSample(const SubComObj& subCom) {
  const bool validVars = ParseOneSampleVars(subCom);
  if (validVars) ParseTestValue(subCom);
  if (!ParseMethods(subCom, prp::OneSample, statistics::Design::OneSample, validVars)) return false;
  const auto requested = [&](statistics::MethodKind kind) {
    return std::ranges::count(FlagsOf(kind), true) > 0;
  };
  // The other designs have counts to show without a method; here nothing would be left.
  if (!requested(statistics::MethodKind::Test) && !requested(statistics::MethodKind::Interval))
    fMessages.NoTableRequested();
  return true;
}

bool PRPParser::ParseOneSampleVars(const SubComObj& subCom) {
  std::optional<VarInds> vars = ValidVars(fOneSampleVars, prp::LeadingTokens(subCom));
  if (!vars) return false;
  PRP_ASSERT(!vars->empty(), "!testVarList.empty()", "PRPParser");
  DropRepeatedVars(*vars, "Subcom ^1, duplicate var names ...", "", prp::OneSample);
  fSpecs.SetTestVarInds(std::move(*vars));
  return true;
}

void PRPParser::ParseTestValue(const SubComObj& subCom) {
  const ParamObj* param = subCom.getParamObj(prp::TestVal);
  if (param == nullptr) return;
  double testValue = 0.5;
  param->getNumberValue(testValue);
  fSpecs.SetTestValue(testValue);
}
