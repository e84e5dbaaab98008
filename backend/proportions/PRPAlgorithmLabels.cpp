// Labels of success definitions, groups and pairs; warnings about too few valid cases.
#include <memory>

#include "PRPAlgorithm.h"
#include "PRPAssert.h"
#include "host/distributions/MCMV.h"

namespace {

// How a warning is issued: what concerns a whole run is graver than what concerns a part of it.
void IssueSerious(const BpCellText& text) {
  BpError(text, BpErrorShowOutput, BpErrorSerious);
}

void IssueWarning(const BpCellText& text) {
  BpError(text, BpErrorShowOutput, BpErrorWarning);
}

// Puts the current split values in as the next argument.
void AddSplitArgument(BpComposite& text) {
  text.Sublist();
  text.SplitList();
  text.EndSublist();
}

BpVariable VariableText(const KORA_Variable& variable) {
  return {variable, BpVariable::ShowAsPreferred};
}

// A label of the variable and one value, by the template.
template <class Value>
std::unique_ptr<BpCellText> ValueLabel(std::string_view text, const KORA_Variable& variable,
                                       const Value& value, BpDataValue::Preference preference) {
  auto label = std::make_unique<BpComposite>(text, true);
  label->Add(VariableText(variable));
  label->Add(BpDataValue(variable, value, preference));
  label->Finish();
  return label;
}

std::unique_ptr<BpCellText> EqualLabel(const KORA_Variable& variable, double value) {
  return ValueLabel("^1 = ^2", variable, value, BpDataValue::LabelAsPreferred);
}

std::unique_ptr<BpCellText> EqualLabel(const KORA_Variable& variable, std::string_view value) {
  return ValueLabel("^1 = ^2", variable, value, BpDataValue::LabelAsPreferred);
}

std::unique_ptr<BpCellText> AtLeastLabel(const KORA_Variable& variable, double value) {
  return ValueLabel("^1 >= ^2", variable, value, BpDataValue::PlainValue);
}

std::unique_ptr<BpCellText> LevelsLabel(const KORA_Variable& variable, const BinInfoElem& elem,
                                        bool stringVar) {
  auto label = std::make_unique<BpComposite>("^1 = [%1:, ^1:]2", true);
  label->Add(VariableText(variable));
  label->Sublist();
  if (stringVar) {
    for (const std::string& value : elem._strValues)
      label->Add(BpDataValue(variable, std::string_view(value), BpDataValue::LabelAsPreferred));
  } else {
    for (const double value : elem._numValues)
      label->Add(BpDataValue(variable, value, BpDataValue::LabelAsPreferred));
  }
  label->EndSublist();
  label->Finish();
  return label;
}

// The value of CUTPOINT; the missing value in an element that was never finished.
double CutPoint(const BinInfoElem& elem) {
  return elem._numValues.empty() ? MCMV::Missing : elem._numValues.front();
}

// The label of a group by one value of the grouping variable.
template <class Value>
std::unique_ptr<BpCellText> GroupLabel(std::string_view text, const KORA_Variable& variable,
                                       const Value& value, BpDataValue::Preference preference) {
  auto label = std::make_unique<BpComposite>(text, true);
  label->Add(BpDataValue(variable, value, preference));
  label->Finish();
  return label;
}

// The label of the group below, or not below, a value.
std::unique_ptr<BpCellText> SideLabel(const KORA_Variable& variable, int binCateg, double value) {
  return GroupLabel(binCateg == 0 ? "< ^1" : ">= ^1", variable, value, BpDataValue::PlainValue);
}

}  // namespace

// --- Success definitions ------------------------------------------------------------------------

std::unique_ptr<BpCellText> MakeSuccCellText(const KORA_Variable& variable, const BinInfoElem& elem,
                                             const VarCatInfo& info) {
  switch (elem._binOption) {
    case FIRST:
      return info._stringVar ? EqualLabel(variable, info._minStrValue)
                             : EqualLabel(variable, info._minNumValue);
    case LAST:
      return info._stringVar ? EqualLabel(variable, info._maxStrValue)
                             : EqualLabel(variable, info._maxNumValue);
    case MIDPOINT:
      return AtLeastLabel(variable, info._middlePoint);
    case CUTPOINT:
      return AtLeastLabel(variable, CutPoint(elem));
    case LEVEL:
      return LevelsLabel(variable, elem, info._stringVar);
  }
  return nullptr;
}

std::unique_ptr<BpCellText> MakeValueSuccCellText(const KORA_Variable& variable,
                                                  std::int32_t binOption, const VarValue& value) {
  switch (binOption) {
    case FIRST:
    case LAST:
      return value._stringVar ? EqualLabel(variable, value._strValue)
                              : EqualLabel(variable, value._numValue);
    case MIDPOINT:
      return AtLeastLabel(variable, value._numValue);
    default:
      return nullptr;
  }
}

PRPAlgorithm::TestVar PRPAlgorithm::GetTestVar(List list, std::int32_t varInd) const {
  const auto position = static_cast<std::size_t>(varInd);
  const bool first = list == PRPAggregation::List1;
  const VarCatInfo& info = *(first ? fvpVarCatInfo : fvpVarCatInfo2)[position];
  return {GetVariable(info._varInd), (first ? fvBinInfoElems : fvBinInfoElems2)[position], info,
          list, position};
}

void PRPAlgorithm::AddAggregationSuccCategories(const TestVar& var, BpDimension& variables) const {
  if (fpAggregation == nullptr) return;
  for (const VarValue& value : fpAggregation->SuccessValues(var.list, var.position)) {
    const auto label = MakeValueSuccCellText(var.variable, var.elem._binOption, value);
    if (label != nullptr) variables.Category(*label);
  }
}

void PRPAlgorithm::AddVariable(const TestVar& var, BpDimension& variables, BpGroup& parent,
                               const char* assertion) const {
  AddAggregationSuccCategories(var, variables);
  const auto pSuccCellText = MakeSuccCellText(var.variable, var.elem, var.info);
  PRP_ASSERT(pSuccCellText != nullptr, assertion, "PRPAlgorithm");
  parent.Category(*pSuccCellText);
}

void PRPAlgorithm::AddVariable(const TestVar& var, BpDimension& variables) const {
  AddVariable(var, variables, variables, "pSuccCellText != 0");
}

// --- Groups and pairs ---------------------------------------------------------------------------

std::unique_ptr<BpCellText> PRPAlgorithm::MakeSelectCellText(int binCateg) const {
  PRP_ASSERT(binCateg == 0 || binCateg == 1, "binCateg == 0 || binCateg == 1", "PRPAlgorithm");
  PRP_ASSERT(fGroupVarInd >= 0, "fGroupVarInd >= 0", "PRPAlgorithm");
  PRP_ASSERT(fpVarGroupInfo != nullptr, "fpVarGroupInfo != 0", "PRPAlgorithm");
  const KORA_Variable& variable = GetVariable(fGroupVarInd);
  const auto level = static_cast<std::size_t>(binCateg);
  switch (fGroupInfoElem._binOption) {
    case MIDPOINT:
      return SideLabel(variable, binCateg, fpVarGroupInfo->_middlePoint);
    case CUTPOINT:
      return SideLabel(variable, binCateg, CutPoint(fGroupInfoElem));
    case LEVEL:
      if (fpVarGroupInfo->_stringVar) {
        PRP_ASSERT(fGroupInfoElem._strValues.size() == 2, "fGroupInfoElem._strValues.size() == 2",
                   "PRPAlgorithm");
        return GroupLabel("= ^1", variable, std::string_view(fGroupInfoElem._strValues[level]),
                          BpDataValue::LabelAsPreferred);
      }
      PRP_ASSERT(fGroupInfoElem._numValues.size() == 2, "fGroupInfoElem._numValues.size() == 2",
                 "PRPAlgorithm");
      return GroupLabel("= ^1", variable, fGroupInfoElem._numValues[level],
                        BpDataValue::LabelAsPreferred);
    default:
      return nullptr;
  }
}

void PRPAlgorithm::AddMidpointSelectCategories(BpDimension& groups) const {
  if (fpAggregation == nullptr || fGroupInfoElem._binOption != MIDPOINT) return;
  const KORA_Variable& variable = GetVariable(fGroupVarInd);
  for (const int binCateg : {0, 1})
    for (const VarValue& value : fpAggregation->GroupValues())
      groups.Category(*SideLabel(variable, binCateg, value._numValue));
}

std::unique_ptr<BpCellText> PRPAlgorithm::MakePairCellText(const PropZPairSamp& record) const {
  auto label = std::make_unique<BpComposite>("Pair ^1 vars ^2 ^3 ...", true);
  label->Add(BpNumber(record._pairInd + 1, BpProcedure::Count()));
  label->Add(VariableText(GetTestVar(PRPAggregation::List1, record._varInd1).variable));
  label->Add(VariableText(GetSecondVar(record).variable));
  label->Finish();
  return label;
}

// --- Warnings and notes -------------------------------------------------------------------------

void PRPAlgorithm::WarnGroup(std::string_view plain, std::string_view split) const {
  // Without splits it is the whole run that comes to nothing.
  if (!fbSplitFile) return IssueSerious(PRPText(plain));
  BpComposite text(split, true);
  AddSplitArgument(text);
  text.Finish();
  IssueWarning(text);
}

void PRPAlgorithm::WarnVariable(std::int32_t varInd, std::string_view plain,
                                std::string_view split) const {
  const BpVariable variable = VariableText(GetTestVar(PRPAggregation::List1, varInd).variable);
  WarnPart(plain, split, {&variable});
}

void PRPAlgorithm::WarnPart(std::string_view plain, std::string_view split,
                            std::initializer_list<const BpCellText*> arguments) const {
  BpComposite text(fbSplitFile ? split : plain, true);
  for (const BpCellText* argument : arguments) text.Add(*argument);
  if (fbSplitFile) AddSplitArgument(text);
  text.Finish();
  IssueWarning(text);
}

void PRPAlgorithm::AddStatNotComputedNote(BpCategory& category, double value,
                                          const KORA_Variable* variable) const {
  if (value != MCMV::Missing || variable == nullptr) return;
  BpComposite text(fbSplitsAsRows ? "Split [%1 = %2:,^1 = ^2:]1, stat not computed var ^2 const ..."
                                  : "Stat not computed var ^1 const ...",
                   true);
  if (fbSplitsAsRows) AddSplitArgument(text);
  text.Add(VariableText(*variable));
  text.Finish();
  category.CellNote({text.Replicate(), -1, 0});
}
