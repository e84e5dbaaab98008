// Tells the host's parser the grammar: one function for each subcommand, in declared order.

#include "PRPParserDescription.h"

#include <initializer_list>
#include <string_view>

#include "PRPParserNames.h"
#include "host/command/UPSpecTypes.h"
#include "statistics/Methods.h"

namespace {

using statistics::Design;
using statistics::MethodKind;

ParamDescriptor Param(std::string_view name, UPSpecTypes::ParamSpec spec,
                      bool valueRequired = true) {
  return {name, spec, false, valueRequired, UPSpecTypes::BracketsHost};
}

ParamDescriptor OneKeyword(std::string_view name,
                           std::initializer_list<std::string_view> keywords) {
  ParamDescriptor param = Param(name, UPSpecTypes::ParamKeyword);
  for (const std::string_view keyword : keywords) param.addStringValue(keyword);
  return param;
}

ParamDescriptor MethodList(std::string_view name, Design design, MethodKind kind) {
  ParamDescriptor param = Param(name, UPSpecTypes::ParamKeywordList);
  for (const statistics::MethodInfo& method : statistics::methodsOf(design, kind))
    param.addStringValue(method.keyword);
  param.addStringValue(prp::All);
  param.addStringValue(prp::None);
  return param;
}

void AddMethodLists(SubComDescriptor& subCom, Design design) {
  subCom.addParamDesc(MethodList(prp::TestTypes, design, MethodKind::Test));
  subCom.addParamDesc(MethodList(prp::CITypes, design, MethodKind::Interval));
}

SubComDescriptor SubCom(std::string_view name) {
  return {name, UPSpecTypes::SubComPlain, false, false};
}

// A subcommand that begins with a list of variables.
SubComDescriptor TestSubCom(std::string_view name) {
  SubComDescriptor subCom = SubCom(name);
  subCom.setExportParamDesc(UPSpecTypes::ParamTokenList, true);
  return subCom;
}

SubComDescriptor OneSampleSubCom() {
  ParamDescriptor testVal = Param(prp::TestVal, UPSpecTypes::ParamNumber);
  testVal.setLowerBoundary(0.0, UPSpecTypes::LowerOpen);
  testVal.setUpperBoundary(1.0, UPSpecTypes::UpperOpen);

  SubComDescriptor subCom = TestSubCom(prp::OneSample);
  subCom.addParamDesc(testVal);
  AddMethodLists(subCom, Design::OneSample);
  return subCom;
}

SubComDescriptor PairedSubCom() {
  SubComDescriptor subCom = TestSubCom(prp::PairedSamples);
  AddMethodLists(subCom, Design::Paired);
  return subCom;
}

SubComDescriptor IndependentSubCom() {
  ParamDescriptor select = Param(prp::Select, UPSpecTypes::ParamQualified);
  select.addQualifDesc(prp::MidPoint);
  select.addQualifDesc(Param(prp::CutPoint, UPSpecTypes::ParamNumber));
  // Bare here, where it means the levels 1 and 2; under VALUE it must have values.
  select.addQualifDesc(Param(prp::Level, UPSpecTypes::ParamTokenList, false));

  SubComDescriptor subCom = TestSubCom(prp::IndependentSamples);
  subCom.addParamDesc(select);
  AddMethodLists(subCom, Design::Independent);
  return subCom;
}

SubComDescriptor SuccessSubCom() {
  ParamDescriptor value = Param(prp::Value, UPSpecTypes::ParamQualified);
  for (const std::string_view bare : {prp::First, prp::Last, prp::MidPoint})
    value.addQualifDesc(bare);
  value.addQualifDesc(Param(prp::CutPoint, UPSpecTypes::ParamNumber));
  value.addQualifDesc(Param(prp::Level, UPSpecTypes::ParamTokenList));

  SubComDescriptor subCom = SubCom(prp::Success);
  subCom.addParamDesc(value);
  return subCom;
}

SubComDescriptor MissingSubCom() {
  SubComDescriptor subCom = SubCom(prp::Missing);
  subCom.addParamDesc(OneKeyword(prp::Scope, {prp::Analysis, prp::ListWise}));
  subCom.addParamDesc(OneKeyword(prp::UserMissing, {prp::Exclude, prp::Include}));
  return subCom;
}

SubComDescriptor CriteriaSubCom() {
  ParamDescriptor level = Param(prp::CILevel, UPSpecTypes::ParamNumber);
  level.setLowerBoundary(0.0, UPSpecTypes::LowerClosed);
  level.setUpperBoundary(100.0, UPSpecTypes::UpperOpen);

  SubComDescriptor subCom = SubCom(prp::Criteria);
  subCom.addParamDesc(level);
  return subCom;
}

}  // namespace

CommandDescriptor PRPDescribeCommand() {
  CommandDescriptor command(prp::Command, prp::Title);
  command.addSubComDesc(OneSampleSubCom());
  command.addSubComDesc(PairedSubCom());
  command.addSubComDesc(IndependentSubCom());
  command.addSubComDesc(SuccessSubCom());
  command.addSubComDesc(MissingSubCom());
  command.addSubComDesc(CriteriaSubCom());
  return command;
}
