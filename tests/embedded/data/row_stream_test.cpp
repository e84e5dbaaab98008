// Rows in chunks of any size are the same cases in the same groups.
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <utility>

#include "embedded/data/RowStream.h"

namespace embedded::data {
namespace {

struct Row {
  double split, weight, value;
};

// Hands out rows in chunks of so many.
class Chunks : public RowScan {
 public:
  Chunks(std::vector<Row> rows, std::size_t size) : rows_(std::move(rows)), size_(size) {}

  std::size_t next(std::vector<OBS>& rows) override {
    rows.clear();
    const std::size_t count = std::min(size_, rows_.size() - at_);
    for (const std::size_t end = at_ + count; at_ < end; ++at_)
      for (const double number : {rows_[at_].split, rows_[at_].weight, rows_[at_].value})
        rows.push_back({.number = number});
    return count;
  }
  const NonFiniteCounts& nonFinite() const override { return none_; }

 private:
  std::vector<Row> rows_;
  std::size_t size_;
  std::size_t at_ = 0;
  NonFiniteCounts none_;
};

// The cases as "VALUE*WEIGHT", and "|" where a group ends.
std::string casesOf(const std::vector<Row>& rows, std::size_t chunk, bool split, bool weighted) {
  RowStream stream(std::make_unique<Chunks>(rows, chunk), 3, split ? 1 : 0, weighted ? 1 : -1);
  std::ostringstream seen;
  for (CaseBlock block; stream.next(block);) {
    for (std::size_t i = 0; i < block.count; ++i)
      seen << block.rows[3 * i + 2].number << '*'
           << (block.weights == nullptr ? 1.0 : block.weights[i]) << ' ';
    if (block.endsGroup) seen << "| ";
  }
  return seen.str();
}

const std::vector<Row> threeGroups{{1, 2, 10}, {1, 3, 11}, {2, 4, 12},
                                   {3, 5, 13}, {3, 6, 14}, {3, 7, 15}};

TEST(RowStream, DeliversTheSameGroupsInChunksOfAnySize) {
  for (const std::size_t chunk : std::initializer_list<std::size_t>{1, 2, 3, 4, 5, 6, 100}) {
    EXPECT_EQ(casesOf(threeGroups, chunk, true, true), "10*2 11*3 | 12*4 | 13*5 14*6 15*7 | ")
        << chunk;
    EXPECT_EQ(casesOf(threeGroups, chunk, false, false), "10*1 11*1 12*1 13*1 14*1 15*1 | ")
        << chunk;
  }
}

TEST(RowStream, HasNoGroupWithoutRows) {
  EXPECT_EQ(casesOf({}, 1, true, true), "");
}

}  // namespace
}  // namespace embedded::data
