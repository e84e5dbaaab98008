// What pictures show, before they are drawn: axes, intervals, distributions.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>

#include "Baselines.h"
#include "render/PlotAxis.h"
#include "render/PlotForest.h"
#include "render/PlotHistogram.h"

namespace {

using render::PlotAxis;
using samples::context;
using samples::Document;

render::Forest forest(const Document& document, std::size_t number = 0) {
  const auto table = render::readerTable(document, document.tables[number], context());
  const auto found = render::forestOf(document, table, context());
  EXPECT_TRUE(found);
  return found.value_or(render::Forest());
}

TEST(PlotAxis, BeginsAndEndsAtRoundNumbersAroundItsValues) {
  const PlotAxis axis({0.154, 0.592, 0.3}, 0.0, 1.0);
  EXPECT_DOUBLE_EQ(axis.low(), 0.1);
  EXPECT_DOUBLE_EQ(axis.high(), 0.6);
  ASSERT_EQ(axis.ticks().size(), 6U);
  EXPECT_EQ(axis.label(axis.ticks()[2], "."), "0.3");
  EXPECT_EQ(axis.label(axis.ticks()[2], ","), "0,3");
}

TEST(PlotAxis, StaysInThePossibleRangeUnlessAValueDoesNot) {
  const PlotAxis inside({0.001, 0.93}, 0.0, 1.0);
  EXPECT_EQ(inside.low(), 0.0);
  EXPECT_EQ(inside.high(), 1.0);
  EXPECT_LE(PlotAxis({0.5, 1.02}, 0.0, 1.0).percent(1.02), 100.0 + 1e-9);
}

TEST(PlotAxis, HasRoomForASingleValue) {
  for (const double value : {0.0, 0.5, 1.0, -0.25}) {
    const PlotAxis axis({value}, -1.0, 1.0);
    EXPECT_LT(axis.low(), axis.high());
    EXPECT_GE(axis.percent(value), 0.0);
    EXPECT_LE(axis.percent(value), 100.0);
  }
}

TEST(PlotAxis, IgnoresWhatIsNotFinite) {
  const double infinity = std::numeric_limits<double>::infinity();
  const PlotAxis axis({0.2, infinity, std::nan(""), 0.4, -infinity}, std::nullopt, std::nullopt);
  EXPECT_DOUBLE_EQ(axis.low(), 0.2);
  EXPECT_DOUBLE_EQ(axis.high(), 0.4);
  EXPECT_FALSE(PlotAxis({}, 0.0, 1.0).ticks().empty());
}

TEST(PlotAxis, HasAHandfulOfTicksAtEveryScale) {
  for (double width = 1e-9; width < 1e9; width *= 3.7) {
    const PlotAxis axis({0.123 * width, 1.123 * width}, std::nullopt, std::nullopt);
    EXPECT_GE(axis.ticks().size(), 4U) << width;
    EXPECT_LE(axis.ticks().size(), 9U) << width;
  }
}

TEST(PercentText, IsShort) {
  EXPECT_EQ(render::percentText(12.5), "12.5%");
  EXPECT_EQ(render::percentText(100.0), "100%");
  EXPECT_EQ(render::percentText(-0.0001), "0%");
}

TEST(Forest, HasALineForEachRowWithTheNumbersOfTheTable) {
  const render::Forest plot = forest(samples::oneSample());
  ASSERT_EQ(plot.lines.size(), 7U);
  EXPECT_EQ(plot.lines[0].numbers, "0.350 [0.154, 0.592]");
  EXPECT_EQ(plot.lines[0].lower, 0.15390920);
  EXPECT_EQ(plot.lines[0].upper, 0.59218870);
  EXPECT_EQ(plot.quantity, "Proportion");
  EXPECT_EQ(plot.level, "95% Confidence Interval");
}

TEST(Forest, SaysWhyAnIntervalIsMissing) {
  const Document document = samples::oneSample();
  for (const render::ForestLine& line : forest(document).lines) {
    EXPECT_EQ(line.missing.empty(), line.lower && line.upper) << line.label;
    if (line.label.starts_with("Logit")) {
      EXPECT_EQ(line.missing,
                "No interval: The statistic could not be computed from the available cases.");
      EXPECT_EQ(line.numbers, "0.350 [missing, missing]");
      EXPECT_EQ(line.estimate, 0.35);
    }
  }
}

TEST(Forest, TakesItsReferenceFromTheFootnoteThatTheDescriptionNames) {
  const render::Forest plot = forest(samples::oneSample());
  ASSERT_TRUE(plot.reference);
  EXPECT_EQ(plot.reference->value, 0.3);
  EXPECT_EQ(plot.reference->label, "Test Value = 0.3");
}

TEST(Forest, HoldsDifferencesAgainstZeroAndSaysHowTheyAreTaken) {
  const render::Forest plot = forest(samples::pairs(), 2);
  ASSERT_TRUE(plot.reference);
  EXPECT_EQ(plot.reference->value, 0.0);
  EXPECT_EQ(plot.quantity, "Difference in Proportions (first minus second)");
}

TEST(Forest, HasNoReferenceWhereTheDocumentNamesNone) {
  EXPECT_FALSE(forest(samples::splitRows()).reference);
}

TEST(Forest, NamesOnceWhatAllLinesHaveInCommon) {
  const render::Forest plot = forest(samples::splitRows());
  EXPECT_EQ(plot.common, "smoker = yes");
  EXPECT_EQ(plot.lines[0].label, "Jeffreys");
}

TEST(Forest, IsForTablesOfIntervalsAlone) {
  const Document document = samples::oneSample();
  const auto tests = render::readerTable(document, document.tables[1], context());
  EXPECT_FALSE(render::forestOf(document, tests, context()));
}

TEST(Histogram, HasABarForEachCountAndCoversTheIntervalToo) {
  embedded::output::Distribution distribution;
  distribution.value = 0.4;
  distribution.lower = 0.2;
  distribution.upper = 0.7;
  distribution.width = 0.1;
  distribution.counts = {{0.3, 5}, {0.4, 10}, {0.5, 0}, {0.6, 1}};
  const auto histogram = render::histogramOf(distribution, 0.0, 1.0);
  EXPECT_EQ(histogram.highest, 10U);
  EXPECT_EQ(std::count(histogram.path.begin(), histogram.path.end(), 'M'), 4);
  EXPECT_LE(histogram.axis.low(), 0.2);
  EXPECT_GE(histogram.axis.high(), 0.7);
}

TEST(Histogram, DrawsFewValuesAsSticksThatDoNotTouch) {
  embedded::output::Distribution distribution;
  distribution.value = 0.5;
  distribution.counts = {{0.0, 1}, {0.5, 2}, {1.0, 1}};
  const auto histogram = render::histogramOf(distribution, 0.0, 1.0);
  EXPECT_NE(histogram.path.find("M49.00 100v-100.0h2.00v100.0z"), std::string::npos)
      << histogram.path;
}

TEST(PlotAxis, BeginsWhereThePossibleRangeBegins) {
  const PlotAxis axis({0.0}, 0.0, 1.0);
  EXPECT_EQ(axis.low(), 0.0);
  EXPECT_EQ(axis.percent(0.0), 0.0);
}

constexpr const char* intervals = "One-Sample Proportions Confidence Intervals";

// A row of an interval table; bounds that are not given are not written.
struct Interval {
  const char* method;
  std::optional<double> estimate;
  std::optional<double> lower;
  std::optional<double> upper;
};

samples::Builder tableOf(const std::vector<Interval>& rows, const char* title = intervals) {
  using samples::id;
  samples::Builder builder;
  const auto table = builder.table(title, {id("Interval Type")}, id("Statistics"));
  const auto write = [&](const char* method, const samples::Builder::Path& path, auto value) {
    if (value) {
      builder.cell(table, {{id(method)}, path}, *value);
    }
  };
  for (const Interval& row : rows) {
    write(row.method, {id("Proportion")}, row.estimate);
    write(row.method, {id("^1% Confidence Interval"), id("Lower")}, row.lower);
    write(row.method, {id("^1% Confidence Interval"), id("Upper")}, row.upper);
  }
  return builder;
}

TEST(Forest, DrawsWhatThereIsOfAnInterval) {
  const double infinity = std::numeric_limits<double>::infinity();
  const Document document = tableOf({{"whole", 0.5, 0.25, 0.75},
                                     {"lower alone", 0.75, 0.25, {}},
                                     {"upper alone", 0.25, {}, 0.75},
                                     {"endless", 0.75, 0.25, infinity},
                                     {"no estimate", {}, 0.25, 0.75},
                                     {"nothing", samples::missing, {}, samples::missing}})
                                .document;
  const render::Forest plot = forest(document);
  ASSERT_EQ(plot.lines.size(), 6U);
  EXPECT_EQ(plot.lines[1].numbers, "0.750 [0.250, missing]");
  EXPECT_EQ(plot.lines[2].numbers, "0.250 [missing, 0.750]");
  EXPECT_EQ(plot.lines[3].numbers, "0.750 [0.250, \u221e]");
  EXPECT_EQ(plot.lines[4].numbers, "missing [0.250, 0.750]");
  EXPECT_EQ(plot.lines[0].missing, "");
  EXPECT_EQ(plot.lines[4].missing, "");
  for (const std::size_t line : {1U, 2U, 3U, 5U}) {
    EXPECT_EQ(plot.lines[line].missing, "No interval") << plot.lines[line].label;
  }
  const std::string html = samples::rendered(document, "html");
  const auto count = [&](const std::string& wanted) {
    std::size_t found = 0;
    for (std::size_t at = 0; (at = html.find(wanted, at)) != std::string::npos; ++at) {
      ++found;
    }
    return found;
  };
  EXPECT_EQ(count("<line class=\"ci\""), 2U);
  EXPECT_EQ(count("<circle cx="), 1U) << "an estimate with its interval";
  EXPECT_EQ(count("<circle class=\"bare\""), 3U);
  EXPECT_EQ(count("<span class=\"why right\">"), 1U) << "beside the estimate in the left half";
  EXPECT_EQ(count("<span class=\"why\">"), 3U);
}

TEST(Forest, NeedsBothBoundsOfTheInterval) {
  const Document lower = tableOf({{"a", 0.5, 0.25, {}}}).document;
  EXPECT_FALSE(
      render::forestOf(lower, render::readerTable(lower, lower.tables[0], context()), context()));
  samples::Builder other = tableOf({{"a", 0.5, 0.25, {}}});
  other.cell(0, {{samples::id("a")}, {samples::id("Z")}}, 1.0);
  const auto table = render::readerTable(other.document, other.document.tables[0], context());
  EXPECT_FALSE(render::forestOf(other.document, table, context()));
}

TEST(Forest, IsNotDrawnOfATableWithoutRows) {
  const Document document = samples::oneSample();
  auto table = render::readerTable(document, document.tables[0], context());
  table.rows.clear();
  EXPECT_FALSE(render::forestOf(document, table, context()));
}

TEST(Forest, HasNoReferenceWhereTheDescriptionKnowsOfNone) {
  EXPECT_FALSE(forest(tableOf({{"a", 0.5, 0.25, 0.75}}, "Another table").document).reference);
}

// On a cell instead of a category; what has no number as its argument is passed over.
TEST(Forest, FindsTheFootnoteOfItsReferenceOnACellToo) {
  using samples::id;
  using samples::Text;
  const auto withNote = [](const samples::TextPtr& note) {
    samples::Builder builder = tableOf({{"a", 0.5, 0.25, 0.75}});
    builder.writer.cellNote(0, note);
    return std::move(builder.document);
  };
  const auto number = Text::number(0.4, samples::NumberFormat::SigDigit);
  const auto plot = forest(withNote(Text::composite("Test Value = ^1", {number})));
  ASSERT_TRUE(plot.reference);
  EXPECT_EQ(plot.reference->value, 0.4);
  EXPECT_FALSE(forest(withNote(Text::composite("Test Value = ^1", {}))).reference);
  EXPECT_FALSE(forest(withNote(Text::composite("Test Value = ^1", {id("none")}))).reference);
}

// The estimate's column has no category: it is named by its dimension.
TEST(Forest, HasNoNameForAnEstimateWithoutLabels) {
  using samples::id;
  samples::Builder builder;
  const auto table = builder.table(intervals, {id("Interval Type")}, id("Proportion"));
  builder.cell(table, {{id("a")}, {}}, 0.5);
  builder.cell(table, {{id("a")}, {id("^1% Confidence Interval"), id("Lower")}}, 0.25);
  builder.cell(table, {{id("a")}, {id("^1% Confidence Interval"), id("Upper")}}, 0.75);
  embedded::output::Distribution spread;
  spread.at = builder.document.tables[0].cells[0].at;
  spread.value = 0.5;
  spread.counts = {{0.25, 1}, {0.5, 2}};
  builder.document.tables[0].distributions.push_back(std::move(spread));
  EXPECT_EQ(forest(builder.document).quantity, "");
  EXPECT_EQ(forest(builder.document).lines[0].estimate, 0.5);
  EXPECT_NE(samples::rendered(builder.document, "html").find("<svg class=\"bars\""),
            std::string::npos);
}

}  // namespace
