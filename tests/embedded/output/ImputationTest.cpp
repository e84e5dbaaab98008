// Pooling the rows of documents that no procedure wrote: all that is known of them stands in their
// description.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "embedded/output/Imputation.h"
#include "embedded/output/Values.h"
#include "embedded/output/Writer.h"

namespace embedded::output {
namespace {

constexpr double missing = std::numeric_limits<double>::lowest();

Meaning meaning(Role role, const std::string& pooling = "") {
  Meaning says;
  says.role = role;
  says.pooling = pooling;
  return says;
}

// A table "Shares" of one share a row, made plainly or cleverly, and "Gaps" of two shares.
Description description() {
  Description says;
  says.labels["Share"] = meaning(Role::Estimate, "rubin");
  says.labels["Gap"] = meaning(Role::Difference, "rubin");
  says.labels["Error"] = meaning(Role::StandardError, "rubin");
  says.labels["People"] = meaning(Role::Trials);
  says.labels["From"] = meaning(Role::Lower);
  says.labels["To"] = meaning(Role::Upper);
  says.labels["T"] = meaning(Role::Statistic);
  says.labels["P"] = meaning(Role::PTwoSided);
  says.labels["Pair ^1"] = meaning(Role::Comparison);
  says.labels["Pair ^1 of ^2"] = meaning(Role::Comparison);
  TableMeaning& shares = says.tables["Shares"];
  shares.estimate = "Share";
  shares.degreesOfFreedom = DegreesOfFreedom{{}, "People", {}, 1.0};
  shares.labels["Plain"] = meaning(Role::Method, "wald");
  shares.labels["Round"] = meaning(Role::Method, "wilson");
  shares.labels["Clever"] = meaning(Role::Method);
  TableMeaning& gaps = says.tables["Gaps"];
  gaps.estimate = "Gap";
  gaps.groupsTable = "Halves";
  gaps.groupsEstimate = "Share";
  gaps.degreesOfFreedom = DegreesOfFreedom{"Halves", "People", "sum", 2.0};
  gaps.labels["Square"] = meaning(Role::Method, "newcombe");
  says.tables["Halves"].estimate = "Share";
  return says;
}

using Values = std::vector<std::pair<const char*, double>>;

// Writes a document as a run over imputations leaves it.
class ImputedRun : public testing::Test {
 protected:
  ImputedRun() {
    for (const char* name : {"imputation", "half"}) {
      VariableInfo info;
      info.name = name;
      splits_.push_back(std::make_shared<const VariableInfo>(info));
    }
    document_.data.splits = {splits_[0]};
  }

  // From now on, rows belong to this imputation, and to this group of the user's if there is one.
  void begin(double imputation, std::optional<double> group = {}) {
    SplitGroup values{{Text::ofValue(splits_[0], imputation, false)}};
    if (group) {
      values.values.push_back(Text::ofValue(splits_[1], *group, false));
    }
    document_.splits.push_back(values);
    writer_.beginSplit(static_cast<Index>(document_.splits.size() - 1), false);
  }

  void row(const char* title, const char* rowDimension, const TextPtr& label, const TextPtr& about,
           const Values& values) {
    const Index table = writer_.table(Text::string(title));
    const TextPtr dimensions[] = {Text::string(rowDimension), Text::string("About"),
                                  Text::string("Statistics")};
    for (int i = 0; i < 3; ++i) {
      const Index dimension = writer_.dimension(table, dimensions[i]);
      writer_.position(table, dimension, i == 2 ? Axis::Column : Axis::Row, i + 1, true, false);
    }
    writer_.select(table, 0, writer_.node(table, 0, 0, label, false));
    writer_.select(table, 1, writer_.node(table, 1, 0, about, false));
    for (const auto& [statistic, value] : values) {
      writer_.select(table, 2, writer_.node(table, 2, 0, Text::string(statistic), false));
      writer_.cell(table, value, NumberFormat::GeneralStat);
    }
  }

  void share(const char* method, double share, double error, double people = 50) {
    row("Shares", "Method", Text::string(method), Text::string("x"),
        {{"Share", share}, {"People", people}, {"Error", error}, {"From", 0.1}, {"To", 0.9}});
  }

  void pool(PoolingDf df = PoolingDf::BarnardRubin) {
    poolImputations(document_, description(), df);
  }

  // The pooled cell of this row and statistic in a table.
  const Cell* pooled(std::size_t table, const char* label, const char* statistic,
                     const char* split = "pooled") const {
    for (const Cell& cell : document_.tables[table].cells) {
      const auto& dimensions = document_.tables[table].dimensions;
      std::string splitText;
      for (const TextPtr& value : document_.splits[cell.split].values) {
        splitText += (splitText.empty() ? "" : " ") + machineText(*value);
      }
      if (splitText == split && dimensions[0].nodes[cell.at[0]].label->id == label &&
          dimensions[2].nodes[cell.at[2]].label->id == statistic) {
        return &cell;
      }
    }
    return nullptr;
  }

  double value(std::size_t table, const char* label, const char* statistic) const {
    const Cell* cell = pooled(table, label, statistic);
    return cell == nullptr || cell->state != State::Valid ? std::nan("") : cell->value;
  }

  std::string note(std::size_t table, const Cell& cell) const {
    return cell.footnotes == none
               ? ""
               : machineText(*document_.tables[table].footnoteLists[cell.footnotes].front());
  }

  std::size_t messages(const std::string& id) const {
    return static_cast<std::size_t>(
        std::count_if(document_.messages.begin(), document_.messages.end(),
                      [&](const Message& message) { return message.text->id == id; }));
  }

  std::vector<VariablePtr> splits_;
  Document document_;
  Writer writer_{document_};
};

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
    const Cell* cell = pooled(0, "Plain", statistic);
    ASSERT_NE(cell, nullptr) << statistic;
    EXPECT_EQ(cell->state, State::Missing) << statistic;
    EXPECT_EQ(note(0, *cell), "Imputations not computed 2 ...") << statistic;
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

// A group whose number is missing, or is no number, is no imputation.
TEST_F(ImputedRun, PoolsNoGroupsWithoutANumber) {
  begin(missing);
  share("Plain", 0.9, 0.1);
  document_.splits.push_back({{Text::ofValue(splits_[0], std::string("none"), false)}});
  writer_.beginSplit(static_cast<Index>(document_.splits.size() - 1), false);
  share("Plain", 0.8, 0.1);
  for (const double number : {1, 2, 3}) {
    begin(number);
    share("Plain", 0.3 + 0.1 * number, 0.1);
  }
  pool();
  EXPECT_NEAR(value(0, "Plain", "Share"), 0.5, 1e-15);
}

TEST_F(ImputedRun, LeavesAloneWhatNothingIsSaidOf) {
  for (const double number : {0, 1, 2}) {
    begin(number);
    share("Plain", 0.3 + 0.1 * number, 0.1);
    row("Others", "Method", Text::string("Plain"), Text::string("x"), {{"Share", 0.1 * number}});
    const Index bare = writer_.table(Text::string("Bare"));
    writer_.position(bare, writer_.dimension(bare, Text::string("Rows")), Axis::Row, 1, true,
                     false);
    writer_.select(bare, 0, writer_.node(bare, 0, 0, Text::string("a"), false));
    writer_.cell(bare, number, NumberFormat::Count);
  }
  pool();
  EXPECT_NE(pooled(0, "Plain", "Share"), nullptr);
  EXPECT_EQ(document_.tables[1].cells.size(), 3U) << "no table of this title is described";
  EXPECT_EQ(document_.tables[2].cells.size(), 3U) << "it has no columns";
  EXPECT_EQ(messages("No pooling rule in ^1 for [%1:, ^1:]2 ..."), 0U);
}

// Cells that stand in no split group belong to no imputation either.
TEST_F(ImputedRun, LeavesCellsOfAllDataAlone) {
  share("Plain", 0.9, 0.1);
  for (const double number : {1, 2, 3}) {
    begin(number);
    share("Plain", 0.3 + 0.1 * number, 0.1);
  }
  for (Cell& cell : document_.tables[0].cells) {
    ASSERT_EQ(cell.split == none, &cell - document_.tables[0].cells.data() < 5);
  }
  poolImputations(document_, description(), PoolingDf::Rubin);
  const auto& cells = document_.tables[0].cells;
  double sum = 0.0;
  int found = 0;
  for (const Cell& cell : cells) {
    if (cell.split == 3 &&
        document_.tables[0].dimensions[2].nodes[cell.at[2]].label->id == "Share") {
      sum += cell.value;
      ++found;
    }
  }
  EXPECT_EQ(found, 1);
  EXPECT_NEAR(sum, 0.5, 1e-15);
}

// In one imputation a statistic is missing, or was never written.
TEST_F(ImputedRun, CountsImputationsThatLackTheEstimateItself) {
  for (const double number : {0, 1, 2, 3}) {
    begin(number);
    share("Plain", number == 2 ? missing : 0.1 * number, 0.1);
    Values some{{"Share", 0.1 * number}, {"Error", 0.1}};
    if (number == 3) {
      some.erase(some.begin());
    }
    row("Shares", "Method", Text::string("Round"), Text::string("x"), some);
  }
  pool();
  for (const char* method : {"Plain", "Round"}) {
    const Cell* cell = pooled(0, method, "Share");
    ASSERT_NE(cell, nullptr) << method;
    EXPECT_EQ(cell->state, State::Missing) << method;
    EXPECT_EQ(note(0, *cell), "Imputations not computed 1 ...") << method;
  }
}

TEST_F(ImputedRun, DoesNotTakeARowForAgreedOnThatOneImputationLacks) {
  for (const double number : {0, 1, 2}) {
    begin(number);
    Values all{{"Share", 0.5}, {"Error", 0.1}, {"T", 1.0}};
    if (number == 1) {
      all.pop_back();
    }
    row("Shares", "Method", Text::string("Plain"), Text::string("x"), all);
    Values other{{"Share", 0.5}, {"Error", 0.1}, {"T", 1.0}};
    if (number == 2) {
      other.pop_back();
    }
    row("Shares", "Method", Text::string("Round"), Text::string("x"), other);
  }
  pool();
  EXPECT_DOUBLE_EQ(value(0, "Plain", "T"), 5.0) << "the pooled test, not the procedure's";
  EXPECT_DOUBLE_EQ(value(0, "Round", "T"), 5.0);
}

TEST_F(ImputedRun, HasNoTestWithoutAStandardError) {
  for (const double number : {0, 1, 2}) {
    begin(number);
    row("Shares", "Method", Text::string("Plain"), Text::string("x"),
        {{"Share", 0.1 * number},
         {"Error", number == 2 ? missing : 0.1},
         {"T", number},
         {"Q", 0.5},
         {"P", 0.5}});
  }
  Description says = description();
  says.labels["Q"] = meaning(Role::POneSided);
  poolImputations(document_, says, PoolingDf::Rubin);
  for (const char* statistic : {"T", "P", "Q"}) {
    const Cell* cell = pooled(0, "Plain", statistic);
    ASSERT_NE(cell, nullptr) << statistic;
    EXPECT_EQ(cell->state, State::Missing) << statistic;
    EXPECT_EQ(note(0, *cell), "Imputations not computed 1 ...") << statistic;
  }
}

// Wilson's interval needs the number of people; with one bound there is none at all.
TEST_F(ImputedRun, SaysThatAnIntervalCannotBePooledWithoutItsCounts) {
  for (const double number : {0, 1, 2}) {
    begin(number);
    row("Shares", "Method", Text::string("Round"), Text::string("x"),
        {{"Share", 0.1 + 0.1 * number}, {"Error", 0.1}, {"From", 0.1}, {"To", 0.9}});
    row("Shares", "Method", Text::string("Plain"), Text::string("x"),
        {{"Share", 0.1 + 0.1 * number}, {"Error", 0.1}, {"From", 0.1}});
  }
  pool();
  for (const auto& [method, bound] :
       {std::pair{"Round", "From"}, {"Round", "To"}, {"Plain", "From"}}) {
    const Cell* cell = pooled(0, method, bound);
    ASSERT_NE(cell, nullptr) << method << bound;
    EXPECT_EQ(cell->state, State::Missing) << method << bound;
    EXPECT_EQ(note(0, *cell), "Pooled statistic not computed ...") << method << bound;
  }
}

// Rows without a method are pooled as estimates: their interval is the procedure's own.
TEST_F(ImputedRun, PoolsNoIntervalOfRowsWithoutAMethod) {
  for (const double number : {0, 1, 2}) {
    begin(number);
    row("Halves", "Half", Text::string("left"), Text::string("x"),
        {{"Share", 0.1 + 0.1 * number}, {"Error", 0.1}, {"From", 0.1}, {"To", 0.9}});
  }
  pool();
  EXPECT_NEAR(value(0, "left", "Share"), 0.25, 1e-15);
  EXPECT_EQ(pooled(0, "left", "From"), nullptr);
}

class DifferenceOfHalves : public ImputedRun {
 protected:
  // What each imputation says of the halves behind one difference, the second imputation's right
  // half apart; the rows of the halves may be about something else.
  void write(const Values& left, const Values& right, const Values& rightOfSecond,
             const char* about = "x") {
    for (const double number : {0, 1, 2}) {
      begin(number);
      row("Halves", "Half", Text::string("left"), Text::string(about), left);
      row("Halves", "Half", Text::string("right"), Text::string(about),
          number == 2 ? rightOfSecond : right);
      row("Gaps", "Method", Text::string("Square"), Text::string("x"),
          {{"Gap", 0.1 * number}, {"Error", 0.1}, {"From", -0.5}, {"To", 0.5}});
    }
    pool();
  }
  // How the interval of the difference came out: a number, or the note beside it.
  std::string interval() const {
    const Cell* cell = pooled(1, "Square", "From");
    return cell == nullptr ? "none" : cell->state == State::Valid ? "valid" : note(1, *cell);
  }
  static constexpr const char* lacking = "Pooled statistic not computed ...";
};

TEST_F(DifferenceOfHalves, HasAnIntervalWhereAllIsThere) {
  const Values half{{"Share", 0.4}, {"People", 50}, {"Error", 0.07}};
  write(half, half, {{"Share", 0.5}, {"People", 50}, {"Error", 0.07}});
  EXPECT_EQ(interval(), "valid");
}

TEST_F(DifferenceOfHalves, HasNoneWhereAHalfHasNoStandardError) {
  const Values half{{"Share", 0.4}, {"People", 50}, {"Error", 0.07}};
  write(half, half, {{"Share", 0.5}, {"People", 50}, {"Error", missing}});
  EXPECT_EQ(interval(), lacking);
}

TEST_F(DifferenceOfHalves, HasNoneWhereTheFirstHalfHasNoStandardError) {
  write({{"Share", 0.4}, {"People", 50}}, {{"Share", 0.4}, {"People", 50}, {"Error", 0.07}},
        {{"Share", 0.4}, {"People", 50}, {"Error", 0.07}});
  EXPECT_EQ(interval(), lacking);
}

TEST_F(DifferenceOfHalves, HasNoneWhereNobodyWasCounted) {
  const Values half{{"Share", 0.4}, {"Error", 0.07}};
  const Values counted{{"Share", 0.4}, {"People", 50}, {"Error", 0.07}};
  write(half, counted, counted);
  EXPECT_EQ(interval(), lacking);
}

TEST_F(DifferenceOfHalves, HasNoneWhereOneHalfWasNotCounted) {
  const Values counted{{"Share", 0.4}, {"People", 50}, {"Error", 0.07}};
  write(counted, counted, {{"Share", 0.4}, {"People", missing}, {"Error", 0.07}});
  EXPECT_EQ(interval(), lacking);
}

TEST_F(DifferenceOfHalves, HasNoneWhereTheHalvesAreAboutSomethingElse) {
  const Values half{{"Share", 0.4}, {"People", 50}, {"Error", 0.07}};
  write(half, half, {{"Share", 0.5}, {"People", 50}, {"Error", 0.07}}, "y");
  EXPECT_EQ(interval(), lacking);
}

TEST_F(DifferenceOfHalves, HasNoneWhereTheTableOfTheHalvesIsNotThere) {
  for (const double number : {0, 1, 2}) {
    begin(number);
    row("Gaps", "Method", Text::string("Square"), Text::string("x"),
        {{"Gap", 0.1 * number}, {"Error", 0.1}, {"From", -0.5}, {"To", 0.5}});
  }
  pool();
  const Cell* cell = pooled(0, "Square", "From");
  ASSERT_NE(cell, nullptr);
  EXPECT_EQ(cell->state, State::Missing);
  EXPECT_EQ(note(0, *cell), lacking);
  EXPECT_NEAR(value(0, "Square", "Gap"), 0.15, 1e-15);
}

// The rows of the two tables have no dimension in common.
TEST_F(DifferenceOfHalves, HasNoneWhereTheHalvesCannotBeRelated) {
  const auto bare = [&](const char* title, const char* dimension, const char* label,
                        const Values& values) {
    const Index table = writer_.table(Text::string(title));
    writer_.position(table, writer_.dimension(table, Text::string(dimension)), Axis::Row, 1, true,
                     false);
    writer_.position(table, writer_.dimension(table, Text::string("Between")), Axis::Row, 2, true,
                     false);
    writer_.position(table, writer_.dimension(table, Text::string("Statistics")), Axis::Column, 1,
                     true, false);
    writer_.select(table, 0, writer_.node(table, 0, 0, Text::string(label), false));
    const std::string only = std::string("of ") + title;
    writer_.dimension(table, Text::string("Between"));
    writer_.select(table, 1, writer_.node(table, 1, 0, Text::string(only), false));
    for (const auto& [statistic, value] : values) {
      writer_.select(table, 2, writer_.node(table, 2, 0, Text::string(statistic), false));
      writer_.cell(table, value, NumberFormat::GeneralStat);
    }
  };
  for (const double number : {0, 1, 2}) {
    begin(number);
    bare("Halves", "Half", "left", {{"Share", 0.1 * number}, {"People", 50}, {"Error", 0.07}});
    bare("Gaps", "Method", "Square",
         {{"Gap", 0.1 * number}, {"Error", 0.1}, {"From", -0.5}, {"To", 0.5}});
  }
  pool();
  EXPECT_EQ(interval(), lacking);
}

// Labels of comparisons are of the same pair when the description says that both compare, and their
// first arguments are the same.
TEST_F(DifferenceOfHalves, BelongsToTheHalvesOfItsPairAlone) {
  const auto count = [](double value) { return Text::number(value, NumberFormat::Count); };
  const TextPtr pair = Text::composite("Pair ^1 of ^2", {count(7), Text::string("z")});
  const std::pair<TextPtr, bool> halves[] = {{Text::composite("Pair ^1", {count(7)}), true},
                                             {Text::composite("Pair ^1", {count(8)}), false},
                                             {Text::composite("Group ^1", {count(7)}), false},
                                             {Text::composite("Pair ^1", {}), false},
                                             {pair, true}};
  const Values half{{"Share", 0.4}, {"People", 50}, {"Error", 0.07}};
  for (const auto& [about, isFound] : halves) {
    document_ = {};
    document_.data.splits = {splits_[0]};
    writer_ = Writer(document_);
    for (const double number : {0, 1, 2}) {
      begin(number);
      row("Halves", "Half", Text::string("left"), about, half);
      row("Halves", "Half", Text::string("right"), about,
          {{"Share", 0.3 + 0.1 * number}, {"People", 50}, {"Error", 0.07}});
      row("Gaps", "Method", Text::string("Square"), pair,
          {{"Gap", 0.1 * number}, {"Error", 0.1}, {"From", -0.5}, {"To", 0.5}});
    }
    pool();
    EXPECT_EQ(interval(), isFound ? "valid" : lacking) << machineText(*about);
  }
}

// The other way round: the difference names no pair.
TEST_F(DifferenceOfHalves, HasNoHalvesWhereItNamesNoPair) {
  const Values half{{"Share", 0.4}, {"People", 50}, {"Error", 0.07}};
  for (const double number : {0, 1, 2}) {
    begin(number);
    for (const char* side : {"left", "right"}) {
      row("Halves", "Half", Text::string(side),
          Text::composite("Pair ^1", {Text::number(7, NumberFormat::Count)}), half);
    }
    row("Gaps", "Method", Text::string("Square"),
        number == 0 ? Text::string("x")
                    : Text::composite("Sum ^1", {Text::number(7, NumberFormat::Count)}),
        {{"Gap", 0.1 * number}, {"Error", 0.1}, {"From", -0.5}, {"To", 0.5}});
    row("Gaps", "Method", Text::string("Plainly"), Text::string("x"), {{"Gap", 0.1 * number}});
  }
  pool();
  EXPECT_EQ(interval(), lacking);
}

}  // namespace
}  // namespace embedded::output
