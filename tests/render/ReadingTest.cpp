// Rows of results in words: sentences to paste, and tests read aloud.
#include <gtest/gtest.h>

#include <algorithm>

#include "Baselines.h"
#include "render/Reading.h"

namespace {

using samples::context;
using samples::Document;

render::ReaderTable tableOf(const Document& document, std::size_t number) {
  return render::readerTable(document, document.tables[number], context());
}

std::vector<std::string> sentences(const Document& document, std::size_t number) {
  const render::ReaderTable table = tableOf(document, number);
  std::vector<std::string> all;
  for (const render::ReaderRow& row : table.rows) {
    all.push_back(render::rowSentence(table, row, context()));
  }
  return all;
}

std::vector<std::string> readings(const Document& document, std::size_t number) {
  const render::ReaderTable table = tableOf(document, number);
  std::vector<std::string> all;
  for (const render::ReaderRow& row : table.rows) {
    all.push_back(render::testReading(table, row, context()));
  }
  return all;
}

bool holds(const std::vector<std::string>& all, const std::string& wanted) {
  return std::find(all.begin(), all.end(), wanted) != all.end();
}

TEST(RowSentence, SaysCountsEstimateIntervalAndMethod) {
  const auto all = sentences(samples::oneSample(), 0);
  EXPECT_TRUE(holds(all,
                    "Smokes daily = yes: 7 of 20, Proportion = 0.350, 95% Confidence Interval from "
                    "0.154 to 0.592 (Clopper-Pearson exact)."))
      << testing::PrintToString(all);
}

TEST(RowSentence, HasTheDigitsOfTheTable) {
  const auto all = sentences(samples::oneSample(), 0);
  EXPECT_TRUE(holds(all,
                    "rare = yes: 1 of 100000, Proportion = 0.000010, 95% Confidence Interval from "
                    "1.0e-20 to 3.0e-20 (Wilson Score)."))
      << testing::PrintToString(all);
}

TEST(RowSentence, GivesTheReasonOfAMissingIntervalOnce) {
  const auto all = sentences(samples::oneSample(), 0);
  EXPECT_TRUE(holds(all,
                    "Smokes daily = yes: 7 of 20, Proportion = 0.350, 95% Confidence Interval is "
                    "missing (The statistic could not be computed from the available cases) "
                    "(Logit)."))
      << testing::PrintToString(all);
}

TEST(RowSentence, SaysHowADifferenceIsTakenAndHowSmallAProbabilityIs) {
  const auto all = sentences(samples::oneSample(), 1);
  EXPECT_TRUE(holds(all,
                    "Smokes daily = yes: Observed - Test Value (observed minus test value) = "
                    "0.000, One-Sided p < .001, Two-Sided p < .001 (Mid-p Adjusted Binomial)."))
      << testing::PrintToString(all);
}

TEST(RowSentence, NamesTheSplitGroup) {
  const auto all = sentences(samples::splitRows(), 0);
  EXPECT_EQ(all.front().find("Region of residence = North, sex=; = male; "), 0U) << all.front();
}

TEST(RowSentence, IsEmptyWhereNothingIsKnownOfTheCells) {
  samples::Builder builder;
  const auto table = builder.table("t", {samples::id("v")}, samples::id("s"));
  builder.cell(table, {{samples::id("a")}, {samples::id("unheard of")}}, 1.0);
  EXPECT_EQ(sentences(builder.document, 0), std::vector<std::string>{""});
}

TEST(TestReading, TellsHowManyOfAThousandSamplesWouldGoAsFar) {
  const auto all = readings(samples::oneSample(), 1);
  EXPECT_TRUE(
      holds(all,
            "Smokes daily = yes: Observed - Test Value is 0.000 in these data. If it were "
            "0 in truth, then by the reckoning of the Score test about 83 of 1000 samples "
            "like this one would show a value at least as far from 0, in either direction."))
      << testing::PrintToString(all);
}

TEST(TestReading, DoesNotCountWhatIsRarerThanOneInAThousand) {
  const auto all = readings(samples::oneSample(), 1);
  EXPECT_TRUE(std::any_of(all.begin(), all.end(), [](const std::string& one) {
    return one.find("Mid-p Adjusted Binomial test fewer than 1 of 1000 samples") !=
           std::string::npos;
  })) << testing::PrintToString(all);
}

TEST(TestReading, NeverSpeaksOfSignificanceOrTruth) {
  for (const std::string& one : readings(samples::oneSample(), 1)) {
    for (const char* word : {"significan", "prove", "reject", "accept", "likely"}) {
      EXPECT_EQ(one.find(word), std::string::npos) << one;
    }
  }
}

TEST(TestReading, IsForTablesOfTestsAlone) {
  const Document document = samples::oneSample();
  EXPECT_FALSE(render::holdsTests(tableOf(document, 0)));
  EXPECT_TRUE(render::holdsTests(tableOf(document, 1)));
}

}  // namespace
