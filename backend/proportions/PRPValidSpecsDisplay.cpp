// The record as lines of diagnostic text.

#include "PRPValidSpecsDisplay.h"

#include <string_view>

#include "PRPAssert.h"
#include "PRPValidSpecs.h"
#include "host/display/ACACommonDisplay.h"

namespace {

using namespace ACACommonDisplay;

std::string_view Label(BinomialOption option) {
  switch (option) {
    case FIRST:
      return "First Category";
    case LAST:
      return "Last Category";
    case MIDPOINT:
      return "Middle Point";
    case CUTPOINT:
      return "Cut Point";
    case LEVEL:
      return "Category Levels";
  }
  return "Undefined";
}

std::string_view Label(ModelType modelType) {
  switch (modelType) {
    case ONE_SAMPLE:
      return "One Sample";
    case RELATED:
      return "Related";
    case INDEPENDENT:
      return "Independent";
  }
  return "Undefined";
}

constexpr auto Line = &PRPDisplayLine;

void DisplayVarValidSpecs(const ACAVarValidSpecs* specs) {
  if (specs == nullptr) {
    Line("Variable valid specifications are not defined");
    return;
  }
  specs->Display();
  specs->DisplayNames();
}

void DisplayElems(const PRPValidSpecs::BinInfoElems& elems, std::string_view start,
                  std::string_view end) {
  Line(start);
  for (const BinInfoElem& elem : elems) PRPValidSpecs::DisplayElem(elem);
  Line(end);
}

void DisplayGroup(const PRPValidSpecs& specs) {
  DisplayI("Group Variable Index", specs.GetGroupVarInd());
  if (specs.GetGroupVarInd() < 0) {
    Line("Group Info Element not defined");
    return;
  }
  Line("Group Info Element display start");
  PRPValidSpecs::DisplayElem(specs.GetGroupInfoElem());
  Line("Group Info Element display end");
}

void DisplayVars(const PRPValidSpecs& specs) {
  DisplayIV("Vector of Test Variable indices", specs.GetTestVarInds());
  const std::size_t nVars = specs.GetTestVarInds().size();
  PRP_ASSERT(nVars == specs.GetBinInfoElems().size(), "nVars == fvBinInfoElems.size()",
             "PRPValidSpecs");
  DisplayElems(specs.GetBinInfoElems(), "Test Variable Vector Info Elements display start",
               "Test Variable Vector Info Elements display end");
  DisplayIV("Second Vector of Test Variable indices", specs.GetTestVarInds2());
  const std::size_t nVars2 = specs.GetTestVarInds2().size();
  PRP_ASSERT(nVars2 == specs.GetBinInfoElems2().size(), "nVars2 == fvBinInfoElems2.size()",
             "PRPValidSpecs");
  DisplayElems(specs.GetBinInfoElems2(), "Second Variable Vector Info Elements display start",
               "Second Variable Vector Info Elements display end");
}

}  // namespace

void PRPDisplayLine(std::string_view text) {
  BP_ToFront(1, BP_Character(text));
}

void PRPDisplayBanner() {
  PRPDisplayLine(
      "****************************************************\n"
      "* This text output is for debugging purposes only. *\n"
      "* This will not be part of the final release.      *\n"
      "****************************************************");
}

void PRPValidSpecs::DisplayElem(const BinInfoElem& elem) {
  Line("BinInfoElem display start");
  DisplayS("Binomial Option", Label(elem._binOption));
  DisplayB("Categorical Variable", elem._bCategorical);
  DisplayDV("Numeric Values", elem._numValues);
  DisplaySV("String Values", elem._strValues);
  DisplayI("OBS length", elem._obsLen);
  Line("BinInfoElem display end");
}

void PRPValidSpecs::Display() const {
  PRPDisplayBanner();
  Line("PRPValidSpecs display start");
  DisplayVarValidSpecs(fpVarValidSpecs.get());
  DisplayS("Model Type", Label(fModelType));
  DisplayVars(*this);
  DisplayD("Test Value", fTestValue);
  DisplayB("Flag for Ordered Pair option", fbOrderPair);
  DisplayGroup(*this);
  DisplayB("Scope Analysis", fbScopeAnalysis);
  DisplayB("User Missing Included", fbUserMissingIncluded);
  Line("Success Info Element display start");
  DisplayElem(fSuccessInfoElem);
  Line("Success Info Element display end");
  DisplayB("Ignore Case indicator", fbIgnoreCase);
  DisplayB("Print Upper Case indicator", fbPrintUpperCase);
  DisplayB("Print Category Order", fbPrintCategoryOrder);
  DisplayD("Confidence Interval Level as percent", fCILevelPct);
  DisplayBV("Test Type Option flags", fvbTestTypes);
  DisplayBV("CI Type Option flags", fvbCITypes);
  Line("PRPValidSpecs display end");
}
