// Workbooks, read back by a reader that knows nothing of the library that wrote them.
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>
#include <string>
#include <system_error>

#include "Baselines.h"
#include "Cells.h"
#include "render/Columns.h"
#include "render/XlsxBook.h"

namespace {

using nlohmann::json;
using samples::rendered;

json readBook(const std::string& bytes) {
  // Tests run beside one another, each in a process of its own.
  const auto path = std::filesystem::path(BUILD_ROOT) / "received" /
                    ("book-" + std::to_string(getpid()) + ".xlsx");
  std::filesystem::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
  const std::string text = samples::outputOf("python3 '" + std::string(PROJECT_ROOT) +
                                             "/tests/render/read_xlsx.py' '" + path.string() + "'");
  std::filesystem::remove(path);
  EXPECT_FALSE(text.empty());
  return json::parse(text, nullptr, false);
}

std::string place(std::size_t row, std::size_t column) {
  std::string letters;
  for (std::size_t rest = column + 1; rest > 0; rest = (rest - 1) / 26) {
    letters.insert(letters.begin(), static_cast<char>('A' + (rest - 1) % 26));
  }
  return letters + std::to_string(row + 1);
}

void expectCell(const json& cells, const std::string& at, const render::ReaderCell& wanted) {
  const bool isNumber = wanted.cell != nullptr &&
                        wanted.cell->state == embedded::output::State::Valid &&
                        std::isfinite(wanted.cell->value);
  const bool isCount = wanted.cell == nullptr && !wanted.text.empty();
  if (isCount) {
    ASSERT_TRUE(cells.contains(at)) << at;
    EXPECT_EQ(cells[at]["value"].get<double>(), std::stod(wanted.text)) << at;
    return;
  }
  if (!isNumber) {
    const std::string text = wanted.text + render::footnoteMarks(wanted.notes);
    EXPECT_EQ(cells.contains(at), !text.empty()) << at;
    return;
  }
  ASSERT_TRUE(cells.contains(at)) << at;
  EXPECT_EQ(cells[at]["type"], "n") << at;
  // The library writes 16 digits.
  std::array<char, 32> digits{};
  std::snprintf(digits.data(), digits.size(), "%.16g", wanted.cell->value);
  EXPECT_EQ(cells[at]["value"].get<double>(), std::stod(digits.data())) << at;
  EXPECT_EQ(cells[at]["format"], render::xlsxPattern(wanted)) << at;
}

void expectSameCells(const samples::Document& document) {
  const json book = readBook(rendered(document, "xlsx"));
  const auto tables = samples::shownTables(document);
  ASSERT_EQ(book.size(), tables.size() + 1);
  for (std::size_t t = 0; t < tables.size(); ++t) {
    const json& sheet = book[t + 1];
    const json& cells = sheet["cells"];
    const std::size_t head = 2 + render::headLines(tables[t], 0, tables[t].columns.size()).size();
    const std::size_t labels = tables[t].labelColumns();
    EXPECT_EQ(cells["A1"]["value"], tables[t].title);
    EXPECT_EQ(sheet["frozen"], json::array({head, labels}));
    for (std::size_t r = 0; r < tables[t].rows.size(); ++r) {
      const auto& row = tables[t].rows[r];
      for (std::size_t h = 0; h < labels; ++h) {
        const std::string at = place(head + r, h);
        // A cell keeps the line breaks of its label.
        EXPECT_EQ(cells.contains(at) ? render::visible(cells[at]["value"].get<std::string>()) : "",
                  render::visible(row.labels[h].text));
      }
      for (std::size_t c = 0; c < row.cells.size(); ++c) {
        expectCell(cells, place(head + r, labels + c), row.cells[c]);
      }
    }
  }
}

// Texts of all cells of a sheet, one after the other.
std::string textsOf(const json& sheet) {
  std::string all;
  for (const auto& [at, cell] : sheet["cells"].items()) {
    all += cell["value"].is_string() ? cell["value"].get<std::string>() + "\n" : "";
  }
  return all;
}

render::ReaderCell cellOf(std::string text, const embedded::output::Cell& cell) {
  render::ReaderCell shown;
  shown.text = std::move(text);
  shown.cell = &cell;
  return shown;
}

TEST(Xlsx, ReadsBackAsTheSameCells) {
  for (const auto& document :
       {samples::oneSample(), samples::splitRows(), samples::splitTables(), samples::pairs(),
        samples::wide(), samples::hostile(), samples::eastAsian()}) {
    expectSameCells(document);
  }
}

TEST(Xlsx, SaysHowTheRunWasMadeOnItsFirstSheet) {
  const auto document = samples::oneSample();
  const std::string texts = textsOf(readBook(rendered(document, "xlsx"))[0]);
  for (const std::string& word : samples::provenance(document)) {
    EXPECT_NE(texts.find(word), std::string::npos) << word;
  }
  EXPECT_NE(texts.find(document.command), std::string::npos);
  EXPECT_NE(texts.find("warning: /ONESAMPLE names a variable more than once."), std::string::npos);
}

TEST(Xlsx, KeepsFootnotesAndNotesUnderTheTable) {
  const json book = readBook(rendered(samples::oneSample(), "xlsx"));
  const std::string texts = textsOf(book[1]);
  EXPECT_NE(texts.find("a The statistic could not be computed from the available cases."),
            std::string::npos);
  EXPECT_NE(texts.find("no continuity correction"), std::string::npos);
}

TEST(Xlsx, SpansHeadsOverTheirColumns) {
  const json book = readBook(rendered(samples::oneSample(), "xlsx"));
  EXPECT_EQ(book[1]["merged"], json::array({"C3:E3", "F3:F4", "G3:H3"}));
}

TEST(Xlsx, WritesFormulasAndCodesAsText) {
  const json book = readBook(rendered(samples::hostile(), "xlsx"));
  EXPECT_EQ(book[1]["cells"]["A5"]["value"], "=HYPERLINK(\"http://x\")");
  EXPECT_EQ(book[1]["cells"]["A5"]["type"], "s");
}

TEST(Xlsx, KeepsTextsThatLookLikeCodesOfCharacters) {
  auto document = samples::oneSample();
  document.command = "_x000D_ _x00zz_ _x0041! _x00";
  EXPECT_NE(
      textsOf(readBook(rendered(document, "xlsx"))[0]).find("_x005F_x000D_ _x00zz_ _x0041! _x00\n"),
      std::string::npos);
}

TEST(Xlsx, NamesManySheetsApart) {
  auto document = samples::splitTables();
  const json book = readBook(rendered(document, "xlsx"));
  std::set<std::string> names;
  for (const json& sheet : book) {
    names.insert(sheet["name"].get<std::string>());
    EXPECT_LE(sheet["name"].get<std::string>().size(), 31U);
  }
  EXPECT_EQ(names.size(), book.size());
}

TEST(Xlsx, ShowsNumbersAsOtherFormatsPrintThem) {
  embedded::output::Cell cell;
  cell.value = 0.35;
  EXPECT_EQ(render::xlsxPattern(cellOf("0.350", cell)), "0.000");
  EXPECT_EQ(render::xlsxPattern(cellOf("7", cell)), "0");
  EXPECT_EQ(render::xlsxPattern(cellOf("<.001", cell)), "\"<.001\"");
  EXPECT_EQ(render::xlsxPattern(cellOf("1.0e-20", cell)), "0.0E+00");
  cell.value = -0.0001;
  EXPECT_EQ(render::xlsxPattern(cellOf("0.000", cell)), "0.000;0.000");
  EXPECT_EQ(render::xlsxPattern(cellOf("-0.0001", cell)), "0.0000");
  render::ReaderCell noted = cellOf("1.000", cell);
  cell.value = 1.0;
  noted.isAtRangeEnd = true;
  noted.notes = {0, 2};
  EXPECT_EQ(render::xlsxPattern(noted), "0.000\"\u2020 a,c\"");
}

TEST(Xlsx, IsTheSameFileEachTime) {
  EXPECT_EQ(rendered(samples::oneSample(), "xlsx"), rendered(samples::oneSample(), "xlsx"));
}

TEST(Xlsx, CutsTextsThatNoCellHolds) {
  auto document = samples::oneSample();
  document.data.source = std::string(40000, 'x');
  const json book = readBook(rendered(document, "xlsx"));
  EXPECT_NE(textsOf(book[0]).find(std::string(32766, 'x') + "\u2026"), std::string::npos);
}

TEST(Xlsx, TellsWhyNoWorkbookCanBeMade) {
  const char* before = std::getenv("TMPDIR");
  const std::string old = before == nullptr ? "" : before;
  setenv("TMPDIR", "/nowhere", 1);
  std::ostringstream out;
  try {
    render::findFormat("xlsx")->render(samples::oneSample(), samples::context(), out);
    ADD_FAILURE() << "a workbook without a place to make it";
  } catch (const std::system_error& problem) {
    EXPECT_NE(problem.code(), std::error_code());
  }
  EXPECT_EQ(out.str(), "");
  old.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", old.c_str(), 1);
}

TEST(Xlsx, ReadsBackAsTheSameCellsWhateverTheShapeOfTheTable) {
  samples::Builder bare;
  const auto rows = bare.writer.table(samples::id("Bare"));
  bare.writer.position(rows, bare.writer.dimension(rows, samples::id("v")), samples::Axis::Row, 1,
                       false, false);
  bare.cell(rows, {{samples::id("a")}}, 0.25);
  const auto columns = bare.table("One line", {}, samples::id("s"));
  bare.cell(columns, {{samples::id("x")}}, 0.5);
  const auto uneven = bare.table("Uneven", {samples::id("v")}, samples::id("s"));
  bare.cell(uneven, {{samples::id("g"), samples::id("a")}, {samples::id("x")}}, 0.25);
  bare.cell(uneven, {{samples::id("b")}, {samples::id("x")}}, 0.5);
  expectSameCells(bare.document);
}

TEST(Xlsx, ShowsTheLineOfTheCommandUnderItsMessage) {
  const json book = readBook(rendered(samples::refused(), "xlsx"));
  const std::string texts = textsOf(book[0]);
  EXPECT_NE(texts.find("Did you mean TESTVAL?\n"), std::string::npos) << texts;
  EXPECT_NE(texts.find("^~~~~~~~\n"), std::string::npos) << texts;
}

TEST(Xlsx, NamesASheetWithoutWhatNoNameCanHold) {
  samples::Builder builder;
  const auto table = builder.table("Rates [a/b]: 50%?", {samples::id("v")}, samples::id("s"));
  builder.cell(table, {{samples::id("a")}, {samples::id("x")}}, 0.25);
  EXPECT_EQ(readBook(rendered(builder.document, "xlsx"))[1]["name"], "1 Rates  a b   50%");
}

TEST(Xlsx, WritesWhatIsNoNumberAsText) {
  samples::Builder builder;
  const auto table = builder.table("t", {samples::id("v")}, samples::id("s"));
  const auto at = [](const char* row) {
    return std::vector<samples::Builder::Path>{{samples::id(row)}, {samples::id("x")}};
  };
  builder.cell(table, at("a"), samples::nan, "of no cases");
  builder.cell(table, at("b"), std::numeric_limits<double>::infinity());
  builder.cell(table, at("c"), samples::missing, "of no cases");
  const json cells = readBook(rendered(builder.document, "xlsx"))[1]["cells"];
  EXPECT_EQ(cells["B4"]["value"], "NaN a");
  EXPECT_EQ(cells["B5"]["value"], "\u221e");
  EXPECT_EQ(cells["B6"]["value"], "a");
}

TEST(Xlsx, WritesSentencesUnderTheTableWhenAsked) {
  render::Context with = samples::context();
  with.rowSentences = true;
  const std::string texts = textsOf(readBook(rendered(samples::oneSample(), "xlsx", with))[1]);
  EXPECT_NE(texts.find("Smokes daily = yes: 7 of 20, Proportion = 0.350, 95% Confidence Interval "
                       "from 0.154 to 0.592 (Clopper-Pearson exact).\n"),
            std::string::npos)
      << texts;
}

TEST(Xlsx, ShowsAnExponentWithoutAPoint) {
  embedded::output::Cell cell;
  cell.value = 2e20;
  EXPECT_EQ(render::xlsxPattern(cellOf("2e+20", cell)), "0E+00");
  EXPECT_EQ(render::xlsxPattern(cellOf("2.000e+20", cell)), "0.000E+00");
}

}  // namespace
