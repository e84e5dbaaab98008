// What the writer makes of the calls of a procedure.
#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "embedded/output/Writer.h"

namespace {

using namespace embedded::output;

constexpr double sysmis = std::numeric_limits<double>::lowest();

TextPtr id(const char* text) {
  return Text::string(text);
}

class WriterTest : public testing::Test {
 protected:
  // A table with one row and one column dimension.
  Index open(const char* title = "t") {
    const Index table = writer.table(id(title));
    writer.position(table, writer.dimension(table, id("rows")), Axis::Row, 1, false, false);
    writer.position(table, writer.dimension(table, id("columns")), Axis::Column, 1, false, false);
    return table;
  }
  void cell(Index table, const char* row, const char* column, double value) {
    writer.select(table, 0, writer.node(table, 0, 0, id(row), false));
    writer.select(table, 1, writer.node(table, 1, 0, id(column), false));
    writer.cell(table, value, NumberFormat::GeneralStat);
  }
  const Table& only() const { return document.tables.at(0); }

  Document document;
  Writer writer{document};
};

TEST_F(WriterTest, TablesOfOneTitleAreOneTable) {
  cell(open("t"), "a", "x", 1.0);
  cell(open("t"), "b", "x", 2.0);
  open("other");
  ASSERT_EQ(document.tables.size(), 2U);
  EXPECT_EQ(only().cells.size(), 2U);
  EXPECT_EQ(only().dimensions.size(), 2U);
}

TEST_F(WriterTest, ATableOpenedAgainHasNoCurrentCategories) {
  cell(open(), "a", "x", 1.0);
  const Index again = open();
  writer.select(again, 1, writer.node(again, 1, 0, id("x"), false));
  writer.cell(again, 2.0, NumberFormat::GeneralStat);
  ASSERT_EQ(only().cells.size(), 2U);
  EXPECT_EQ(only().cells[1].at[0], 0U) << "the dimension itself, not the last category";
}

TEST_F(WriterTest, EqualLabelsWithinOneParentAreOneCategory) {
  const Index table = open();
  const Index a = writer.node(table, 0, 0, id("a"), false);
  EXPECT_EQ(writer.node(table, 0, 0, id("a"), false), a);
  const Index group = writer.node(table, 0, 0, id("group"), true);
  EXPECT_NE(writer.node(table, 0, group, id("a"), false), a) << "another parent";
  EXPECT_NE(writer.node(table, 1, 0, id("b"), false), writer.node(table, 1, 0, id("c"), false));
}

TEST_F(WriterTest, ACellWrittenTwiceKeepsTheLastValue) {
  const Index table = open();
  cell(table, "a", "x", 1.0);
  cell(table, "a", "y", 5.0);
  cell(table, "a", "x", 2.0);
  ASSERT_EQ(only().cells.size(), 2U);
  EXPECT_EQ(only().cells[0].value, 2.0);
  cell(open(), "a", "x", sysmis);
  EXPECT_EQ(only().cells[0].state, State::Missing);
}

TEST_F(WriterTest, TellsMissingFromNotANumber) {
  const Index table = open();
  cell(table, "a", "x", sysmis);
  cell(table, "a", "y", std::numeric_limits<double>::quiet_NaN());
  cell(table, "a", "z", -std::numeric_limits<double>::infinity());
  EXPECT_EQ(only().cells[0].state, State::Missing);
  EXPECT_EQ(only().cells[1].state, State::NotANumber);
  EXPECT_EQ(only().cells[2].state, State::Valid);
}

TEST_F(WriterTest, EqualFootnotesOnOneCellCountOnce) {
  const Index table = open();
  cell(table, "a", "x", sysmis);
  writer.cellNote(table, id("why"));
  writer.cellNote(table, id("why"));
  writer.cellNote(table, id("and"));
  const auto& notes = only().footnoteLists.at(only().cells[0].footnotes);
  ASSERT_EQ(notes.size(), 2U);
  EXPECT_EQ(notes[0]->id, "why");
  EXPECT_EQ(notes[1]->id, "and");
}

TEST_F(WriterTest, CellsOfTheSameFootnotesShareThem) {
  const Index table = open();
  for (const char* row : {"a", "b", "c"}) {
    cell(table, row, "x", sysmis);
    writer.cellNote(table, id("why"));
  }
  EXPECT_EQ(only().footnoteLists.size(), 1U);
  EXPECT_EQ(only().cells[0].footnotes, only().cells[2].footnotes);
}

TEST_F(WriterTest, EqualFootnotesOnOneCategoryCountOnce) {
  const Index table = open();
  const Index category = writer.node(table, 1, 0, id("x"), false);
  for (int i = 0; i < 3; ++i) {
    writer.categoryNote(
        table, 1, category,
        Text::composite("Test Value = ^1", {Text::number(0.5, NumberFormat::SigDigit)}));
  }
  EXPECT_EQ(only().dimensions[1].nodes[category].footnotes.size(), 1U);
}

TEST_F(WriterTest, MarksCategoriesAndGroupsThatHaveCells) {
  const Index table = open();
  const Index group = writer.node(table, 0, 0, id("group"), true);
  const Index used = writer.node(table, 0, group, id("used"), false);
  const Index unused = writer.node(table, 0, group, id("unused"), false);
  writer.select(table, 0, used);
  writer.select(table, 1, writer.node(table, 1, 0, id("x"), false));
  writer.cell(table, 1.0, NumberFormat::Count);
  const auto& nodes = only().dimensions[0].nodes;
  EXPECT_TRUE(nodes[group].hasCells);
  EXPECT_TRUE(nodes[used].hasCells);
  EXPECT_FALSE(nodes[unused].hasCells);
}

TEST_F(WriterTest, SplitGroupsShareATableAndKeepTheirCellsApart) {
  for (Index split = 0; split < 3; ++split) {
    writer.beginSplit(split, false);
    cell(open(), "a", "x", split);
    cell(open(), "a", "x", split + 10.0);
  }
  ASSERT_EQ(document.tables.size(), 1U);
  EXPECT_TRUE(only().splitRows);
  ASSERT_EQ(only().cells.size(), 3U);
  for (Index split = 0; split < 3; ++split) {
    EXPECT_EQ(only().cells[split].split, split);
    EXPECT_EQ(only().cells[split].value, split + 10.0);
  }
}

TEST_F(WriterTest, SplitGroupsHaveTablesOfTheirOwnWhenAsked) {
  for (Index split = 0; split < 3; ++split) {
    writer.beginSplit(split, true);
    cell(open(), "a", "x", split);
  }
  ASSERT_EQ(document.tables.size(), 3U);
  EXPECT_EQ(document.tables[2].split, 2U);
  EXPECT_FALSE(document.tables[2].splitRows);
  EXPECT_EQ(document.tables[2].cells[0].split, none);
}

TEST_F(WriterTest, ReleasedCellsLeaveTheirSharedTableAndLaterOnesComeToIt) {
  writer.beginSplit(0, false);
  const Index table = open();
  cell(table, "a", "x", 1.0);
  cell(table, "b", "x", 2.0);
  EXPECT_EQ(writer.cells(), 2U);
  writer.release();
  EXPECT_EQ(writer.cells(), 0U);
  EXPECT_TRUE(only().cells.empty());
  writer.beginSplit(1, false);
  cell(open(), "b", "x", 3.0);
  ASSERT_EQ(only().cells.size(), 1U);
  EXPECT_EQ(only().cells[0].split, 1U);
  EXPECT_EQ(only().cells[0].value, 3.0);
  EXPECT_EQ(only().dimensions[0].nodes.size(), 3U);  // the dimension, a and b
}

TEST_F(WriterTest, ReleasedTablesOfSingleSplitGroupsAreGone) {
  for (Index split = 0; split < 2; ++split) {
    writer.beginSplit(split, true);
    cell(open(), "a", "x", split);
    if (split == 0) {
      writer.release();
      EXPECT_TRUE(document.tables.empty());
    }
  }
  EXPECT_EQ(only().split, 1U);
  EXPECT_EQ(only().cells.size(), 1U);
}

// A table has four at most; what would be a fifth is the last of them.
TEST_F(WriterTest, DimensionsBeyondTheMostAreTheLastOne) {
  const Index table = writer.table(id("t"));
  for (Index i = 0; i < maxDimensions; ++i) {
    EXPECT_EQ(writer.dimension(table, id(std::to_string(i).c_str())), i);
  }
  EXPECT_EQ(writer.dimension(table, id("more")), maxDimensions - 1);
  EXPECT_EQ(only().dimensions.size(), maxDimensions);
  EXPECT_EQ(only().dimensions.back().label->id, "3");
}

}  // namespace
