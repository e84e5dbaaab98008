// The cases of a relation, row by row or as patterns.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "CaseSource.h"
#include "Dictionary.h"
#include "KeptRows.h"
#include "PatternTable.h"
#include "Progress.h"
#include "Relation.h"

namespace embedded::data {

// How cases are delivered: as a sample of the data suggests, or as told.
enum class CaseMode { Auto, CaseByCase, Patterns };

struct CaseOptions {
  CaseMode mode = CaseMode::Auto;
  std::string collation;       // a language tag; code point order when empty
  bool keepsRows = false;      // the second pass over rows may read them from memory
  std::size_t rowsAtOnce = 0;  // the most that are taken from the data at a time; 0: as they come
};

// Which way cases are delivered, and what decided it. The same data and request give the same.
struct Delivery {
  enum class Why {
    Asked,         // it was told by CaseMode
    Sample,        // patterns were few, or not, in a sample of `sampled` cases
    ManyColumns,   // more columns are in use than patterns are tried for
    ManyPatterns,  // there turned out to be more patterns than are kept
  };
  bool asPatterns = false;
  Why why = Why::Asked;
  std::uint64_t sampled = 0;  // cases of the sample, where there was one
  std::size_t columns = 0;    // in use, the weight's among them
  std::size_t patterns = 0;   // when delivered as such
  // The most columns that patterns are tried for.
  static constexpr std::size_t mostColumns = 64;
};

class RelationCases final : public CaseSource {
 public:
  // `reads` says how each variable of the dictionary is read; weight and splits are the
  // dictionary's.
  RelationCases(std::unique_ptr<Relation> relation, const Dictionary& dictionary,
                std::vector<ColumnRead> reads, CaseOptions options, ProgressListener progress = {});

  void measure(Dictionary& dictionary, std::span<const int> columns) override;
  void use(std::span<const int> columns) override;
  const ObservationLayout& layout() const override { return layout_; }
  std::unique_ptr<CaseStream> open() override;
  bool deliversPatterns() const override { return patterns_ != nullptr; }
  std::map<int, std::uint64_t> nonFinite() const override { return nonFinite_; }

  // Known after use() or plan().
  const Delivery& delivery() const { return delivery_; }
  // Fixes the columns in use as use() does and decides how their cases would be delivered, without
  // reading them. Instead of use().
  void plan(std::span<const int> columns);

  // The patterns of the run; null when cases come one by one. Known after use().
  const PatternTable* patterns() const { return patterns_.get(); }
  Relation& relation() { return *relation_; }

 private:
  class CountingStream;
  void addColumn(int column);
  void decide();
  void readTable(std::size_t most);
  void keepNonFinite(const NonFiniteCounts& counts);
  std::unique_ptr<RowScan> scan();

  std::unique_ptr<Relation> relation_;
  std::vector<ColumnRead> reads_;  // by dictionary index
  std::vector<std::string> names_;
  int weight_;
  std::vector<int> splits_;
  CaseOptions options_;
  ProgressListener progress_;
  ScanRequest request_;
  ObservationLayout layout_;
  std::size_t splitWords_ = 0;
  Delivery delivery_;
  std::unique_ptr<PatternTable> patterns_;
  std::shared_ptr<KeptRows> kept_;  // null until a pass over rows has begun
  std::string identity_;            // of the data when they were kept
  std::map<int, std::uint64_t> nonFinite_;
};

}  // namespace embedded::data
