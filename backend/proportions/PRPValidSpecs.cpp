// The record's construction and its guarded setter.

#include "PRPValidSpecs.h"

#include "PRPAssert.h"

PRPValidSpecs::PRPValidSpecs(ProcedureDataSource& source) : fpDataSource(&source) {
  // The answer is not kept, on purpose: the question is part of what a host sees of a run.
  source.GetWeightVarIndex();
}

void PRPValidSpecs::SetCILevelPct(double ciLevelPct) {
  PRP_DEBUG_ASSERT(ciLevelPct >= 0.0, "ciLevelPct >= 0.0", "PRPValidSpecs");
  PRP_DEBUG_ASSERT(ciLevelPct < 100.0, "ciLevelPct < 100.0", "PRPValidSpecs");
  if (ciLevelPct >= 0.0 && ciLevelPct < 100.0) fCILevelPct = ciLevelPct;
}
