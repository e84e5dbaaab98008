// Decides which columns are read, how wide they are, and whether rows or patterns are delivered.
#include "RelationCases.h"

#include <algorithm>
#include <limits>

#include "CutScan.h"
#include "DataMessages.h"
#include "RowStream.h"

namespace embedded::data {
namespace {

constexpr std::uint64_t longestString = 32767;
// The sample that decides, and when it says that patterns are far fewer than rows.
constexpr std::uint64_t sampledRows = 20000;
constexpr std::uint64_t rowsAPattern = 4;
// More patterns than this are not kept at once unless they were asked for.
constexpr std::size_t mostWords = std::size_t{1} << 23U;

}  // namespace

// A stream of rows that leaves the counts of its scan with the source when it has ended.
class RelationCases::CountingStream final : public CaseStream {
 public:
  CountingStream(RelationCases& cases, std::unique_ptr<RowStream> stream)
      : cases_(cases), stream_(std::move(stream)) {}

  bool next(CaseBlock& block) override {
    const bool more = stream_->next(block);
    rows_ += block.count;
    if (more && cases_.progress_) cases_.progress_({rows_, 0});
    // The last block of all is an empty one that ends a group.
    if (!more || block.count == 0) cases_.keepNonFinite(stream_->scan().nonFinite());
    return more;
  }

 private:
  RelationCases& cases_;
  std::unique_ptr<RowStream> stream_;
  std::uint64_t rows_ = 0;
};

RelationCases::RelationCases(std::unique_ptr<Relation> relation, const Dictionary& dictionary,
                             std::vector<ColumnRead> reads, CaseOptions options,
                             ProgressListener progress)
    : relation_(std::move(relation)),
      reads_(std::move(reads)),
      weight_(dictionary.weight),
      splits_(dictionary.splits),
      options_(std::move(options)),
      progress_(std::move(progress)) {
  for (const Variable& variable : dictionary.variables) names_.push_back(variable.name);
  layout_.offsetOfVariable.assign(reads_.size(), -1);
}

void RelationCases::measure(Dictionary& dictionary, std::span<const int> columns) {
  std::vector<ColumnRead> unknown;
  for (const int index : columns) {
    const Variable& variable = dictionary.variables[static_cast<std::size_t>(index)];
    if (!variable.supported) fail(messages::unsupportedType, {variable.name, variable.columnType});
    const ColumnRead& read = reads_[static_cast<std::size_t>(index)];
    const bool known = std::ranges::any_of(
        unknown, [&](const ColumnRead& other) { return other.column == read.column; });
    if (!variable.widthKnown && !known) unknown.push_back(read);
  }
  const std::vector<std::uint64_t> lengths = relation_->longest(unknown);
  for (std::size_t i = 0; i < unknown.size(); ++i) {
    const auto index = static_cast<std::size_t>(unknown[i].column);
    Variable& variable = dictionary.variables[index];
    if (lengths[i] > longestString)
      fail(messages::longString,
           {relation_->source(), relation_->firstLonger(unknown[i], longestString), variable.name,
            std::to_string(lengths[i])});
    variable.type = std::max(1, static_cast<int>(lengths[i]));
    variable.format.width = static_cast<std::uint16_t>(variable.type);
    variable.widthKnown = true;
    reads_[index].width = variable.type;
  }
}

void RelationCases::addColumn(int column) {
  const auto index = static_cast<std::size_t>(column);
  if (layout_.offsetOfVariable[index] >= 0) return;
  layout_.columns.push_back(column);
  layout_.offsetOfVariable[index] = static_cast<int>(layout_.words);
  layout_.words += ObsWords(reads_[index].width);
  request_.columns.push_back(reads_[index]);
}

void RelationCases::plan(std::span<const int> columns) {
  for (const int column : splits_) addColumn(column);
  splitWords_ = layout_.words;
  request_.orderBy = splits_.size();
  request_.collation = options_.collation;
  for (const int column : columns)
    if (column != weight_) addColumn(column);
  if (weight_ >= 0) {
    // The weight stands last, for itself, also where it is a split variable too.
    const auto index = static_cast<std::size_t>(weight_);
    request_.weight = static_cast<int>(request_.columns.size());
    request_.columns.push_back(reads_[index]);
    if (layout_.offsetOfVariable[index] < 0) {
      layout_.columns.push_back(weight_);
      layout_.offsetOfVariable[index] = static_cast<int>(layout_.words);
    }
    ++layout_.words;
  }
  delivery_.columns = request_.columns.size();
  decide();
}

void RelationCases::use(std::span<const int> columns) {
  plan(columns);
  if (!delivery_.asPatterns) return;
  const bool isAsked = delivery_.why == Delivery::Why::Asked;
  readTable(isAsked ? std::numeric_limits<std::size_t>::max()
                    : mostWords / std::max<std::size_t>(layout_.words, 1));
  delivery_.asPatterns = patterns_ != nullptr;
  if (patterns_ == nullptr)
    delivery_.why = Delivery::Why::ManyPatterns;
  else
    delivery_.patterns = patterns_->size();
}

// With very many columns no two cases are alike, and the question alone would be dear.
void RelationCases::decide() {
  if (options_.mode != CaseMode::Auto) {
    delivery_.asPatterns = options_.mode == CaseMode::Patterns;
    return;
  }
  if (delivery_.columns > Delivery::mostColumns) {
    delivery_.why = Delivery::Why::ManyColumns;
    return;
  }
  const Relation::Sample sample = relation_->sample(request_, sampledRows);
  delivery_.why = Delivery::Why::Sample;
  delivery_.sampled = sample.rows;
  delivery_.asPatterns = sample.patterns * rowsAPattern <= sample.rows;
}

void RelationCases::readTable(std::size_t most) {
  PatternShape shape;
  shape.splitWords = splitWords_;
  shape.weightWord = request_.weight >= 0;
  for (std::size_t i = 0; i < request_.columns.size(); ++i)
    if (static_cast<int>(i) != request_.weight) shape.widths.push_back(request_.columns[i].width);
  const std::unique_ptr<PatternScan> scan = relation_->patterns(request_);
  std::optional<PatternTable> table = readPatterns(*scan, shape, most, relation_->source());
  if (!table) return;
  keepNonFinite(scan->nonFinite());
  patterns_ = std::make_unique<PatternTable>(std::move(*table));
}

void RelationCases::keepNonFinite(const NonFiniteCounts& counts) {
  for (std::size_t i = 0; i < counts.size(); ++i)
    if (counts[i] > 0) nonFinite_[request_.columns[i].column] = counts[i];
}

// The first pass keeps its rows, if so wanted, and the others read those, as long as the data are
// still the same.
std::unique_ptr<RowScan> RelationCases::scan() {
  if (!options_.keepsRows) return relation_->scan(request_);
  if (kept_ != nullptr && kept_->isWhole()) {
    if (relation_->identity() != identity_) fail(messages::dataChanged, {relation_->source()});
    return std::make_unique<KeptScan>(kept_);
  }
  kept_ = std::make_shared<KeptRows>(layout_.words);
  identity_ = relation_->identity();
  return std::make_unique<KeepingScan>(relation_->scan(request_), kept_);
}

std::unique_ptr<CaseStream> RelationCases::open() {
  if (patterns_ != nullptr) return std::make_unique<PatternStream>(*patterns_, layout_.words);
  const int weightWord = weight_ < 0 ? -1 : static_cast<int>(layout_.words) - 1;
  std::unique_ptr<RowScan> rows = scan();
  if (options_.rowsAtOnce > 0 && layout_.words > 0)
    rows = std::make_unique<CutScan>(std::move(rows), layout_.words, options_.rowsAtOnce);
  auto stream =
      std::make_unique<RowStream>(std::move(rows), layout_.words, splitWords_, weightWord);
  return std::make_unique<CountingStream>(*this, std::move(stream));
}

}  // namespace embedded::data
