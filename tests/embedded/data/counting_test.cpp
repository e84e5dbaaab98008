// Counting tables against a map that counts the plain way.
#include <rapidcheck.h>

#include <cmath>
#include <cstring>
#include <numeric>
#include <random>

#include "Support.h"
#include "embedded/data/CountingQuery.h"
#include "embedded/data/CountingTable.h"
#include "host/distributions/MCMV.h"

namespace embedded::data {
namespace {

// Cases of some number columns, a vector each; the last holds weights where there are any.
using Columns = std::vector<std::vector<OBS>>;
// By the values of a pattern and whether its weights are valid: sum of weights and cases.
using Counts = std::map<std::pair<std::vector<double>, bool>, std::pair<double, std::uint64_t>>;

bool addTo(CountingTable& table, const Columns& columns, std::size_t begin, std::size_t end) {
  std::vector<const OBS*> places;
  for (const auto& column : columns) places.push_back(column.data() + begin);
  return table.add(places, end - begin);
}

Counts countsOf(const PatternBatch& batch, std::size_t values, bool weighted) {
  Counts counts;
  for (std::size_t i = 0; i < batch.weights.size(); ++i) {
    std::vector<double> row;
    for (std::size_t c = 0; c < values; ++c) row.push_back(batch.rows[i * values + c].number);
    const bool valid = !weighted || batch.weights[i] > 0;
    const bool isNew =
        counts.emplace(std::pair(row, valid), std::pair(batch.weights[i], batch.counts[i])).second;
    EXPECT_TRUE(isNew) << "no two patterns are equal";
  }
  return counts;
}

Counts counted(const Columns& columns, bool weighted) {
  Counts counts;
  const std::size_t values = columns.size() - (weighted ? 1 : 0);
  for (std::size_t i = 0; i < columns.front().size(); ++i) {
    std::vector<double> row;
    for (std::size_t c = 0; c < values; ++c) row.push_back(columns[c][i].number);
    const double weight = weighted ? columns.back()[i].number : 1.0;
    auto& entry = counts[{row, weight >= 0.5}];
    entry.first += weight >= 0.5 ? std::floor(weight + 0.5) : 0.0;
    ++entry.second;
  }
  return counts;
}

// Columns of very different kinds: small whole numbers, halves, missing values, many values.
Columns randomColumns(std::mt19937& random, std::size_t cases, bool weighted) {
  const auto below = [&](int end) {
    return static_cast<double>(std::uniform_int_distribution<int>(0, end - 1)(random));
  };
  const int kinds = 1 + static_cast<int>(below(5));
  Columns columns(static_cast<std::size_t>(kinds));
  for (int c = 0; c < kinds; ++c) {
    const int kind = static_cast<int>(below(5));
    for (std::size_t i = 0; i < cases; ++i) {
      const std::vector<double> choices{below(2), below(3) == 0 ? MCMV::Missing : below(300),
                                        below(7) / 2 - 1, below(5000) * 1e12, 4.0};
      columns[static_cast<std::size_t>(c)].push_back({choices[static_cast<std::size_t>(kind)]});
    }
  }
  if (weighted) {
    auto& weights = columns.emplace_back();
    for (std::size_t i = 0; i < cases; ++i)
      weights.push_back({below(9) == 0 ? MCMV::Missing : below(10) / 4});
  }
  return columns;
}

TEST(CountingTable, CountsWhatAMapCounts) {
  const bool passed = rc::check("tables of several threads, put together", [] {
    std::mt19937 random(*rc::gen::arbitrary<std::uint32_t>());
    const auto weighted = *rc::gen::arbitrary<bool>();
    const auto cases = *rc::gen::inRange<std::size_t>(1, 5000);
    const auto split = *rc::gen::inRange<std::size_t>(0, cases + 1);
    const auto chunk = *rc::gen::inRange<std::size_t>(1, 2048);
    const Columns columns = randomColumns(random, cases, weighted);
    const std::vector<int> widths(columns.size() - (weighted ? 1 : 0), 0);
    CountingTable first(widths, weighted);
    CountingTable second(widths, weighted);
    for (std::size_t i = 0; i < split; i += chunk)
      RC_ASSERT(addTo(first, columns, i, std::min(i + chunk, split)));
    for (std::size_t i = split; i < cases; i += chunk)
      RC_ASSERT(addTo(second, columns, i, std::min(i + chunk, cases)));
    RC_ASSERT(first.combine(second));
    RC_ASSERT(countsOf(first.finish(), widths.size(), weighted) == counted(columns, weighted));
  });
  EXPECT_TRUE(passed);
}

TEST(CountingTable, IsEmptyWithoutCases) {
  CountingTable table({0, 12}, true);
  EXPECT_TRUE(table.combine(CountingTable({0, 12}, true)));
  EXPECT_TRUE(table.finish().weights.empty());
}

TEST(CountingTable, TellsStringsApartByAllTheirBytes) {
  std::vector<OBS> words(6);
  const std::string bytes = "aaaaaaaabbbb    aaaaaaaabbbc    aaaaaaaabbbb    ";
  std::memcpy(words.data(), bytes.data(), bytes.size());
  CountingTable table({12}, false);
  ASSERT_TRUE(table.add({words.data()}, 3));
  const PatternBatch batch = table.finish();
  ASSERT_EQ(batch.counts.size(), 2U);
  EXPECT_EQ(batch.counts[0] + batch.counts[1], 3U);
  EXPECT_EQ(std::max(batch.counts[0], batch.counts[1]), 2U);
}

TEST(CountingTable, SaysWhenThereAreTooManyPatterns) {
  std::vector<OBS> numbers(2048);
  CountingTable table({0}, false);
  std::size_t added = 0;
  bool fits = true;
  for (; fits && added < std::size_t{1} << 22U; added += numbers.size()) {
    for (std::size_t i = 0; i < numbers.size(); ++i)
      numbers[i].number = static_cast<double>(added + i);
    fits = table.add({numbers.data()}, numbers.size());
  }
  EXPECT_FALSE(fits);
  EXPECT_GT(added, std::size_t{1} << 20U);
}

TEST(CountingTable, SaysWhenAPatternDoesNotFitItsKey) {
  // Thirty columns of eight values each take ninety bits.
  Columns columns(30, std::vector<OBS>(8));
  for (auto& column : columns)
    for (std::size_t i = 0; i < 8; ++i) column[i].number = static_cast<double>(i);
  CountingTable table(std::vector<int>(30, 0), false);
  EXPECT_FALSE(addTo(table, columns, 0, 8));
}

// Adds the pairs of each of 2048 first values with some of 2048 second ones. All values are known
// from the start, so that keys keep their size and only the number of patterns grows.
bool addPairs(CountingTable& table, int begin, int end) {
  constexpr int values = 2048;
  Columns columns(2, std::vector<OBS>(values));
  for (int i = 0; i < values; ++i)
    columns[0][static_cast<std::size_t>(i)].number =
        columns[1][static_cast<std::size_t>(i)].number = i;
  bool fits = addTo(table, columns, 0, values);
  for (int second = begin; fits && second < end; ++second) {
    columns[1].assign(values, {static_cast<double>(second)});
    fits = addTo(table, columns, 0, values);
  }
  return fits;
}

TEST(CountingTable, SaysWhenPairsOfKnownValuesAreTooMany) {
  CountingTable table({0, 0}, false);
  EXPECT_FALSE(addPairs(table, 0, 2048)) << "four million of them";
}

TEST(CountingTable, SaysWhenTwoTablesTogetherHoldTooMany) {
  CountingTable first({0, 0}, false);
  CountingTable second({0, 0}, false);
  ASSERT_TRUE(addPairs(first, 0, 600));
  ASSERT_TRUE(addPairs(second, 600, 1200));
  EXPECT_FALSE(first.combine(second));
}

TEST(CountingTable, SaysWhenThePatternsOfTwoTablesDoNotFitOneKey) {
  const auto tableOf = [](double first) {
    // Thirty columns of four values each take sixty bits.
    Columns columns(30, std::vector<OBS>(4));
    for (auto& column : columns)
      for (std::size_t i = 0; i < 4; ++i) column[i].number = first + static_cast<double>(i);
    CountingTable table(std::vector<int>(30, 0), false);
    EXPECT_TRUE(addTo(table, columns, 0, 4));
    return table;
  };
  CountingTable table = tableOf(0);
  EXPECT_TRUE(table.combine(tableOf(0)));
  EXPECT_EQ(table.finish().counts, (std::vector<std::uint64_t>{2, 2, 2, 2}));
  EXPECT_FALSE(table.combine(tableOf(4)));
}

TEST(CountingTable, SaysWhenItsStringsTakeTooMuchRoom) {
  constexpr int width = 32767;
  constexpr std::size_t words = 4096;
  constexpr std::size_t strings = 128;
  CountingTable table({width}, false);
  bool fits = true;
  std::size_t added = 0;
  for (; fits && added < 4096; added += strings) {
    std::vector<OBS> column(words * strings);
    for (std::size_t i = 0; i < strings; ++i)
      column[i * words].number = static_cast<double>(added + i);
    fits = table.add({column.data()}, strings);
  }
  EXPECT_FALSE(fits);
  EXPECT_GT(added, 2048U) << "64 MiB have room";
}

class Counting : public DataTest {
 protected:
  // As parquet(), cut into groups of 2048 rows for as many threads as like to read them.
  std::string grouped(const std::string& name, const std::string& query) const {
    Engine({}).rows("COPY (" + query + ") TO " + duckDbDialect.text(path(name)) +
                    " (FORMAT parquet, ROW_GROUP_SIZE 2048)");
    return path(name);
  }
  // The patterns of all cases, read by four threads.
  static Seen read(const std::string& file) {
    DataOptions options = optionsFor(file, CaseMode::Patterns);
    options.threads = 4;
    return readAll(options);
  }
};

TEST_F(Counting, PutsTogetherWhatSeveralThreadsHaveCounted) {
  const Seen seen =
      read(grouped("t.parquet",
                   "SELECT i % 3 AS a, CASE i % 7 WHEN 0 THEN 'inf'::DOUBLE WHEN 1 THEN NULL "
                   "ELSE i % 7 END::DOUBLE AS b FROM range(210000) t(i)"));
  EXPECT_EQ(seen.cases.size(), 19U) << "three times six patterns, and the end";
  for (const SeenCase& one : seen.cases)
    if (!one.empty()) {
      EXPECT_EQ(one.back(), one[1] == "." ? "20000" : "10000");
    }
  ASSERT_EQ(seen.document.messages.size(), 1U);
  EXPECT_EQ(std::get<double>(seen.document.messages[0].text->items.at(1)->value), 30000);
}

// Each group of rows is one pattern of thirty columns; all of them together fit no key.
TEST_F(Counting, LeavesToTheEngineWhatItsThreadsCannotPutTogether) {
  for (const int groups : {5, 8, 16}) {
    std::string columns;
    for (int c = 0; c < 30; ++c)
      columns += (c == 0 ? "" : ", ") + ("(i // 2048 + " + std::to_string(c) + ")::DOUBLE AS c") +
                 std::to_string(c);
    const Seen seen = read(grouped("g.parquet", "SELECT " + columns + " FROM range(" +
                                                    std::to_string(2048 * groups) + ") t(i)"));
    ASSERT_EQ(seen.cases.size(), static_cast<std::size_t>(groups) + 1);
    for (int group = 0; group < groups; ++group) {
      const SeenCase& one = seen.cases[static_cast<std::size_t>(group)];
      EXPECT_EQ(one.front(), std::to_string(group));
      EXPECT_EQ(one.back(), "2048");
    }
  }
}

TEST_F(Counting, WhatGoesWrongWithinTheEngineComesOutAsItWas) {
  Engine engine({});
  ScanRequest request;
  request.columns.emplace_back();
  const Failure failure = failureOf(
      [&] { countPatterns(engine, {"SELECT INTERVAL 1 DAY AS v0", false, {false}}, request); });
  EXPECT_EQ(failure.id, "Data vector of an unknown type ...");
}

// The engine groups what the table is not for: the patterns are the same.
TEST_F(Counting, LeavesWhatItCannotHoldToTheEngine) {
  std::string columns;
  for (int c = 0; c < 30; ++c)
    columns += (c == 0 ? "" : ", ") + ("(hash(i % 40 + " + std::to_string(c) + ") % 8)::DOUBLE c") +
               std::to_string(c);
  OpenedData opened = openData(optionsFor(
      parquet("wide.parquet", "SELECT " + columns + " FROM range(4000) t(i)"), CaseMode::Patterns));
  std::vector<int> all(30);
  std::iota(all.begin(), all.end(), 0);
  opened.cases->use(all);
  ASSERT_TRUE(opened.cases->deliversPatterns());
  const auto stream = opened.cases->open();
  CaseBlock block;
  ASSERT_TRUE(stream->next(block));
  EXPECT_EQ(block.count, 40U);
  for (std::size_t i = 0; i < block.count; ++i) EXPECT_EQ(block.counts[i], 100U);
}

}  // namespace
}  // namespace embedded::data
