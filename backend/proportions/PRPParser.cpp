// The driver of the parse, and the two small subcommands MISSING and CRITERIA.

#include "PRPParser.h"

#include "PRPParserDescription.h"
#include "PRPParserNames.h"
#include "host/command/UniversalParser.h"
#include "host/distributions/MCMV.h"

PRPParser::PRPParser(const KORA_TokenSequence& tokens, PRPValidSpecs& specs,
                     ProcedureDataSource& source)
    : fDescriptor(prp::Command, prp::Title),
      fTokens(tokens),
      fSpecs(specs),
      fDataSource(source),
      fMessages(prp::Command, prp::Title),
      fSplitVars(source, prp::SplitFile, ""),
      fWeightVar(source, prp::Weight, ""),
      fOneSampleVars(source, prp::OneSample, ""),
      fPairedVars(source, prp::PairedSamples, ""),
      fWithVars(source, prp::PairedSamples, prp::With),
      fIndependentVars(source, prp::IndependentSamples, ""),
      fByVar(source, prp::IndependentSamples, prp::By),
      fSysMissing(MCMV::Missing) {}

bool PRPParser::Parse() {
  CommandSpec command;
  const bool valid =
      ReadCommand(command) && ChooseModel() && LoadSplitVars() && LoadWeightVar() && ParseSubComs();
  fSubComs = {};
  return valid;
}

bool PRPParser::ReadCommand(CommandSpec& command) {
  fDescriptor = PRPDescribeCommand();
  UniversalParser parser(fTokens, command, fDescriptor);
  if (parser.getCommandSpecifications() != 0) return false;
  if (command.getSubComListSize() == 0) {
    fMessages.NoSubCom();
    return false;
  }
  FindSubComs(command);
  return true;
}

void PRPParser::FindSubComs(const CommandSpec& command) {
  fSubComs.oneSample = command.getSubComObj(prp::OneSample);
  fSubComs.paired = command.getSubComObj(prp::PairedSamples);
  fSubComs.independent = command.getSubComObj(prp::IndependentSamples);
  fSubComs.success = command.getSubComObj(prp::Success);
  fSubComs.missing = command.getSubComObj(prp::Missing);
  fSubComs.criteria = command.getSubComObj(prp::Criteria);
}

bool PRPParser::ChooseModel() {
  int found = 0;
  const auto choose = [&](const SubComObj* subCom, ModelType modelType) {
    if (subCom == nullptr) return;
    fSpecs.SetModelType(modelType);
    ++found;
  };
  choose(fSubComs.oneSample, ONE_SAMPLE);
  choose(fSubComs.paired, RELATED);
  choose(fSubComs.independent, INDEPENDENT);
  if (found == 1) return true;
  return Refuse("Exactly one test option ...");
}

bool PRPParser::LoadSplitVars() {
  VarInds vars;
  for (int i = 0; i < fDataSource.GetNSplitVars(); ++i)
    vars.push_back(fDataSource.GetSplitVarIndex(i));
  return vars.empty() || fSplitVars.SetVariables(vars, UPSpecTypes::RepeatRefused);
}

bool PRPParser::LoadWeightVar() {
  const std::int32_t weight = fDataSource.GetWeightVarIndex();
  return weight < 0 || fWeightVar.SetVariable(weight);
}

bool PRPParser::ParseSubComs() {
  if (fSubComs.oneSample != nullptr && !ParseOneSample(*fSubComs.oneSample)) return false;
  if (fSubComs.paired != nullptr && !ParsePaired(*fSubComs.paired)) return false;
  if (fSubComs.independent != nullptr && !ParseIndependent(*fSubComs.independent)) return false;
  if (!ParseSuccess(fSubComs.success)) return false;
  if (fSubComs.missing != nullptr) ParseMissing(*fSubComs.missing);
  if (fSubComs.criteria != nullptr) ParseCriteria(*fSubComs.criteria);
  return true;
}

void PRPParser::ParseMissing(const SubComObj& subCom) {
  if (const ParamObj* scope = subCom.getParamObj(prp::Scope))
    fSpecs.SetScopeAnalysis(scope->isStringValueCase(prp::Analysis));
  if (const ParamObj* userMissing = subCom.getParamObj(prp::UserMissing))
    fSpecs.SetUserMissingIncluded(userMissing->isStringValueCase(prp::Include));
}

void PRPParser::ParseCriteria(const SubComObj& subCom) {
  const ParamObj* param = subCom.getParamObj(prp::CILevel);
  if (param == nullptr) return;
  double ciLevelPct = 95.0;
  param->getNumberValue(ciLevelPct);
  fSpecs.SetCILevelPct(ciLevelPct);
}

bool PRPParser::Refuse(std::string_view identifier) {
  fMessages.GenericError(identifier);
  return false;
}
