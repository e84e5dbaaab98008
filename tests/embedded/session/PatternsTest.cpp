// Cases as patterns, cases one by one, and few rows fetched at a time: the same document to the
// last bit.
//
// Data and commands are drawn at random. Nearly every run has many split groups, and each of these
// is a data set of its own, with its own extremes, missing values and counts.
#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <bit>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "embedded/data/DuckDb.h"
#include "embedded/errors/Error.h"
#include "embedded/output/Values.h"
#include "embedded/session/Run.h"

namespace embedded {
namespace {

using output::CaseCounts;
using output::Document;
using output::machineText;
using output::Table;
using output::TextPtr;

// Everything that a document says, numbers by their bits.
class Dump {
 public:
  explicit Dump(const Document& document) {
    out_ << document.procedure << document.accepted << '\n';
    for (const auto& note : document.notes) add({note.label, note.text}, "note");
    for (const auto& message : document.messages) {
      out_ << int(message.severity) << ' ' << message.split << ' ' << message.show.value_or(-1)
           << ' ' << message.level.value_or(-1);
      add({message.text}, "message");
    }
    for (const auto& group : document.splits) add(group.values, "group");
    add(document.data.cases);
    for (const auto& [split, cases] : document.data.casesBySplit) {
      out_ << "group " << split << ": ";
      add(cases);
    }
    for (const Table& table : document.tables) add(table);
  }

  std::string text() const { return out_.str(); }

 private:
  void add(const std::vector<TextPtr>& texts, const char* what) {
    out_ << what;
    for (const TextPtr& text : texts) out_ << " | " << (text ? machineText(*text) : "none");
    out_ << '\n';
  }

  void add(const CaseCounts& cases) {
    out_ << cases.read << " cases, " << cases.invalidWeight << " of invalid weight";
    for (const auto& [name, missing] : cases.missing)
      out_ << ", " << name << ' ' << missing.system << ' ' << missing.user;
    out_ << '\n';
  }

  void add(const Table& table) {
    out_ << "table " << table.split << table.splitRows;
    add({table.title}, "");
    for (const auto& dimension : table.dimensions) {
      add({dimension.label}, "dimension");
      for (const auto& node : dimension.nodes) {
        out_ << node.parent << node.isGroup << node.hasCells << ' ';
        add({node.label}, "node");
        add(node.footnotes, "notes");
      }
    }
    for (const auto& cell : table.cells) {
      for (const output::Index at : cell.at) out_ << at << ' ';
      out_ << cell.split << ' ' << int(cell.state) << ' ' << int(cell.format) << ' '
           << std::bit_cast<std::uint64_t>(cell.value) << '\n';
      if (cell.footnotes != output::none) add(table.footnoteLists[cell.footnotes], "notes");
    }
  }

  std::ostringstream out_;
};

// The columns of the data: a name, the type it is stored as, and the values that it may have.
struct RandomColumn {
  const char* name;
  const char* type;
  std::vector<std::string> values;
};

const std::vector<RandomColumn>& columns() {
  static const std::vector<RandomColumn> all{
      {"g", "BIGINT", {}},  // a split variable of many values; filled for each run
      {"h", "VARCHAR", {"", "\"\"", "a", "b", "B", "a b"}},
      {"x", "DOUBLE", {"", "0", "-0", "1", "1", "1.5", "-7", "9", "-8.5", "nan", "inf"}},
      {"y", "INTEGER", {"", "0", "0", "1", "1", "300", "-1"}},
      {"z", "FLOAT", {"0.25", "0.5", "-2"}},
      {"s", "VARCHAR", {"", "\"\"", "a", "b", "B", "NA", "a longer value"}},
      {"d", "DATE", {"", "2020-01-01", "1969-12-31", "2024-02-29"}},
      {"k", "SMALLINT", {"", "1", "1", "2", "2", "3"}},
      {"w",
       "DOUBLE",
       {"", "0.5", "0.49999999999999994", "1", "1.49", "1.5", "2.5", "0", "-1", "1000000000",
        "nan"}}};
  return all;
}

constexpr const char* schema = R"({"fieldsMatch": "partial", "fields": [
  {"name": "x", "type": "number", "missingValues": ["", "9"],
   "proportions:missingRanges": [{"min": -9, "max": -8}]},
  {"name": "y", "type": "integer", "missingValues": ["", {"value": "300", "label": "not asked"}],
   "categories": [{"value": 0, "label": "no"}, {"value": 1, "label": "yes"}]},
  {"name": "s", "type": "string", "missingValues": ["NA"]},
  {"name": "d", "type": "date"}]})";

class Draw {
 public:
  explicit Draw(std::uint32_t seed) : random_(seed) {}

  std::size_t below(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
  }
  const std::string& of(const std::vector<std::string>& values) {
    return values[below(values.size())];
  }

  // A table as CSV; the values of a group come from few of those that a column may have.
  std::string table() {
    std::string text = "g,h,x,y,z,s,d,k,w\n";
    const std::size_t groups = 20 + below(60);
    const std::size_t rows = 1 + below(groups * 10);
    for (std::size_t row = 0; row < rows; ++row) {
      const std::size_t group = below(groups);
      text += group == 0 ? "" : std::to_string(group);
      for (std::size_t c = 1; c < columns().size(); ++c) {
        const auto& values = columns()[c].values;
        const std::size_t few = 1 + (group * 7 + c) % values.size();
        text += ',' + values[(group + below(few)) % values.size()];
      }
      text += '\n';
    }
    return text;
  }

  std::string command() {
    static const std::vector<std::string> designs{
        "ONESAMPLE x y d z CITYPES=ALL TESTTYPES=ALL TESTVAL=0.4",
        "ONESAMPLE s x",
        "ONESAMPLE s CITYPES=ALL TESTTYPES=NONE",
        "PAIREDSAMPLES x y z CITYPES=ALL TESTTYPES=ALL",
        "PAIREDSAMPLES x WITH y d",
        "INDEPENDENTSAMPLES x y z BY k CITYPES=ALL TESTTYPES=ALL",
        "INDEPENDENTSAMPLES y BY x SELECT=MIDPOINT",
        "INDEPENDENTSAMPLES y x BY s SELECT=LEVEL(\"a\" \"b\")",
        "INDEPENDENTSAMPLES s BY y SELECT=LEVEL(0 1)"};
    static const std::vector<std::string> rules{"",
                                                " /SUCCESS VALUE=FIRST",
                                                " /SUCCESS VALUE=LAST",
                                                " /SUCCESS VALUE=MIDPOINT",
                                                " /SUCCESS VALUE=CUTPOINT(0.5)",
                                                " /SUCCESS VALUE=LEVEL(1)",
                                                " /SUCCESS VALUE=LEVEL(\"a\" \"b\")"};
    static const std::vector<std::string> missing{"", "", " /MISSING SCOPE=LISTWISE",
                                                  " /MISSING USERMISSING=INCLUDE",
                                                  " /MISSING SCOPE=LISTWISE USERMISSING=INCLUDE"};
    return "PROPORTIONS " + of(designs) + of(rules) + of(missing);
  }

 private:
  std::mt19937 random_;
};

const Module& module() {
  static const Module loaded = Module::load(BUILD_ROOT "/lib/proportions.module.json", false);
  return loaded;
}

class PatternsOfARun : public testing::Test {
 protected:
  PatternsOfARun() {
    std::string name = (std::filesystem::temp_directory_path() / "patterns-XXXXXX").string();
    folder_ = mkdtemp(name.data());
  }
  ~PatternsOfARun() override { std::filesystem::remove_all(folder_); }

  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  // Keeps a table of texts as a file of typed columns.
  void makeParquet(const std::string& csv, const std::string& target) const {
    std::string typed;
    std::string texts;
    for (const RandomColumn& column : columns()) {
      const std::string name = column.name;
      typed += (typed.empty() ? "" : ", ") + name + "::" + column.type + " AS " + name;
      texts += (texts.empty() ? "'" : ", '") + name + "': 'VARCHAR'";
    }
    data::Engine({}).rows("COPY (SELECT " + typed + " FROM read_csv('" + csv + "', columns={" +
                          texts + "}, header=true, auto_detect=false, allow_quoted_nulls=false))" +
                          " TO '" + target + "' (FORMAT parquet)");
  }

  static std::string document(Request request, CaseDelivery delivery) {
    request.delivery = delivery;
    return Dump(run(request, module())->document).text();
  }

  std::filesystem::path folder_;
};

TEST_F(PatternsOfARun, TellWhatTheCasesTell) {
  std::size_t accepted = 0;
  std::size_t groups = 0;
  const bool passed = rc::check("both documents are the same", [&] {
    Draw draw(*rc::gen::noShrink(rc::gen::arbitrary<std::uint32_t>()));
    const std::string stem = path(std::to_string(groups) + "-" + std::to_string(accepted));
    std::ofstream(stem + ".csv", std::ios::binary) << draw.table();
    std::ofstream(stem + ".schema.json") << schema;
    Request request;
    request.data = stem + ".csv";
    if (draw.below(2) == 0) {
      request.data = stem + ".parquet";
      makeParquet(stem + ".csv", request.data);
    }
    request.command = draw.command();
    request.splitsGiven = true;
    const std::size_t splits = draw.below(4);
    if (splits != 0) request.splits.emplace_back("g");
    if (splits == 2) request.splits.emplace_back("h");
    if (draw.below(2) == 0) request.weight = "w";
    request.splitLayout = draw.below(2) == 0 ? SplitLayout::Rows : SplitLayout::Tables;
    request.threads = static_cast<int>(1 + draw.below(3));
    const std::string byPattern = document(request, CaseDelivery::Patterns);
    const std::string byCase = document(request, CaseDelivery::CaseByCase);
    request.rowsAtOnce = static_cast<std::uint32_t>(1 + draw.below(3));
    const std::string byFewRows = document(request, CaseDelivery::CaseByCase);
    request.rowsAtOnce = 0;
    if (byPattern != byCase || byCase != byFewRows) RC_LOG(request.command + " on " + request.data);
    RC_ASSERT(byPattern == byCase);
    RC_ASSERT(byCase == byFewRows);
    const auto session = run(request, module());
    if (session->document.accepted) ++accepted;
    groups += std::max<std::size_t>(session->document.splits.size(), 1);
    for (const char* ending : {".csv", ".parquet", ".schema.json"})
      std::filesystem::remove(stem + ending);
  });
  EXPECT_TRUE(passed);
  // The draws are of use: most commands are understood, and there are thousands of data sets.
  EXPECT_GE(accepted, 60U);
  EXPECT_GE(groups, 2000U);
}

}  // namespace
}  // namespace embedded
