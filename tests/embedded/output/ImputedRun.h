// A document as a run over imputations leaves it, with a description that no procedure wrote, for
// the tests of pooling.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "NumberedRun.h"
#include "embedded/output/Imputation.h"
#include "embedded/output/Values.h"
#include "embedded/output/Writer.h"

namespace embedded::output {

inline constexpr double missing = std::numeric_limits<double>::lowest();

inline Meaning meaning(Role role, const std::string& pooling = "") {
  Meaning says;
  says.role = role;
  says.pooling = pooling;
  return says;
}

// A table "Shares" of one share a row, made plainly or cleverly, and "Gaps" of two shares.
inline Description description() {
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
class ImputedRun : public NumberedRun {
 protected:
  ImputedRun() : NumberedRun("imputation") { document_.data.splits = {splits_[0]}; }

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

  // The statistic of a row of the first table is missing, and a note says in how many imputations.
  void expectNotComputed(const char* label, const char* statistic, int imputations) const {
    const Cell* cell = pooled(0, label, statistic);
    ASSERT_NE(cell, nullptr) << label << " " << statistic;
    EXPECT_EQ(cell->state, State::Missing) << label << " " << statistic;
    EXPECT_EQ(note(0, *cell), "Imputations not computed " + std::to_string(imputations) + " ...")
        << label << " " << statistic;
  }

  std::size_t messages(const std::string& id) const {
    return static_cast<std::size_t>(
        std::count_if(document_.messages.begin(), document_.messages.end(),
                      [&](const Message& message) { return message.text->id == id; }));
  }
};

}  // namespace embedded::output
