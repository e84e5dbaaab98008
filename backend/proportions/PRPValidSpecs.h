// The validated specification of one run: everything that the command asked for.
//
// The parser fills it, the analysis reads it. It holds no logic beyond its defaults, one guarded
// setter, the notes about the run and a diagnostic dump. Variables are dictionary indices of the
// data source.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/data/KORA_Format.h"
#include "host/data/OBS.h"
#include "host/data/ProcedureDataSource.h"
#include "host/display/ACACommonDisplay.h"

// How a variable is made binary: which of its values are a success, or form the two groups.
enum BinomialOption : std::int32_t {
  FIRST = 0,     // the smallest value in the data
  LAST = 1,      // the largest value in the data
  MIDPOINT = 2,  // split half way between the smallest and the largest
  CUTPOINT = 3,  // split at a given number
  LEVEL = 4      // given values
};

// The design, chosen by the one test subcommand.
enum ModelType : std::int32_t { ONE_SAMPLE = 0, RELATED = 1, INDEPENDENT = 2 };

// How one variable is made binary. The three sequences of values run in parallel.
struct BinInfoElem {
  BinomialOption _binOption = LAST;
  // Whether the variable is treated as categories: FIRST, LAST, and LEVEL of a string variable.
  bool _bCategorical = true;
  std::vector<double> _numValues;
  // The values as written in the command.
  std::vector<std::string> _strValues;
  // The values as observations; owned by the parser, which outlives every reader.
  std::vector<const OBS*> _obsValues;
  // Observation words that a value of the variable takes.
  std::int32_t _obsLen = 1;
  // The variable's print format: bits that are kept, none set at first.
  KORA_Format _format{static_cast<FormatType>(0), 0, 0};
};

// Base of what the further object slots may hold.
class PRPExtra {
 public:
  virtual ~PRPExtra() = default;
};

class PRPValidSpecs {
 public:
  using VarInds = std::vector<std::int32_t>;
  using BinInfoElems = std::vector<BinInfoElem>;
  using Flags = std::vector<bool>;

  // `source` must outlive the record.
  explicit PRPValidSpecs(ProcedureDataSource& source);
  ~PRPValidSpecs() = default;
  PRPValidSpecs(const PRPValidSpecs&) = delete;
  PRPValidSpecs& operator=(const PRPValidSpecs&) = delete;

  ProcedureDataSource& GetDataSource() const { return *fpDataSource; }

  ModelType GetModelType() const { return fModelType; }
  void SetModelType(ModelType modelType) { fModelType = modelType; }

  // Null unless somebody sets it; nothing in this command does.
  const ACAVarValidSpecs* GetVarValidSpecs() const { return fpVarValidSpecs.get(); }
  void SetVarValidSpecs(std::unique_ptr<ACAVarValidSpecs> specs) {
    fpVarValidSpecs = std::move(specs);
  }

  // The test variables; of paired samples those before WITH, or the first ones of the pairs.
  const VarInds& GetTestVarInds() const { return fvTestVarInds; }
  VarInds& GetTestVarInds() { return fvTestVarInds; }
  void SetTestVarInds(VarInds inds) { fvTestVarInds = std::move(inds); }

  // One element for each of them, in the same order.
  const BinInfoElems& GetBinInfoElems() const { return fvBinInfoElems; }
  BinInfoElems& GetBinInfoElems() { return fvBinInfoElems; }
  void SetBinInfoElems(const BinInfoElems& elems) { fvBinInfoElems = elems; }

  // Paired samples only: the variables after WITH, or the second ones of the pairs.
  const VarInds& GetTestVarInds2() const { return fvTestVarInds2; }
  VarInds& GetTestVarInds2() { return fvTestVarInds2; }
  void SetTestVarInds2(VarInds inds) { fvTestVarInds2 = std::move(inds); }

  const BinInfoElems& GetBinInfoElems2() const { return fvBinInfoElems2; }
  BinInfoElems& GetBinInfoElems2() { return fvBinInfoElems2; }
  void SetBinInfoElems2(const BinInfoElems& elems) { fvBinInfoElems2 = elems; }

  // The proportion that one sample is tested against.
  double GetTestValue() const { return fTestValue; }
  void SetTestValue(double testValue) { fTestValue = testValue; }

  // Whether the two lists are paired position by position.
  bool GetOrderPair() const { return fbOrderPair; }
  void SetOrderPair(bool orderPair) { fbOrderPair = orderPair; }

  // The grouping variable, negative when there is none.
  std::int32_t GetGroupVarInd() const { return fGroupVarInd; }
  void SetGroupVarInd(std::int32_t ind) { fGroupVarInd = ind; }

  // How the grouping variable forms the two groups. With option LEVEL it holds exactly two
  // values: those of the first and of the second group.
  const BinInfoElem& GetGroupInfoElem() const { return fGroupInfoElem; }
  BinInfoElem& GetGroupInfoElem() { return fGroupInfoElem; }

  // True: each variable uses every case that is valid for it. False: a case missing on any
  // variable of the command is left out everywhere.
  bool GetScopeAnalysis() const { return fbScopeAnalysis; }
  void SetScopeAnalysis(bool scopeAnalysis) { fbScopeAnalysis = scopeAnalysis; }

  bool GetUserMissingIncluded() const { return fbUserMissingIncluded; }
  void SetUserMissingIncluded(bool included) { fbUserMissingIncluded = included; }

  // The success definition as written, without values.
  const BinInfoElem& GetSuccessInfoElem() const { return fSuccessInfoElem; }
  BinInfoElem& GetSuccessInfoElem() { return fSuccessInfoElem; }

  bool GetIgnoreCase() const { return fbIgnoreCase; }
  void SetIgnoreCase(bool ignoreCase) { fbIgnoreCase = ignoreCase; }

  bool GetPrintUpperCase() const { return fbPrintUpperCase; }
  void SetPrintUpperCase(bool printUpperCase) { fbPrintUpperCase = printUpperCase; }

  bool GetPrintCategoryOrder() const { return fbPrintCategoryOrder; }
  void SetPrintCategoryOrder(bool order) { fbPrintCategoryOrder = order; }

  // The confidence level in percent, always 0 <= level < 100. Setting anything else, NaN
  // included, leaves it as it is; debug builds assert.
  double GetCILevelPct() const { return fCILevelPct; }
  void SetCILevelPct(double ciLevelPct);

  // One flag for each method of the design, in the order of its table of methods.
  const Flags& GetTestTypes() const { return fvbTestTypes; }
  Flags& GetTestTypes() { return fvbTestTypes; }
  const Flags& GetCITypes() const { return fvbCITypes; }
  Flags& GetCITypes() { return fvbCITypes; }

  const PRPExtra* GetExtra2() const { return fpExtra2.get(); }

  // Adds the three rows about missing values, cases used and weights to the notes of the run.
  void WriteNotes() const;

  // Writes the record, and one element, as lines of diagnostic text.
  void Display() const;
  static void DisplayElem(const BinInfoElem& elem);

 private:
  ProcedureDataSource* fpDataSource;
  ModelType fModelType = ONE_SAMPLE;
  std::unique_ptr<ACAVarValidSpecs> fpVarValidSpecs;
  VarInds fvTestVarInds;
  BinInfoElems fvBinInfoElems;
  VarInds fvTestVarInds2;
  BinInfoElems fvBinInfoElems2;
  double fTestValue = 0.5;
  bool fbOrderPair = false;
  std::int32_t fGroupVarInd = -1;
  BinInfoElem fGroupInfoElem;
  bool fbScopeAnalysis = true;
  bool fbUserMissingIncluded = false;
  BinInfoElem fSuccessInfoElem;
  // No subcommand sets these three.
  bool fbIgnoreCase = false;
  bool fbPrintUpperCase = true;
  bool fbPrintCategoryOrder = true;
  double fCILevelPct = 95.0;
  Flags fvbTestTypes;
  Flags fvbCITypes;
  // Further object slots, unused by this command; the first is not owned.
  PRPExtra* fpExtra1 = nullptr;
  std::unique_ptr<PRPExtra> fpExtra2;
  std::unique_ptr<PRPExtra> fpExtra3;
};
