// Random draws: the generator's known answers, the multinomial's law, and samples as cases.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <numeric>

#include "embedded/data/MemorySource.h"
#include "embedded/data/Multinomial.h"
#include "embedded/data/Philox.h"
#include "embedded/data/ResampledSource.h"
#include "embedded/errors/Error.h"

namespace embedded::data {
namespace {

// Salmon et al. 2011, the known answers published with the generator.
TEST(Philox, GivesThePublishedKnownAnswers) {
  EXPECT_EQ(Philox::permute({0, 0, 0, 0}, {0, 0}),
            (Philox::Block{0x6627e8d5, 0xe169c58d, 0xbc57ac4c, 0x9b00dbd8}));
  EXPECT_EQ(Philox::permute({~0U, ~0U, ~0U, ~0U}, {~0U, ~0U}),
            (Philox::Block{0x408f276d, 0x41c83b0e, 0xa20bc7c6, 0x6d5451fd}));
  EXPECT_EQ(
      Philox::permute({0x243f6a88, 0x85a308d3, 0x13198a2e, 0x03707344}, {0xa4093822, 0x299f31d0}),
      (Philox::Block{0xd16cfe09, 0x94fdcceb, 0x5001e420, 0x24126ea1}));
}

TEST(Philox, StreamsDependOnSeedSampleAndStratum) {
  const auto first = [](std::uint64_t seed, std::uint32_t sample, std::uint64_t stratum) {
    return Philox(seed, sample, stratum)();
  };
  EXPECT_EQ(first(1, 2, 3), first(1, 2, 3));
  EXPECT_NE(first(1, 2, 3), first(2, 2, 3));
  EXPECT_NE(first(1, 2, 3), first(1, 3, 3));
  EXPECT_NE(first(1, 2, 3), first(1, 2, 4));
}

std::vector<std::uint64_t> draw(const std::vector<std::uint64_t>& counts, std::uint32_t sample) {
  Philox random(7, sample, 0);
  return drawMultinomial(counts, cellsBySize(counts), random);
}

TEST(Multinomial, DrawsAsManyCasesAsThereAre) {
  const std::vector<std::uint64_t> counts{3, 0, 500'000'000'000, 1, 400'000'000'000};
  for (std::uint32_t sample = 1; sample <= 200; ++sample) {
    const auto drawn = draw(counts, sample);
    EXPECT_EQ(std::accumulate(drawn.begin(), drawn.end(), std::uint64_t{0}), 900'000'000'004U);
    EXPECT_EQ(drawn[1], 0U);
  }
}

TEST(Multinomial, OneCellIsDrawnWhole) {
  EXPECT_EQ(draw({42}, 1), (std::vector<std::uint64_t>{42}));
}

TEST(Multinomial, NoCasesGiveNoDraws) {
  EXPECT_TRUE(draw({}, 1).empty());
}

// Means n p, variances n p (1 - p), covariances -n p q; each within five standard errors of its
// own estimate.
TEST(Multinomial, HasTheMomentsOfItsLaw) {
  const std::vector<std::uint64_t> counts{10, 30, 60};
  constexpr int draws = 40000;
  std::array<double, 3> sum{};
  std::array<double, 3> squares{};
  double product = 0.0;
  for (int i = 0; i < draws; ++i) {
    const auto drawn = draw(counts, static_cast<std::uint32_t>(i));
    std::array<double, 3> deviation{};
    for (std::size_t c = 0; c < 3; ++c) {
      deviation[c] = static_cast<double>(drawn[c]) - static_cast<double>(counts[c]);
      sum[c] += deviation[c];
      squares[c] += deviation[c] * deviation[c];
    }
    product += deviation[0] * deviation[1];
  }
  for (std::size_t c = 0; c < 3; ++c) {
    const double p = static_cast<double>(counts[c]) / 100.0;
    const double variance = 100.0 * p * (1.0 - p);
    EXPECT_NEAR(sum[c] / draws, 0.0, 5.0 * std::sqrt(variance / draws));
    EXPECT_NEAR(squares[c] / draws, variance, 5.0 * variance * std::sqrt(2.2 / draws));
  }
  EXPECT_NEAR(product / draws, -100.0 * 0.1 * 0.3,
              5.0 * std::sqrt(9.0 * 21.0 + 9.0) / std::sqrt(draws));
}

// A rare cell beside a huge one: its mean and variance are those of a Poisson distribution, which
// they are not where 1 - p loses its digits.
TEST(Multinomial, DrawsARareCellOfAHugeTotalExactly) {
  const std::vector<std::uint64_t> counts{(std::uint64_t{1} << 51U) - 3, 3};
  constexpr int draws = 40000;
  double sum = 0.0;
  double squares = 0.0;
  for (std::uint32_t i = 0; i < draws; ++i) {
    const auto rare = static_cast<double>(draw(counts, i)[1]);
    sum += rare;
    squares += (rare - 3.0) * (rare - 3.0);
  }
  EXPECT_NEAR(sum / draws, 3.0, 5.0 * std::sqrt(3.0 / draws));
  EXPECT_NEAR(squares / draws, 3.0, 5.0 * std::sqrt((3.0 + 2.0 * 9.0) / draws));
}

// Whatever the order in which cells stand, each is binomial by itself: how often each number of
// cases is drawn, within five standard errors.
TEST(Multinomial, EachCellIsBinomial) {
  const std::vector<std::uint64_t> counts{2, 5, 1};
  constexpr int draws = 30000;
  std::array<std::array<double, 9>, 3> often{};
  for (std::uint32_t i = 0; i < draws; ++i) {
    const auto drawn = draw(counts, i);
    for (std::size_t c = 0; c < 3; ++c) {
      often[c][drawn[c]] += 1.0;
    }
  }
  for (std::size_t c = 0; c < 3; ++c) {
    const double p = static_cast<double>(counts[c]) / 8.0;
    for (int k = 0; k <= 8; ++k) {
      const double probability =
          std::exp(std::lgamma(9.0) - std::lgamma(k + 1.0) - std::lgamma(9.0 - k)) *
          std::pow(p, k) * std::pow(1.0 - p, 8 - k);
      EXPECT_NEAR(often[c][static_cast<std::size_t>(k)] / draws, probability,
                  5.0 * std::sqrt(probability * (1.0 - probability) / draws) + 1e-12)
          << "cell " << c << ", " << k << " cases";
    }
  }
}

MemoryTable smallTable() {
  MemoryTable table;
  table.variables.resize(1);
  table.variables[0].name = "v";
  table.rows = {{1.0}, {0.0}};
  table.counts = {7, 3};
  return table;
}

// All cases of a source as (sample, value, weight).
std::vector<std::array<double, 3>> casesOf(const Resampling& resampling) {
  const MemoryTable table = smallTable();
  Dictionary dictionary = dictionaryOf(table);
  const int sample = addSampleNumber(dictionary);
  ResampledSource source(std::make_unique<MemorySource>(table), sample, resampling);
  source.use(std::vector<int>{0, sample});
  const auto& offsets = source.layout().offsetOfVariable;
  std::vector<std::array<double, 3>> cases;
  const auto stream = source.open();
  CaseBlock block;
  while (stream->next(block)) {
    EXPECT_TRUE(block.endsGroup);
    for (std::size_t i = 0; i < block.count; ++i) {
      const OBS* row = block.rows + i * source.layout().words;
      cases.push_back({row[offsets[static_cast<std::size_t>(sample)]].number,
                       row[offsets[0]].number, block.weights[i]});
    }
  }
  return cases;
}

TEST(ResampledSource, PresentsTheDataFirstAsSampleZero) {
  const auto cases = casesOf({.samples = 3, .seed = 1, .jackknife = false});
  EXPECT_EQ(cases[0], (std::array<double, 3>{0, 1, 7}));
  EXPECT_EQ(cases[1], (std::array<double, 3>{0, 0, 3}));
  EXPECT_EQ(cases.back()[0], 3.0);
}

TEST(ResampledSource, EachSampleHasAsManyCasesAsTheData) {
  std::map<double, double> total;
  for (const auto& [sample, value, weight] :
       casesOf({.samples = 50, .seed = 9, .jackknife = false})) {
    total[sample] += weight;
  }
  ASSERT_EQ(total.size(), 51U);
  for (const auto& [sample, cases] : total) {
    EXPECT_EQ(cases, 10.0) << "sample " << sample;
  }
}

TEST(ResampledSource, EqualSeedsGiveEqualSamples) {
  EXPECT_EQ(casesOf({.samples = 20, .seed = 5, .jackknife = false}),
            casesOf({.samples = 20, .seed = 5, .jackknife = false}));
  EXPECT_NE(casesOf({.samples = 20, .seed = 5, .jackknife = false}),
            casesOf({.samples = 20, .seed = 6, .jackknife = false}));
}

TEST(ResampledSource, TheJackknifeLacksOneCaseOfEachPatternInTurn) {
  const auto cases = casesOf({.samples = 1, .seed = 5, .jackknife = true});
  std::vector<std::array<double, 3>> jackknife;
  for (const auto& one : cases) {
    if (one[0] > 1) {
      jackknife.push_back(one);
    }
  }
  EXPECT_EQ(jackknife,
            (std::vector<std::array<double, 3>>{{2, 1, 6}, {2, 0, 3}, {3, 1, 7}, {3, 0, 2}}));
}

// --- Split groups -------------------------------------------------------------------------------

// One case of a fake source: its split value, its value, its weight.
struct FakeCase {
  double group, value, weight;
};

// Cases in split order, in blocks of at most so many.
class FakeSource final : public CaseSource {
 public:
  FakeSource(std::vector<FakeCase> cases, std::size_t block)
      : cases_(std::move(cases)), block_(block) {
    layout_ = {.columns = {0, 1}, .offsetOfVariable = {0, 1}, .words = 2};
  }
  void use(std::span<const int> /*columns*/) override {}
  const ObservationLayout& layout() const override { return layout_; }

  std::unique_ptr<CaseStream> open() override { return std::make_unique<Stream>(cases_, block_); }

 private:
  class Stream final : public CaseStream {
   public:
    Stream(const std::vector<FakeCase>& cases, std::size_t block) : cases_(cases), block_(block) {}
    bool next(CaseBlock& block) override {
      rows_.clear();
      weights_.clear();
      while (at_ < cases_.size() && weights_.size() < block_ &&
             (weights_.empty() || cases_[at_].group == cases_[at_ - 1].group)) {
        rows_.push_back({.number = cases_[at_].group});
        rows_.push_back({.number = cases_[at_].value});
        weights_.push_back(cases_[at_++].weight);
      }
      block = {.rows = rows_.data(), .weights = weights_.data(), .count = weights_.size()};
      block.endsGroup = at_ == cases_.size() || cases_[at_].group != cases_[at_ - 1].group;
      return block.count > 0;
    }

   private:
    const std::vector<FakeCase>& cases_;
    std::size_t block_;
    std::size_t at_ = 0;
    std::vector<OBS> rows_;
    std::vector<double> weights_;
  };

  std::vector<FakeCase> cases_;
  std::size_t block_;
  ObservationLayout layout_;
};

// What is presented, as (sample, group, value, weight).
using Presented = std::vector<std::array<double, 4>>;

Presented presented(const std::vector<FakeCase>& cases, const Resampling& resampling,
                    std::size_t block = 2) {
  ResampledSource source(std::make_unique<FakeSource>(cases, block), 2, resampling);
  source.use(std::vector<int>{0, 1, 2});
  Presented all;
  const auto stream = source.open();
  CaseBlock cell;
  while (stream->next(cell)) {
    for (std::size_t i = 0; i < cell.count; ++i) {
      const OBS* row = cell.rows + i * source.layout().words;
      all.push_back({row[2].number, row[0].number, row[1].number, cell.weights[i]});
    }
  }
  return all;
}

const std::vector<FakeCase> twoGroups{{1, 5, 4}, {1, 6, 2}, {1, 7, 0}, {2, 5, 3}, {2, 8, 6}};

TEST(ResampledSource, RedrawsEachSplitGroupByItself) {
  std::map<std::pair<double, double>, double> total;
  for (const auto& [sample, group, value, weight] :
       presented(twoGroups, {.samples = 40, .seed = 3, .jackknife = false})) {
    total[{sample, group}] += weight;
  }
  EXPECT_EQ(total.size(), 82U);
  for (const auto& [place, cases] : total) {
    EXPECT_EQ(cases, place.second == 1 ? 6.0 : 9.0);
  }
}

TEST(ResampledSource, PresentsSamplesOutermostAndGroupsInTheirOrder) {
  const Presented all = presented(twoGroups, {.samples = 5, .seed = 3, .jackknife = false});
  EXPECT_TRUE(std::is_sorted(all.begin(), all.end(), [](const auto& a, const auto& b) {
    return std::pair(a[0], a[1]) < std::pair(b[0], b[1]);
  }));
}

TEST(ResampledSource, ShowsCasesOfInvalidWeightInTheDataAlone) {
  for (const auto& [sample, group, value, weight] :
       presented(twoGroups, {.samples = 40, .seed = 3, .jackknife = false})) {
    EXPECT_TRUE(value != 7.0 || sample == 0.0) << "sample " << sample;
    EXPECT_TRUE(weight > 0.0 || sample == 0.0);
  }
}

TEST(ResampledSource, DoesNotDependOnBlocksOrOnOtherGroups) {
  const Resampling resampling{.samples = 20, .seed = 3, .jackknife = true};
  const Presented all = presented(twoGroups, resampling);
  EXPECT_EQ(presented(twoGroups, resampling, 1), all);
  EXPECT_EQ(presented(twoGroups, resampling, 100), all);
  // A second group of other cases leaves the samples of the first as they are.
  std::vector<FakeCase> changed = twoGroups;
  changed[4].weight = 60;
  Presented first;
  Presented firstChanged;
  const auto ofFirstGroup = [](const auto& one) { return one[1] == 1.0 && one[0] <= 20.0; };
  std::ranges::copy_if(all, std::back_inserter(first), ofFirstGroup);
  std::ranges::copy_if(presented(changed, resampling), std::back_inserter(firstChanged),
                       ofFirstGroup);
  EXPECT_EQ(firstChanged, first);
}

TEST(ResampledSource, AGroupWithoutValidWeightsIsInTheDataAlone) {
  for (const auto& [sample, group, value, weight] :
       presented({{1, 5, 4}, {2, 5, 0}}, {.samples = 9, .seed = 3, .jackknife = true})) {
    EXPECT_TRUE(group == 1.0 || sample == 0.0);
  }
}

TEST(ResampledSource, TheJackknifeOfAGroupEndsWithItsPatterns) {
  std::map<double, std::vector<double>> samples;
  for (const auto& [sample, group, value, weight] :
       presented({{1, 5, 2}, {2, 5, 1}, {2, 6, 1}, {2, 7, 1}},
                 {.samples = 0, .seed = 0, .jackknife = true})) {
    samples[group].push_back(sample);
  }
  // Group 1 lacks one of its only pattern in sample 1, and is in no other.
  EXPECT_EQ(samples[1], (std::vector<double>{0, 1}));
  EXPECT_EQ(samples[2].size(), 3U + 2U + 2U + 2U);
}

TEST(ResampledSource, RefusesAGroupThatIsTooHeavyToBeDrawnFrom) {
  const double half = 0x1p51;
  EXPECT_NO_THROW(presented({{1, 5, half}, {1, 6, half}, {2, 5, half}},
                            {.samples = 1, .seed = 0, .jackknife = false}));
  try {
    presented({{1, 5, half}, {1, 6, half}, {1, 7, 1}},
              {.samples = 1, .seed = 0, .jackknife = false});
    FAIL() << "not refused";
  } catch (const Error& error) {
    EXPECT_EQ(error.kind(), ErrorKind::Data);
    EXPECT_EQ(error.identifier(), "Bootstrap weights too large ...");
  }
}

TEST(ResampledSource, RoundsWeightsWithHalvesUpwards) {
  double total = 0.0;
  for (const auto& [sample, group, value, weight] :
       presented({{1, 5, 0.5}, {1, 6, 2.49}, {1, 7, 0.49}, {1, 8, NAN}, {1, 9, -3}},
                 {.samples = 1, .seed = 0, .jackknife = false})) {
    total += sample == 1.0 ? weight : 0.0;
  }
  EXPECT_EQ(total, 3.0);
}

}  // namespace
}  // namespace embedded::data
