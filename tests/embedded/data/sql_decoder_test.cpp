// What values of a server become in a case, and which of them no case can hold.
#include "Support.h"
#include "embedded/data/EngineMessages.h"
#include "embedded/data/SqlDecoder.h"
#include "host/distributions/MCMV.h"

namespace embedded::data {
namespace {

using Arguments = std::vector<std::string>;

SqlDecoder decoderOf(ColumnKind kind) {
  ColumnRead read;
  read.as = kind;
  return {read, "server", "v"};
}

double numberFrom(const SqlValue& value, ColumnKind kind = ColumnKind::Real) {
  bool infinite = false;
  const double number = decoderOf(kind).number(value, infinite);
  EXPECT_FALSE(infinite);
  return number;
}

double numberFrom(std::string_view text, ColumnKind kind = ColumnKind::Real) {
  return numberFrom(SqlValue::ofText(text), kind);
}

Failure failureWith(const SqlValue& value) {
  return failureOf([&] { numberFrom(value); });
}

TEST(ServerTexts, AreReadAsTheKindThatIsAskedFor) {
  EXPECT_EQ(numberFrom("true", ColumnKind::Boolean), 1.0);
  EXPECT_EQ(numberFrom("1970-01-03", ColumnKind::Date), 2.0);
  EXPECT_EQ(numberFrom("00:01:00", ColumnKind::Time), 60.0);
  EXPECT_EQ(numberFrom("1970-01-01T00:00:05", ColumnKind::Timestamp), 5.0);
  EXPECT_EQ(numberFrom("-2.5", ColumnKind::Real), -2.5);
  EXPECT_EQ(numberFrom("", ColumnKind::Real), MCMV::Missing);
  EXPECT_EQ(failureWith(SqlValue::ofText("1970-01-03")).id, messages::badValue.id);
}

TEST(ServerTexts, ThatAreNotFiniteAreMissingAndSaidToBeSo) {
  for (const char* text : {"nan", "inf", "-inf", "+Infinity", "INF"}) {
    bool infinite = false;
    EXPECT_EQ(decoderOf(ColumnKind::Real).number(SqlValue::ofText(text), infinite), MCMV::Missing);
    EXPECT_TRUE(infinite) << text;
  }
  EXPECT_EQ(failureWith(SqlValue::ofText("-infinite")).id, messages::badValue.id);
}

TEST(ServerNumbers, ThatADoubleHoldsAreRead) {
  EXPECT_EQ(numberFrom("9007199254740994"), 9007199254740994.0);
  EXPECT_EQ(numberFrom("-9007199254740994.00"), -9007199254740994.0);
  EXPECT_EQ(numberFrom("+0018014398509481984"), 18014398509481984.0);
  EXPECT_EQ(numberFrom(SqlValue::ofUnsigned(std::uint64_t{1} << 63U)), 0x1p63);
  EXPECT_EQ(numberFrom(SqlValue::ofSigned(std::numeric_limits<std::int64_t>::min())), -0x1p63);
}

// Fractions are rounded, as they are everywhere; whole numbers name things.
TEST(ServerNumbers, OfManyDigitsWithAFractionAreRounded) {
  EXPECT_EQ(numberFrom("9007199254740993.5"), 9007199254740994.0);
  EXPECT_EQ(numberFrom("1e300"), 1e300);
}

TEST(ServerNumbers, ThatNoDoubleHoldsAreRefused) {
  const std::string huge = "1" + std::string(400, '0');
  for (const std::string& text : {std::string("9007199254740993"), std::string("-9007199254740993"),
                                  std::string("+9007199254740993.0"), huge}) {
    const Failure failure = failureWith(SqlValue::ofText(text));
    EXPECT_EQ(failure.id, messages::inexactNumber.id) << text;
    EXPECT_EQ(failure.arguments, (Arguments{"server", "?", "v", text}));
  }
  EXPECT_EQ(failureWith(SqlValue::ofUnsigned(~std::uint64_t{0})).arguments.at(3),
            "18446744073709551615");
  EXPECT_EQ(failureWith(SqlValue::ofSigned(-9007199254740993)).arguments.at(3),
            "-9007199254740993");
}

TEST(ServerStrings, ThatGrewSinceTheyWereMeasuredAreAChangeOfTheData) {
  ColumnRead read;
  read.as = ColumnKind::Text;
  read.width = 3;
  const auto written = [&](const char* text) {
    OBS word{};
    SqlDecoder(read, "server", "v").write(SqlValue::ofText(text), &word);
    return std::string(word.bytes, sizeof word.bytes);
  };
  EXPECT_EQ(written("ab   "), "ab      ");
  EXPECT_EQ(failureOf([&] { written("abcd"); }).id, messages::dataChanged.id);
  read.widthDeclared = true;
  const Failure failure = failureOf([&] { written("abcd"); });
  EXPECT_EQ(failure.id, messages::widerString.id);
  EXPECT_EQ(failure.arguments, (Arguments{"server", "?", "v", "4", "3"}));
}

}  // namespace
}  // namespace embedded::data
