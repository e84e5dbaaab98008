// Values as text, for machines and for readers.
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <map>

#include "embedded/output/Values.h"

namespace {

using namespace embedded::output;

constexpr double sysmis = std::numeric_limits<double>::lowest();

class Upper : public Sentences {
 public:
  std::string_view sentence(std::string_view identifier) const override {
    return identifier == "Lower"     ? "Untergrenze"
           : identifier == "^1 = ^2" ? "^1 ist ^2"
                                     : identifier;
  }
};

VariablePtr labelled(ValueKind kind = ValueKind::Number) {
  VariableInfo info;
  info.name = "v";
  info.label = "A variable";
  info.kind = kind;
  info.numberLabels = {{1.0, "yes"}};
  info.stringLabels = {{"n", "no"}};
  return std::make_shared<const VariableInfo>(std::move(info));
}

TEST(Values, ShortestReadsBackAsTheSameDouble) {
  for (const double value : {0.1, 1.0 / 3.0, 1e15, 123456789.0, 1e-300, 5e-324, 2.5e17}) {
    EXPECT_EQ(std::strtod(shortest(value).c_str(), nullptr), value);
    EXPECT_EQ(std::strtod(fullPrecision(value).c_str(), nullptr), value);
  }
}

TEST(Values, ShortestWritesWholeNumbersOut) {
  EXPECT_EQ(shortest(4.0), "4");
  EXPECT_EQ(shortest(-1000000.0), "-1000000");
  EXPECT_EQ(shortest(99.5), "99.5");
  EXPECT_EQ(shortest(sysmis), ".");
}

TEST(Values, DatesAreIsoText) {
  EXPECT_EQ(isoText(ValueKind::Date, 0.0), "1970-01-01");
  EXPECT_EQ(isoText(ValueKind::Date, -1.0), "1969-12-31");
  EXPECT_EQ(isoText(ValueKind::Date, 19417.0), "2023-03-01");
  EXPECT_EQ(isoText(ValueKind::Time, 3661.5), "01:01:01.5");
  EXPECT_EQ(isoText(ValueKind::Timestamp, 86400.0 * 365 + 59.0), "1971-01-01T00:00:59");
  EXPECT_EQ(isoText(ValueKind::Timestamp, -0.25), "1969-12-31T23:59:59.75");
}

TEST(Values, ATimestampsFractionNeverRoundsUpToAWholeSecond) {
  EXPECT_EQ(isoText(ValueKind::Time, 1.9999999), "00:00:01.999999");
}

TEST(Values, WhatIsNoDateOfTheCalendarIsANumber) {
  EXPECT_EQ(isoText(ValueKind::Date, 1e9), "1000000000");
  EXPECT_EQ(isoText(ValueKind::Time, -5.0), "-5");
}

TEST(Values, RawTextHasNoLabelsAndNoTrailingBlanks) {
  EXPECT_EQ(rawText(*labelled(), 1.0), "1");
  EXPECT_EQ(rawText(*labelled(ValueKind::String), std::string("n   ")), "n");
  EXPECT_EQ(rawText(*labelled(), sysmis), ".");
  EXPECT_EQ(rawText(*labelled(ValueKind::Date), sysmis), ".");
}

TEST(Values, LabelsAreFoundWithoutTrailingBlanks) {
  EXPECT_EQ(valueLabel(*labelled(), 1.0), "yes");
  EXPECT_EQ(valueLabel(*labelled(), 2.0), "");
  EXPECT_EQ(valueLabel(*labelled(ValueKind::String), std::string("n  ")), "no");
}

TEST(Values, MachineTextFillsIdentifiersWithRawArguments) {
  const auto v = labelled();
  const auto label = Text::composite("^1 = ^2", {Text::ofVariable(v), Text::ofValue(v, 1.0, true)});
  EXPECT_EQ(machineText(*label), "v = 1");
  EXPECT_EQ(machineText(*Text::string("Clopper-Pearson Exact ...")), "Clopper-Pearson Exact ...");
}

TEST(Values, ReaderTextFillsSentencesWithLabels) {
  const auto v = labelled();
  const Upper german;
  const auto label = Text::composite("^1 = ^2", {Text::ofVariable(v), Text::ofValue(v, 1.0, true)});
  EXPECT_EQ(readerText(*label, german), "A variable ist yes");
  const auto plain =
      Text::composite("^1 = ^2", {Text::ofVariable(v), Text::ofValue(v, 1.0, false)});
  EXPECT_EQ(readerText(*plain, german), "A variable ist 1") << "the label was not wanted";
  EXPECT_EQ(readerText(*Text::string("Lower"), german), "Untergrenze");
  EXPECT_EQ(readerText(*Text::string("Lower", false), german), "Lower") << "not to be translated";
}

class Comma : public Sentences {
 public:
  std::string_view sentence(std::string_view identifier) const override {
    return identifier == "Decimal mark" ? "," : identifier;
  }
};

VariablePtr withDecimals(int decimals) {
  VariableInfo info;
  info.name = "v";
  info.decimals = decimals;
  return std::make_shared<const VariableInfo>(std::move(info));
}

std::string shownWith(int decimals, double value, const Sentences& sentences) {
  return readerText(*Text::ofValue(withDecimals(decimals), value, false), sentences);
}

TEST(Values, HaveTheDecimalsOfTheirVariableAndNeverFewerThanTheirOwn) {
  const Upper points;
  EXPECT_EQ(shownWith(2, 1.0, points), "1.00");
  EXPECT_EQ(shownWith(2, -1.5, points), "-1.50");
  EXPECT_EQ(shownWith(2, 1.234, points), "1.234");
  EXPECT_EQ(shownWith(2, 1e20, points), "1e+20");
  EXPECT_EQ(shownWith(0, 1.5, points), "1.5");
  EXPECT_EQ(shownWith(-1, 1.0, points), "1");
}

TEST(Values, HaveTheDecimalMarkOfTheReader) {
  const Comma german;
  EXPECT_EQ(shownWith(2, 1.5, german), "1,50");
  EXPECT_EQ(shownWith(2, sysmis, german), ".");
  EXPECT_EQ(readerText(*Text::number(0.5, NumberFormat::SigDigit), german), "0,5");
  EXPECT_EQ(readerText(*Text::number(7.0, NumberFormat::SigDigit), german), "7");
  EXPECT_EQ(readerText(*Text::number(sysmis, NumberFormat::SigDigit), german), ".")
      << "a missing number is no decimal mark";
}

TEST(Values, TimesOutsideOfEveryCalendarAndClockAreNumbers) {
  EXPECT_EQ(isoText(ValueKind::Time, 86400.0), "24:00:00");
  EXPECT_EQ(isoText(ValueKind::Time, 90000.0), "90000");
  EXPECT_EQ(isoText(ValueKind::Timestamp, 1e15), "1000000000000000");
  EXPECT_EQ(isoText(ValueKind::Timestamp, -1e15), "-1000000000000000");
}

TEST(Values, NotANumberHasNoDate) {
  EXPECT_EQ(rawText(*labelled(ValueKind::Date), std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST(Values, ListsArePrintedWithCommasAndTextsInsideOfTexts) {
  const auto v = labelled();
  const auto list = Text::list({Text::ofValue(v, 1.0, true), Text::string("Lower")});
  EXPECT_EQ(readerText(*list, Upper()), "yes, Untergrenze");
  EXPECT_EQ(machineText(*list), "1, Lower");
  const auto nested =
      Text::composite("in ^1", {Text::composite("^1 = ^2", {Text::ofVariable(v), list})});
  EXPECT_EQ(machineText(*nested), "in v = 1, Lower");
  EXPECT_EQ(readerText(*nested, Upper()), "in A variable ist yes, Untergrenze");
}

}  // namespace
