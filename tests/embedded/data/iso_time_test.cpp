// Dates and times as ISO 8601 writes them, and what only looks like one.
#include <gtest/gtest.h>

#include "embedded/data/IsoTime.h"

namespace embedded::data {
namespace {

using output::ValueKind;

constexpr std::optional<double> none = std::nullopt;

TEST(IsoDates, HaveDigitsBetweenHyphens) {
  EXPECT_EQ(numberOf("1970-02-01", ValueKind::Date), 31.0);
  for (const char* text : {"197x-01-01", "-197-01-01", "1970/01/01", "1970-1x-01", "1970-01/01",
                           "1970-01-1x", "1970-01-01 ", "1970", ""})
    EXPECT_EQ(numberOf(text, ValueKind::Date), none) << text;
}

TEST(IsoTimes, HaveTwoDigitsEachAndPerhapsAFraction) {
  EXPECT_EQ(numberOf("10:30", ValueKind::Time), 37800.0);
  EXPECT_EQ(numberOf("10:30:05", ValueKind::Time), 37805.0);
  EXPECT_EQ(numberOf("10:30:05.25", ValueKind::Time), 37805.25);
  for (const char* text : {"1x:30", "10-30", "10:3x", "10:60", "10:30:", "10:30:5", "10:30:123",
                           "10:30:60", "10:30:05.1.2", "10:30:05x", "10:30Z"})
    EXPECT_EQ(numberOf(text, ValueKind::Time), none) << text;
}

// One digit with a point was taken for two digits.
TEST(IsoTimes, HaveNoSecondsOfOneDigitAndAPoint) {
  EXPECT_EQ(numberOf("10:30:5.", ValueKind::Time), none);
  EXPECT_EQ(numberOf("10:30:.5", ValueKind::Time), none);
}

TEST(IsoTimestamps, JoinADateAndATimeByTheLetterOrABlank) {
  EXPECT_EQ(numberOf("1970-01-02", ValueKind::Timestamp), 86400.0);
  EXPECT_EQ(numberOf("1970-01-02T00:00:01", ValueKind::Timestamp), 86401.0);
  EXPECT_EQ(numberOf("1970-01-02 00:00:01Z", ValueKind::Timestamp), 86401.0);
  for (const char* text : {"1970-01-02x00:00:01", "1970-01-02T24:00:00", "1970-01-02T00:00:01ZZ",
                           "1970-01-02T", "1970-13-02T00:00:01"})
    EXPECT_EQ(numberOf(text, ValueKind::Timestamp), none) << text;
}

TEST(Booleans, AreWordsOrNumbers) {
  EXPECT_EQ(numberOf("true", ValueKind::Boolean), 1.0);
  EXPECT_EQ(numberOf("false", ValueKind::Boolean), 0.0);
  EXPECT_EQ(numberOf("0", ValueKind::Boolean), 0.0);
  EXPECT_EQ(numberOf("yes", ValueKind::Boolean), none);
}

}  // namespace
}  // namespace embedded::data
