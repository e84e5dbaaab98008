// Pooling the rows of documents that no procedure wrote: all that is known of them stands in their
// description.
#include "ImputedRun.h"

namespace embedded::output {
namespace {

TEST_F(ImputedRun, GetsPooledRowsOfTheMethodsThatHaveARule) {
  begin(0);
  share("Plain", 0.45, 0.09, 40);
  const double estimates[] = {0.4, 0.5, 0.6};
  for (int k = 0; k < 3; ++k) {
    begin(k + 1);
    for (const char* method : {"Plain", "Round", "Clever"}) {
      share(method, estimates[k], 0.1);
    }
  }
  pool();
  const double errors[] = {0.1, 0.1, 0.1};
  const PooledEstimate expected = poolEstimates(estimates, errors, 49.0, PoolingDf::BarnardRubin);
  EXPECT_DOUBLE_EQ(value(0, "Plain", "Share"), 0.5);
  EXPECT_DOUBLE_EQ(value(0, "Plain", "Error"), expected.standardError);
  EXPECT_DOUBLE_EQ(value(0, "Plain", "From"), pooledWald(expected, 95.0, -1, 2).lower);
  EXPECT_DOUBLE_EQ(value(0, "Round", "To"), pooledWilson(expected, 50.0, 95.0).upper);
  EXPECT_DOUBLE_EQ(value(0, "Plain", "Fraction of Missing Information"),
                   expected.missingInformation);
  EXPECT_DOUBLE_EQ(value(0, "Plain", "Relative Increase in Variance"), expected.increase);
  EXPECT_DOUBLE_EQ(value(0, "Plain", "Relative Efficiency"), expected.efficiency);
  EXPECT_DOUBLE_EQ(value(0, "Plain", "Degrees of Freedom"), expected.df);
  EXPECT_DOUBLE_EQ(value(0, "Round", "Degrees of Freedom"), rubinDf(3, expected.increase));
  EXPECT_EQ(pooled(0, "Clever", "Share"), nullptr);
  EXPECT_EQ(pooled(0, "Plain", "People"), nullptr);
  EXPECT_EQ(messages("No pooling rule in ^1 for [%1:, ^1:]2 ..."), 1U);
}

TEST_F(ImputedRun, TakesRubinsDegreesOfFreedomWhenAskedTo) {
  for (const double number : {0, 1, 2, 3}) {
    begin(number);
    share("Plain", 0.3 + 0.1 * number, 0.1);
  }
  pool(PoolingDf::Rubin);
  EXPECT_NEAR(value(0, "Plain", "Degrees of Freedom"), 6.125, 1e-12);
  EXPECT_EQ(messages("Pooled over ^1 imputations, degrees of freedom of Rubin ..."), 1U);
}

// Bit for bit, whatever the pooled formula would give.
TEST_F(ImputedRun, KeepsTheRowThatAllImputationsAgreeOn) {
  for (const double number : {0, 1, 2}) {
    begin(number);
    share("Plain", number == 0 ? 0.4 : 0.3, 0.1);
    row("Shares", "Method", Text::string("Round"), Text::string("x"),
        {{"Share", 1.0}, {"Error", missing}, {"From", missing}, {"To", missing}});
  }
  pool();
  EXPECT_EQ(value(0, "Plain", "Share"), 0.3);
  EXPECT_EQ(value(0, "Plain", "From"), 0.1);
  EXPECT_EQ(value(0, "Plain", "To"), 0.9);
  EXPECT_EQ(value(0, "Plain", "Fraction of Missing Information"), 0.0);
  EXPECT_EQ(value(0, "Plain", "Relative Increase in Variance"), 0.0);
  EXPECT_EQ(value(0, "Plain", "Relative Efficiency"), 1.0);
  EXPECT_EQ(pooled(0, "Plain", "Degrees of Freedom"), nullptr) << "they are infinite";
  EXPECT_EQ(pooled(0, "Round", "From")->state, State::Missing);
  EXPECT_EQ(value(0, "Round", "Fraction of Missing Information"), 0.0);
}

TEST_F(ImputedRun, SaysInHowManyImputationsAStatisticIsLacking) {
  for (const double number : {0, 1, 2, 3}) {
    begin(number);
    share("Plain", 0.1 * number, number > 1 ? missing : 0.1);
  }
  pool();
  EXPECT_NEAR(value(0, "Plain", "Share"), 0.2, 1e-15);
  for (const char* statistic : {"Error", "From", "To"}) {
    expectNotComputed("Plain", statistic, 2);
  }
  EXPECT_EQ(pooled(0, "Plain", "Relative Efficiency"), nullptr);
}

TEST_F(ImputedRun, MarksAnIncreaseThatIsInfinite) {
  for (const double number : {0, 1, 2}) {
    begin(number);
    share("Plain", number == 1 ? 0.0 : 1.0, 0.0);
  }
  pool();
  EXPECT_EQ(value(0, "Plain", "Fraction of Missing Information"), 1.0);
  const Cell* increase = pooled(0, "Plain", "Relative Increase in Variance");
  ASSERT_NE(increase, nullptr);
  EXPECT_EQ(increase->state, State::Missing);
  EXPECT_EQ(note(0, *increase), "Imputations without variance ...");
}

TEST_F(ImputedRun, TestsTheDifferenceThatItsRowIsAbout) {
  for (const double number : {0, 1, 2, 3}) {
    begin(number);
    row("Shares", "Method", Text::string("Plain"), Text::string("x"),
        {{"Share", 0.3 + 0.1 * number}, {"Error", 0.1}, {"T", 9.0}, {"P", 0.1 * number}});
  }
  pool();
  EXPECT_NEAR(value(0, "Plain", "T"), 3.27326835353989, 1e-12);
  EXPECT_NEAR(value(0, "Plain", "P"), 2 * 0.00823405228411621, 1e-13);
}

// Two halves of 50 and 40 people: their rows, and their degrees of freedom, are in another table.
TEST_F(ImputedRun, FindsTheGroupsBehindADifference) {
  const double first[] = {0.36, 0.44, 0.40};
  const double second[] = {0.25, 0.35, 0.225};
  const auto error = [](double p, double n) { return std::sqrt(p * (1 - p) / n); };
  std::vector<double> errors[2];
  for (int k = 0; k < 4; ++k) {
    begin(k);
    const double a = first[std::max(0, k - 1)];
    const double b = second[std::max(0, k - 1)];
    for (const char* other : {"Pair ^1 of ^2", "x"}) {
      const bool isPair = other[0] == 'P';
      const TextPtr about = isPair
                                ? Text::composite("Pair ^1", {Text::number(7, NumberFormat::Count)})
                                : Text::string("y");
      row("Halves", "Half", Text::string("left"), about,
          {{"Share", isPair ? a : 0.5}, {"People", 50}, {"Error", error(a, 50)}});
      row("Halves", "Half", Text::string("right"), about,
          {{"Share", isPair ? b : 0.5}, {"People", 40}, {"Error", error(b, 40)}});
    }
    if (k > 0) {
      errors[0].push_back(error(a, 50));
      errors[1].push_back(error(b, 40));
    }
    row("Gaps", "Method", Text::string("Square"),
        Text::composite("Pair ^1 of ^2", {Text::number(7, NumberFormat::Count), Text::string("z")}),
        {{"Gap", a - b},
         {"Error", std::hypot(error(a, 50), error(b, 40))},
         {"From", a - b - 0.1},
         {"To", a - b + 0.1}});
  }
  pool();
  const PooledInterval expected =
      pooledNewcombe(poolEstimates(first, errors[0], {}, PoolingDf::Rubin), 50,
                     poolEstimates(second, errors[1], {}, PoolingDf::Rubin), 40, 95.0);
  EXPECT_DOUBLE_EQ(value(1, "Square", "From"), expected.lower);
  EXPECT_DOUBLE_EQ(value(1, "Square", "To"), expected.upper);
  EXPECT_EQ(pooled(1, "Square", "Degrees of Freedom"), nullptr) << "there are two";
}

TEST_F(ImputedRun, PoolsEachGroupOfTheUsersByItself) {
  document_.data.splits = splits_;
  for (const double number : {0, 1, 2, 5}) {
    for (const double group : {7, 8, 9}) {
      if (number > 0 && group == 9) {
        continue;
      }
      begin(number, group);
      share("Plain", group / 100 + number / 10, 0.1);
    }
  }
  pool();
  ASSERT_NE(pooled(0, "Plain", "Share", "pooled 7"), nullptr);
  EXPECT_NEAR(pooled(0, "Plain", "Share", "pooled 7")->value, 0.07 + 0.8 / 3, 1e-15);
  EXPECT_NEAR(pooled(0, "Plain", "Share", "pooled 8")->value, 0.08 + 0.8 / 3, 1e-15);
  EXPECT_EQ(pooled(0, "Plain", "Share", "pooled 9"), nullptr);
  EXPECT_EQ(messages("Split group without imputations ..."), 1U);
  // Cells of one split group stand together, groups in the order of the data.
  const auto& cells = document_.tables[0].cells;
  EXPECT_TRUE(std::is_sorted(cells.begin(), cells.end(),
                             [](const Cell& a, const Cell& b) { return a.split < b.split; }));
}

TEST_F(ImputedRun, IsLeftAloneWithoutImputations) {
  begin(0);
  share("Plain", 0.4, 0.1);
  pool();
  EXPECT_EQ(document_.splits.size(), 1U);
  EXPECT_EQ(document_.tables[0].cells.size(), 5U);
  EXPECT_TRUE(document_.messages.empty());
}

}  // namespace
}  // namespace embedded::output
