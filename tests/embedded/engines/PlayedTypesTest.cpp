// How values of each type lie in an answer, from a server that the test plays itself.
#include "PlayedTable.h"
#include "embedded/data/EngineMessages.h"
#include "tests_data/Support.h"

namespace engine_tests {
namespace {

using namespace embedded::data;

const std::string mark = PlayedTable::mark;

FakeServer serverOf(const PlayedTable& table) {
  return FakeServer([table](const std::string& sql) { return table.answerTo(sql); });
}

std::vector<SeenCase> casesOf(const PlayedTable& table) {
  const FakeServer server = serverOf(table);
  return readAll(optionsFor(server.address(), CaseMode::CaseByCase)).cases;
}

std::string failureOfReading(const PlayedTable& table) {
  return failureOf([&] { casesOf(table); }).id;
}

TEST(PlayedTypes, NumbersOfEveryWidth) {
  PlayedTable table;
  table.columns = {{"i8", "Int8"},
                   {"i16", "Int16"},
                   {"i32", "Int32"},
                   {"i64", "Int64"},
                   {"u8", "UInt8"},
                   {"u16", "UInt16"},
                   {"u32", "UInt32"},
                   {"u64", "UInt64"},
                   {"f", "Float32"},
                   {"d", "Float64"},
                   {"b", "Bool"},
                   {"n", "Nullable(Int16)"},
                   {"o", "Nullable(Int16)"},
                   {"l", "LowCardinality(UInt8)"}};
  table.rowCount = 1;
  table.rows = mark + wire<std::int8_t>(-100) + wire<std::int16_t>(-300) +
               wire<std::int32_t>(-70001) + wire<std::int64_t>(-5000000001) +
               wire<std::uint8_t>(200) + wire<std::uint16_t>(60001) +
               wire<std::uint32_t>(4000000001) + wire(std::uint64_t{1} << 53U) + wire(1.5F) +
               wire(-0.25) + wire<std::uint8_t>(1) + wire<std::uint8_t>(0) +
               wire<std::int16_t>(-7) + wire<std::uint8_t>(1) + wire<std::uint8_t>(9);
  EXPECT_EQ(casesOf(table),
            (std::vector<SeenCase>{
                {"-100", "-300", "-70001", "-5000000001", "200", "60001", "4000000001",
                 embedded::output::shortest(0x1p53), "1.5", "-0.25", "1", "-7", ".", "9", "1"},
                {}}));
}

TEST(PlayedTypes, DatesAndTimes) {
  PlayedTable table;
  table.columns = {{"d", "Date"},
                   {"e", "Date32"},
                   {"t", "DateTime"},
                   {"z", "DateTime('UTC')"},
                   {"m", "DateTime64(3)"},
                   {"s", "DateTime64(0, 'UTC')"},
                   {"n", "Nullable(DateTime64(6))"}};
  table.rowCount = 1;
  table.rows = mark + wire<std::uint16_t>(18321) + wire<std::int32_t>(-1) +
               wire<std::uint32_t>(60) + wire<std::uint32_t>(61) + wire<std::int64_t>(-1500) +
               wire<std::int64_t>(7) + wire<std::uint8_t>(0) + wire<std::int64_t>(250000);
  EXPECT_EQ(casesOf(table),
            (std::vector<SeenCase>{{"18321", "-1", "60", "61", "-1.5", "7", "0.25", "1"}, {}}));
}

TEST(PlayedTypes, ANameThatIsCutIsOfNoType) {
  PlayedTable table;
  table.columns = {{"v", "UInt8"}, {"x", "Nullable(UInt8"}};
  const FakeServer server = serverOf(table);
  EXPECT_EQ(failureOf([&] { readAll(optionsFor(server.address()), {"x"}); }).id,
            messages::unsupportedType.id);
}

PlayedTable tableOfTexts(const std::string& row, double longest = 3) {
  PlayedTable table;
  table.columns = {{"s", "String"}};
  table.rowCount = 1;
  table.rows = mark + row;
  table.longest = longest;
  return table;
}

TEST(PlayedTexts, OfMoreThan127BytesHaveALengthOfTwo) {
  const std::string text(200, 'y');
  const PlayedTable table = tableOfTexts("\xC8\x01" + text, 200);
  EXPECT_EQ(casesOf(table), (std::vector<SeenCase>{{"[" + text + "]", "1"}, {}}));
}

TEST(PlayedTexts, ThatAreCutAreNoneOfTheTable) {
  EXPECT_EQ(failureOfReading(tableOfTexts("\x03"
                                          "abc")),
            "");
  EXPECT_EQ(failureOfReading(tableOfTexts("")), messages::answerBroke.id);
  EXPECT_EQ(failureOfReading(tableOfTexts("\x03"
                                          "ab")),
            messages::answerBroke.id);
  EXPECT_EQ(failureOfReading(tableOfTexts("\xC8")), messages::answerBroke.id);
}

TEST(PlayedTexts, OfALengthThatNeverEndsAreNone) {
  EXPECT_EQ(failureOfReading(tableOfTexts(std::string(12, '\xFF'))), messages::answerBroke.id);
}

TEST(PlayedTexts, LongerThanAStringMayBeAreRefused) {
  const FakeServer server =
      serverOf(tableOfTexts("\x03"
                            "abc",
                            40000));
  const Failure failure = failureOf([&] { readAll(optionsFor(server.address())); });
  EXPECT_EQ(failure.id, messages::longString.id);
  EXPECT_EQ(failure.arguments, (std::vector<std::string>{server.address(), "?", "s", "40000"}));
}

TEST(PlayedTexts, ThatGrowAfterTheyWereMeasuredAreAChangeOfTheData) {
  EXPECT_EQ(failureOfReading(tableOfTexts("\x04"
                                          "abcd")),
            messages::dataChanged.id);
}

TEST(PlayedTypes, ANullThatIsCutIsNoValue) {
  PlayedTable table;
  table.columns = {{"v", "UInt8"}, {"n", "Nullable(UInt8)"}};
  table.rowCount = 1;
  table.rows = mark + wire<std::uint8_t>(1);
  EXPECT_EQ(failureOfReading(table), messages::answerBroke.id);
}

// What is no row is only looked at where it begins.
TEST(PlayedTypes, ALongPageOfSomethingElseIsNoAnswer) {
  PlayedTable table;
  table.columns = {{"v", "UInt8"}};
  table.rows = "<html>" + std::string(200000, ' ') + "DB::Exception: beyond";
  EXPECT_EQ(failureOfReading(table), messages::answerBroke.id);
}

}  // namespace
}  // namespace engine_tests
