// What a description says of a label, in a table and everywhere.
#include <gtest/gtest.h>

#include "embedded/output/Description.h"

namespace {

using embedded::output::Description;
using embedded::output::Role;

Description sample() {
  Description description;
  auto& lower = description.labels["Lower"];
  lower.role = Role::Lower;
  lower.rangeLow = 0.0;
  lower.rangeHigh = 1.0;
  lower.note = "everywhere";
  auto& table = description.tables["Differences"];
  table.holds = "intervals";
  table.labels["Lower"].rangeLow = -1.0;
  table.labels["Lower"].note = "here";
  table.labels["Wald"].pooling = "wald";
  return description;
}

TEST(Description, SaysNothingOfWhatItDoesNotKnow) {
  const Description description = sample();
  EXPECT_EQ(description.of("Differences", "unheard of").role, Role::None);
  EXPECT_EQ(description.table("unheard of").holds, "");
}

TEST(Description, SaysOfALabelInATableWhatTheTableSays) {
  const auto meaning = sample().of("Differences", "Lower");
  EXPECT_EQ(meaning.rangeLow, -1.0);
  EXPECT_EQ(meaning.note, "here");
}

TEST(Description, SaysOfALabelEverythingElseFromEverywhere) {
  const auto meaning = sample().of("Differences", "Lower");
  EXPECT_EQ(meaning.role, Role::Lower);
  EXPECT_EQ(meaning.rangeHigh, 1.0);
  EXPECT_EQ(sample().of("another table", "Lower").rangeLow, 0.0);
}

TEST(Description, KnowsLabelsOfOneTableAlone) {
  EXPECT_EQ(sample().of("Differences", "Wald").pooling, "wald");
  EXPECT_EQ(sample().of("another table", "Wald").pooling, "");
}

}  // namespace
