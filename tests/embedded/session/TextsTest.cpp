// What a procedure writes, in the session that it writes to.
#include <gtest/gtest.h>

#include "embedded/errors/Error.h"
#include "embedded/output/Values.h"
#include "embedded/output/host/TextContent.h"
#include "embedded/session/Session.h"
#include "host/output/BpProcedure.h"

namespace embedded {
namespace {

class Texts : public testing::Test {
 protected:
  Session session_;
  Session::Scope scope_{session_};
};

TEST(NoSession, IsAnInternalErrorForAnyCallOfTheInterface) {
  try {
    Session::current();
    FAIL() << "there is none";
  } catch (const Error& error) {
    EXPECT_EQ(error.kind(), ErrorKind::Internal);
  }
}

TEST_F(Texts, OfSplitGroupsAreEmptyWithoutThem) {
  BpComposite text("for [%1 = %2:, ^1 = ^2:]1", true);
  text.Sublist();
  text.SplitList();
  text.EndSublist();
  text.Finish();
  EXPECT_EQ(output::machineText(*output::textOf(text)), "for ");
}

TEST_F(Texts, NameTheValuesOfTheSplitGroup) {
  output::VariableInfo info;
  info.name = "region";
  const auto region = std::make_shared<const output::VariableInfo>(info);
  session_.document.splits.push_back({{output::Text::ofValue(region, std::string("N"), true)}});
  session_.currentSplit = 0;
  BpComposite text("for [%1 = %2:, ^1 = ^2:]1", true);
  text.Sublist();
  text.SplitList();
  text.EndSublist();
  text.Finish();
  EXPECT_EQ(output::machineText(*output::textOf(text)), "for region = N");
}

TEST_F(Texts, AreFinishedBeforeTheyAreUsed) {
  const BpComposite text("^1", true);
  try {
    text.Replicate();
    FAIL() << "it was not finished";
  } catch (const Error& error) {
    EXPECT_EQ(error.kind(), ErrorKind::Internal);
  }
}

TEST_F(Texts, StandOnEveryAxisOfATable) {
  BpProcedure procedure("Taste", 10);
  BpPivotTable table = procedure.PivotTable(BpString("shown", true), BpString("T", true), true);
  for (const auto& [label, place] : {std::pair{"rows", BpDimension::Rows},
                                     {"columns", BpDimension::Columns},
                                     {"layers", BpDimension::Layers}}) {
    table.Dimension(BpString(label, true), BpGroup::SortAsAdded).Position(place, 1, true, false);
  }
  ASSERT_EQ(session_.document.tables.size(), 1U);
  const auto& dimensions = session_.document.tables[0].dimensions;
  ASSERT_EQ(dimensions.size(), 3U);
  EXPECT_EQ(dimensions[0].axis, output::Axis::Row);
  EXPECT_EQ(dimensions[1].axis, output::Axis::Column);
  EXPECT_EQ(dimensions[2].axis, output::Axis::Layer);
}

}  // namespace
}  // namespace embedded
