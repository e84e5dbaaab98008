// Rows that are kept come back to the bit.
#include <bit>
#include <random>

#include "Support.h"
#include "embedded/data/KeptRows.h"
#include "host/distributions/MCMV.h"

namespace embedded::data {
namespace {

std::vector<std::uint64_t> bitsOf(const std::vector<OBS>& rows) {
  std::vector<std::uint64_t> bits;
  for (const OBS& word : rows) bits.push_back(std::bit_cast<std::uint64_t>(word));
  return bits;
}

OBS wordOf(const char (&text)[9]) {
  OBS word{};
  std::copy_n(text, 8, word.bytes);
  return word;
}

TEST(KeptRows, ComeBackToTheBit) {
  const std::vector<OBS> edges{{0.0},
                               {1.0},
                               {254.0},
                               {255.0},
                               {256.0},
                               {-0.0},
                               {-1.0},
                               {0.5},
                               {1e300},
                               {-1e300},
                               {0x1p52},
                               {MCMV::Missing},
                               {0x1p-1074},
                               {1e15},
                               {-255.0},
                               wordOf("some txt"),
                               wordOf("\0\0\0\0\0\0\0\0"),
                               wordOf("        ")};
  std::mt19937 random(1);
  KeptRows kept(3);
  std::vector<std::vector<OBS>> chunks;
  for (const OBS& edge : edges) {
    // A word with this value in some rows, beside small numbers and missing ones.
    std::vector<OBS>& rows = chunks.emplace_back();
    for (int row = 0; row < 64; ++row) {
      rows.push_back({static_cast<double>(random() % 3)});
      rows.push_back(random() % 4 == 0 ? edge : OBS{7.0});
      rows.push_back(random() % 2 == 0 ? OBS{MCMV::Missing} : OBS{1.0});
    }
    kept.add(rows);
  }
  EXPECT_FALSE(kept.isWhole()) << "the pass has not ended";
  kept.finish({0, 2, 0});
  ASSERT_TRUE(kept.isWhole());
  ASSERT_EQ(kept.chunks(), chunks.size());
  EXPECT_EQ(kept.nonFinite(), (NonFiniteCounts{0, 2, 0}));
  for (std::size_t i = 0; i < chunks.size(); ++i) {
    std::vector<OBS> rows;
    EXPECT_EQ(kept.read(i, rows), 64U);
    EXPECT_EQ(bitsOf(rows), bitsOf(chunks[i])) << "chunk " << i;
  }
}

TEST(KeptRows, AreGivenUpWhenTheyTakeTooMuch) {
  KeptRows kept(10, 1000);
  const std::vector<OBS> small(200, OBS{1.0});
  kept.add(small);
  kept.add(small);
  EXPECT_EQ(kept.chunks(), 2U);
  kept.add(std::vector<OBS>(200, OBS{0.5}));  // eight times as much
  EXPECT_EQ(kept.chunks(), 0U);
  kept.add(small);
  kept.finish({});
  EXPECT_FALSE(kept.isWhole());
  EXPECT_EQ(kept.chunks(), 0U);
}

// A run that asks for no column has rows, but no words of them.
TEST(KeptRows, WithoutWordsAreNotKept) {
  KeptRows kept(0);
  kept.add({});
  kept.finish({});
  EXPECT_FALSE(kept.isWhole());
  EXPECT_EQ(kept.chunks(), 0U);
}

class KeptCases : public DataTest {};

// Many different values in some columns, split groups and weights: never patterns.
TEST_F(KeptCases, AreThoseOfAnotherScan) {
  const std::string query =
      "SELECT i // 100 AS s, (i % 3)::DOUBLE AS few, CASE WHEN i % 5 = 0 THEN NULL ELSE i / 7 END "
      "AS many, 'text ' || i AS t, (i % 4)::DOUBLE / 2 AS w, CASE WHEN i % 2 = 0 THEN "
      "'inf'::DOUBLE ELSE 1 END AS odd FROM range(5000) t(i)";
  const std::string file = parquet("kept.parquet", query);
  const auto seen = [&](const std::string& memory) {
    DataOptions options = optionsFor(file, CaseMode::CaseByCase);
    options.weight = "w";
    options.splits = {"s"};
    options.memory = memory;  // with a limit nothing is kept
    return readAll(options);  // reads twice, and compares
  };
  const Seen kept = seen("");
  const Seen scanned = seen("1GB");
  EXPECT_EQ(kept.cases, scanned.cases);
  EXPECT_EQ(kept.document.messages.size(), scanned.document.messages.size());
  EXPECT_FALSE(kept.document.messages.empty());
}

}  // namespace
}  // namespace embedded::data
