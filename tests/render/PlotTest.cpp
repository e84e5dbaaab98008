// What pictures show, before they are drawn: axes, intervals, distributions.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

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

}  // namespace
