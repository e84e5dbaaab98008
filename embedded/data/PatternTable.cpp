// Collects patterns, sorts them within their groups, and joins those that are equal.
#include "PatternTable.h"

#include <algorithm>
#include <cstring>
#include <numeric>
#include <string>

#include "DataMessages.h"

namespace embedded::data {
namespace {

constexpr double heaviest = 0x1p52;

class Collector {
 public:
  explicit Collector(const PatternShape& shape) : shape_(shape) {
    for (const int width : shape.widths) words_ += ObsWords(width);
  }

  std::size_t size() const { return all_.weights.size(); }

  void add(const PatternBatch& batch) {
    all_.rows.insert(all_.rows.end(), batch.rows.begin(), batch.rows.end());
    all_.weights.insert(all_.weights.end(), batch.weights.begin(), batch.weights.end());
    all_.counts.insert(all_.counts.end(), batch.counts.begin(), batch.counts.end());
  }

  PatternTable finish(const std::string& source) {
    PatternTable table;
    for (std::size_t begin = 0; begin < size();) {
      std::size_t end = begin + 1;
      while (end < size() && sameSplit(begin, end)) ++end;
      addGroup(table, begin, end);
      begin = end;
    }
    for (const double weight : table.weights)
      if (!(weight <= heaviest)) fail(messages::heavyPattern, {source});
    return table;
  }

 private:
  const OBS* row(std::size_t index) const { return all_.rows.data() + index * words_; }

  bool sameSplit(std::size_t a, std::size_t b) const {
    return std::memcmp(row(a), row(b), shape_.splitWords * sizeof(OBS)) == 0;
  }

  // Less, equal or greater, by values.
  int compare(std::size_t a, std::size_t b) const {
    const OBS* x = row(a);
    const OBS* y = row(b);
    for (const int width : shape_.widths) {
      const std::size_t words = ObsWords(width);
      if (width == 0 && x->number != y->number) return x->number < y->number ? -1 : 1;
      if (width != 0)
        if (const int order = std::memcmp(x->bytes, y->bytes, words * sizeof(OBS)); order != 0)
          return order;
      x += words;
      y += words;
    }
    const bool xCounts = all_.weights[a] != 0;
    const bool yCounts = all_.weights[b] != 0;
    return xCounts == yCounts ? 0 : xCounts ? -1 : 1;
  }

  void addGroup(PatternTable& table, std::size_t begin, std::size_t end) {
    std::vector<std::size_t> order(end - begin);
    std::iota(order.begin(), order.end(), begin);
    std::ranges::sort(order, [&](std::size_t a, std::size_t b) { return compare(a, b) < 0; });
    for (std::size_t i = 0; i < order.size(); ++i) {
      if (i > 0 && compare(order[i - 1], order[i]) == 0) {
        table.weights.back() += all_.weights[order[i]];
        table.counts.back() += all_.counts[order[i]];
        if (shape_.weightWord) table.rows.back().number = table.weights.back();
        continue;
      }
      table.rows.insert(table.rows.end(), row(order[i]), row(order[i]) + words_);
      table.weights.push_back(all_.weights[order[i]]);
      table.counts.push_back(all_.counts[order[i]]);
      if (shape_.weightWord) table.rows.push_back({table.weights.back()});
    }
    table.groupEnds.push_back(table.size());
  }

  const PatternShape& shape_;
  std::size_t words_ = 0;
  PatternTable all_;
};

}  // namespace

std::optional<PatternTable> readPatterns(PatternScan& scan, const PatternShape& shape,
                                         std::size_t most, const std::string& source) {
  Collector collector(shape);
  PatternBatch batch;
  while (scan.next(batch)) {
    collector.add(batch);
    if (collector.size() > most) return std::nullopt;
  }
  return collector.finish(source);
}

bool PatternStream::next(CaseBlock& block) {
  if (group_ == table_.groupEnds.size()) return false;
  const std::size_t begin = group_ == 0 ? 0 : table_.groupEnds[group_ - 1];
  block.rows = table_.rows.data() + begin * words_;
  block.weights = table_.weights.data() + begin;
  block.counts = table_.counts.data() + begin;
  block.count = table_.groupEnds[group_] - begin;
  block.endsGroup = true;
  ++group_;
  return true;
}

}  // namespace embedded::data
