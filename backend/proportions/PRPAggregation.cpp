// The store of success values that all analysis objects of a run share.
//
// How samples find their originals stands with the other pooling in PRPAlgorithmPooling.cpp.
#include "PRPAggregation.h"

#include <utility>

void PRPAggregation::SetUp(const ProcedureDataSource& source, std::size_t nVars, std::size_t nVars2,
                           bool hasGroupVar, std::span<const std::int32_t> userSplits) {
  fLists[List1] = {std::vector<ValueSet>(nVars), std::vector<Values>(nVars)};
  fLists[List2] = {std::vector<ValueSet>(nVars2), std::vector<Values>(nVars2)};
  if (hasGroupVar) fGroupSet.emplace();
  if (!userSplits.empty()) {
    fKeySpec = ObsVecMap::MakeKeySpec(source, userSplits);
    fpSplitKeyMap = std::make_unique<ObsVecMap>(fKeySpec, 1);
  }
  fbSetUp = true;
}

void PRPAggregation::RecordSuccess(List list, std::size_t var, VarValue value) {
  fLists[list].sets[var].insert(std::move(value));
}

void PRPAggregation::RecordGroup(VarValue value) {
  if (fGroupSet) fGroupSet->insert(std::move(value));
}

void PRPAggregation::SortSuccessValues() {
  // The sets are kept in the order of the values, so that listing them sorts them.
  for (SuccessList& list : fLists)
    for (std::size_t var = 0; var < list.sets.size(); ++var)
      list.values[var].assign(list.sets[var].begin(), list.sets[var].end());
  if (fGroupSet) fGroupValues.assign(fGroupSet->begin(), fGroupSet->end());
}
