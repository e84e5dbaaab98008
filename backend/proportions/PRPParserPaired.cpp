// PAIREDSAMPLES: which variables are paired with which, and the methods.
//
// Three forms: a single list (every two of it), two lists around WITH (every one before it with
// every one after it), and two lists with the qualifier PAIRED (position by position).

#include <algorithm>
#include <set>
#include <utility>

#include "PRPAssert.h"
#include "PRPParser.h"
#include "PRPParserLeadingTokens.h"
#include "PRPParserNames.h"

namespace {

constexpr std::string_view NeedTwoVars = "Need two dist vars ...";

}  // namespace

bool PRPParser::ParsePaired(const SubComObj& subCom) {
  const bool validVars = ParsePairedVars(subCom);
  return ParseMethods(subCom, prp::PairedSamples, statistics::Design::Paired, validVars);
}

bool PRPParser::ParsePairedVars(const SubComObj& subCom) {
  const std::optional<SplitTokens> split =
      SplitAt(prp::LeadingTokens(subCom), TokenSequenceBase::OperatorWith, "Only one WITH ...");
  if (!split) return false;
  if (split->before.empty()) return Refuse("No vars before WITH ...");
  std::optional<VarInds> before = ValidVars(fPairedVars, split->before);
  if (!before) return false;
  PRP_ASSERT(!before->empty(), "!testVarList.empty()", "PRPParser");
  return split->found ? ParseWithVars(std::move(*before), split->after)
                      : StoreSingleList(std::move(*before));
}

bool PRPParser::ParseWithVars(VarInds before, const TokenList& tokens) {
  constexpr std::string_view noVars = "No vars after WITH ...";
  if (tokens.empty()) return Refuse(noVars);
  fWithVars.SetAllowQualifiers(true);
  std::optional<VarInds> after = ValidVars(fWithVars, tokens);
  if (!after) return false;
  // A host may let qualifiers stand alone.
  if (after->empty()) return Refuse(noVars);
  if (!ParsePairedQualifier()) return false;
  return fSpecs.GetOrderPair() ? StoreOrderedPairs(before, *after)
                               : StoreCrossedLists(std::move(before), std::move(*after));
}

bool PRPParser::ParsePairedQualifier() {
  const TokenList qualifiers = fWithVars.GetQualTokenList();
  if (qualifiers.size() > 1 ||
      (qualifiers.size() == 1 && qualifiers.front().getUpperString() != prp::Paired))
    return Refuse("Only PAIRED option ...");
  fSpecs.SetOrderPair(!qualifiers.empty());
  return true;
}

bool PRPParser::StoreSingleList(VarInds vars) {
  DropRepeatedVars(vars, "Subcom ^1, duplicate var names ...", "", prp::PairedSamples);
  if (vars.size() < 2) return Refuse(NeedTwoVars);
  fSpecs.SetTestVarInds(std::move(vars));
  return true;
}

bool PRPParser::StoreCrossedLists(VarInds before, VarInds after) {
  DropRepeatedVars(before, "Before ^1, subcom ^2, dupl var names ...", prp::With,
                   prp::PairedSamples);
  fSpecs.SetTestVarInds(before);
  DropRepeatedVars(after, "After ^1, subcom ^2, dupl var names ...", prp::With, prp::PairedSamples);
  // In longer lists a variable may meet itself: that is a pair like any other.
  if (before.size() == 1 && before == after) return Refuse(NeedTwoVars);
  fSpecs.SetTestVarInds2(std::move(after));
  return true;
}

bool PRPParser::StoreOrderedPairs(const VarInds& before, const VarInds& after) {
  if (before.size() != after.size()) fMessages.GenericWarning("Unmatched pair vars ...");
  VarInds firsts;
  VarInds seconds;
  std::set<std::pair<std::int32_t, std::int32_t>> seen;
  bool repeats = false;
  for (std::size_t i = 0; i < std::min(before.size(), after.size()); ++i) {
    if (!seen.emplace(before[i], after[i]).second) {
      repeats = true;
    } else if (before[i] != after[i]) {
      firsts.push_back(before[i]);
      seconds.push_back(after[i]);
    }
  }
  if (repeats) fMessages.GenericWarning("Duplicate var pairs ...");
  if (firsts.empty()) return Refuse(NeedTwoVars);
  fSpecs.SetTestVarInds(std::move(firsts));
  fSpecs.SetTestVarInds2(std::move(seconds));
  return true;
}
