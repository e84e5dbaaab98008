// Packing, counting, and what happens when a column turns out to hold more values.
#include "CountingTable.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

namespace embedded::data {
namespace {

// Keys of up to so many bits are indices; the table then stays in a processor's cache.
constexpr unsigned denseBits = 10;
constexpr std::size_t tallyLanes = 4;
// What a table is for: beyond either of these the engine, which can spill, counts better.
constexpr std::size_t mostPatterns = std::size_t{1} << 20U;
constexpr std::size_t mostWords = std::size_t{1} << 23U;

std::size_t hashOf(std::uint64_t key) {
  key *= 0x9E3779B97F4A7C15ULL;
  return key ^ (key >> 32U);
}

// A key holds whether the weight is valid in its lowest bit, where cases are weighted.
constexpr std::uint64_t validWeight = 1;

}  // namespace

CountingTable::CountingTable(const std::vector<int>& widths, bool weighted)
    : weighted_(weighted),
      starts_(widths.size() + 1, weighted ? 1U : 0U),
      entries_(weighted ? 2 : 1),
      coded_(widths.size()) {
  for (const int width : widths) codes_.emplace_back(width);
}

bool CountingTable::add(const std::vector<const OBS*>& columns, std::size_t count) {
  for (std::size_t c = 0; c < codes_.size(); ++c) {
    coded_[c].resize(count);
    codes_[c].encode(columns[c], count, coded_[c].data());
  }
  if (!fitKeys()) return false;
  keys_.assign(count, 0);
  if (weighted_) weigh(columns.back(), count);
  pack(count);
  if (!dense_) return countHashed(count);
  countDense(count);
  return true;
}

// Rounds the weights, and begins the keys with their kind.
void CountingTable::weigh(const OBS* weights, std::size_t count) {
  weights_.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    const double weight = weights[i].number;  // finite: what was not is the missing value
    const bool valid = weight >= 0.5;
    keys_[i] = valid ? validWeight : 0;
    weights_[i] = valid ? std::floor(weight + 0.5) : 0.0;
  }
}

void CountingTable::pack(std::size_t count) {
  for (std::size_t c = 0; c < codes_.size(); ++c) {
    const unsigned start = starts_[c];
    if (starts_[c + 1] == start) continue;  // one value only
    const std::uint32_t* codes = coded_[c].data();
    std::uint64_t* keys = keys_.data();
    for (std::size_t i = 0; i < count; ++i) keys[i] |= std::uint64_t{codes[i]} << start;
  }
}

void CountingTable::countDense(std::size_t count) {
  if (!weighted_) return tally(count);
  Entry* entries = entries_.data();
  for (std::size_t i = 0; i < count; ++i) {
    Entry& entry = entries[keys_[i]];
    ++entry.cases;
    entry.weight += weights_[i];
  }
}

// Counts unweighted cases. Neighbours are often alike, and a counter can be raised only after it
// was raised before: so each of four neighbours has counters of its own.
void CountingTable::tally(std::size_t count) {
  const std::size_t size = std::size_t{1} << starts_.back();
  tallies_.assign(tallyLanes * size, 0);
  std::uint32_t* tallies = tallies_.data();
  const std::uint64_t* keys = keys_.data();
  std::size_t i = 0;
  for (; i + tallyLanes <= count; i += tallyLanes)
    for (std::size_t lane = 0; lane < tallyLanes; ++lane) ++tallies[lane * size + keys[i + lane]];
  for (; i < count; ++i) ++tallies[keys[i]];
  for (std::size_t key = 0; key < size; ++key)
    for (std::size_t lane = 0; lane < tallyLanes; ++lane)
      entries_[key].cases += tallies[lane * size + key];
}

bool CountingTable::countHashed(std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    if (2 * used_ >= entries_.size() && !rebuild(std::exchange(entries_, {}), used_ * 4))
      return false;
    Entry& entry = entryOf(keys_[i]);
    ++entry.cases;
    if (weighted_) entry.weight += weights_[i];
  }
  return true;
}

// The entry of this key; of a hashed table, made when it is new.
CountingTable::Entry& CountingTable::entryOf(std::uint64_t key) {
  if (dense_) return entries_[key];
  const std::size_t mask = entries_.size() - 1;
  std::size_t at = hashOf(key) & mask;
  while (entries_[at].cases != 0 && entries_[at].key != key) at = (at + 1) & mask;
  if (entries_[at].cases == 0) {
    entries_[at].key = key;
    ++used_;
  }
  return entries_[at];
}

// Moves all entries to a table of at least `size` places.
bool CountingTable::rebuild(const std::vector<Entry>& entries, std::size_t size) {
  if (!dense_ && used_ > mostPatterns) return false;
  entries_.assign(std::bit_ceil(std::max<std::size_t>(size, 16)), {});
  used_ = 0;
  for (const Entry& old : entries) {
    if (old.cases == 0) continue;
    Entry& entry = entryOf(old.key);
    entry.cases = old.cases;
    entry.weight = old.weight;
  }
  return true;
}

// Makes room in the keys for all codes there are.
bool CountingTable::fitKeys() {
  std::vector<unsigned> starts{starts_.front()};
  std::size_t words = 0;
  for (const CountingCodes& codes : codes_) {
    words += codes.size() * codes.words();
    const auto bits = codes.size() < 2 ? 0 : std::bit_width(codes.size() - 1);
    starts.push_back(starts.back() + static_cast<unsigned>(bits));
  }
  if (starts.back() > 64 || words > mostWords) return false;
  if (starts == starts_) return true;
  std::vector<Entry> entries = std::exchange(entries_, {});
  std::size_t used = 0;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    if (entries[i].cases == 0) continue;
    entries[i].key = repacked(dense_ ? i : entries[i].key, starts);
    ++used;
  }
  starts_ = std::move(starts);
  dense_ = starts_.back() <= denseBits;
  used_ = used;
  return rebuild(entries, dense_ ? std::size_t{1} << starts_.back() : used * 4);
}

std::uint32_t CountingTable::codeIn(std::uint64_t key, std::size_t column) const {
  const unsigned bits = starts_[column + 1] - starts_[column];
  if (bits == 0) return 0;
  return static_cast<std::uint32_t>(key >> starts_[column] & ((std::uint64_t{1} << bits) - 1));
}

std::uint64_t CountingTable::repacked(std::uint64_t key,
                                      const std::vector<unsigned>& starts) const {
  std::uint64_t packed = weighted_ ? key & validWeight : 0;
  for (std::size_t c = 0; c < codes_.size(); ++c)
    if (const std::uint64_t code = codeIn(key, c); code != 0) packed |= code << starts[c];
  return packed;
}

bool CountingTable::combine(const CountingTable& other) {
  std::vector<std::vector<std::uint32_t>> ours(codes_.size());  // our code of each of theirs
  for (std::size_t c = 0; c < codes_.size(); ++c) {
    ours[c].resize(other.codes_[c].size());
    codes_[c].encode(other.codes_[c].value(0), ours[c].size(), ours[c].data());
  }
  if (!fitKeys()) return false;
  for (std::size_t i = 0; i < other.entries_.size(); ++i) {
    const Entry& theirs = other.entries_[i];
    if (theirs.cases == 0) continue;
    if (!dense_ && 2 * used_ >= entries_.size() && !rebuild(std::exchange(entries_, {}), used_ * 4))
      return false;
    const std::uint64_t theirKey = other.dense_ ? i : theirs.key;
    std::uint64_t key = weighted_ ? theirKey & validWeight : 0;
    for (std::size_t c = 0; c < codes_.size(); ++c)
      if (const std::uint64_t code = ours[c][other.codeIn(theirKey, c)]; code != 0)
        key |= code << starts_[c];
    Entry& entry = entryOf(key);
    entry.cases += theirs.cases;
    entry.weight += theirs.weight;
  }
  return true;
}

PatternBatch CountingTable::finish() const {
  PatternBatch batch;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    const Entry& entry = entries_[i];
    if (entry.cases == 0) continue;
    const std::uint64_t key = dense_ ? i : entry.key;
    for (std::size_t c = 0; c < codes_.size(); ++c) {
      const OBS* value = codes_[c].value(codeIn(key, c));
      batch.rows.insert(batch.rows.end(), value, value + codes_[c].words());
    }
    batch.weights.push_back(weighted_ ? entry.weight : static_cast<double>(entry.cases));
    batch.counts.push_back(entry.cases);
  }
  return batch;
}

}  // namespace embedded::data
