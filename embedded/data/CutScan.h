// The rows of another scan, in smaller pieces.
#pragma once

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "Relation.h"

namespace embedded::data {

class CutScan final : public RowScan {
 public:
  // Rows of `words` words, at most `most` of them at a time.
  CutScan(std::unique_ptr<RowScan> scan, std::size_t words, std::size_t most)
      : scan_(std::move(scan)), piece_(words * most), words_(words) {}

  std::size_t next(std::vector<OBS>& rows) override {
    if (at_ == chunk_.size()) {
      if (scan_->next(chunk_) == 0) chunk_.clear();
      at_ = 0;
    }
    const std::size_t end = std::min(at_ + piece_, chunk_.size());
    rows.assign(chunk_.data() + at_, chunk_.data() + end);
    at_ = end;
    return rows.size() / words_;
  }
  const NonFiniteCounts& nonFinite() const override { return scan_->nonFinite(); }

 private:
  std::unique_ptr<RowScan> scan_;
  std::size_t piece_;  // words of a whole one
  std::size_t words_;
  std::vector<OBS> chunk_;
  std::size_t at_ = 0;  // the first word of chunk_ that was not handed out
};

}  // namespace embedded::data
