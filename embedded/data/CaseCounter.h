// Counts, on the first pass, the cases and what they lack: for the run and for each split group.
#pragma once

#include <cstdint>
#include <vector>

#include "CaseSource.h"
#include "Dictionary.h"
#include "embedded/output/Document.h"

namespace embedded {
struct Session;
}

namespace embedded::data {

class CaseCounter {
 public:
  // Minds the session's columns in use; results go to its document.
  CaseCounter(Session& session, const ObservationLayout& layout);

  // Adds the cases of a block to the group being read.
  void add(const CaseBlock& block);
  // The group ended: its counts become the document's, under its split group if there is one.
  void endGroup();
  // The pass ended: warns of values that were no finite numbers.
  void finish();

 private:
  struct Counted {
    const Variable* variable;
    std::size_t offset;
    bool hasUserMissing;
    output::CaseCounts::Missing missing;
  };
  void addMissing(Counted& counted, const CaseBlock& block) const;

  Session& session_;
  std::size_t words_;
  std::uint64_t read_ = 0;
  std::uint64_t invalidWeight_ = 0;
  std::vector<Counted> counted_;
};

}  // namespace embedded::data
