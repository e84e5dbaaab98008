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

// The same with a description of its own.
std::vector<std::string> sentencesWith(const Document& document,
                                       const embedded::output::Description& about) {
  render::Context with = context();
  with.description = &about;
  const auto table = render::readerTable(document, document.tables[0], with);
  std::vector<std::string> all;
  for (const render::ReaderRow& row : table.rows) {
    all.push_back(render::rowSentence(table, row, with));
  }
  return all;
}

// A table of one row "a" with these statistics, in this order; each label is one category.
Document oneRow(const std::vector<std::pair<const char*, double>>& statistics,
                const char* note = nullptr) {
  samples::Builder builder;
  const auto table = builder.table("t", {samples::id("v")}, samples::id("s"));
  for (const auto& [statistic, value] : statistics) {
    const bool isBound = std::string(statistic) == "Lower" || std::string(statistic) == "Upper";
    samples::Builder::Path path{samples::id(statistic)};
    if (isBound) {
      path.insert(path.begin(), samples::id("^1% Confidence Interval"));
    }
    builder.cell(table, {{samples::id("a")}, path}, value,
                 statistic == statistics.front().first && std::string(statistic) == "Z"
                     ? samples::NumberFormat::Count
                     : samples::NumberFormat::GeneralStat);
    if (note != nullptr && value == samples::missing) {
      builder.writer.cellNote(table, samples::id(note));
    }
  }
  return std::move(builder.document);
}

std::string sentence(const std::vector<std::pair<const char*, double>>& statistics,
                     const char* note = nullptr) {
  return sentences(oneRow(statistics, note), 0).front();
}

// Every row label that is no subject is a method; here it is "a".
TEST(RowSentence, SaysACountAloneAndTrialsAlone) {
  EXPECT_EQ(sentence({{"Successes", 7}, {"Trials", 20}}), ": 7.000 of 20.000 (a).");
  EXPECT_EQ(sentence({{"Successes", 7}}), ": Successes = 7.000 (a).");
  EXPECT_EQ(sentence({{"Trials", 20}}), ": Trials = 20.000 (a).");
  EXPECT_EQ(sentence({{"Z", 1}, {"Trials", 20}}), ": Z = 1, Trials = 20.000 (a).");
  EXPECT_EQ(sentence({{"Successes", 7}, {"Z", 1}}), ": Successes = 7.000, Z = 1.000 (a).");
}

TEST(RowSentence, SaysWhyASingleBoundIsMissing) {
  EXPECT_EQ(
      sentence({{"Proportion", 0.5}, {"Lower", 0.25}, {"Upper", samples::missing}}, "no end."),
      ": Proportion = 0.500, ^1% Confidence Interval is missing (no end) (a).");
  EXPECT_EQ(sentence({{"Proportion", 0.5}, {"Lower", 0.25}}), ": Proportion = 0.500 (a).");
}

TEST(RowSentence, TakesTheReasonAsItStands) {
  EXPECT_EQ(sentence({{"Z", samples::missing}}, "too few"), ": Z is missing (too few) (a).");
  EXPECT_EQ(sentence({{"Z", samples::missing}}), ": Statistic Z is missing (a).");
}

TEST(RowSentence, LeavesBoundsWithoutALevelAlone) {
  samples::Builder builder;
  const auto table = builder.table("t", {samples::id("v")}, samples::id("s"));
  builder.cell(table, {{samples::id("a")}, {samples::id("Lower")}}, 0.25);
  EXPECT_EQ(sentences(builder.document, 0).front(), "");
}

TEST(RowSentence, SaysADifferenceWhoseDirectionNobodyKnows) {
  EXPECT_EQ(sentence({{"Difference in Proportions", 0.25}}),
            ": Difference in Proportions = 0.250 (a).");
}

TEST(RowSentence, TakesTheDirectionFromTheTable) {
  const auto all = sentences(samples::pairs(), 2);
  ASSERT_EQ(all.size(), 1U);
  EXPECT_NE(all[0].find("Difference in Proportions (first minus second) = 0.040"),
            std::string::npos)
      << all[0];
}

TEST(RowSentence, JoinsWhatTheRowIsAboutAndNeedsNoMethod) {
  const auto all = sentences(samples::pairs(), 0);
  EXPECT_EQ(all.front(), "Pair 1, Approval, first survey = no: 943 of 1600, Proportion = 0.590.");
}

TEST(RowSentence, NamesAGroupByWhatItIsAGroupOf) {
  embedded::output::Description about = samples::description();
  about.labels["men"].role = embedded::output::Role::Group;
  samples::Builder builder;
  const auto table =
      builder.table("t", {samples::id("Gender"), samples::id("Test")}, samples::id("s"));
  builder.cell(table, {{samples::id("men")}, {samples::id("Wald")}, {samples::id("Z")}}, 1.5);
  builder.cell(
      table,
      {{samples::id("men")}, {samples::id("exact"), samples::id("twice")}, {samples::id("Z")}},
      1.25);
  EXPECT_EQ(sentencesWith(builder.document, about),
            (std::vector<std::string>{"Gender men: Z = 1.500 (Wald).",
                                      "Gender men: Z = 1.250 (exact, twice)."}));
}

TEST(RowSentence, HasTheSplitGroupAsItsSubjectWhereThereIsNoOther) {
  samples::Builder builder;
  const auto group = samples::variable("g");
  builder.document.data.splits = {group};
  builder.split({samples::Text::ofValue(group, 3.0, true)}, false);
  const auto table = builder.table("t", {samples::id("v")}, samples::id("s"));
  builder.cell(table, {{samples::id("a")}, {samples::id("Z")}}, 1.5);
  EXPECT_EQ(sentences(builder.document, 0).front(), "g = 3: Z = 1.500 (a).");
}

// Named by its dimension alone, a statistic has no label.
TEST(RowSentence, HasNoNameForAStatisticWithoutLabels) {
  samples::Builder builder;
  const auto table = builder.table("t", {samples::id("v")}, samples::id("Z"));
  builder.cell(table, {{samples::id("a")}, {}}, 1.5);
  EXPECT_EQ(sentences(builder.document, 0).front(), ":  = 1.500 (a).");
}

TEST(TestReading, NeedsAProbabilityAndADifference) {
  EXPECT_EQ(readings(oneRow({{"Two-Sided p", 0.5}}), 0).front(), "");
  EXPECT_EQ(readings(oneRow({{"Observed - Test Value", 0.5}}), 0).front(), "");
  EXPECT_FALSE(render::holdsTests(tableOf(oneRow({{"Two-Sided p", 0.5}}), 0)));
}

TEST(TestReading, IsEmptyWhereTheProbabilityWasNotWritten) {
  samples::Builder builder;
  const auto table = builder.table("t", {samples::id("v")}, samples::id("s"));
  builder.cell(table, {{samples::id("a")}, {samples::id("Observed - Test Value")}}, 0.5);
  builder.cell(table, {{samples::id("b")}, {samples::id("Observed - Test Value")}}, 0.5);
  builder.cell(table, {{samples::id("b")}, {samples::id("Two-Sided p")}}, 0.5);
  const auto all = readings(builder.document, 0);
  EXPECT_EQ(all[0], "");
  EXPECT_NE(all[1], "");
}

TEST(TestReading, SaysThatATestHasNoResultWithOrWithoutAReason) {
  const std::vector<std::pair<const char*, double>> failed{{"Observed - Test Value", 0.5},
                                                           {"Two-Sided p", samples::missing}};
  EXPECT_EQ(readings(oneRow(failed, "No cases."), 0).front(),
            ": the a test has no result. No cases.");
  EXPECT_EQ(readings(oneRow(failed), 0).front(), "Reading of : a not computed");
}

}  // namespace
