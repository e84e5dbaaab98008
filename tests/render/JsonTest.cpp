// The json output: its contract, and what it holds that no other format does.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "Baselines.h"

namespace {

using nlohmann::json;
using samples::Builder;
using samples::expectBaseline;
using samples::id;
using samples::rendered;

json parsed(const samples::Document& document) {
  return json::parse(rendered(document, "json"));
}

TEST(Json, HoldsTheWholeDocument) {
  expectBaseline("one-sample.json", rendered(samples::oneSample(), "json"));
}

TEST(Json, HoldsSplitGroupsAndTheirMessages) {
  expectBaseline("split-rows.json", rendered(samples::splitRows(), "json"));
}

TEST(Json, HoldsTablesOfTheirOwn) {
  expectBaseline("split-tables.json", rendered(samples::splitTables(), "json"));
}

TEST(Json, KeepsATableWithoutCells) {
  expectBaseline("pairs.json", rendered(samples::pairs(), "json"));
  const json tables = parsed(samples::pairs())["tables"];
  ASSERT_EQ(tables.size(), 3U);
  EXPECT_EQ(tables[1]["title"]["id"], "Paired-Samples Proportions Tests");
  EXPECT_EQ(tables[1]["cells"], json::array());
  EXPECT_EQ(tables[1]["dimensions"].size(), 3U);
}

TEST(Json, IsPrintedForARefusedCommandToo) {
  expectBaseline("refused.json", rendered(samples::refused(), "json"));
}

TEST(Json, EscapesWhateverTheDataHold) {
  const std::string text = rendered(samples::hostile(), "json");
  expectBaseline("hostile.json", text);
  const json label = json::parse(text)["tables"][0]["cells"][0]["path"][1][0];
  EXPECT_EQ(label["arguments"][0], "=cmd|' /C calc'!A0");
}

TEST(Json, WritesNullWithItsStateForMissingAndNotANumber) {
  Builder builder;
  const auto table = builder.table("t", {id("v")}, id("s"));
  builder.cell(table, {{id("a")}, {id("x")}}, samples::missing);
  builder.cell(table, {{id("a")}, {id("y")}}, samples::nan);
  builder.cell(table, {{id("a")}, {id("z")}}, std::numeric_limits<double>::infinity());
  const json cells = parsed(builder.document)["tables"][0]["cells"];
  EXPECT_TRUE(cells[0]["value"].is_null());
  EXPECT_EQ(cells[0]["state"], "missing");
  EXPECT_TRUE(cells[1]["value"].is_null());
  EXPECT_EQ(cells[1]["state"], "nan");
  EXPECT_TRUE(cells[2]["value"].is_null()) << "JSON has no infinite numbers";
}

TEST(Json, WritesValuesThatReadBackAsTheSameDouble) {
  for (const double value : {0.1, 1.0 / 3.0, 1e-300, 5e-324, -0.0, 4.0, 123456789012345680.0}) {
    Builder builder;
    const auto table = builder.table("t", {id("v")}, id("s"));
    builder.cell(table, {{id("a")}, {id("b")}}, value);
    const double back = parsed(builder.document)["tables"][0]["cells"][0]["value"];
    EXPECT_EQ(back, value);
    EXPECT_EQ(std::signbit(back), std::signbit(value));
  }
}

TEST(Json, WritesNumbersWithAPointWhateverTheReadersMarkIs) {
  render::Context with = samples::context();
  with.decimalPoint = ",";
  EXPECT_EQ(rendered(samples::oneSample(), "json", with), rendered(samples::oneSample(), "json"));
}

TEST(Json, ReplacesBytesThatAreNoUtf8) {
  Builder builder;
  builder.document.data.source = "caf\xE9.csv";
  EXPECT_EQ(parsed(builder.document)["data"]["source"], "caf\xEF\xBF\xBD.csv");
}

// The arguments of the only row label.
json argumentsOf(std::vector<samples::TextPtr> arguments) {
  Builder builder;
  const auto table = builder.table("t", {id("v")}, id("s"));
  builder.cell(table, {{samples::Text::composite("label", std::move(arguments))}, {id("x")}}, 1.0);
  return parsed(builder.document)["tables"][0]["cells"][0]["path"][0][0]["arguments"];
}

TEST(Json, WritesArgumentsAsTheyAre) {
  using samples::Text;
  const auto number = [](double value) {
    return Text::number(value, samples::NumberFormat::GeneralStat);
  };
  const double infinity = std::numeric_limits<double>::infinity();
  const json numbers = argumentsOf({number(7.0), number(0.5), number(-0.0), number(1e300),
                                    number(infinity), number(samples::missing)});
  EXPECT_EQ(numbers.dump(), "[7,0.5,-0.0,1e+300,null,null]");
  samples::VariableInfo info;
  info.name = "flag";
  info.kind = embedded::output::ValueKind::Boolean;
  const auto flag = std::make_shared<const samples::VariableInfo>(info);
  const json others = argumentsOf({Text::composite("inner ^1", {id("text")}), id("plain"),
                                   Text::ofValue(flag, 1.0, false),
                                   Text::list({Text::ofVariable(flag), number(2.0)})});
  EXPECT_EQ(others.dump(), R"(["inner text","plain",1,["flag",2]])");
}

}  // namespace
