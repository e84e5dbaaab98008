// What the analysis objects of one run share: the success values of all split groups, and where
// the original group of each bootstrap sample or imputation is found.
//
// Needed when split groups are laid as rows of common tables and the rule takes its value from the
// data: the tables of every group then carry the values of all of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <vector>

#include "VarValue.h"
#include "host/data/ObsVecMap.h"
#include "host/data/ProcedureDataSource.h"

class PRPAlgorithm;

class PRPAggregation {
 public:
  using Values = std::vector<VarValue>;
  // Which list of test variables.
  enum List { List1 = 0, List2 = 1 };

  bool IsSetUp() const { return fbSetUp; }
  // Makes the store ready for so many variables of each list, with or without a grouping
  // variable, and for keys made of these split variables (none: no keys).
  void SetUp(const ProcedureDataSource& source, std::size_t nVars, std::size_t nVars2,
             bool hasGroupVar, std::span<const std::int32_t> userSplits);

  // Records the value of an original group, unless an equal one is there.
  void RecordSuccess(List list, std::size_t var, VarValue value);
  void RecordGroup(VarValue value);
  // Lists what was recorded, ascending, for SuccessValues and GroupValues.
  void SortSuccessValues();
  const Values& SuccessValues(List list, std::size_t var) const { return fLists[list].values[var]; }
  const Values& GroupValues() const { return fGroupValues; }

  // Null without user split variables.
  const ObsVecMap* SplitKeyMap() const { return fpSplitKeyMap.get(); }
  // Bytes that each user split variable takes in a key.
  std::span<const std::int16_t> KeySpec() const { return fKeySpec; }

  // Matches the object of every sample or imputation with its original and hands it the
  // original's extremes. False, after a message, when a sample matches no original.
  bool PoolSplitGroups(std::vector<PRPAlgorithm*> algorithms);

 private:
  using ValueSet = std::set<VarValue>;
  struct SuccessList {
    std::vector<ValueSet> sets;
    std::vector<Values> values;
  };
  // Position of the original of each object; negative for none.
  using Positions = std::vector<std::int32_t>;

  void KeepOriginals(const std::vector<PRPAlgorithm*>& algorithms);
  bool FindOriginals(const std::vector<PRPAlgorithm*>& algorithms, Positions& originals);

  bool fbSetUp = false;
  SuccessList fLists[2];
  std::optional<ValueSet> fGroupSet;
  Values fGroupValues;
  std::unique_ptr<ObsVecMap> fpSplitKeyMap;
  std::vector<std::int16_t> fKeySpec;
};
