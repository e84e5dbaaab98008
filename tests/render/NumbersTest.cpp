// How numbers are shown, one rule at a time.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Baselines.h"
#include "render/Numbers.h"

namespace {

using samples::Builder;
using samples::id;
using samples::NumberFormat;

// A row of cells with these statistics, as it is shown.
std::vector<render::CellText> shown(const std::vector<std::pair<const char*, double>>& cells,
                                    NumberFormat format = NumberFormat::GeneralStat) {
  Builder builder;
  const auto table =
      builder.table("One-Sample Proportions Confidence Intervals", {id("v")}, id("s"));
  for (const auto& [statistic, value] : cells) {
    builder.cell(table, {{id("a")}, {id(statistic)}}, value, format);
  }
  const render::Grid grid(builder.document.tables[0]);
  const render::CellPrinter printer(grid, samples::context());
  std::vector<render::CellText> texts;
  grid.forEachRow([&](const render::Row& row) { printer.print(row, texts); });
  return texts;
}

std::string one(const char* statistic, double value,
                NumberFormat format = NumberFormat::GeneralStat) {
  return shown({{statistic, value}}, format).front().text;
}

std::string bounds(double lower, double upper) {
  const auto texts = shown({{"Lower", lower}, {"Upper", upper}});
  return texts[0].text + (texts[0].isAtRangeEnd ? "|" : "") + " " + texts[1].text +
         (texts[1].isAtRangeEnd ? "|" : "");
}

TEST(Numbers, CountsAreWhole) {
  EXPECT_EQ(one("Trials", 1e6, NumberFormat::Count), "1000000");
}

TEST(Numbers, LevelsHaveTheDigitsThatTheyHave) {
  EXPECT_EQ(one("x", 99.5, NumberFormat::SigDigit), "99.5");
  EXPECT_EQ(one("x", 95.0, NumberFormat::SigDigit), "95");
}

TEST(Numbers, StatisticsHaveThreeDecimals) {
  EXPECT_EQ(one("Z", -2.0384), "-2.038");
  EXPECT_EQ(one("Z", -0.0001), "0.000") << "what rounds to zero has no sign";
  EXPECT_EQ(one("Z", 1.5e20), "1.500e+20");
}

TEST(Numbers, ProbabilitiesBelowAThousandthSaySo) {
  EXPECT_EQ(one("Two-Sided p", 0.0415), "0.042");
  EXPECT_EQ(one("Two-Sided p", 0.001), "0.001");
  EXPECT_EQ(one("Two-Sided p", 0.00099999), "<.001");
  EXPECT_EQ(one("Two-Sided p", 0.0), "<.001");
  EXPECT_EQ(one("Two-Sided p", 1.0), "1.000");
}

TEST(Numbers, TinyProportionsAreNotShownAsZero) {
  EXPECT_EQ(one("Proportion", 0.000012345), "0.000012");
  EXPECT_EQ(one("Proportion", 1e-12), "1.0e-12");
  EXPECT_EQ(one("Proportion", 0.0), "0.000");
  EXPECT_EQ(one("Proportion", 0.0005), "0.001")
      << "ties away from zero or to even: shown, not zero";
}

TEST(Numbers, DifferentBoundsNeverPrintAlike) {
  EXPECT_EQ(bounds(0.1234, 0.5678), "0.123 0.568");
  EXPECT_EQ(bounds(0.00001, 0.00002), "0.000010 0.000020");
  EXPECT_EQ(bounds(0.5, 0.50000000012), "5.000000000e-01 5.000000001e-01");
  EXPECT_EQ(bounds(0.0, 0.00005571), "0.000000| 0.000056");
  EXPECT_EQ(bounds(1e-20, 3e-20), "1.0e-20 3.0e-20");
  EXPECT_EQ(bounds(0.25, 0.25), "0.250 0.250");
}

TEST(Numbers, NeighbouringDoublesAreToldApart) {
  const double low = 0.1;
  const auto texts = shown({{"Lower", low}, {"Upper", std::nextafter(low, 1.0)}});
  EXPECT_NE(texts[0].text, texts[1].text);
}

TEST(Numbers, BoundsAtTheEndOfTheirRangeAreMarked) {
  EXPECT_EQ(bounds(0.0, 0.3), "0.000| 0.300");
  EXPECT_EQ(bounds(0.7, 1.0), "0.700 1.000|");
  EXPECT_EQ(bounds(0.7, 0.9999), "0.700 1.000") << "close to the end is not the end";
}

TEST(Numbers, MissingIsEmptyAndNotANumberSaysSo) {
  EXPECT_EQ(one("Z", samples::missing), "");
  EXPECT_EQ(one("Z", samples::nan), "NaN");
  EXPECT_EQ(bounds(samples::nan, 0.5), "NaN 0.500");
}

TEST(Numbers, ABoundIsNotPairedWithOneOfAnotherInterval) {
  Builder builder;
  const auto table = builder.table("t", {id("v")}, id("s"));
  builder.cell(table, {{id("a")}, {id("first"), id("Lower")}}, 0.25);
  builder.cell(table, {{id("a")}, {id("second"), id("Upper")}}, 0.25000001);
  const render::Grid grid(builder.document.tables[0]);
  const auto meanings = render::columnMeanings(grid, samples::description());
  EXPECT_EQ(render::boundPartners(grid, meanings), (std::vector<std::size_t>{0, 1}));
}

TEST(Numbers, InfinityHasASignAndNoDigits) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(one("Z", infinity), "\u221e");
  EXPECT_EQ(one("Z", -infinity), "-\u221e");
}

TEST(Numbers, AZeroBoundHasNoExponent) {
  EXPECT_EQ(bounds(0.0, 1e-12), "0.000| 1.0e-12");
}

TEST(Numbers, WhatIsNoProbabilityIsNotHidden) {
  EXPECT_EQ(one("Two-Sided p", -0.25), "-0.250");
}

// The lower bound of one group of columns, and the upper one of another.
TEST(Numbers, BoundsOfDifferentOuterColumnsAreNotPaired) {
  Builder builder;
  const auto table = builder.table("t", {id("v")}, id("outer"));
  builder.writer.position(table, builder.writer.dimension(table, id("inner")),
                          samples::Axis::Column, 2, true, false);
  builder.cell(table, {{id("a")}, {id("first")}, {id("Lower")}}, 0.25);
  builder.cell(table, {{id("a")}, {id("second")}, {id("Upper")}}, 0.25000001);
  const render::Grid grid(builder.document.tables[0]);
  const auto meanings = render::columnMeanings(grid, samples::description());
  EXPECT_EQ(render::boundPartners(grid, meanings), (std::vector<std::size_t>{0, 1}));
  EXPECT_EQ(samples::rendered(builder.document, "csv"),
            "table,split,row,variable,statistic,value,state,footnotes\n"
            "t,,,a,first / Lower,0.25,valid,\nt,,,a,second / Upper,0.25000000999999999,valid,\n");
}

TEST(Numbers, ABoundWithoutItsPartnerHasTheUsualDecimals) {
  Builder builder;
  const auto table = builder.table("t", {id("v")}, id("s"));
  builder.cell(table, {{id("a")}, {id("Lower")}}, 0.50001);
  builder.cell(table, {{id("a")}, {id("Upper")}}, 0.50002);
  builder.cell(table, {{id("b")}, {id("Lower")}}, 0.50001);
  const std::string text = samples::rendered(builder.document, "markdown");
  EXPECT_NE(text.find("| a | 0.500010 | 0.500020 |\n| b | 0.500 |  |\n"), std::string::npos)
      << text;
}

}  // namespace
