// Documents over samples: what becomes of their cells and messages.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "NumberedRun.h"
#include "embedded/output/Resampling.h"
#include "embedded/output/Values.h"
#include "embedded/output/Writer.h"

namespace embedded::output {
namespace {

constexpr double missing = std::numeric_limits<double>::lowest();

// Writes a document as a run over samples leaves it: sample 0 is the data.
class BootstrapRun : public NumberedRun {
 protected:
  BootstrapRun() : NumberedRun("sample") { description_.labels["Share"].pooling = "rubin"; }

  void share(const char* row, double value) {
    const Index table = writer_.table(Text::string("Shares"));
    writer_.position(table, writer_.dimension(table, Text::string("Rows")), Axis::Row, 1, true,
                     false);
    writer_.position(table, writer_.dimension(table, Text::string("Statistics")), Axis::Column, 1,
                     true, false);
    writer_.select(table, 0, writer_.node(table, 0, 0, Text::string(row), false));
    writer_.select(table, 1, writer_.node(table, 1, 0, Text::string("Share"), false));
    writer_.cell(table, value, NumberFormat::GeneralStat);
  }

  void summariseAll(BootstrapInterval interval = BootstrapInterval::Percentile) {
    BootstrapOptions options;
    options.samples = 3;
    options.interval = interval;
    summariseBootstrap(document_, description_, options);
  }

  // A cell as "label value", or "label - note" where it is missing.
  std::vector<std::string> cells(const char* row, std::size_t table = 0) const {
    std::vector<std::string> all;
    const Table& of = document_.tables[table];
    for (const Cell& cell : of.cells) {
      if (of.dimensions[0].nodes[cell.at[0]].label->id == row) {
        const std::string note =
            cell.footnotes == none ? "" : machineText(*of.footnoteLists[cell.footnotes].front());
        all.push_back(of.dimensions[1].nodes[cell.at[1]].label->id + " " +
                      (cell.state == State::Valid ? shortest(cell.value) : "- " + note));
      }
    }
    return all;
  }

  Description description_;
};

using Strings = std::vector<std::string>;

TEST_F(BootstrapRun, SaysOfEachRowWhyItLacksAnInterval) {
  for (const double sample : {0, 1, 2, 3}) {
    begin(sample);
    share("outside", sample == 0 ? 8.0 : sample);
    share("below", sample == 0 ? -8.0 : sample);
    share("agree", sample == 0 ? 1.0 : 2.0);
    share("unknown", sample == 0 ? missing : sample);
    share("few", sample == 0 || sample > 2 ? 1.0 : missing);
  }
  summariseAll(BootstrapInterval::Bca);
  EXPECT_EQ(cells("outside"),
            (Strings{"Share 8", "Bias -6", "Std. Error 1",
                     "Lower - Bootstrap statistic outside samples ...",
                     "Upper - Bootstrap statistic outside samples ...", "Samples 3"}));
  EXPECT_EQ(cells("below")[3], "Lower - Bootstrap statistic outside samples ...");
  EXPECT_EQ(cells("agree"),
            (Strings{"Share 1", "Bias 1", "Std. Error 0", "Lower - Bootstrap samples all equal ...",
                     "Upper - Bootstrap samples all equal ...", "Samples 3"}));
  EXPECT_EQ(cells("unknown"), (Strings{"Share - ", "Bias - Bootstrap statistic missing ...",
                                       "Std. Error 1", "Lower - Bootstrap statistic missing ...",
                                       "Upper - Bootstrap statistic missing ...", "Samples 3"}));
  EXPECT_EQ(cells("few"), (Strings{"Share 1", "Bias - Bootstrap too few samples ...",
                                   "Std. Error - Bootstrap too few samples ...",
                                   "Lower - Bootstrap too few samples ...",
                                   "Upper - Bootstrap too few samples ...", "Samples 1"}));
}

TEST_F(BootstrapRun, KeepsADistributionWithoutAStatistic) {
  for (const double sample : {0, 1, 2, 3}) {
    begin(sample);
    share("unknown", sample == 0 ? missing : sample);
  }
  summariseAll();
  ASSERT_EQ(document_.tables[0].distributions.size(), 1U);
  EXPECT_TRUE(std::isnan(document_.tables[0].distributions[0].value));
  EXPECT_EQ(document_.tables[0].distributions[0].counts.size(), 3U);
}

TEST_F(BootstrapRun, TakesNoMoreSamplesThanWereAskedFor) {
  for (const double sample : {0, 1, 2, 3, 400}) {
    begin(sample);
    share("a", sample);
  }
  summariseAll();
  EXPECT_EQ(cells("a")[1], "Bias 2");
  EXPECT_EQ(cells("a").back(), "Samples 3");
}

// What belongs to no sample stays as it is, and so do tables without columns.
TEST_F(BootstrapRun, LeavesCellsOfAllDataAlone) {
  share("all", 0.75);
  const Index bare = writer_.table(Text::string("Bare"));
  writer_.position(bare, writer_.dimension(bare, Text::string("Rows")), Axis::Row, 1, true, false);
  writer_.select(bare, 0, writer_.node(bare, 0, 0, Text::string("a"), false));
  writer_.cell(bare, 7.0, NumberFormat::Count);
  for (const double sample : {0, 1, 2, 3}) {
    begin(sample);
    share("a", sample);
  }
  summariseAll();
  EXPECT_EQ(cells("all").front(), "Share 0.75");
  EXPECT_EQ(cells("all").back(), "Samples 0");
  EXPECT_EQ(cells("a").front(), "Share 0");
  ASSERT_EQ(document_.tables[1].cells.size(), 1U);
  EXPECT_EQ(document_.tables[1].cells[0].value, 7.0);
}

// Messages about samples go; those about the data name the user's own group alone.
TEST_F(BootstrapRun, KeepsTheMessagesAboutTheData) {
  for (const double sample : {0, 1}) {
    begin(sample, 5.0);
    share("a", sample);
  }
  const auto pairsOf = [&](const SplitGroup& group) {
    std::vector<TextPtr> pairs;
    for (const TextPtr& value : group.values) {
      pairs.push_back(Text::ofVariable(value->variable));
      pairs.push_back(value);
    }
    return Text::list(std::move(pairs));
  };
  const auto add = [&](Index split, const TextPtr& argument) {
    Message message;
    message.split = split;
    message.text = Text::composite("^1", {argument});
    document_.messages.push_back(std::move(message));
  };
  add(none, Text::string("of all"));
  add(0, pairsOf(document_.splits[0]));
  add(1, pairsOf(document_.splits[1]));
  add(0, Text::string("plain"));
  add(0, Text::list({Text::string("short")}));
  add(0, Text::list({Text::string("w"), Text::string("x"), Text::string("y"), Text::string("z")}));
  summariseAll();
  Strings told;
  for (const Message& message : document_.messages) {
    told.push_back(machineText(*message.text));
    EXPECT_EQ(message.split, told.size() == 1 ? none : 0);
  }
  EXPECT_EQ(told, (Strings{"of all", "half, 5", "plain", "short", "w, x, y, z"}));
  ASSERT_EQ(document_.splits.size(), 1U);
  EXPECT_EQ(document_.splits[0].values.size(), 1U);
}

}  // namespace
}  // namespace embedded::output
