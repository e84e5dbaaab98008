// Cuts the chunks of a scan into blocks of one split group.
#include "RowStream.h"

#include <cstring>

namespace embedded::data {

bool RowStream::fetch() {
  count_ = scan_->next(rows_);
  at_ = 0;
  if (weightWord_ < 0) return count_ > 0;
  weights_.resize(count_);
  for (std::size_t i = 0; i < count_; ++i) weights_[i] = row(i)[weightWord_].number;
  return count_ > 0;
}

bool RowStream::sameGroup(const OBS* key, std::size_t index) const {
  return std::memcmp(key, row(index), splitWords_ * sizeof(OBS)) == 0;
}

bool RowStream::next(CaseBlock& block) {
  block = {};
  if (at_ == count_ && !fetch()) {
    block.endsGroup = open_;
    open_ = false;
    return block.endsGroup;
  }
  if (open_ && !sameGroup(group_.data(), at_)) {  // the group ended with the last chunk
    open_ = false;
    block.endsGroup = true;
    return true;
  }
  std::size_t end = splitWords_ == 0 ? count_ : at_ + 1;
  while (end < count_ && sameGroup(row(at_), end)) ++end;
  block.rows = row(at_);
  block.weights = weightWord_ < 0 ? nullptr : weights_.data() + at_;
  block.count = end - at_;
  block.endsGroup = end < count_;
  open_ = !block.endsGroup;
  group_.assign(row(end - 1), row(end - 1) + splitWords_);
  at_ = end;
  return true;
}

}  // namespace embedded::data
