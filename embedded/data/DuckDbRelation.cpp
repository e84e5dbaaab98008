// The relation of the embedded engine: queries, their results as words, their failures as errors.
#include "DuckDbRelation.h"

#include <algorithm>
#include <array>
#include <type_traits>

#include "ColumnWords.h"
#include "CountingQuery.h"
#include "CountingValues.h"
#include "CsvPatterns.h"
#include "DataMessages.h"
#include "DuckDb.h"
#include "DuckDbQueries.h"
#include "EngineMessages.h"
#include "Files.h"
#include "TableSource.h"
#include "TemporaryFolder.h"

namespace embedded::data {
namespace {

std::uint64_t number(const std::optional<std::string>& text) {
  return text ? std::stoull(*text) : 0;
}

class DuckDbRelation final : public Relation {
 public:
  DuckDbRelation(DataAddress address, const RelationOptions& options)
      : address_(std::move(address)),
        reading_{options.threads, options.progress},
        engine_({options.threads, options.memory, (folder_.path() / "spill").string(),
                 options.progress}) {
    if (address_.standardInput) spool();
    identity_ = identityOf(address_.files);
    table_ = openTable(engine_, address_, options.nullTexts);
  }

  const std::string& source() const override { return address_.text; }
  const std::vector<Column>& columns() const override { return table_->columns(); }
  bool textual() const override { return table_->textual(); }
  std::unique_ptr<RowScan> scan(const ScanRequest& request) override;
  std::unique_ptr<PatternScan> patterns(const ScanRequest& request) override;
  std::uint64_t rowCount() override;
  std::vector<std::uint64_t> longest(std::span<const ColumnRead> columns) override;
  std::string firstLonger(const ColumnRead& column, std::uint64_t bytes) override;
  Sample sample(const ScanRequest& request, std::uint64_t sample) override;
  std::string identity() override { return identityOf(address_.files); }
  std::string fingerprint() override {
    return guarded({}, [&] { return fingerprintOf(engine_, address_.files); });
  }

  const TableSource& table() const { return *table_; }
  // Throws when the files are no longer what they were when the relation was opened.
  void requireUnchanged() {
    if (identity() != identity_) fail(messages::dataChanged, {source()});
  }
  // Does some work of the engine; its failures become errors.
  template <class Work>
  std::invoke_result_t<Work> guarded(std::span<const ColumnRead> reads, const Work& work) {
    try {
      return work();
    } catch (const EngineFailure& failure) {
      requireUnchanged();
      explainLimit(failure, source());
      table_->explain(engine_, failure, reads);
      throw;  // not reached: explaining throws
    }
  }
  // A query about these columns; its failures become errors.
  std::unique_ptr<Query> query(const std::string& sql, std::span<const ColumnRead> reads) {
    return guarded(reads, [&] { return engine_.query(sql); });
  }
  // Looks whether what a scan found suspect in a column is an error, and throws it.
  void examine(const ColumnRead& read, const ColumnFaults& faults);

 private:
  CountedRows countedRows(const ScanRequest& request) const;
  std::optional<CountedPatterns> counted(const ScanRequest& request);
  void spool() {
    const std::filesystem::path target = folder_.path() / "input.csv";
    if (!spoolStandardInput(target)) fail(messages::emptyFile, {address_.text});
    address_.files = {target.string()};
  }

  DataAddress address_;
  CsvReading reading_;
  TemporaryFolder folder_;  // outlives the engine, which may hold files in it
  Engine engine_;
  std::unique_ptr<TableSource> table_;
  std::string identity_;
};

// What both kinds of scan do: turn the columns of a chunk into words, and mind their faults.
class Decoder {
 public:
  // `skipped` is the index of a column that the rows do not hold, or negative.
  Decoder(DuckDbRelation& relation, const ScanRequest& request, int skipped)
      : relation_(relation), nonFinite_(request.columns.size()), cleared_(nonFinite_.size()) {
    for (std::size_t i = 0; i < request.columns.size(); ++i) {
      if (static_cast<int>(i) == skipped) continue;
      const ColumnRead& read = request.columns[i];
      columns_.push_back({read, i, stride_, ColumnWriter(read.width, relation.table().textual())});
      stride_ += ObsWords(read.width);
    }
  }

  void decode(const Chunk& chunk, std::vector<OBS>& rows, const std::uint64_t* multiplicity) {
    decode(chunk, 0, chunk.size(), rows, multiplicity);
  }

  // Some rows of a chunk; `first` is a multiple of 64.
  void decode(const Chunk& chunk, std::size_t first, std::size_t count, std::vector<OBS>& rows,
              const std::uint64_t* multiplicity) {
    rows.resize(count * stride_);
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      Decoded& column = columns_[i];
      ColumnFaults faults;
      column.writer.write(chunk.column(i), count, rows.data() + column.offset, stride_, faults,
                          multiplicity, first);
      nonFinite_[column.index] += faults.nonFinite;
      faults.suspect = faults.suspect && cleared_[column.index] == 0;
      if (!faults.suspect && !faults.tooLong) continue;
      relation_.examine(column.read, faults);
      cleared_[column.index] = 1;  // large numbers of this column are all right
    }
  }

  std::size_t columns() const { return columns_.size(); }
  // How many rows are decoded at once: of wide ones few, since they are written a column at a
  // time and read a row at a time, and should stay in a processor's cache in between.
  std::size_t rowsAtOnce() const {
    constexpr std::size_t bytes = std::size_t{256} << 10U;
    return std::max<std::size_t>(bytes / (stride_ * sizeof(OBS) + 1) / 64, 1) * 64;
  }
  NonFiniteCounts& nonFinite() { return nonFinite_; }

 private:
  struct Decoded {
    ColumnRead read;
    std::size_t index;
    std::size_t offset;
    ColumnWriter writer;
  };
  DuckDbRelation& relation_;
  std::vector<Decoded> columns_;
  std::size_t stride_ = 0;
  NonFiniteCounts nonFinite_;
  std::vector<char> cleared_;
};

class DuckDbRowScan final : public RowScan {
 public:
  DuckDbRowScan(DuckDbRelation& relation, ScanRequest request)
      : relation_(relation), request_(std::move(request)), decoder_(relation, request_, -1) {
    relation_.requireUnchanged();
    query_ = relation_.query(rowsSql(relation_.table(), request_), request_.columns);
  }

  std::size_t next(std::vector<OBS>& rows) override {
    if (at_ == size_ && !fetch()) return 0;
    const std::size_t count = std::min(size_ - at_, decoder_.rowsAtOnce());
    decoder_.decode(chunk_, at_, count, rows, nullptr);
    at_ += count;
    return count;
  }

  const NonFiniteCounts& nonFinite() const override {
    return const_cast<Decoder&>(decoder_).nonFinite();  // NOLINT
  }

 private:
  bool fetch() {
    at_ = size_ = 0;
    if (!relation_.guarded(request_.columns, [&] { return query_->next(chunk_); })) {
      relation_.requireUnchanged();
      return false;
    }
    size_ = chunk_.size();
    return true;
  }

  DuckDbRelation& relation_;
  ScanRequest request_;
  Decoder decoder_;
  std::unique_ptr<Query> query_;
  Chunk chunk_;
  std::size_t size_ = 0;  // rows of the chunk
  std::size_t at_ = 0;    // the next of them
};

class DuckDbPatternScan final : public PatternScan {
 public:
  DuckDbPatternScan(DuckDbRelation& relation, ScanRequest request)
      : relation_(relation),
        request_(std::move(request)),
        decoder_(relation, request_, request_.weight) {
    relation_.requireUnchanged();
    query_ = relation_.query(patternsSql(relation_.table(), request_), request_.columns);
  }

  bool next(PatternBatch& batch) override {
    Chunk chunk;
    if (!relation_.guarded(request_.columns, [&] { return query_->next(chunk); })) {
      relation_.requireUnchanged();
      return false;
    }
    const std::size_t first = decoder_.columns();
    const std::size_t count = chunk.size();
    copy(chunk, first, count, batch.weights);
    copy(chunk, first + 1, count, batch.counts);
    decoder_.decode(chunk, batch.rows, batch.counts.data());
    if (request_.weight >= 0) mindWeights(chunk, first);
    return true;
  }

  const NonFiniteCounts& nonFinite() const override {
    return const_cast<Decoder&>(decoder_).nonFinite();  // NOLINT
  }

 private:
  template <class T>
  static void copy(const Chunk& chunk, std::size_t column, std::size_t count, std::vector<T>& to) {
    const T* values = static_cast<const T*>(duckdb_vector_get_data(chunk.column(column)));
    to.assign(values, values + count);
  }

  // The weights themselves are gone; what was odd about them was counted by the query.
  void mindWeights(const Chunk& chunk, std::size_t first) {
    const auto weight = static_cast<std::size_t>(request_.weight);
    std::vector<std::uint64_t> odd;
    copy(chunk, first + 2, chunk.size(), odd);
    for (const std::uint64_t count : odd) decoder_.nonFinite()[weight] += count;
    std::vector<double> smallest;
    copy(chunk, first + 3, chunk.size(), smallest);
    std::vector<double> totals;
    copy(chunk, first, chunk.size(), totals);
    const std::uint64_t* known = duckdb_vector_get_validity(chunk.column(first + 3));
    for (std::size_t i = 0; i < smallest.size() && !examined_; ++i) {
      const bool given = known == nullptr || (known[i / 64] >> (i % 64) & 1U) != 0;
      if (given && (smallest[i] <= -0x1p53 || totals[i] >= 0x1p53)) {
        examined_ = true;
        relation_.examine(request_.columns[weight], {.suspect = true});
      }
    }
  }

  DuckDbRelation& relation_;
  ScanRequest request_;
  Decoder decoder_;
  std::unique_ptr<Query> query_;
  bool examined_ = false;
};

// Patterns that were counted by our own aggregate, all at once.
class CountedScan final : public PatternScan {
 public:
  CountedScan(DuckDbRelation& relation, const ScanRequest& request, CountedPatterns counted)
      : batch_(std::move(counted.batch)) {
    relation.requireUnchanged();
    for (std::size_t i = 0; i < request.columns.size(); ++i) {
      const ColumnFaults& faults = counted.faults[i];
      nonFinite_.push_back(faults.nonFinite);
      if (faults.suspect || faults.tooLong) relation.examine(request.columns[i], faults);
    }
  }

  bool next(PatternBatch& batch) override {
    batch = std::exchange(batch_, {});
    return !batch.weights.empty();
  }

  const NonFiniteCounts& nonFinite() const override { return nonFinite_; }

 private:
  PatternBatch batch_;
  NonFiniteCounts nonFinite_;
};

std::unique_ptr<RowScan> DuckDbRelation::scan(const ScanRequest& request) {
  return std::make_unique<DuckDbRowScan>(*this, request);
}

CountedRows DuckDbRelation::countedRows(const ScanRequest& request) const {
  CountedRows rows{unorderedSql(*table_, request), table_->textual(), {}};
  for (const ColumnRead& read : request.columns) {
    const Column& column = columns()[static_cast<std::size_t>(read.column)];
    rows.dictionaries.push_back(address_.kind == FileKind::Parquet && read.width == 0 &&
                                CountingValues::canRead(column.typeName));
  }
  return rows;
}

// By the texts of the file where that can be, else by the engine.
std::optional<CountedPatterns> DuckDbRelation::counted(const ScanRequest& request) {
  requireUnchanged();
  if (const auto* csv = dynamic_cast<const CsvSource*>(table_.get()))
    if (auto patterns = countCsvPatterns(engine_, *csv, request, reading_,
                                         (folder_.path() / "texts.csv").string()))
      return patterns;
  return guarded(request.columns,
                 [&] { return countPatterns(engine_, countedRows(request), request); });
}

std::unique_ptr<PatternScan> DuckDbRelation::patterns(const ScanRequest& request) {
  if (canCount(request))
    if (auto patterns = counted(request))
      return std::make_unique<CountedScan>(*this, request, std::move(*patterns));
  return std::make_unique<DuckDbPatternScan>(*this, request);
}

std::uint64_t DuckDbRelation::rowCount() {
  const auto rows =
      guarded({}, [&] { return engine_.rows("SELECT count(*) FROM " + table_->from({})); });
  return number(rows.at(0).at(0));
}

std::vector<std::uint64_t> DuckDbRelation::longest(std::span<const ColumnRead> columns) {
  std::vector<std::uint64_t> lengths;
  if (columns.empty()) return lengths;
  requireUnchanged();
  const auto query_ = query(longestSql(*table_, columns), columns);
  Chunk chunk;
  guarded(columns, [&] { return query_->next(chunk); });
  for (std::size_t i = 0; i < columns.size(); ++i)
    lengths.push_back(static_cast<std::uint64_t>(
        *static_cast<const std::int64_t*>(duckdb_vector_get_data(chunk.column(i)))));
  return lengths;
}

std::string DuckDbRelation::firstLonger(const ColumnRead& column, std::uint64_t bytes) {
  const std::array reads{column};
  const auto rows = guarded(reads, [&] { return engine_.rows(longSql(*table_, column, bytes)); });
  return rows.empty() ? "?" : rows[0][0].value_or("?");
}

Relation::Sample DuckDbRelation::sample(const ScanRequest& request, std::uint64_t sample) {
  const auto rows =
      guarded(request.columns, [&] { return engine_.rows(sampleSql(*table_, request, sample)); });
  return {number(rows.at(0).at(0)), number(rows.at(0).at(1))};
}

void DuckDbRelation::examine(const ColumnRead& read, const ColumnFaults& faults) {
  const std::string& name = columns()[static_cast<std::size_t>(read.column)].name;
  const std::array reads{read};
  if (faults.tooLong) {
    const auto width = static_cast<std::uint64_t>(read.width);
    const auto rows = guarded(reads, [&] { return engine_.rows(longSql(*table_, read, width)); });
    if (!rows.empty())
      fail(messages::widerString,
           {source(), *rows[0][0], name, *rows[0][1], std::to_string(width)});
    fail(messages::dataChanged, {source()});
  }
  const auto rows = guarded(reads, [&] { return engine_.rows(inexactSql(*table_, read)); });
  if (!rows.empty()) fail(messages::inexactNumber, {source(), *rows[0][0], name, *rows[0][1]});
}

}  // namespace

std::size_t ScanRequest::words() const {
  std::size_t words = 0;
  for (const ColumnRead& read : columns) words += ObsWords(read.width);
  return words;
}

std::unique_ptr<Relation> openDuckDb(const DataAddress& address, const RelationOptions& options) {
  try {
    duckDbLibrary();
  } catch (const EngineFailure& failure) {
    fail(messages::noEngineLibrary, {address.text, failure.what()});
  }
  try {
    return std::make_unique<DuckDbRelation>(address, options);
  } catch (const EngineFailure& failure) {
    explainLimit(failure, address.text);
    fail(messages::engineFailure, {address.text, failure.brief()});
  }
}

}  // namespace embedded::data
