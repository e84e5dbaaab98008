// Diagnostic lines: label, colon, value.
#include <gtest/gtest.h>

#include "embedded/session/Session.h"
#include "host/display/ACACommonDisplay.h"
#include "host/distributions/MCMV.h"

namespace embedded {

namespace {

class Display : public ::testing::Test {
 protected:
  Display() {
    session_.diagnostics = [this](const std::string& line) { lines_.push_back(line); };
  }

  Session session_;
  Session::Scope scope_{session_};
  std::vector<std::string> lines_;
};

using Strings = std::vector<std::string>;

TEST_F(Display, WritesLabelAndValue) {
  ACACommonDisplay::DisplayB("flag", true);
  ACACommonDisplay::DisplayI("count", -7);
  ACACommonDisplay::DisplayS("name", "v 1");
  EXPECT_EQ(lines_, (Strings{"flag: true", "count: -7", "name: v 1"}));
}

TEST_F(Display, WritesNumbersThatReadBack) {
  ACACommonDisplay::DisplayD("x", 0.1);
  ACACommonDisplay::DisplayD("y", 1.0 / 3.0);
  ACACommonDisplay::DisplayD("missing", MCMV::Missing);
  EXPECT_EQ(lines_[0], "x: 0.1");
  EXPECT_EQ(std::stod(lines_[1].substr(3)), 1.0 / 3.0);
  EXPECT_EQ(lines_[2], "missing: missing");
}

TEST_F(Display, SeparatesListsByCommas) {
  const std::int32_t whole[] = {1, 2};
  const double numbers[] = {0.5};
  const std::string names[] = {"a", "b"};
  ACACommonDisplay::DisplayIV("i", whole);
  ACACommonDisplay::DisplayDV("d", numbers);
  ACACommonDisplay::DisplaySV("s", names);
  ACACommonDisplay::DisplayBV("b", {true, false});
  ACACommonDisplay::DisplayDV("none", {});
  EXPECT_EQ(lines_,
            (Strings{"i: [1, 2]", "d: [0.5]", "s: [a, b]", "b: [true, false]", "none: []"}));
}

TEST_F(Display, WritesPlainLines) {
  BP_Character text("one");
  text += " line";
  BP_ToFront(1, text);
  EXPECT_EQ(lines_, (Strings{"one line"}));
}

TEST_F(Display, WritesNothingWhereNobodyListens) {
  session_.diagnostics = nullptr;
  ACACommonDisplay::DisplayI("count", 1);
  EXPECT_TRUE(lines_.empty());
}

}  // namespace

}  // namespace embedded
