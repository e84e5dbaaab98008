// Text for a terminal, held against approved outputs.
#include <gtest/gtest.h>

#include "Baselines.h"
#include "render/Columns.h"

namespace {

using samples::context;
using samples::expectBaseline;
using samples::rendered;

std::size_t widestLine(const std::string& text) {
  std::size_t widest = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = text.find('\n', at);
    widest = std::max(widest, render::columnsOf(std::string_view(text).substr(at, end - at)));
    at = end + 1;
  }
  return widest;
}

TEST(Text, ShowsStatesBoundsProbabilitiesAndFootnotes) {
  expectBaseline("one-sample.txt", rendered(samples::oneSample(), "text"));
}

TEST(Text, PutsSplitGroupsBeforeTheRows) {
  expectBaseline("split-rows.txt", rendered(samples::splitRows(), "text"));
}

TEST(Text, NamesTheSplitGroupOfATableOfItsOwn) {
  expectBaseline("split-tables.txt", rendered(samples::splitTables(), "text"));
}

TEST(Text, NestsGroupsOfRowsAndLeavesEmptyTablesOut) {
  expectBaseline("pairs.txt", rendered(samples::pairs(), "text"));
}

TEST(Text, SplitsWideTablesByColumnsAndRepeatsRowLabels) {
  const std::string text = rendered(samples::wide(), "text", context(80));
  EXPECT_LE(widestLine(text), 80U);
  expectBaseline("wide.txt", text);
}

// The lines of one part of a broken table that begin with a row's label.
std::size_t linesWith(const std::string& text, const std::string& label) {
  std::size_t count = 0;
  for (std::size_t at = text.find("\n" + label); at != std::string::npos;
       at = text.find("\n" + label, at + 1)) {
    ++count;
  }
  return count;
}

// A table of two groups of columns, where some rows have cells in the one and some in the other.
samples::Document sparse(int columns) {
  samples::Builder builder;
  const auto table = builder.table("Sparse", {samples::id("Group")}, samples::id("Statistics"));
  const auto write = [&](const char* group, const char* row, const char* head) {
    for (int column = 1; column <= columns; ++column) {
      builder.cell(table,
                   {{samples::id(group), samples::id(row)},
                    {samples::id(head), samples::id("Statistic" + std::to_string(column))}},
                   1.0);
    }
  };
  write("outer", "left", "Observed");
  write("outer", "right", "Multiple");
  write("other", "left", "Observed");
  return builder.document;
}

// A row that has nothing in the columns of a part is not shown there, and the row below it repeats
// the label that the two share.
TEST(Text, LeavesRowsOutOfPartsWhereTheyHaveNoCells) {
  const std::string text = rendered(sparse(2), "text", context(44));
  EXPECT_EQ(linesWith(text, "outer  left"), 1U) << text;
  EXPECT_EQ(linesWith(text, "outer  right"), 1U) << text;
  EXPECT_EQ(linesWith(text, "other  left"), 1U) << text;

  const std::string latex = rendered(sparse(10), "latex");
  EXPECT_EQ(linesWith(latex, "outer & left &"), 1U) << latex;
  EXPECT_EQ(linesWith(latex, "outer & right &"), 1U) << latex;
  EXPECT_EQ(linesWith(latex, " & right"), 0U) << latex;
}

TEST(Text, KeepsRowsWholeWhereAllColumnsFit) {
  const std::string text = rendered(sparse(2), "text", context(100));
  EXPECT_EQ(linesWith(text, "outer  left"), 1U) << text;
  EXPECT_EQ(linesWith(text, "       right"), 1U) << text;
}

TEST(Text, KeepsTheLinesOfTheCommandAndPointsAtThePlace) {
  expectBaseline("refused.txt", rendered(samples::refused(), "text"));
}

TEST(Text, CountsWideCharactersAsTwoColumns) {
  expectBaseline("east-asian.txt", rendered(samples::eastAsian(), "text"));
}

TEST(Text, DoesNotLetLabelsSteerTheTerminal) {
  const std::string text = rendered(samples::hostile(), "text");
  EXPECT_EQ(text.find('\x1b'), std::string::npos);
  expectBaseline("hostile.txt", text);
}

TEST(Text, ColoursHeadingsAndNotesWhenAsked) {
  render::Context with = context();
  with.colour = true;
  const std::string text = rendered(samples::oneSample(), "text", with);
  EXPECT_NE(text.find("\x1b[1mProportions\x1b[0m\n"), std::string::npos);
  EXPECT_NE(text.find("\x1b[33mwarning:\x1b[0m"), std::string::npos);
  std::string bare = text;
  for (std::size_t at = 0; (at = bare.find('\x1b')) != std::string::npos;) {
    bare.erase(at, bare.find('m', at) + 1 - at);
  }
  EXPECT_EQ(bare, rendered(samples::oneSample(), "text"));
}

TEST(Text, WritesTheDecimalMarkOfTheReader) {
  render::Context with = context();
  with.decimalPoint = ",";
  const std::string text = rendered(samples::oneSample(), "text", with);
  EXPECT_NE(text.find("<,001"), std::string::npos);
  EXPECT_NE(text.find("0,350"), std::string::npos);
  EXPECT_EQ(text.find("0.350"), std::string::npos);
}

TEST(Text, FitsEveryLineWidthFromFortyColumns) {
  for (int width = 40; width <= 200; width += 20) {
    for (const auto& document : {samples::wide(), samples::splitTables(), samples::pairs()}) {
      EXPECT_LE(widestLine(rendered(document, "text", context(width))),
                static_cast<std::size_t>(width));
    }
  }
}

TEST(Text, WritesASentenceByEachRowWhenAsked) {
  render::Context with = context();
  with.rowSentences = true;
  const std::string text = rendered(samples::oneSample(), "text", with);
  EXPECT_NE(text.find("\nSmokes daily = yes: 7 of 20, Proportion = 0.350, 95% Confidence Interval "
                      "from 0.154 to 0.592\n  (Clopper-Pearson exact).\n"),
            std::string::npos)
      << text;
  EXPECT_EQ(rendered(samples::oneSample(), "text").find("7 of 20"), std::string::npos);
}

TEST(Text, ReportsTheCasesOfEachSplitGroup) {
  samples::Document document = samples::splitRows();
  document.data.cases.missing = {{"smoker", {3, 2}}, {"other", {0, 0}}};
  document.data.casesBySplit = {{0, {.read = 5, .missing = {{"smoker", {2, 2}}}}},
                                {1, {.read = 7, .missing = {{"smoker", {1, 0}}}}}};
  expectBaseline("split-cases.txt", rendered(document, "text"));
}

TEST(Text, SaysNothingOfADocumentWithoutAnything) {
  EXPECT_EQ(rendered(samples::Document(), "text"), "");
}

}  // namespace
