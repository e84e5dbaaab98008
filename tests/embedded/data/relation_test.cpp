// What the embedded engine's relation tells beside its rows.
#include "Support.h"

namespace embedded::data {
namespace {

using Relations = DataTest;

TEST_F(Relations, CountTheirRows) {
  OpenedData opened = openData(optionsFor(write("a.csv", "v\n1\n2\n\n3\n")));
  EXPECT_EQ(opened.cases->relation().rowCount(), 4U) << "a missing value is a row too";
  OpenedData empty = openData(optionsFor(write("b.csv", "v\n")));
  EXPECT_EQ(empty.cases->relation().rowCount(), 0U);
}

TEST_F(Relations, FindTheFirstStringThatIsLonger) {
  OpenedData opened = openData(optionsFor(write("a.csv", "v,s\n1,ab\n2,abcd  \n3,abcde\n")));
  ColumnRead read;
  read.column = 1;
  read.as = ColumnKind::Text;
  EXPECT_EQ(opened.cases->relation().firstLonger(read, 1), "1");
  EXPECT_EQ(opened.cases->relation().firstLonger(read, 4), "3") << "trailing blanks do not count";
  EXPECT_EQ(opened.cases->relation().firstLonger(read, 5), "?");
}

}  // namespace
}  // namespace embedded::data
