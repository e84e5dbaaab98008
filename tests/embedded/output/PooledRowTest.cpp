// Pooling where something is lacking: numbers, columns, tables, rows behind a difference.
#include "ImputedRun.h"

namespace embedded::output {
namespace {

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
    expectNotComputed(method, "Share", 1);
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
    expectNotComputed("Plain", statistic, 1);
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
