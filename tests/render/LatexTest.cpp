// LaTeX, held against approved outputs. The tests that compile it need pdflatex; script/prove runs
// them.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "Baselines.h"
#include "Cells.h"
#include "render/LatexText.h"

namespace {

using samples::expectBaseline;
using samples::rendered;

bool hasPdflatex() {
  static const bool found = std::system("pdflatex --version >/dev/null 2>&1") == 0;
  return found;
}

// Compiles the text; what the program says when that fails, else nothing.
std::string problemsOf(const std::string& text, const std::string& name) {
  const std::filesystem::path folder = std::filesystem::path(BUILD_ROOT) / "latex" / name;
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "document.tex", std::ios::binary) << text;
  const std::string command = "cd '" + folder.string() +
                              "' && pdflatex -halt-on-error -interaction=nonstopmode "
                              "-no-shell-escape document.tex >output.txt 2>&1 </dev/null";
  return std::system(command.c_str()) == 0 ? "" : samples::readFile(folder / "output.txt");
}

// The text without commands of this name and what stands in their braces, braces within included.
std::string without(std::string text, const std::string& command) {
  for (std::size_t at = 0; (at = text.find(command, at)) != std::string::npos;) {
    std::size_t end = at + command.size();
    for (int open = 1; open > 0; ++end) {
      open += text[end] == '{' ? 1 : text[end] == '}' ? -1 : 0;
    }
    text.erase(at, end - at);
  }
  return text;
}

// The numbers of a table's rows, as its source holds them: the last fields of each line.
std::vector<std::string> numbersIn(const std::string& tex, std::size_t labels) {
  std::vector<std::string> numbers;
  std::istringstream lines(tex);
  bool inside = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("\\bottomrule\\endfoot") || line.starts_with("\\end{longtable}")) {
      inside = line.starts_with("\\bottomrule");
      continue;
    }
    if (!inside || !line.ends_with("\\\\")) {
      continue;
    }
    line = without(without(without(line, "\\phantom{"), "\\rlap{"), "\\textsuperscript{");
    line.resize(line.size() - 2);
    std::size_t field = 0;
    for (std::size_t at = 0; at <= line.size(); ++field) {
      const std::size_t end = std::min(line.find(" & ", at), line.size());
      if (field >= labels) {
        numbers.push_back(line.substr(at, end - at));
      }
      at = end + 3;
    }
  }
  return numbers;
}

TEST(Latex, HoldsTheSameNumbers) {
  for (const auto& document : {samples::oneSample(), samples::splitTables(), samples::pairs()}) {
    std::vector<std::string> wanted;
    std::size_t labels = 0;
    for (const auto& table : samples::shownTables(document)) {
      for (const auto& row : table.rows) {
        labels = table.labelColumns();
        for (const auto& cell : row.cells) {
          wanted.push_back(cell.text.starts_with('<') ? "\\textless{}" + cell.text.substr(1)
                                                      : cell.text);
        }
      }
    }
    EXPECT_EQ(numbersIn(rendered(document, "latex"), labels), wanted);
  }
}

TEST(Latex, ShowsStatesBoundsProbabilitiesAndFootnotes) {
  expectBaseline("one-sample.tex", rendered(samples::oneSample(), "latex"));
}

TEST(Latex, PutsSplitGroupsBeforeTheRows) {
  expectBaseline("split-rows.tex", rendered(samples::splitRows(), "latex"));
}

TEST(Latex, SplitsWhatNoPageHolds) {
  expectBaseline("wide.tex", rendered(samples::wide(), "latex"));
}

TEST(Latex, EscapesLabels) {
  const std::string text = rendered(samples::hostile(), "latex");
  EXPECT_EQ(text.find("\\bf}"), std::string::npos);
  EXPECT_EQ(text.find("$x_1"), std::string::npos);
  expectBaseline("hostile.tex", text);
}

TEST(Latex, LeavesNoCharacterItsMeaning) {
  render::LatexText text;
  EXPECT_EQ(text.escaped("\\input{x}"), "\\textbackslash{}input\\{x\\}");
  EXPECT_EQ(text.escaped("50% $a_1^2$ & #~"),
            "50\\% \\$a\\_1\\textasciicircum{}2\\$ \\& \\#\\textasciitilde{}");
  EXPECT_EQ(text.escaped("[*]--"), "{[}{*}{]}-{}-");
  EXPECT_EQ(text.code("a  b"), "\\texttt{a\\ \\ b}");
}

TEST(LatexCompiles, EverySampleDocument) {
  ASSERT_TRUE(hasPdflatex()) << "pdflatex is not installed: script/setup prove";
  const std::pair<const char*, samples::Document> documents[] = {
      {"one-sample", samples::oneSample()},
      {"split-tables", samples::splitTables()},
      {"wide", samples::wide()},
      {"hostile", samples::hostile()},
      {"east-asian", samples::eastAsian()},
      {"refused", samples::refused()}};
  for (const auto& [name, document] : documents) {
    EXPECT_EQ(problemsOf(rendered(document, "latex"), name), "") << name;
  }
}

// Every printable character of ASCII and some beyond, in every place where a label can stand.
TEST(LatexCompiles, EveryCharacter) {
  ASSERT_TRUE(hasPdflatex()) << "pdflatex is not installed: script/setup prove";
  std::string all = "*[x]";
  for (char c = ' '; c <= '~'; ++c) {
    all += c;
  }
  all += " \u00e9\u00df\u0142\u03b1\u0416\u20ac\u2265\u2013 \u55ab\u7159 \U0001F600 e\u0301";
  samples::Builder builder;
  const auto table =
      builder.table(all, {samples::id(all), samples::id("Variables")}, samples::id(all + " "));
  builder.cell(table,
               {{samples::id(all)}, {samples::id("a")}, {samples::id(all), samples::id(all)}}, 0.5,
               all);
  builder.document.command = all + "\n" + all;
  EXPECT_EQ(problemsOf(rendered(builder.document, "latex"), "every-character"), "");
}

TEST(Latex, SaysHowTheRunWasMade) {
  const std::string text = rendered(samples::oneSample(), "latex");
  for (const std::string& word : samples::provenance(samples::oneSample())) {
    EXPECT_NE(text.find(word), std::string::npos) << word;
  }
}

// So that the numbers of a column stand under one another.
TEST(Latex, TakesUpTheRoomOfDecimalsThatANumberLacks) {
  samples::Builder builder;
  const auto table = builder.table("t", {samples::id("v")}, samples::id("s"));
  const auto cell = [&](const char* row, double value) {
    builder.cell(table, {{samples::id(row)}, {samples::id("x")}}, value,
                 samples::NumberFormat::SigDigit);
  };
  cell("a", 99.5);
  cell("b", 95.0);
  cell("c", 99.25);
  const std::string text = rendered(builder.document, "latex");
  EXPECT_NE(text.find("a & 99.5\\phantom{0}\\\\\n"), std::string::npos) << text;
  EXPECT_NE(text.find("b & 95\\phantom{.00}\\\\\n"), std::string::npos) << text;
  EXPECT_NE(text.find("c & 99.25\\\\\n"), std::string::npos) << text;
}

}  // namespace
