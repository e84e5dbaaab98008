// The notes of the run: how missing values, cases and weights are treated.

#include <string_view>

#include "PRPValidSpecs.h"
#include "host/output/BpCellText.h"
#include "host/output/BpProcedure.h"

namespace {

enum NoteKind { Fact = 0, Setting = 4 };

void Note(NoteKind kind, std::string_view label, std::string_view text) {
  AddNotes(kind, BpString(label, true), BpString(text, true));
}

}  // namespace

void PRPValidSpecs::WriteNotes() const {
  Note(Setting, "Definition of Missing",
       fbUserMissingIncluded ? "MISSING is INCLUDE ..." : "MISSING is EXCLUDE ...");
  Note(Setting, "Cases Used",
       fbScopeAnalysis ? "Cases used analysiswise ..." : "Cases used listwise ...");
  Note(Fact, "Weight Handling",
       fpDataSource->GetWeightVarIndex() >= 0
           ? "Weight values are rounded to the nearest whole numbers"
           : "not applicable");
}
