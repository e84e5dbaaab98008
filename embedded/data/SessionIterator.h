// The case iterator that procedures read: a stream, case by case.
#pragma once

#include <memory>
#include <optional>

#include "CaseCounter.h"
#include "CaseSource.h"
#include "host/data/CaseIterator.h"

namespace embedded::data {

// Errors of the stream do not cross the procedure: they are kept in the session, and the iterator
// has nothing more.
class SessionIterator final : public ProcDSIterator {
 public:
  // `counts`: whether this is the pass on which cases are counted.
  SessionIterator(Session& session, bool counts);
  ~SessionIterator() override;

  bool NextCase() override;
  const OBS* GetObsPointer(int index) const override {
    return row_ + offsets_[static_cast<std::size_t>(index)];
  }
  double GetNumericValue(int index) const override {
    return row_[offsets_[static_cast<std::size_t>(index)]].number;
  }
  const char* GetStringValue(int index) const override {
    return row_[offsets_[static_cast<std::size_t>(index)]].bytes;
  }
  bool SplitGroupEnd() const override { return atEndMark_; }
  double Weight() const override { return block_.weights == nullptr ? 1.0 : block_.weights[at_]; }

 private:
  bool advance();
  bool endMark();
  bool finish();
  void fail();

  Session& session_;
  const OBS* row_ = nullptr;
  const int* offsets_ = nullptr;  // of each variable, in words
  std::size_t words_ = 0;
  std::size_t at_ = 0;
  CaseBlock block_;
  bool atEndMark_ = false;
  bool markDue_ = false;  // the block ends its group, and the mark was not given yet
  bool done_ = false;
  std::unique_ptr<CaseStream> stream_;
  std::optional<CaseCounter> counter_;
};

}  // namespace embedded::data
