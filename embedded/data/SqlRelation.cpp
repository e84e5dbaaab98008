// Queries to a server, their rows as words, and the checks that an answer is whole and that two
// passes saw the same data.
#include "SqlRelation.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <map>
#include <numeric>
#include <optional>

#include "DuckDb.h"
#include "EngineMessages.h"
#include "Engines.h"
#include "SqlDecoder.h"
#include "SqlQueries.h"
#include "embedded/session/Session.h"
#include "embedded/text/Collation.h"
#include "host/distributions/MCMV.h"

namespace embedded::data {
namespace {

constexpr std::size_t batchRows = 2048;
// Texts that are put in order here and named in a query: far more than split groups make sense.
constexpr std::size_t mostTexts = 5000;

// A larger sample than is asked for costs a server little, and rows that move cost more than rows
// that it counts.
constexpr std::uint64_t leastSample = 500000;

// What all rows of a pass add up to, whatever their order.
struct Checksum {
  std::uint64_t rows = 0;
  std::uint64_t sum = 0;
  friend bool operator==(const Checksum&, const Checksum&) = default;

  void add(std::span<const OBS> row) {
    std::uint64_t hash = 0x9e3779b97f4a7c15U;
    for (const OBS word : row) {
      hash = (hash ^ std::bit_cast<std::uint64_t>(word.number)) * 0xff51afd7ed558ccdU;
      hash ^= hash >> 33U;
    }
    ++rows;
    sum += hash * 0xc4ceb9fe1a85ec53U;
  }
};

class SqlRelation final : public Relation {
 public:
  SqlRelation(std::string source, std::unique_ptr<SqlServer> server)
      : source_(std::move(source)), server_(std::move(server)), queries_(*server_) {}

  const std::string& source() const override { return source_; }
  const std::vector<Column>& columns() const override { return server_->columns(); }
  bool textual() const override { return false; }
  std::unique_ptr<RowScan> scan(const ScanRequest& request) override;
  std::unique_ptr<PatternScan> patterns(const ScanRequest& request) override;
  std::uint64_t rowCount() override;
  std::vector<std::uint64_t> longest(std::span<const ColumnRead> columns) override;
  std::string firstLonger(const ColumnRead&, std::uint64_t) override { return "?"; }
  Sample sample(const ScanRequest& request, std::uint64_t sample) override;
  std::string identity() override { return std::to_string(rowCount()); }
  std::string fingerprint() override;

  SqlServer& server() { return *server_; }
  const SqlQueries& queries() const { return queries_; }
  SqlDecoder decoder(const ColumnRead& read) const {
    return {read, source_, columns()[static_cast<std::size_t>(read.column)].name};
  }
  std::vector<SqlDecoder> decoders(const ScanRequest& request) const {
    std::vector<SqlDecoder> list;
    list.reserve(request.columns.size());
    for (const ColumnRead& read : request.columns) list.push_back(decoder(read));
    return list;
  }
  // The orders that the server must be told.
  std::vector<TextOrder> orders(const ScanRequest& request);
  // Looks at all numbers of a column that may not fit, and throws for one that does not.
  void examine(const ColumnRead& read);
  // Throws when an earlier pass over these columns added up to something else.
  void requireSame(const ScanRequest& request, const Checksum& checksum);

 private:
  std::vector<std::string> textsOf(const ColumnRead& read);
  // The one row of a small answer, as counts.
  std::vector<std::uint64_t> counts(const SqlQuery& query);

  std::string source_;
  std::unique_ptr<SqlServer> server_;
  SqlQueries queries_;
  std::map<std::vector<int>, Checksum> passes_;
};

std::uint64_t countOf(const SqlValue& value) {
  return value.kind == SqlValue::Kind::Real ? static_cast<std::uint64_t>(value.real)
                                            : static_cast<std::uint64_t>(value.whole);
}

class SqlRowScan final : public RowScan {
 public:
  SqlRowScan(SqlRelation& relation, ScanRequest request)
      : relation_(relation),
        request_(std::move(request)),
        decoders_(relation.decoders(request_)),
        words_(request_.words()),
        nonFinite_(request_.columns.size()) {
    // A stream that broke off may look like one that ended: so many rows it must have.
    if (!relation_.server().isSnapshot()) expected_ = relation_.rowCount();
    const std::vector<TextOrder> orders = relation_.orders(request_);
    result_ = relation_.server().query(relation_.queries().rows(request_, orders));
  }

  std::size_t next(std::vector<OBS>& rows) override {
    rows.clear();
    std::size_t count = 0;
    while (count < batchRows && result_->next(values_)) {
      rows.resize(rows.size() + words_);
      const std::span row(rows.end() - static_cast<std::ptrdiff_t>(words_), words_);
      write(row);
      checksum_.add(row);
      ++count;
    }
    if (count == 0) finish();
    return count;
  }

  const NonFiniteCounts& nonFinite() const override { return nonFinite_; }

 private:
  void write(std::span<OBS> row) {
    std::size_t at = 0;
    for (std::size_t i = 0; i < decoders_.size(); ++i) {
      if (decoders_[i].write(values_[i], &row[at])) ++nonFinite_[i];
      at += ObsWords(decoders_[i].read().width);
    }
  }

  void finish() {
    if (expected_ && checksum_.rows != *expected_)
      fail(messages::dataChanged, {relation_.source()});
    relation_.requireSame(request_, checksum_);
  }

  SqlRelation& relation_;
  ScanRequest request_;
  std::vector<SqlDecoder> decoders_;
  std::size_t words_;
  NonFiniteCounts nonFinite_;
  std::optional<std::uint64_t> expected_;
  std::unique_ptr<SqlResult> result_;
  std::vector<SqlValue> values_;
  Checksum checksum_;
};

class SqlPatternScan final : public PatternScan {
 public:
  SqlPatternScan(SqlRelation& relation, ScanRequest request)
      : relation_(relation),
        request_(std::move(request)),
        decoders_(relation.decoders(request_)),
        nonFinite_(request_.columns.size()),
        computes_(request_.weight >= 0 &&
                  relation_.queries().isNumber(request_.columns[weight()])) {
    const std::vector<TextOrder> orders = relation_.orders(request_);
    result_ = relation_.server().query(relation_.queries().patterns(request_, orders));
  }

  bool next(PatternBatch& batch) override {
    batch.rows.clear();
    batch.weights.clear();
    batch.counts.clear();
    while (batch.counts.size() < batchRows && result_->next(values_)) add(batch);
    // A server may answer one query at a time.
    if (batch.counts.empty() && large_) relation_.examine(request_.columns[weight()]);
    return !batch.counts.empty();
  }

  const NonFiniteCounts& nonFinite() const override { return nonFinite_; }

 private:
  std::size_t weight() const { return static_cast<std::size_t>(request_.weight); }
  bool isWeight(std::size_t index) const { return static_cast<int>(index) == request_.weight; }

  // The pattern's columns come first, then what was counted. Of an empty table without any
  // column asked for there is a row of no cases.
  void add(PatternBatch& batch) {
    const std::size_t keys = decoders_.size() - (computes_ ? 1 : 0);
    const std::uint64_t cases = countOf(values_[keys + (computes_ ? 1 : 0)]);
    if (cases == 0) return;
    double weight = static_cast<double>(cases);
    std::size_t at = 0;
    for (std::size_t i = 0; i < decoders_.size(); ++i) {
      if (isWeight(i) && computes_) continue;
      const SqlValue& value = values_[at++];
      if (isWeight(i))
        weight = rounded(value, cases);
      else
        write(batch, i, value, cases);
    }
    if (computes_) weight = summed(keys);
    batch.weights.push_back(weight);
    batch.counts.push_back(cases);
  }

  void write(PatternBatch& batch, std::size_t index, const SqlValue& value, std::uint64_t cases) {
    const std::size_t begin = batch.rows.size();
    batch.rows.resize(begin + ObsWords(decoders_[index].read().width));
    if (decoders_[index].write(value, &batch.rows[begin])) nonFinite_[index] += cases;
  }

  // Of a weight that is a text on the server: its sum over the cases of the pattern.
  double rounded(const SqlValue& value, std::uint64_t cases) {
    bool infinite = false;
    const double weight = decoders_[this->weight()].number(value, infinite);
    if (infinite) nonFinite_[this->weight()] += cases;
    return weight >= 0.5 ? std::floor(weight + 0.5) * static_cast<double>(cases) : 0.0;
  }

  // Of a weight that the server computed with: sum, cases, weights that are not finite, smallest
  // and largest.
  double summed(std::size_t first) {
    nonFinite_[weight()] += countOf(values_[first + 2]);
    large_ = large_ || values_[first + 3].real <= -0x1p53 || values_[first + 4].real >= 0x1p53;
    return values_[first].real;
  }

  SqlRelation& relation_;
  ScanRequest request_;
  std::vector<SqlDecoder> decoders_;
  NonFiniteCounts nonFinite_;
  bool computes_;       // the server sums the weights
  bool large_ = false;  // there are weights that may not be exact
  std::unique_ptr<SqlResult> result_;
  std::vector<SqlValue> values_;
};

std::unique_ptr<RowScan> SqlRelation::scan(const ScanRequest& request) {
  return std::make_unique<SqlRowScan>(*this, request);
}

std::unique_ptr<PatternScan> SqlRelation::patterns(const ScanRequest& request) {
  return std::make_unique<SqlPatternScan>(*this, request);
}

std::vector<std::uint64_t> SqlRelation::counts(const SqlQuery& query) {
  const auto result = server_->query(query);
  std::vector<SqlValue> row;
  if (!result->next(row)) fail(messages::answerBroke, {source_});
  std::vector<std::uint64_t> numbers;
  numbers.reserve(row.size());
  for (const SqlValue& value : row) numbers.push_back(countOf(value));
  return numbers;
}

std::uint64_t SqlRelation::rowCount() {
  return counts(queries_.rowCount())[0];
}

std::vector<std::uint64_t> SqlRelation::longest(std::span<const ColumnRead> columns) {
  if (columns.empty()) return {};
  return counts(queries_.longest(columns));
}

Relation::Sample SqlRelation::sample(const ScanRequest& request, std::uint64_t sample) {
  const std::vector<std::uint64_t> numbers =
      counts(queries_.sample(request, std::max(sample, leastSample)));
  return {numbers[0], numbers[1]};
}

// The content cannot be named without reading all of it; this names columns and number of rows.
std::string SqlRelation::fingerprint() {
  std::string shape;
  for (const Column& column : columns()) shape += column.name + "\n" + column.typeName + "\n";
  shape += std::to_string(rowCount());
  const auto rows = Engine({}).rows("SELECT sha256(" + duckDbDialect.text(shape) + ")");
  return "sha256-shape:" + rows.at(0).at(0).value_or("");
}

std::vector<std::string> SqlRelation::textsOf(const ColumnRead& read) {
  const SqlDecoder names = decoder(read);
  const auto result = server_->query(queries_.texts(read, mostTexts + 1));
  std::vector<std::string> texts;
  for (std::vector<SqlValue> row; result->next(row);)
    if (row[0].kind == SqlValue::Kind::Text) texts.emplace_back(names.validText(row[0].text));
  if (texts.size() > mostTexts)
    fail(messages::tooManyToOrder, {source_, columns()[static_cast<std::size_t>(read.column)].name,
                                    std::to_string(mostTexts)});
  return texts;
}

// Puts texts in the order of what they are read as, and numbers their places; texts that are read
// as the same value share one, and those read as missing have 0.
TextOrder inOrder(std::vector<std::string> texts, const SqlDecoder& decoder,
                  const text::Collation& collation) {
  TextOrder order;
  order.texts = std::move(texts);
  std::vector<double> numbers;
  numbers.reserve(order.texts.size());
  const bool asText = isText(decoder.read().as);
  for (const std::string& text : order.texts) {
    bool infinite = false;
    numbers.push_back(asText ? 0.0 : decoder.number(SqlValue::ofText(text), infinite));
  }
  const auto compare = [&](std::size_t a, std::size_t b) {
    if (!asText) return numbers[a] < numbers[b] ? -1 : numbers[a] > numbers[b] ? 1 : 0;
    return collation.compare(order.texts[a], order.texts[b]);
  };
  std::vector<std::size_t> sorted(order.texts.size());
  std::iota(sorted.begin(), sorted.end(), std::size_t{0});
  std::ranges::sort(sorted, [&](std::size_t a, std::size_t b) { return compare(a, b) < 0; });
  order.places.resize(sorted.size());
  std::size_t place = 0;
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    if (i == 0 || compare(sorted[i - 1], sorted[i]) != 0) ++place;
    const bool missing = !asText && numbers[sorted[i]] == MCMV::Missing;
    order.places[sorted[i]] = missing ? 0 : place;
  }
  return order;
}

std::vector<TextOrder> SqlRelation::orders(const ScanRequest& request) {
  std::vector<TextOrder> orders;
  const text::Collation collation(request.collation);
  for (std::size_t i = 0; i < request.orderBy; ++i) {
    const ColumnRead& read = request.columns[i];
    // Code points and numbers are put in order by the server as well.
    if (queries_.isNumber(read) || (isText(read.as) && request.collation.empty())) continue;
    if (!isText(read.as) && !isText(columns()[static_cast<std::size_t>(read.column)].kind))
      continue;
    orders.push_back(inOrder(textsOf(read), decoder(read), collation));
    orders.back().column = i;
  }
  return orders;
}

void SqlRelation::examine(const ColumnRead& read) {
  const SqlDecoder numbers = decoder(read);
  const auto result = server_->query(queries_.large(read));
  bool infinite = false;
  for (std::vector<SqlValue> row; result->next(row);) numbers.number(row[0], infinite);
}

void SqlRelation::requireSame(const ScanRequest& request, const Checksum& checksum) {
  std::vector<int> columns;
  columns.reserve(request.columns.size());
  for (const ColumnRead& read : request.columns) columns.push_back(read.column);
  const auto [found, isFirst] = passes_.try_emplace(columns, checksum);
  if (!isFirst && found->second != checksum) fail(messages::dataChanged, {source_});
}

}  // namespace

std::unique_ptr<Relation> openServer(const std::string& source, const ServerAddress& address,
                                     double timeout, const ProgressListener& progress) {
  return std::make_unique<SqlRelation>(
      source, connectServer(address, {source, timeout, &Session::cancelled, progress}));
}

}  // namespace embedded::data
