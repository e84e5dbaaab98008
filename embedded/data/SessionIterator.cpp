// Cases from blocks, with an end mark after each split group.
#include "SessionIterator.h"

#include "embedded/session/Session.h"

namespace embedded::data {

SessionIterator::SessionIterator(Session& session, bool counts) : session_(session) {
  session_.currentCases = this;
  if (session_.fatal) {
    done_ = true;
    return;
  }
  try {
    const ObservationLayout& layout = session_.cases->layout();
    offsets_ = layout.offsetOfVariable.data();
    words_ = layout.words;
    stream_ = session_.cases->open();
    if (counts) counter_.emplace(session_, layout);
  } catch (...) {
    fail();
  }
}

SessionIterator::~SessionIterator() {
  if (session_.currentCases == this) session_.currentCases = nullptr;
}

bool SessionIterator::NextCase() {
  if (++at_ < block_.count) {
    row_ += words_;
    return true;
  }
  return advance();
}

// Behind the last case of a block: an end mark, the next block, or the end.
bool SessionIterator::advance() {
  if (done_) return false;
  session_.currentCases = this;
  atEndMark_ = false;
  if (session_.fatal) {
    fail();
    return false;
  }
  if (markDue_) return endMark();
  try {
    while (stream_->next(block_)) {
      markDue_ = block_.endsGroup;
      at_ = 0;
      row_ = block_.rows;
      if (block_.count > 0) {
        if (counter_ && !block_.resampled) counter_->add(block_);
        return true;
      }
      if (markDue_) return endMark();
    }
  } catch (...) {
    fail();
    return false;
  }
  return finish();
}

bool SessionIterator::endMark() {
  markDue_ = false;
  if (counter_ && !block_.resampled) counter_->endGroup();
  block_ = {};
  atEndMark_ = true;
  // Data without split variables are one group; nobody may ask for what comes behind it.
  if (session_.dictionary.splits.empty()) finish();
  return true;
}

bool SessionIterator::finish() {
  if (counter_) counter_->finish();
  done_ = true;
  block_ = {};
  return false;
}

void SessionIterator::fail() {
  if (!session_.fatal) session_.fatal = std::current_exception();
  done_ = true;
  block_ = {};
  atEndMark_ = false;
}

}  // namespace embedded::data
