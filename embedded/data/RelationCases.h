// The cases of a relation, row by row or as patterns.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "CaseSource.h"
#include "Dictionary.h"
#include "KeptRows.h"
#include "PatternTable.h"
#include "Relation.h"

namespace embedded::data {

// How cases are delivered: as a sample of the data suggests, or as told.
enum class CaseMode { Auto, CaseByCase, Patterns };

struct CaseOptions {
  CaseMode mode = CaseMode::Auto;
  std::string collation;   // a language tag; code point order when empty
  bool keepsRows = false;  // the second pass over rows may read them from memory
};

class RelationCases final : public CaseSource {
 public:
  // `reads` says how each variable of the dictionary is read; weight and splits are the
  // dictionary's.
  RelationCases(std::unique_ptr<Relation> relation, const Dictionary& dictionary,
                std::vector<ColumnRead> reads, CaseOptions options);

  void measure(Dictionary& dictionary, std::span<const int> columns) override;
  void use(std::span<const int> columns) override;
  const ObservationLayout& layout() const override { return layout_; }
  std::unique_ptr<CaseStream> open() override;
  bool deliversPatterns() const override { return patterns_ != nullptr; }
  std::map<int, std::uint64_t> nonFinite() const override { return nonFinite_; }

  // The patterns of the run; null when cases come one by one. Known after use().
  const PatternTable* patterns() const { return patterns_.get(); }
  Relation& relation() { return *relation_; }

 private:
  class CountingStream;
  void addColumn(int column);
  bool patternsPay();
  void readTable(std::size_t most);
  void keepNonFinite(const NonFiniteCounts& counts);
  std::unique_ptr<RowScan> scan();

  std::unique_ptr<Relation> relation_;
  std::vector<ColumnRead> reads_;  // by dictionary index
  std::vector<std::string> names_;
  int weight_;
  std::vector<int> splits_;
  CaseOptions options_;
  ScanRequest request_;
  ObservationLayout layout_;
  std::size_t splitWords_ = 0;
  std::unique_ptr<PatternTable> patterns_;
  std::shared_ptr<KeptRows> kept_;  // null until a pass over rows has begun
  std::string identity_;            // of the data when they were kept
  std::map<int, std::uint64_t> nonFinite_;
};

}  // namespace embedded::data
