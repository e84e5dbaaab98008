// Documents of shapes that are seldom seen: whatever a procedure writes, each format shows it.
#include <gtest/gtest.h>

#include "Baselines.h"
#include "render/ReaderTable.h"

namespace {

using samples::Axis;
using samples::Builder;
using samples::context;
using samples::Document;
using samples::id;
using samples::Index;
using samples::NumberFormat;
using samples::rendered;

bool holds(const std::string& text, const std::string& wanted) {
  return text.find(wanted) != std::string::npos;
}

// Cells by rows alone: no dimension lies on the columns.
Document withoutColumns() {
  Builder builder;
  const Index table = builder.writer.table(id("Bare"));
  builder.writer.position(table, builder.writer.dimension(table, id("Variables")), Axis::Row, 1,
                          false, false);
  builder.cell(table, {{id("a")}}, 0.25);
  builder.cell(table, {{id("b")}}, 0.5);
  return std::move(builder.document);
}

// Cells by columns alone.
Document withoutRows() {
  Builder builder;
  const Index table = builder.table("Bare", {}, id("Statistics"));
  builder.cell(table, {{id("Observed"), id("Z")}}, 0.25);
  builder.cell(table, {{id("Observed"), id("Q")}}, 0.5);
  return std::move(builder.document);
}

// The rows of a group "g", and one that stands in no group.
Document unevenRows() {
  Builder builder;
  const Index table = builder.table("Uneven", {id("Variables")}, id("Statistics"));
  builder.cell(table, {{id("g"), id("a")}, {id("Unheard of")}}, 0.25);
  builder.cell(table, {{id("b")}, {id("Unheard of")}}, 0.5);
  return std::move(builder.document);
}

// A group of columns that has cells of its own besides those of its category.
Document groupWithCells() {
  Builder builder;
  const Index table = builder.table("Both", {id("Variables")}, id("Statistics"));
  builder.cell(table, {{id("a")}, {id("g"), id("inner")}}, 0.5);
  builder.writer.select(table, 1, builder.writer.node(table, 1, 0, id("g"), true));
  builder.writer.cell(table, 0.25, NumberFormat::GeneralStat);
  return std::move(builder.document);
}

TEST(EmptyDocument, IsNothingInTheFormatsOfText) {
  EXPECT_EQ(rendered(Document(), "text"), "");
  EXPECT_EQ(rendered(Document(), "markdown"), "");
}

TEST(EmptyDocument, IsAnEmptyDocumentOfLatex) {
  EXPECT_TRUE(rendered(Document(), "latex").ends_with("\\begin{document}\n\\end{document}\n"));
}

TEST(TableWithoutColumns, ShowsTheCellOfEachRow) {
  const Document document = withoutColumns();
  EXPECT_TRUE(holds(rendered(document, "text"), "\na          0.250\n"))
      << rendered(document, "text");
  EXPECT_TRUE(holds(rendered(document, "markdown"), "| b | 0.500 |\n"));
  EXPECT_TRUE(holds(rendered(document, "latex"), "b & 0.500\\\\\n"));
  EXPECT_TRUE(holds(rendered(document, "html"), "<th scope=\"row\">b</th><td>0.500</td>"));
  EXPECT_TRUE(holds(rendered(document, "csv"), "Bare,,,b,,0.5,valid,\n"));
}

TEST(TableWithoutRows, ShowsItsCellsInOneLine) {
  const Document document = withoutRows();
  EXPECT_TRUE(holds(rendered(document, "text"), "  0.250  0.500\n")) << rendered(document, "text");
  EXPECT_TRUE(holds(rendered(document, "markdown"), "\n| 0.250 | 0.500 |\n"));
  EXPECT_TRUE(holds(rendered(document, "latex"), "\n0.250 & 0.500\\\\\n"));
  EXPECT_TRUE(holds(rendered(document, "html"), "<tr><td>0.250</td><td>0.500</td></tr>"));
}

TEST(TableOfUnevenRows, LeavesRoomWhereARowHasFewerLabels) {
  const Document document = unevenRows();
  EXPECT_TRUE(holds(rendered(document, "markdown"), "| g | a | 0.250 |\n| b |  | 0.500 |\n"));
  EXPECT_TRUE(holds(rendered(document, "html"), "<th scope=\"row\" colspan=\"2\">b</th>"));
  EXPECT_TRUE(holds(rendered(document, "latex"), "b &  & 0.500\\\\\n"));
}

TEST(GroupWithCells, IsAColumnOfItsOwnBesideItsCategory) {
  const Document document = groupWithCells();
  EXPECT_TRUE(holds(rendered(document, "markdown"), " g | g / inner |\n"));
  const auto table = render::readerTable(document, document.tables[0], context());
  const auto lines = render::headLines(table, 0, 2);
  ASSERT_EQ(lines.size(), 2U);
  ASSERT_EQ(lines[0].size(), 2U) << "no head spans both";
  EXPECT_EQ(lines[0][0].bottom, 1U) << "the group's own label reaches down to the cells";
  EXPECT_EQ(lines[0][1].bottom, 0U);
  ASSERT_EQ(lines[1].size(), 1U);
  EXPECT_EQ(lines[1][0].label->text, "inner");
}

TEST(LayerOfATable, IsShownAsARowAndSaidInJson) {
  Builder builder;
  const Index table = builder.writer.table(id("Layers"));
  builder.writer.position(table, builder.writer.dimension(table, id("Statistics")), Axis::Column, 1,
                          true, false);
  builder.writer.position(table, builder.writer.dimension(table, id("Year")), Axis::Layer, 1, false,
                          false);
  builder.cell(table, {{id("Z")}, {id("2020")}}, 99.5, NumberFormat::SigDigit);
  EXPECT_TRUE(holds(rendered(builder.document, "markdown"), "| 2020 | 99.5 |\n"));
  const std::string json = rendered(builder.document, "json");
  EXPECT_TRUE(holds(json, "\"axis\":\"layer\"")) << json;
  EXPECT_TRUE(holds(json, "\"format\":\"digits\"")) << json;
}

TEST(TableOfManyLabels, StandsInANarrowLine) {
  Builder builder;
  const Index table = builder.table("Deep", {id("Variables")}, id("Statistics"));
  builder.cell(
      table,
      {{id("first"), id("second"), id("third"), id("fourth"), id("fifth"), id("sixth")}, {id("Z")}},
      0.25);
  EXPECT_TRUE(holds(rendered(builder.document, "text", context(40)),
                    "\nfirst  second  third  fourth  fifth  sixth  0.250\n"))
      << rendered(builder.document, "text", context(40));
}

TEST(FootnoteLetters, GoOnAfterZ) {
  EXPECT_EQ(render::footnoteLetter(0), "a");
  EXPECT_EQ(render::footnoteLetter(25), "z");
  EXPECT_EQ(render::footnoteLetter(26), "aa");
  EXPECT_EQ(render::footnoteLetter(27), "ab");
  EXPECT_EQ(render::footnoteLetter(701), "zz");
  EXPECT_EQ(render::footnoteLetter(702), "aaa");
}

// A table of as many outcomes, and one that has none of its own.
std::vector<std::string> notesBesideOutcomes(int outcomes) {
  Builder builder;
  const Index table = builder.table("Outcomes", {id("Variables")}, id("Statistics"));
  for (int i = 0; i < outcomes; ++i) {
    const auto variable = samples::yesNo("v" + std::to_string(i), "", "no", "yes");
    builder.cell(table, {{samples::success(variable, 1.0)}, {id("Z")}}, 0.25);
  }
  builder.cell(builder.table("Other", {id("v")}, id("s")), {{id("a")}, {id("Z")}}, 0.5);
  return render::readerTable(builder.document, builder.document.tables[1], context()).notes;
}

TEST(NoteOfSuccesses, ListsThoseOfTheOtherTablesWhereTheyAreFew) {
  EXPECT_EQ(notesBesideOutcomes(2), std::vector<std::string>{"Success: v0 = yes, v1 = yes."});
  EXPECT_TRUE(notesBesideOutcomes(7).empty());
}

TEST(CommandThatBeginsWithAnEmptyLine, StandsBesideItsLabel) {
  Document document = samples::refused();
  document.command = "\nPROPORTIONS";
  EXPECT_TRUE(holds(rendered(document, "text"), "\nCommand:\n          PROPORTIONS\n"))
      << rendered(document, "text");
  document.command = "\n";
  EXPECT_TRUE(holds(rendered(document, "text"), "\nCommand:\nData:")) << rendered(document, "text");
}

// The sentences of one-sample.txt, in every format that has rows of text.
TEST(Sentences, AreTheSameInEveryFormat) {
  render::Context with = context();
  with.rowSentences = true;
  const std::string sentence =
      "95% Confidence Interval from 0.154 to 0.592 (Clopper-Pearson exact)";
  for (const char* format : {"markdown", "html"}) {
    EXPECT_TRUE(holds(rendered(samples::oneSample(), format, with), sentence)) << format;
    EXPECT_FALSE(holds(rendered(samples::oneSample(), format), sentence)) << format;
  }
  EXPECT_TRUE(holds(rendered(samples::oneSample(), "latex", with),
                    "\\par Smokes daily = yes: 7 of 20, Proportion = 0.350, 95\\% Confidence"));
}

TEST(Sentences, AreLeftOutOfRowsOfWhichNothingIsKnown) {
  render::Context with = context();
  with.rowSentences = true;
  const Document document = unevenRows();
  EXPECT_TRUE(holds(rendered(document, "html", with), "<li hidden></li>"));
  EXPECT_TRUE(rendered(document, "markdown", with).ends_with("| b |  | 0.500 |\n\n"));
  EXPECT_EQ(rendered(document, "latex", with), rendered(document, "latex"));
  EXPECT_EQ(rendered(document, "text", with), rendered(document, "text") + "\n");
}

}  // namespace
