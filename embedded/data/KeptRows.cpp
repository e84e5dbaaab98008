// Loops over the words of rows as they lie in memory, without branches, for the vector unit.
#include "KeptRows.h"

#include <bit>

#include "host/distributions/MCMV.h"

namespace embedded::data {
namespace {

// Added to a whole number of less than 51 bits, this leaves the number in the low bits.
constexpr double shift = 0x1.8p52;
constexpr std::uint64_t shiftBits = std::bit_cast<std::uint64_t>(shift);
constexpr std::uint8_t missing = 255;  // smaller ones stand for themselves

std::uint64_t wholeOf(double number) {
  return std::bit_cast<std::uint64_t>(number + shift) - shiftBits;
}

// 0 when a byte can hold the value, to the bit.
std::uint64_t oddness(double number) {
  const std::uint64_t bits = std::bit_cast<std::uint64_t>(number);
  const std::uint64_t whole = wholeOf(number);
  const std::uint64_t fraction = std::bit_cast<std::uint64_t>(number + shift - shift) ^ bits;
  const std::uint64_t beyond = (whole | (whole + 1)) & ~std::uint64_t{255};
  const std::uint64_t present = bits ^ std::bit_cast<std::uint64_t>(MCMV::Missing);
  return present == 0 ? 0 : fraction | beyond;
}

std::uint8_t byteOf(double number) {
  return number == MCMV::Missing ? missing : static_cast<std::uint8_t>(wholeOf(number));
}

}  // namespace

void KeptRows::findWide(std::span<const OBS> rows) {
  odd_.assign(words_, 0);
  for (std::size_t row = 0; row < rows.size(); row += words_)
    for (std::size_t i = 0; i < words_; ++i) odd_[i] |= oddness(rows[row + i].number);
}

void KeptRows::add(std::span<const OBS> rows) {
  if (full_ || words_ == 0) return;
  findWide(rows);
  Chunk chunk;
  for (std::size_t i = 0; i < words_; ++i)
    if (odd_[i] != 0) chunk.wide.push_back(static_cast<std::uint32_t>(i));
  bytes_ += rows.size() + rows.size() / words_ * chunk.wide.size() * sizeof(OBS) + sizeof chunk;
  if (bytes_ > most_) {
    full_ = true;
    chunks_ = {};
    return;
  }
  chunk.bytes.resize(rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i) chunk.bytes[i] = byteOf(rows[i].number);
  for (std::size_t row = 0; !chunk.wide.empty() && row < rows.size(); row += words_)
    for (const std::uint32_t word : chunk.wide) chunk.values.push_back(rows[row + word]);
  chunks_.push_back(std::move(chunk));
}

void KeptRows::finish(NonFiniteCounts nonFinite) {
  whole_ = !full_ && words_ != 0;
  nonFinite_ = std::move(nonFinite);
}

std::size_t KeptRows::read(std::size_t chunk, std::vector<OBS>& rows) const {
  const Chunk& kept = chunks_[chunk];
  rows.resize(kept.bytes.size());
  const std::uint8_t* bytes = kept.bytes.data();
  for (std::size_t i = 0; i < rows.size(); ++i)
    rows[i].number = bytes[i] == missing ? MCMV::Missing : static_cast<double>(bytes[i]);
  const OBS* value = kept.values.data();
  for (std::size_t row = 0; !kept.wide.empty() && row < rows.size(); row += words_)
    for (const std::uint32_t word : kept.wide) rows[row + word] = *value++;
  return rows.size() / words_;
}

std::size_t KeepingScan::next(std::vector<OBS>& rows) {
  const std::size_t count = scan_->next(rows);
  if (count == 0)
    kept_->finish(scan_->nonFinite());
  else
    kept_->add(rows);
  return count;
}

std::size_t KeptScan::next(std::vector<OBS>& rows) {
  return at_ == kept_->chunks() ? 0 : kept_->read(at_++, rows);
}

}  // namespace embedded::data
