// The analysis object of one split group: from its cases to its tables.
//
// Made for each split group before its first case is read. The first pass collects extremes
// and counts cases, the second counts successes and writes the design's tables. Its source files
// are named after their subjects: values, cases, pooling, labels, tables, the three designs,
// display and probe. Operations that return a bool return false when the caller is to stop.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "PRPAggregation.h"
#include "PRPAlgorithmTables.h"
#include "PRPAlgorithmValues.h"
#include "PRPValidSpecs.h"
#include "PropZIndSamp.h"
#include "PropZOneSamp.h"
#include "PropZPairSamp.h"
#include "VarCatInfo.h"
#include "host/data/CaseIterator.h"
#include "host/data/OBS.h"
#include "host/data/ProcedureDataSource.h"
#include "host/display/ACACommonDisplay.h"
#include "host/errors/ACAInpAdaptMsg.h"
#include "host/errors/ParserMessage.h"
#include "host/output/BpProcedure.h"
#include "statistics/Results.h"

class PRPAlgorithm {
 public:
  // One code for each variable of a list: 1 success, 0 failure, -1 not usable.
  using Codes = std::vector<std::int32_t>;

  // All three must outlive the object.
  PRPAlgorithm(ProcedureDataSource& source, BpProcedure& output, const PRPValidSpecs& specs);
  ~PRPAlgorithm() = default;
  PRPAlgorithm(const PRPAlgorithm&) = delete;
  PRPAlgorithm& operator=(const PRPAlgorithm&) = delete;

  // False once it is known that the group has no usable case.
  bool GoodData() const { return fbGoodData; }

  // Reads the group for the first time. True when it had at least one case and its pooling index
  // was valid. `aggregation` must outlive the object.
  bool InitialPass(ProcDSIterator& iterator, PRPAggregation& aggregation);
  // Reads all cases of the group; the result is that of InitialPass.
  bool PassSplitGroup(ProcDSIterator& iterator);
  // Reads the group for the second time and writes its tables. True when there was something
  // to compute.
  bool ComputeAndDisplay(ProcDSIterator& iterator);

  // Writes the object and its records as lines of diagnostic text.
  void Display() const;
  // Prints fourteen values of the host's non-centrality search on standard output; does nothing
  // in the shipped module.
  void ProbeFindNCParamT() const;

  // Footnotes the current cell of the category when `value` is missing: `variable`, if there is
  // one, is constant. For tables that name the variable in their notes; none does at present.
  void AddStatNotComputedNote(BpCategory& category, double value,
                              const KORA_Variable* variable) const;

 private:
  friend class PRPAggregation;

  using VarInds = PRPValidSpecs::VarInds;
  using BinInfoElems = PRPValidSpecs::BinInfoElems;
  using Infos = std::vector<std::unique_ptr<VarCatInfo>>;
  using CaseVars = std::vector<PRPCaseVar>;
  using List = PRPAggregation::List;

  // A test variable with all that its label is made of.
  struct TestVar {
    const KORA_Variable& variable;
    const BinInfoElem& elem;
    const VarCatInfo& info;
    List list;
    std::size_t position;
  };

  // --- Set-up -----------------------------------------------------------------------------------

  void SetAggregationFlags();
  void ClassifySplitVars();

  // --- Cases ------------------------------------------------------------------------------------

  Infos MakeInfos(const VarInds& inds) const;
  std::unique_ptr<VarCatInfo> MakeInfo(std::int32_t ind) const;
  void PrepareTallies();
  void MakeRecords();
  void MakePairRecords();
  // Resolves everything that the cases of one pass are read with.
  void BeginPass();
  void EndPass();
  // Reads on to the next valid case: false at the end of the group. Otherwise the codes of both
  // lists, the group (-1 without a grouping variable) and the rounded weight of the case.
  bool ReadCase(ProcDSIterator& iterator, Codes& codes, Codes& codes2, std::int32_t& group,
                double& weight);
  // Counts the case that was just read; whether it is valid.
  bool CountCase(const ProcDSIterator& iterator, Codes& codes, Codes& codes2, std::int32_t& group,
                 double& weight);
  bool IsValid(const ProcDSIterator& iterator, Codes& codes, Codes& codes2, std::int32_t& group);
  bool IsComplete(const ProcDSIterator& iterator);
  bool IsPresent(PRPCaseVar& var, const ProcDSIterator& iterator) const;
  void Collect(const ProcDSIterator& iterator, CaseVars& vars, Codes& codes);
  bool Classify(const ProcDSIterator& iterator, CaseVars& vars, Codes& codes);
  // Closes the first pass. True when the group had valid cases.
  bool EndInitialPass();
  // Reads the group for the second time and hands every valid case to `count`: the codes of both
  // lists, the group and the rounded weight.
  template <class Count>
  void TallyCases(ProcDSIterator& iterator, Count count);

  // --- Pooling ----------------------------------------------------------------------------------

  void SetUpAggregation() const;
  // Read on the group's first valid case. False when the pooling index is invalid.
  bool ReadPooling(const ProcDSIterator& iterator);
  void ReadSplitKey(const ProcDSIterator& iterator);
  void RecordSuccessValues(List list);
  void RecordGroupValue();
  void CopyExtremes(const PRPAlgorithm& original);

  // --- Labels and warnings ----------------------------------------------------------------------

  TestVar GetTestVar(List list, std::int32_t varInd) const;
  const KORA_Variable& GetVariable(std::int32_t ind) const;
  // The label of a group of an independent-samples analysis; null when the rule has none.
  std::unique_ptr<BpCellText> MakeSelectCellText(int binCateg) const;
  void AddMidpointSelectCategories(BpDimension& groups) const;
  void AddAggregationSuccCategories(const TestVar& var, BpDimension& variables) const;
  // Adds the recorded values of the variable to the dimension, then its own label to `parent`.
  // `assertion` words that there is such a label.
  void AddVariable(const TestVar& var, BpDimension& variables, BpGroup& parent,
                   const char* assertion) const;
  void AddVariable(const TestVar& var, BpDimension& variables) const;
  // "Pair 1", and the label of a pair with its variables.
  std::unique_ptr<BpCellText> MakePairCellText(const PropZPairSamp& record) const;
  // Warns that a group has too few valid cases; with its split values when there are any.
  void WarnGroup(std::string_view plain, std::string_view split) const;
  // The same for one test variable of the first list, ^1 of the texts.
  void WarnVariable(std::int32_t varInd, std::string_view plain, std::string_view split) const;
  // The same for a variable or a pair, named by the arguments.
  void WarnPart(std::string_view plain, std::string_view split,
                std::initializer_list<const BpCellText*> arguments) const;

  // --- The three designs ------------------------------------------------------------------------

  // Sets the critical values and the counts of cases back: what every design begins with.
  void StartComputation();
  // Estimates every record from its counts; whether any of them has usable data.
  template <class Record, class... Arguments>
  static bool EstimateAll(std::vector<Record>& records, Arguments... arguments);
  // Warns that there is nothing to compute in the group. Always false: what the computation then
  // returns.
  bool StopWithoutData(std::string_view plain, std::string_view split);

  bool ComputeOneSample(ProcDSIterator& iterator);
  void AddOneSampCITable(const PropZOneSamp& record) const;
  void AddOneSampTestsTable(const PropZOneSamp& record) const;

  bool ComputePairedSamples(ProcDSIterator& iterator);
  void TallyPairedSamples(ProcDSIterator& iterator);
  void WarnPair(const PropZPairSamp& record) const;
  TestVar GetSecondVar(const PropZPairSamp& record) const;
  void AddPairStatsTable(const PropZPairSamp& record) const;
  void AddPairCITable(const PropZPairSamp& record) const;
  void AddPairTestsTable(const PropZPairSamp& record) const;

  bool ComputeIndependentSamples(ProcDSIterator& iterator);
  // Whether one of the groups had a case.
  bool TallyIndependentSamples(ProcDSIterator& iterator);
  void AddIndGroupStatsTable(const PropZIndSamp& record) const;
  void AddIndCITable(const PropZIndSamp& record) const;
  void AddIndTestsTable(const PropZIndSamp& record) const;

  // --- Display ----------------------------------------------------------------------------------

  void DisplayCounts() const;
  void DisplayPooling() const;

  // --- Members ----------------------------------------------------------------------------------

  ProcedureDataSource& fDataSource;
  std::int32_t fModelType;
  BpProcedure* fpProcedure;
  const PRPValidSpecs* fpSpecs;
  const ACAVarValidSpecs* fpVarValidSpecs;
  VarInds fvTestVarInds;
  BinInfoElems fvBinInfoElems;
  Infos fvpVarCatInfo;
  VarInds fvTestVarInds2;
  BinInfoElems fvBinInfoElems2;
  Infos fvpVarCatInfo2;
  double fTestValue;
  bool fbOrderPair;
  std::int32_t fGroupVarInd;
  BinInfoElem fGroupInfoElem;
  std::unique_ptr<VarCatInfo> fpVarGroupInfo;
  double fCILevelPct;
  std::vector<bool> fvbTestTypes;
  std::vector<bool> fvbCITypes;
  bool fbIgnoreCase;
  bool fbScopeAnalysis;
  bool fbUserMissingIncluded;
  bool fbPrintUpperCase;
  bool fbPrintCategoryOrder;
  bool fbInitialPass = true;
  std::int32_t fWeightVarInd;
  bool fbSplitFile;
  // Whether split groups are laid as rows of common tables.
  bool fbSplitsAsRows;
  bool fbGoodData = true;
  bool fbCompleteData = true;
  // Counts of cases; wider than a stream can be long.
  std::int64_t fNAllCases = 0;
  std::int64_t fNValidCases = 0;
  std::int64_t fNInvalidCases = 0;
  double fWeightedNAllCases = 0.0;
  double fWeightedNValidCases = 0.0;
  double fWeightedNInvalidCases = 0.0;
  // The normal quantile is 0 until the second pass.
  statistics::CriticalValues fCritical;
  bool fbNeedAggregation = false;
  bool fbNeedSuccessAggregation = false;
  bool fbNeedSelectAggregation = false;
  // Null until the first pass, and always unless aggregation is needed.
  PRPAggregation* fpAggregation = nullptr;
  bool fbBootstrap = false;
  bool fbMultImpute = false;
  // The split variable that numbers samples or imputations; negative when there is none.
  std::int32_t fPoolVarInd = -1;
  // 0 is the original.
  std::int32_t fPoolSampleInd = 0;
  // The other split variables; only filled when there is a pooling variable.
  VarInds fvUserSplitInds;
  OwnedOBS fpSplitKey;
  std::vector<PropZOneSamp> fvPropZOneSamp;
  std::vector<PropZPairSamp> fvPropZPairSamp;
  std::vector<PropZIndSamp> fvPropZIndSamp;
  ACAInpAdaptMsg fInpAdaptMsg;
  ParserMessage fParserMessage;
  // Only during a pass.
  CaseVars fvCaseVars;
  CaseVars fvCaseVars2;
  std::optional<PRPCaseVar> fGroupCaseVar;
};

template <class Count>
void PRPAlgorithm::TallyCases(ProcDSIterator& iterator, Count count) {
  Codes codes;
  Codes codes2;
  std::int32_t group = -1;
  double weight = 1.0;
  BeginPass();
  while (ReadCase(iterator, codes, codes2, group, weight)) count(codes, codes2, group, weight);
  EndPass();
}

template <class Record, class... Arguments>
bool PRPAlgorithm::EstimateAll(std::vector<Record>& records, Arguments... arguments) {
  bool anyGood = false;
  for (Record& record : records) {
    record.Estimate(arguments...);
    anyGood |= record._bGoodData;
  }
  return anyGood;
}

// The label of a test variable by its success definition; null when the rule has none.
std::unique_ptr<BpCellText> MakeSuccCellText(const KORA_Variable& variable, const BinInfoElem& elem,
                                             const VarCatInfo& info);
// The label of one recorded success value; null when the rule takes no value from the data.
std::unique_ptr<BpCellText> MakeValueSuccCellText(const KORA_Variable& variable,
                                                  std::int32_t binOption, const VarValue& value);

// Prints one line of the probe.
void PrintFindNCParamT(double a, double b, double q, double d);
