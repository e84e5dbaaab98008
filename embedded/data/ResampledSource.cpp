#include "embedded/data/ResampledSource.h"

#include <algorithm>
#include <cmath>

#include "embedded/data/Multinomial.h"
#include "embedded/errors/Error.h"
#include "embedded/session/Session.h"

namespace embedded::data {

namespace {

constexpr std::uint64_t mostCases = std::uint64_t{1} << 52;

// What a weight counts: 0 for an invalid one.
std::uint64_t roundedWeight(double weight) {
  return std::isfinite(weight) && weight >= 0.5
             ? static_cast<std::uint64_t>(std::floor(weight + 0.5))
             : 0;
}

void append(GroupPatterns& group, const CaseBlock& block, std::size_t words) {
  group.rows.insert(group.rows.end(), block.rows, block.rows + block.count * words);
  for (std::size_t i = 0; i < block.count; ++i) {
    group.weights.push_back(block.weights == nullptr ? 1.0 : block.weights[i]);
    group.counts.push_back(block.counts == nullptr ? 1 : block.counts[i]);
  }
}

void prepareDrawing(GroupPatterns& group) {
  std::uint64_t total = 0;
  for (std::uint32_t row = 0; row < group.weights.size(); ++row) {
    if (const std::uint64_t count = roundedWeight(group.weights[row]); count > 0) {
      if (count > mostCases - total) {
        throw Error(ErrorKind::Data, "Bootstrap weights too large ...");
      }
      total += count;
      group.drawable.push_back(count);
      group.drawableRows.push_back(row);
    }
  }
  group.order = cellsBySize(group.drawable);
}

// Presents sample after sample, and in each of them group after group.
class SampleStream final : public CaseStream {
 public:
  SampleStream(const std::vector<GroupPatterns>& groups, std::size_t innerWords,
               const Resampling& resampling)
      : groups_(groups), innerWords_(innerWords), resampling_(resampling) {
    last_ = resampling.samples;
    if (resampling.jackknife) {
      std::size_t most = 0;
      for (const GroupPatterns& group : groups) {
        most = std::max(most, group.drawable.size());
      }
      last_ += most;
    }
  }

  bool next(CaseBlock& block) override {
    while (sample_ <= last_) {
      Session::checkCancelled();
      const std::size_t group = group_++;
      if (group == groups_.size()) {
        group_ = 0;
        ++sample_;
        continue;
      }
      present(groups_[group], group);
      if (!weights_.empty()) {
        block = {.rows = rows_.data(),
                 .weights = weights_.data(),
                 .counts = counts_.data(),
                 .count = weights_.size(),
                 .resampled = sample_ > 0,
                 .endsGroup = true};
        return true;
      }
    }
    return false;
  }

 private:
  void present(const GroupPatterns& group, std::size_t ordinal) {
    rows_.clear();
    weights_.clear();
    counts_.clear();
    if (sample_ == 0) {
      for (std::size_t row = 0; row < group.weights.size(); ++row) {
        add(group, row, group.weights[row], group.counts[row]);
      }
      return;
    }
    const std::vector<std::uint64_t> drawn =
        sample_ <= resampling_.samples ? drawnCounts(group, ordinal) : lackingOne(group);
    for (std::size_t i = 0; i < drawn.size(); ++i) {
      if (drawn[i] > 0) {
        add(group, group.drawableRows[i], static_cast<double>(drawn[i]), drawn[i]);
      }
    }
  }

  std::vector<std::uint64_t> drawnCounts(const GroupPatterns& group, std::size_t ordinal) const {
    Philox random(resampling_.seed, static_cast<std::uint32_t>(sample_), ordinal);
    return drawMultinomial(group.drawable, group.order, random);
  }

  std::vector<std::uint64_t> lackingOne(const GroupPatterns& group) const {
    const std::size_t pattern = sample_ - resampling_.samples - 1;
    if (pattern >= group.drawable.size()) {
      return {};
    }
    std::vector<std::uint64_t> counts = group.drawable;
    --counts[pattern];
    return counts;
  }

  void add(const GroupPatterns& group, std::size_t row, double weight, std::uint64_t count) {
    const OBS* words = group.rows.data() + row * innerWords_;
    rows_.insert(rows_.end(), words, words + innerWords_);
    rows_.push_back({.number = static_cast<double>(sample_)});
    weights_.push_back(weight);
    counts_.push_back(count);
  }

  const std::vector<GroupPatterns>& groups_;
  std::size_t innerWords_;
  Resampling resampling_;
  std::uint64_t sample_ = 0;
  std::uint64_t last_ = 0;
  std::size_t group_ = 0;
  std::vector<OBS> rows_;
  std::vector<double> weights_;
  std::vector<std::uint64_t> counts_;
};

}  // namespace

int addSampleNumber(Dictionary& dictionary) {
  const int index = static_cast<int>(dictionary.variables.size());
  Variable variable;
  variable.presentedAs = bootstrapVariable;
  output::VariableInfo info;
  info.name = bootstrapVariable;
  // What readers see where a procedure names all split values of the data.
  info.label = "bootstrap sample";
  info.numberLabels[0.0] = "original data";
  variable.info = std::make_shared<const output::VariableInfo>(std::move(info));
  dictionary.variables.push_back(std::move(variable));
  dictionary.splits.insert(dictionary.splits.begin(), index);
  return index;
}

ResampledSource::ResampledSource(std::unique_ptr<CaseSource> inner, int sampleVariable,
                                 const Resampling& resampling)
    : inner_(std::move(inner)), sampleVariable_(sampleVariable), resampling_(resampling) {}

std::vector<int> ResampledSource::withoutSampleNumber(std::span<const int> columns) const {
  std::vector<int> real(columns.begin(), columns.end());
  std::erase(real, sampleVariable_);
  return real;
}

void ResampledSource::measure(Dictionary& dictionary, std::span<const int> columns) {
  inner_->measure(dictionary, withoutSampleNumber(columns));
}

void ResampledSource::use(std::span<const int> columns) {
  inner_->use(withoutSampleNumber(columns));
  layout_ = inner_->layout();
  layout_.columns.push_back(sampleVariable_);
  layout_.offsetOfVariable.resize(static_cast<std::size_t>(sampleVariable_) + 1, -1);
  layout_.offsetOfVariable[static_cast<std::size_t>(sampleVariable_)] =
      static_cast<int>(layout_.words++);
}

void ResampledSource::readPatterns() {
  const std::size_t words = inner_->layout().words;
  const auto stream = inner_->open();
  CaseBlock block;
  bool begins = true;
  while (stream->next(block)) {
    if (begins) {
      groups_.emplace_back();
    }
    append(groups_.back(), block, words);
    begins = block.endsGroup;
  }
  for (GroupPatterns& group : groups_) {
    prepareDrawing(group);
  }
  read_ = true;
}

std::unique_ptr<CaseStream> ResampledSource::open() {
  if (!read_) {
    readPatterns();
  }
  return std::make_unique<SampleStream>(groups_, inner_->layout().words, resampling_);
}

}  // namespace embedded::data
