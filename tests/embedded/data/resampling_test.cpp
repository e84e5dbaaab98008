// Random draws: the generator's known answers, the multinomial's law, and samples as cases.
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "embedded/data/MemorySource.h"
#include "embedded/data/Multinomial.h"
#include "embedded/data/Philox.h"
#include "embedded/data/ResampledSource.h"

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

}  // namespace
}  // namespace embedded::data
