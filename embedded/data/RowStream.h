// Cases as they stand in the data, in constant memory, cut at the ends of split groups.
#pragma once

#include <memory>
#include <vector>

#include "CaseSource.h"
#include "Relation.h"

namespace embedded::data {

class RowStream final : public CaseStream {
 public:
  // Rows of `words` words, the first `splitWords` of them the split values; `weightWord` is the
  // word with the weight, negative when every case weighs 1.
  RowStream(std::unique_ptr<RowScan> scan, std::size_t words, std::size_t splitWords,
            int weightWord)
      : scan_(std::move(scan)), words_(words), splitWords_(splitWords), weightWord_(weightWord) {}

  bool next(CaseBlock& block) override;
  const RowScan& scan() const { return *scan_; }

 private:
  bool fetch();
  const OBS* row(std::size_t index) const { return rows_.data() + index * words_; }
  bool sameGroup(const OBS* key, std::size_t index) const;

  std::unique_ptr<RowScan> scan_;
  std::size_t words_;
  std::size_t splitWords_;
  int weightWord_;
  std::vector<OBS> rows_;
  std::vector<double> weights_;
  std::size_t count_ = 0;
  std::size_t at_ = 0;      // the next row to deliver
  bool open_ = false;       // a group has begun and not ended
  std::vector<OBS> group_;  // split values of the last row delivered
};

}  // namespace embedded::data
