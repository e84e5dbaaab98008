// The rows of a pass, kept in memory for the next one, where they take little of it.
//
// Most values of an analysis are small whole numbers or missing: such a value takes one byte.
// Reading them again is then far cheaper than having the engine scan its columns again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "Relation.h"

namespace embedded::data {

class KeptRows {
 public:
  // Rows of `words` words; `most` is how many bytes they may take.
  explicit KeptRows(std::size_t words, std::size_t most = std::size_t{128} << 20U)
      : words_(words), most_(most) {}

  // Keeps some rows. When they are too many nothing is kept any more.
  void add(std::span<const OBS> rows);
  // Says that there are no more rows, and what came with them.
  void finish(NonFiniteCounts nonFinite);
  // Whether all rows of a pass are here.
  bool isWhole() const { return whole_; }

  std::size_t chunks() const { return chunks_.size(); }
  // The rows of one call of add(), bit by bit; how many.
  std::size_t read(std::size_t chunk, std::vector<OBS>& rows) const;
  const NonFiniteCounts& nonFinite() const { return nonFinite_; }

 private:
  struct Chunk {
    std::vector<std::uint8_t> bytes;  // one a word
    std::vector<std::uint32_t> wide;  // the words of a row that a byte cannot hold ...
    std::vector<OBS> values;          // ... and their values, row by row
  };
  void findWide(std::span<const OBS> rows);

  std::size_t words_;
  std::size_t most_;
  std::size_t bytes_ = 0;
  bool full_ = false;
  bool whole_ = false;
  std::vector<Chunk> chunks_;
  std::vector<std::uint64_t> odd_;  // of each word, whether the chunk at hand has a wide value
  NonFiniteCounts nonFinite_;
};

// Hands on the rows of another scan, and keeps them.
class KeepingScan final : public RowScan {
 public:
  KeepingScan(std::unique_ptr<RowScan> scan, std::shared_ptr<KeptRows> kept)
      : scan_(std::move(scan)), kept_(std::move(kept)) {}
  std::size_t next(std::vector<OBS>& rows) override;
  const NonFiniteCounts& nonFinite() const override { return scan_->nonFinite(); }

 private:
  std::unique_ptr<RowScan> scan_;
  std::shared_ptr<KeptRows> kept_;
};

// The rows that were kept.
class KeptScan final : public RowScan {
 public:
  explicit KeptScan(std::shared_ptr<const KeptRows> kept) : kept_(std::move(kept)) {}
  std::size_t next(std::vector<OBS>& rows) override;
  const NonFiniteCounts& nonFinite() const override { return kept_->nonFinite(); }

 private:
  std::shared_ptr<const KeptRows> kept_;
  std::size_t at_ = 0;
};

}  // namespace embedded::data
