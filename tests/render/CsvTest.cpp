// The tidy csv: columns, quoting, states and full precision.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

#include "Baselines.h"

namespace {

using samples::Builder;
using samples::expectBaseline;
using samples::id;
using samples::rendered;
using samples::Text;

constexpr const char* header = "table,split,row,variable,statistic,value,state,footnotes\n";

TEST(Csv, WritesOneRowACell) {
  expectBaseline("one-sample.csv", rendered(samples::oneSample(), "csv"));
}

TEST(Csv, EscapesSplitValuesAndWritesMissingOnesAsAPoint) {
  const std::string csv = rendered(samples::splitRows(), "csv");
  EXPECT_NE(csv.find(",region=N; sex\\=\\;=.,"), std::string::npos);
  EXPECT_NE(csv.find(",region=S\\; east\\=west\\\\x; sex\\=\\;=0,"), std::string::npos);
  expectBaseline("split-rows.csv", csv);
}

TEST(Csv, IsTheSameForTablesOfTheirOwn) {
  EXPECT_EQ(rendered(samples::splitTables(), "csv"), rendered(samples::splitRows(), "csv"));
}

TEST(Csv, JoinsGroupsAndCategoriesAndLeavesEmptyTablesOut) {
  expectBaseline("pairs.csv", rendered(samples::pairs(), "csv"));
}

TEST(Csv, QuotesCommasQuotesAndLineBreaks) {
  Builder builder;
  const auto table = builder.table("a,b", {id("Variables")}, id("Statistics"));
  builder.cell(table, {{id("say \"hi\"")}, {id("two\nlines")}}, 0.5, "one, two");
  builder.cell(table, {{id("cr\rhere")}, {id("plain")}}, 1.0);
  EXPECT_EQ(rendered(builder.document, "csv"),
            std::string(header) +
                "\"a,b\",,,\"say \"\"hi\"\"\",\"two\nlines\",0.5,valid,\"one, two\"\n"
                "\"a,b\",,,\"cr\rhere\",plain,1,valid,\n");
}

TEST(Csv, WritesValuesThatReadBackAsTheSameDouble) {
  for (const double value : {0.1, 1.0 / 3.0, 1e-300, 5e-324, -0.0, 123456789012345680.0}) {
    Builder builder;
    const auto table = builder.table("t", {id("v")}, id("s"));
    builder.cell(table, {{id("a")}, {id("b")}}, value);
    const std::string csv = rendered(builder.document, "csv");
    const std::size_t at = csv.find("t,,,a,b,") + 8;
    const double back = std::strtod(csv.c_str() + at, nullptr);
    EXPECT_EQ(back, value) << csv;
    EXPECT_EQ(std::signbit(back), std::signbit(value)) << csv;
  }
}

TEST(Csv, ListsACellsFootnotesBeforeThoseOfItsCategories) {
  Builder builder;
  const auto table = builder.table("t", {id("v")}, id("s"));
  builder.cell(table, {{id("a")}, {id("group"), id("b")}}, 1.0, "of the cell");
  builder.writer.cellNote(table, id("again of the cell"));
  builder.writer.categoryNote(table, 1, builder.category(table, 1, {id("group"), id("b")}),
                              Text::composite("of ^1", {Text::string("b", false)}));
  EXPECT_EQ(
      rendered(builder.document, "csv"),
      std::string(header) + "t,,,a,group / b,1,valid,of the cell | again of the cell | of b\n");
}

TEST(Csv, HasNoRowVariableOrSplitWhereThereIsNone) {
  Builder builder;
  const auto table = builder.table("t", {}, id("s"));
  builder.cell(table, {{id("b")}}, samples::missing);
  EXPECT_EQ(rendered(builder.document, "csv"), std::string(header) + "t,,,,b,,missing,\n");
}

TEST(Csv, PutsTheCellsOfASplitGroupTogether) {
  Builder builder;
  const auto group = samples::variable("g");
  builder.document.data.splits = {group};
  const auto write = [&](samples::Index split, const char* statistic) {
    builder.writer.beginSplit(split, false);
    const auto table = builder.table("t", {id("v")}, id("s"));
    builder.cell(table, {{id("a")}, {id(statistic)}}, 1.0);
  };
  builder.document.splits = {{{Text::ofValue(group, 1.0, true)}},
                             {{Text::ofValue(group, 2.0, true)}}};
  write(0, "x");
  write(1, "x");
  write(0, "y");
  EXPECT_EQ(rendered(builder.document, "csv"), std::string(header) +
                                                   "t,g=1,,a,x,1,valid,\n"
                                                   "t,g=1,,a,y,1,valid,\n"
                                                   "t,g=2,,a,x,1,valid,\n");
}

// As they stand when each has tables of its own.
TEST(Csv, PutsTheTablesOfASplitGroupTogether) {
  Builder builder;
  const auto group = samples::variable("g");
  builder.document.data.splits = {group};
  builder.document.splits = {{{Text::ofValue(group, 1.0, true)}},
                             {{Text::ofValue(group, 2.0, true)}}};
  for (samples::Index split = 0; split < 2; ++split) {
    builder.writer.beginSplit(split, false);
    for (const char* title : {"t", "u"}) {
      builder.cell(builder.table(title, {id("v")}, id("s")), {{id("a")}, {id("x")}}, 1.0);
    }
  }
  EXPECT_EQ(rendered(builder.document, "csv"), std::string(header) +
                                                   "t,g=1,,a,x,1,valid,\n"
                                                   "u,g=1,,a,x,1,valid,\n"
                                                   "t,g=2,,a,x,1,valid,\n"
                                                   "u,g=2,,a,x,1,valid,\n");
}

TEST(Csv, WritesDatesAsIsoTextAndListsWithCommas) {
  Builder builder;
  samples::VariableInfo info;
  info.name = "day";
  info.kind = embedded::output::ValueKind::Date;
  const auto day = std::make_shared<const samples::VariableInfo>(info);
  const auto label = Text::composite(
      "^1 = [%1:, ^1:]2", {Text::ofVariable(day), Text::list({Text::ofValue(day, 0.0, true),
                                                              Text::ofValue(day, 19000.0, true)})});
  const auto table = builder.table("t", {id("v")}, id("s"));
  builder.cell(table, {{label}, {id("x")}}, 1.0);
  EXPECT_EQ(rendered(builder.document, "csv"),
            std::string(header) + "t,,,\"day = 1970-01-01, 2022-01-08\",x,1,valid,\n");
}

// Also when a group comes back between others that are new.
TEST(Csv, KeepsTheOrderOfTheSplitGroups) {
  Builder builder;
  const auto group = samples::variable("g");
  builder.document.data.splits = {group};
  for (const double value : {1.0, 2.0, 3.0}) {
    builder.document.splits.push_back({{Text::ofValue(group, value, true)}});
  }
  for (const samples::Index split : {0U, 1U, 0U, 2U}) {
    builder.writer.beginSplit(split, false);
    const auto table = builder.table("t", {id("v")}, id("s"));
    const bool again = split == 0 && !builder.document.tables[0].cells.empty();
    builder.cell(table, {{id("a")}, {id(again ? "y" : "x")}}, 1.0);
  }
  EXPECT_EQ(rendered(builder.document, "csv"), std::string(header) +
                                                   "t,g=1,,a,x,1,valid,\n"
                                                   "t,g=1,,a,y,1,valid,\n"
                                                   "t,g=2,,a,x,1,valid,\n"
                                                   "t,g=3,,a,x,1,valid,\n");
}

TEST(Csv, PutsTablesOfAllDataBeforeThoseOfSplitGroups) {
  Builder builder;
  const auto group = samples::variable("g");
  builder.document.data.splits = {group};
  builder.document.splits = {{{Text::ofValue(group, 1.0, true)}}};
  for (const auto& [title, split] : {std::pair{"t", samples::Index{0}},
                                     {"whole", embedded::output::none},
                                     {"u", samples::Index{0}},
                                     {"all", embedded::output::none}}) {
    builder.writer.beginSplit(split, false);
    builder.cell(builder.table(title, {id("v")}, id("s")), {{id("a")}, {id("x")}}, 1.0);
  }
  EXPECT_EQ(rendered(builder.document, "csv"), std::string(header) +
                                                   "whole,,,a,x,1,valid,\n"
                                                   "all,,,a,x,1,valid,\n"
                                                   "t,g=1,,a,x,1,valid,\n"
                                                   "u,g=1,,a,x,1,valid,\n");
}

}  // namespace
