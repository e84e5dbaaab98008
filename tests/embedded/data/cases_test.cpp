// How cases come from blocks, rows and patterns: what an odd source of them may do.
#include <gtest/gtest.h>

#include "Support.h"
#include "embedded/data/DataMessages.h"
#include "embedded/data/ImputationMessages.h"
#include "embedded/data/ImputationSource.h"
#include "embedded/data/ResampledSource.h"

namespace embedded::data {
namespace {

// Values of one numeric variable, and whether the split group ends behind them.
struct Block {
  std::vector<OBS> rows;
  bool endsGroup = false;
};

// Delivers these blocks.
class ScriptedCases final : public CaseSource {
 public:
  explicit ScriptedCases(std::vector<Block> blocks) : blocks_(std::move(blocks)) {}

  void use(std::span<const int>) override {}
  const ObservationLayout& layout() const override { return layout_; }
  std::unique_ptr<CaseStream> open() override { return std::make_unique<Stream>(blocks_); }

 private:
  class Stream final : public CaseStream {
   public:
    explicit Stream(const std::vector<Block>& blocks) : blocks_(blocks) {}
    bool next(CaseBlock& block) override {
      if (at_ == blocks_.size()) return false;
      const Block& one = blocks_[at_++];
      block = {.rows = one.rows.data(), .count = one.rows.size(), .endsGroup = one.endsGroup};
      return true;
    }

   private:
    const std::vector<Block>& blocks_;
    std::size_t at_ = 0;
  };

  std::vector<Block> blocks_;
  ObservationLayout layout_{{0}, {0}, 1};
};

// One numeric variable, which is the split variable.
Dictionary dictionaryOfOne(const std::string& name) {
  Dictionary dictionary;
  Variable& variable = dictionary.variables.emplace_back();
  variable.name = variable.upperName = name;
  output::VariableInfo info;
  info.name = name;
  variable.info = std::make_shared<const output::VariableInfo>(info);
  dictionary.splits = {0};
  return dictionary;
}

using BlocksOfCases = testing::Test;

TEST_F(BlocksOfCases, AnEmptyOneThatEndsNothingIsNotSeen) {
  Session session;
  const Session::Scope scope(session);
  session.dictionary = dictionaryOfOne("g");
  session.cases = std::make_unique<ScriptedCases>(std::vector<Block>{
      {{}, false}, {{{1.0}}, false}, {{}, false}, {{{1.0}}, true}, {{{2.0}}, true}});
  ProcedureDataSource source;
  EXPECT_EQ(pass(source, {0}), (std::vector<SeenCase>{{"1", "1"}, {"1", "1"}, {}, {"2", "1"}, {}}));
}

class FailingCases final : public CaseSource {
 public:
  void use(std::span<const int>) override { throw Error(ErrorKind::Data, "later"); }
  const ObservationLayout& layout() const override { return layout_; }
  std::unique_ptr<CaseStream> open() override { return nullptr; }

 private:
  ObservationLayout layout_;
};

TEST_F(BlocksOfCases, TheFirstOfTwoErrorsIsTheOneThatIsTold) {
  for (const bool hasEarlier : {false, true}) {
    Session session;
    const Session::Scope scope(session);
    session.dictionary = dictionaryOfOne("g");
    session.cases = std::make_unique<FailingCases>();
    if (hasEarlier) session.fatal = std::make_exception_ptr(Error(ErrorKind::Cancelled, "earlier"));
    ProcedureDataSource source;
    const auto iterator = source.MakeIterator(nullptr);
    EXPECT_FALSE(dynamic_cast<ProcDSIterator&>(*iterator).NextCase());
    EXPECT_TRUE(source.FatalError());
    EXPECT_EQ(failureOf([&] { std::rethrow_exception(session.fatal); }).kind,
              hasEarlier ? ErrorKind::Cancelled : ErrorKind::Data);
  }
}

// The identifier of what is wrong with numbers of imputations in these blocks.
std::string problemOf(std::vector<Block> blocks) {
  const Dictionary dictionary = dictionaryOfOne("IMPUTATION_");
  ImputationSource source(std::make_unique<ScriptedCases>(std::move(blocks)), dictionary);
  EXPECT_FALSE(source.deliversPatterns());
  return failureOf([&] {
           const auto stream = source.open();
           for (CaseBlock block; stream->next(block);) continue;
         })
      .id;
}

TEST(ImputationBlocks, AnEmptyOneBeginsNoGroup) {
  EXPECT_EQ(
      problemOf({{{}, false}, {{{0.0}}, true}, {{}, false}, {{{1.0}}, true}, {{{2.0}}, true}}), "");
  EXPECT_EQ(problemOf({{{}, false}, {{{1.0}}, true}}), messages::imputationNoOriginal.id);
  // The end of a group may come in a block of its own.
  EXPECT_EQ(problemOf({{{{0.0}}, false}, {{}, true}, {{{1.0}}, true}, {{{2.0}}, true}}), "");
}

TEST(ResampledBlocks, CasesWithoutWeightsCountOneEach) {
  Dictionary dictionary = dictionaryOfOne("v");
  dictionary.splits.clear();
  const int sample = addSampleNumber(dictionary);
  ResampledSource source(
      std::make_unique<ScriptedCases>(std::vector<Block>{{{{1.0}, {0.0}}, false}, {{{1.0}}, true}}),
      sample, {.samples = 2, .seed = 1});
  EXPECT_TRUE(source.deliversPatterns());
  const std::vector<int> columns{0};
  source.use(columns);
  const auto stream = source.open();
  ASSERT_EQ(source.groups().size(), 1U);
  EXPECT_EQ(source.groups()[0].weights, (std::vector<double>{1, 1, 1}));
  EXPECT_EQ(source.groups()[0].counts, (std::vector<std::uint64_t>{1, 1, 1}));
  std::vector<double> totals;
  for (CaseBlock block; stream->next(block);) {
    totals.push_back(0);
    for (std::size_t i = 0; i < block.count; ++i) totals.back() += block.weights[i];
  }
  EXPECT_EQ(totals, (std::vector<double>{3, 3, 3})) << "the data and two samples";
}

// Very wide texts, of which the first rows suggest few patterns and which have many.
class WideRelation final : public Relation {
 public:
  static constexpr int columnCount = 4;
  static constexpr int width = 32767;
  static constexpr std::size_t words = columnCount * ((width + 7) / 8);

  const std::string& source() const override { return source_; }
  const std::vector<Column>& columns() const override { return columns_; }
  bool textual() const override { return false; }
  std::unique_ptr<RowScan> scan(const ScanRequest&) override { return std::make_unique<Rows>(); }
  std::unique_ptr<PatternScan> patterns(const ScanRequest&) override {
    return std::make_unique<Patterns>();
  }
  std::uint64_t rowCount() override { return 3; }
  std::vector<std::uint64_t> longest(std::span<const ColumnRead> columns) override {
    measured.push_back(columns.size());
    return std::vector<std::uint64_t>(columns.size(), 5);
  }
  std::string firstLonger(const ColumnRead&, std::uint64_t) override { return "?"; }
  Sample sample(const ScanRequest&, std::uint64_t sample) override { return {sample, 1}; }
  std::string identity() override { return "same"; }
  std::string fingerprint() override { return "same"; }

  std::vector<std::size_t> measured;  // how many columns each question for widths was about

 private:
  class Rows final : public RowScan {
   public:
    std::size_t next(std::vector<OBS>& rows) override {
      const std::size_t count = ended_ ? 0 : 3;
      rows.assign(count * words, OBS{});
      ended_ = true;
      return count;
    }
    const NonFiniteCounts& nonFinite() const override { return none_; }

   private:
    bool ended_ = false;
    NonFiniteCounts none_ = NonFiniteCounts(columnCount);
  };
  class Patterns final : public PatternScan {
   public:
    bool next(PatternBatch& batch) override {
      constexpr std::size_t count = 64;
      batch.rows.assign(count * words, OBS{});
      batch.weights.assign(count, 1.0);
      batch.counts.assign(count, 1);
      return true;  // there are ever more
    }
    const NonFiniteCounts& nonFinite() const override { return none_; }

   private:
    NonFiniteCounts none_ = NonFiniteCounts(columnCount);
  };

  std::string source_ = "wide";
  std::vector<Column> columns_{{"a", "text", ColumnKind::Text},
                               {"b", "text", ColumnKind::Text},
                               {"c", "text", ColumnKind::Text},
                               {"d", "text", ColumnKind::Text}};
};

class WideCases : public testing::Test {
 protected:
  RelationCases make(int width) {
    std::vector<ColumnRead> reads;
    for (int i = 0; i < WideRelation::columnCount; ++i) {
      dictionary_.variables.emplace_back().widthKnown = false;
      ColumnRead& read = reads.emplace_back();
      read.column = i;
      read.as = ColumnKind::Text;
      read.width = width;
    }
    return {std::make_unique<WideRelation>(), dictionary_, reads, {}};
  }

  Dictionary dictionary_;
};

TEST_F(WideCases, ComeOneByOneWhenThereTurnOutToBeTooManyPatterns) {
  RelationCases cases = make(WideRelation::width);
  const std::vector<int> columns{0, 1, 2, 3};
  cases.use(columns);
  EXPECT_EQ(cases.delivery().why, Delivery::Why::ManyPatterns);
  EXPECT_FALSE(cases.delivery().asPatterns);
  EXPECT_FALSE(cases.deliversPatterns());
  EXPECT_EQ(cases.patterns(), nullptr);
  std::size_t count = 0;
  const auto stream = cases.open();
  for (CaseBlock block; stream->next(block);) count += block.count;
  EXPECT_EQ(count, 3U);
}

TEST_F(WideCases, AVariableThatIsNamedTwiceIsMeasuredOnce) {
  RelationCases cases = make(1);
  const std::vector<int> columns{2, 0, 2};
  cases.measure(dictionary_, columns);
  cases.measure(dictionary_, columns);
  EXPECT_EQ(dynamic_cast<WideRelation&>(cases.relation()).measured,
            (std::vector<std::size_t>{2, 0}));
  EXPECT_EQ(dictionary_.variables[2].type, 5);
  EXPECT_EQ(dictionary_.variables[0].type, 5);
  EXPECT_FALSE(dictionary_.variables[1].widthKnown);
}

using KeptPasses = DataTest;

// Nothing is kept of a pass that has not ended: the next one asks the data again.
TEST_F(KeptPasses, MayBeginBeforeTheFirstHasEnded) {
  const std::string file = parquet("p.parquet", "SELECT i AS a FROM range(10000) t(i)");
  OpenedData opened = openData(optionsFor(file, CaseMode::CaseByCase));
  const std::vector<int> columns{0};
  opened.cases->use(columns);
  const auto sumOf = [](CaseStream& stream, CaseBlock block) {
    double sum = 0;
    do
      for (std::size_t i = 0; i < block.count; ++i) sum += block.rows[i].number;
    while (stream.next(block));
    return sum;
  };
  const auto first = opened.cases->open();
  CaseBlock begun;
  ASSERT_TRUE(first->next(begun));
  ASSERT_LT(begun.count, 10000U);
  EXPECT_EQ(sumOf(*opened.cases->open(), {}), 49995000.0);
  EXPECT_EQ(sumOf(*first, begun), 49995000.0);
}

}  // namespace
}  // namespace embedded::data
