// CSV counted on its bytes, against a map of lines, and against the engine's reader.
#include <rapidcheck.h>

#include <chrono>
#include <map>
#include <random>
#include <stdexcept>
#include <thread>

#include "Support.h"
#include "embedded/data/CsvCounting.h"
#include "embedded/data/CsvPatterns.h"

namespace embedded::data {
namespace {

using Line = std::vector<std::string>;
using Lines = std::map<Line, std::uint64_t>;

// How a file is written.
struct Writing {
  char delimiter = ',';
  std::string end = "\n";
  bool endsLast = true;  // whether the last line has an end
};

class CsvCounting : public DataTest {
 protected:
  // The counts of some columns of a file with a header of its own; nothing when it is not plain.
  std::optional<Lines> counted(const std::string& file, std::size_t fields,
                               const std::vector<std::size_t>& wanted, int threads = 1,
                               std::size_t block = 1U << 20U, char delimiter = ',') const {
    std::ifstream stream(file, std::ios::binary);
    std::string header;
    std::getline(stream, header);
    if (header.ends_with('\r')) header.pop_back();
    const CsvForm form{{{file, header.size()}}, delimiter, fields};
    const auto texts = countTexts(form, wanted, {threads, {}, block});
    if (!texts) return std::nullopt;
    Lines lines;
    for (std::size_t i = 0; i < texts->patterns.counts.size(); ++i) {
      Line line;
      for (std::size_t c = 0; c < wanted.size(); ++c)
        line.push_back(texts->texts[c].at(
            static_cast<std::size_t>(texts->patterns.rows[i * wanted.size() + c].number)));
      EXPECT_TRUE(lines.emplace(line, texts->patterns.counts[i]).second) << "counted in two places";
    }
    return lines;
  }

  bool isPlain(const std::string& content, std::size_t fields = 2) const {
    return counted(write("data.csv", content), fields, {0}).has_value();
  }
};

std::string joined(const Line& line, char delimiter) {
  std::string text;
  for (std::size_t i = 0; i < line.size(); ++i)
    text += (i == 0 ? "" : std::string(1, delimiter)) + line[i];
  return text;
}

std::string fileOf(const std::vector<Line>& lines, const Writing& writing) {
  std::string content = "header" + writing.end;
  for (std::size_t i = 0; i < lines.size(); ++i)
    content += joined(lines[i], writing.delimiter) +
               (i + 1 < lines.size() || writing.endsLast ? writing.end : "");
  return content;
}

// Lines of three fields, of few and of more texts, short and long, empty, not all of them ASCII.
std::vector<Line> randomLines(std::mt19937& random, std::size_t count) {
  const auto below = [&](int end) {
    return std::uniform_int_distribution<int>(0, end - 1)(random);
  };
  const std::vector<std::string> words{
      "",        "1",        "0",         "1.0",   "a word",
      "seven77", "eight888", "nine99999", "Grüße", "long text of a field"};
  std::vector<Line> lines;
  for (std::size_t i = 0; i < count; ++i)
    lines.push_back({words[static_cast<std::size_t>(below(3)) + 1],
                     words[static_cast<std::size_t>(below(10))], std::to_string(below(200))});
  return lines;
}

TEST_F(CsvCounting, CountsWhatAMapOfLinesCounts) {
  const bool passed = rc::check("lines in blocks, by several threads", [this] {
    std::mt19937 random(*rc::gen::arbitrary<std::uint32_t>());
    const Writing writing{*rc::gen::element(',', ';', '\t'),
                          *rc::gen::element<std::string>("\n", "\r\n"),
                          *rc::gen::arbitrary<bool>()};
    const auto lines = randomLines(random, static_cast<std::size_t>(*rc::gen::inRange(0, 300)));
    using Columns = std::vector<std::size_t>;
    const auto wanted = *rc::gen::elementOf(std::vector<Columns>{{0}, {1}, {2}, {0, 2}, {0, 1, 2}});
    const auto block = static_cast<std::size_t>(*rc::gen::inRange(1, 400));
    Lines expected;
    for (const Line& line : lines) {
      Line key;
      for (const std::size_t column : wanted) key.push_back(line[column]);
      ++expected[key];
    }
    const auto found = counted(write("data.csv", fileOf(lines, writing)), 3, wanted,
                               *rc::gen::inRange(1, 4), block, writing.delimiter);
    RC_ASSERT(found.has_value());
    RC_ASSERT(*found == expected);
  });
  EXPECT_TRUE(passed);
}

TEST_F(CsvCounting, LeavesToTheEngineWhatIsNotPlain) {
  EXPECT_TRUE(isPlain("a,b\n1,2\n"));
  EXPECT_FALSE(isPlain("a,b\n1,\"2\"\n")) << "quotes";
  EXPECT_FALSE(isPlain("a,b\n1\n")) << "too few fields";
  EXPECT_FALSE(isPlain("a,b\n1,2,3\n")) << "too many fields";
  EXPECT_FALSE(isPlain("a,b\n1,2\n\n1,2\n")) << "a blank line";
  EXPECT_FALSE(isPlain("a\n1\n\n", 1)) << "a blank line of one column";
  EXPECT_FALSE(isPlain("a\r\n1\r\n\r\n", 1)) << "the same with carriage returns";
  EXPECT_FALSE(isPlain("a,b\n1,2\r\n")) << "another line end than the header's";
  EXPECT_FALSE(isPlain("a,b\r\n1,2\n")) << "the other way round";
  EXPECT_FALSE(isPlain("a,b\r\n1\r,2\n")) << "a carriage return elsewhere";
  EXPECT_FALSE(isPlain("a,b\r1,2\r")) << "carriage returns only";
  EXPECT_FALSE(isPlain(std::string("a,b\n1,\0\n", 8))) << "a NUL byte";
  EXPECT_FALSE(isPlain("a,b\n1,\xFF\n")) << "no UTF-8";
  EXPECT_FALSE(isPlain("a,b")) << "no end of the header's line";
}

TEST_F(CsvCounting, LeavesToTheEngineLinesThatEndInTwoWays) {
  // As many carriage returns as line feeds, but one stands elsewhere.
  EXPECT_FALSE(isPlain("a,b\r\n1,\n2,3\r\r\n"));
  EXPECT_FALSE(isPlain("a,b\r\n1,2\n3,4\r\r\n"));
  const std::string file = write("data.csv", "a,b\r1,2\r");
  const CsvForm form{{{file, 3}}, ',', 2};
  EXPECT_FALSE(countTexts(form, {0}, {1}).has_value()) << "a carriage return and no line feed";
}

TEST_F(CsvCounting, LeavesToTheEngineWhatIsNoFile) {
  const std::vector<std::string> others{path("none.csv"), path("."), "/dev/null"};
  for (const std::string& other : others)
    EXPECT_FALSE(countTexts({{{other, 1}}, ',', 1}, {0}, {1}).has_value()) << other;
}

TEST_F(CsvCounting, LeavesToTheEngineLinesLongerThanPlainDataHas) {
  const std::string line = "1," + std::string(200'000, 'x') + "\n";
  const std::string file = write("data.csv", "a,b\n1,2\n" + line + "1,2\n");
  EXPECT_FALSE(counted(file, 2, {0}, 1, 1000).has_value());
  EXPECT_EQ(counted(file, 2, {0}), (Lines{{{"1"}, 3}})) << "in one block with all others";
}

TEST_F(CsvCounting, LeavesToTheEnginePatternsThatFitNoKey) {
  // Lines of thirty fields, in each field one digit.
  const auto lines = [](char first, char last) {
    std::string content = "h\n";
    for (char digit = first; digit <= last; ++digit) {
      for (int field = 0; field < 30; ++field)
        content += std::string(field == 0 ? "" : ",") + digit;
      content += "\n";
    }
    return content;
  };
  std::vector<std::size_t> all(30);
  for (std::size_t i = 0; i < all.size(); ++i) all[i] = i;
  const std::string few = write("few.csv", lines('0', '3'));
  const std::string others = write("others.csv", lines('4', '7'));
  const std::string many = write("many.csv", lines('0', '7'));
  const auto counts = [&](const std::vector<std::string>& files) {
    CsvForm form{{}, ',', 30};
    for (const std::string& file : files) form.files.push_back({file, 1});
    const auto found = countTexts(form, all, {1});
    return found ? found->patterns.counts : std::vector<std::uint64_t>{};
  };
  EXPECT_EQ(counts({few, few}), (std::vector<std::uint64_t>{2, 2, 2, 2}));
  EXPECT_EQ(counts({others}), (std::vector<std::uint64_t>{1, 1, 1, 1}));
  EXPECT_TRUE(counts({many}).empty()) << "of one file";
  EXPECT_TRUE(counts({few, others}).empty()) << "of two files together";
}

TEST_F(CsvCounting, LeavesToTheEngineColumnsOfManyLongTexts) {
  std::string content = "a,b\n";
  for (int i = 0; i < 5000; ++i) content += "a long text " + std::to_string(i) + ",1\n";
  EXPECT_FALSE(counted(write("data.csv", content), 2, {0}).has_value());
}

// What happens while a file is read: the listener is called after each block.
class CsvCountingMeanwhile : public CsvCounting {
 protected:
  CsvCountingMeanwhile() {
    std::string content = "a,b\n";
    for (int i = 0; i < 1000; ++i) content += "1,0\n";
    file_ = write("data.csv", content);
  }
  auto count(const ProgressListener& listener, int threads = 1) const {
    return countTexts({{{file_, 3}}, ',', 2}, {0}, {threads, listener, 100});
  }
  std::string file_;
};

TEST_F(CsvCountingMeanwhile, AFileThatGetsShorterIsLeftToTheEngine) {
  EXPECT_FALSE(count([&](const Progress&) { std::filesystem::resize_file(file_, 203); }));
}

TEST_F(CsvCountingMeanwhile, AnInterruptEndsIt) {
  const Failure failure =
      failureOf([&] { count([](const Progress&) { Session::cancelled = true; }); });
  Session::cancelled = false;
  EXPECT_EQ(failure.kind, ErrorKind::Cancelled);
}

TEST_F(CsvCountingMeanwhile, WhatTheListenerThrowsComesOut) {
  std::size_t told = 0;
  const auto listener = [&](const Progress&) {
    ++told;
    throw std::range_error("enough");
  };
  EXPECT_THROW(count(listener), std::range_error);
  EXPECT_EQ(told, 1U);
}

TEST_F(CsvCountingMeanwhile, ALineThatIsNotPlainEndsAllThreads) {
  std::ofstream(file_, std::ios::app) << "1,\"2\"\n1,2\n";
  std::size_t told = 0;
  EXPECT_FALSE(count(
      [&](const Progress&) {  // a slow one: the other thread comes to the quotes meanwhile
        if (++told == 1) std::this_thread::sleep_for(std::chrono::milliseconds(100));
      },
      2));
}

TEST_F(CsvCounting, LeavesToTheEngineColumnsOfManyTexts) {
  std::string content = "a,b\n";
  for (int i = 0; i < 5000; ++i) content += std::to_string(i) + ",1\n";
  const std::string file = write("data.csv", content);
  EXPECT_FALSE(counted(file, 2, {0}).has_value());
  EXPECT_EQ(counted(file, 2, {1}), (Lines{{{"1"}, 5000}}));
}

TEST_F(CsvCounting, TellsHowFarItHasCome) {
  std::string content = "a,b\n";
  for (int i = 0; i < 1000; ++i) content += "1,0\n";
  const CsvForm form{{{write("1.csv", content), 3}, {write("2.csv", content), 3}}, ',', 2};
  std::vector<Progress> told;
  const auto asking = std::this_thread::get_id();
  const auto listener = [&](const Progress& progress) {
    EXPECT_EQ(std::this_thread::get_id(), asking);
    told.push_back(progress);
  };
  ASSERT_TRUE(countTexts(form, {0}, {1, listener, 100}));
  EXPECT_EQ(told.size(), 80U) << "blocks of 100 bytes of two files of 4000";
  EXPECT_EQ(told.front().rows, 25U);
  EXPECT_EQ(told.back().rows, 2000U);
  for (const Progress& progress : told) EXPECT_NEAR(static_cast<double>(progress.total), 2000, 3);
  told.clear();
  ASSERT_TRUE(countTexts(form, {0}, {3, listener, 100}));
  for (const Progress& progress : told) EXPECT_LE(progress.rows, 2000U);
}

// The same cases twice: as they are, and beside a column with quotes, which the engine has to read.
class CsvPatterns : public CsvCounting {
 protected:
  static Seen read(const std::string& file, const std::string& schema, bool weighted) {
    DataOptions options = optionsFor(file, CaseMode::Patterns);
    options.schema = schema;
    if (weighted) options.weight = "w";
    options.splits = {"s"};
    return readAll(options, {"v", "t", "s", "w"});
  }
};

TEST_F(CsvPatterns, AreLeftToTheEngineWithoutRoomForTheirTexts) {
  const std::string file = write("d.csv", "v\n1\n0\n1\n");
  Engine engine({});
  const CsvSource source(engine, parseAddress(file), {});
  ScanRequest request;
  request.columns.emplace_back().as = ColumnKind::Integer;
  EXPECT_TRUE(countCsvPatterns(engine, source, request, {1}, path("texts.csv")).has_value());
  EXPECT_FALSE(countCsvPatterns(engine, source, request, {1}, path("none/texts.csv")).has_value());
}

TEST_F(CsvPatterns, AreThoseThatTheEngineFinds) {
  const std::string schema = write("both.json", R"({"fields": [
      {"name": "v", "type": "number", "missingValues": ["", "-9"]},
      {"name": "t", "type": "string"}, {"name": "s", "type": "number"},
      {"name": "w", "type": "number"}], "fieldsMatch": "partial"})");
  const std::vector<std::string> values{"1", "1.0", "1e0", " 1", "0", "-0", "", "-9", "inf", "nan"};
  const std::vector<std::string> texts{"", "a", "a ", "b", "Grüße aus dem Süden"};
  const std::vector<std::string> weights{"1", "0.5", "0.4999", "2.5", "-1", "", "inf", "1.0"};
  std::mt19937 random(1);
  const auto one = [&](const std::vector<std::string>& of) {
    return of[std::uniform_int_distribution<std::size_t>(0, of.size() - 1)(random)];
  };
  std::string plain = "v,t,s,w,q\n";
  std::string quoted = plain;
  for (int i = 0; i < 3000; ++i) {
    const std::string line =
        joined({one(values), one(texts), one({"2", "", "1", "10"}), one(weights)}, ',');
    plain += line + ",x\n";
    quoted += line + ",\"x\"\n";
  }
  for (const bool weighted : {false, true}) {
    const Seen counted = read(write("plain.csv", plain), schema, weighted);
    const Seen engines = read(write("quoted.csv", quoted), schema, weighted);
    EXPECT_GT(counted.cases.size(), 100U);
    EXPECT_EQ(counted.cases, engines.cases);
    ASSERT_EQ(counted.document.messages.size(), engines.document.messages.size());
    EXPECT_FALSE(counted.document.messages.empty()) << "infinite values are told";
    for (std::size_t i = 0; i < counted.document.messages.size(); ++i)
      EXPECT_TRUE(*counted.document.messages[i].text == *engines.document.messages[i].text);
  }
}

}  // namespace
}  // namespace embedded::data
