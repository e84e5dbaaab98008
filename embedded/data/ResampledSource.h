// Bootstrap samples as cases: the data, then samples drawn from their patterns.
//
// The sample number is a numeric split variable, outermost; number 0 is the data as they are.
// Each further sample redraws the cases of valid weight of every split group with replacement:
// one multinomial draw over the group's patterns, keyed by seed, sample and the group's ordinal,
// and by nothing else. Patterns drawn zero times are not presented.
//
// For a jackknife, further samples follow: sample number N + k lacks one case of the k-th
// pattern of each group; a group with fewer patterns is absent from it.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "embedded/data/CaseSource.h"
#include "embedded/data/Dictionary.h"

namespace embedded::data {

struct Resampling {
  std::uint32_t samples = 0;
  std::uint64_t seed = 0;
  bool jackknife = false;
};

// The name under which the sample number is presented.
inline constexpr const char* bootstrapVariable = "$bootstrap_split";

// Adds the sample number to the dictionary as the outermost split variable, which procedures see
// but no command can name; its index.
int addSampleNumber(Dictionary& dictionary);

// The patterns of one split group.
struct GroupPatterns {
  std::vector<OBS> rows;                    // a row of words each, without the sample number
  std::vector<double> weights;              // summed rounded weights; 0: cases of invalid weight
  std::vector<std::uint64_t> counts;        // cases
  std::vector<std::uint64_t> drawable;      // counts of the patterns of valid weight, in order
  std::vector<std::uint32_t> drawableRows;  // and their rows
  std::vector<std::uint32_t> order;         // of drawing: the largest first
};

class ResampledSource final : public CaseSource {
 public:
  // `inner` delivers patterns of the data; `sampleVariable` is the index that addSampleNumber
  // gave. Throws Error(Data) when the weights of a group add up to more than 2^52.
  ResampledSource(std::unique_ptr<CaseSource> inner, int sampleVariable,
                  const Resampling& resampling);

  void measure(Dictionary& dictionary, std::span<const int> columns) override;
  void use(std::span<const int> columns) override;
  const ObservationLayout& layout() const override { return layout_; }
  std::unique_ptr<CaseStream> open() override;
  bool deliversPatterns() const override { return true; }
  std::map<int, std::uint64_t> nonFinite() const override { return inner_->nonFinite(); }

  // The patterns drawn from, group by group; there after the first stream was opened.
  const std::vector<GroupPatterns>& groups() const { return groups_; }

 private:
  // The columns of the data themselves, without the sample number.
  std::vector<int> withoutSampleNumber(std::span<const int> columns) const;
  void readPatterns();

  std::unique_ptr<CaseSource> inner_;
  int sampleVariable_;
  Resampling resampling_;
  ObservationLayout layout_;
  std::vector<GroupPatterns> groups_;
  bool read_ = false;
};

}  // namespace embedded::data
