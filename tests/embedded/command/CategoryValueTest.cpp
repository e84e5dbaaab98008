// Levels: which texts are values of a variable.
#include <cstring>
#include <optional>

#include "Support.h"

namespace embedded::command_tests {

namespace {

class CategoryValue : public CommandTest {
 protected:
  // The number that the text stands for as a level of this variable.
  std::optional<double> number(int variable, const std::string& text) {
    OwnedOBS value;
    return read(variable, text, value) ? std::optional(value[0].number) : std::nullopt;
  }
  // The bytes of a string level.
  std::optional<std::string> bytes(int variable, const std::string& text) {
    OwnedOBS value;
    if (!read(variable, text, value)) {
      return std::nullopt;
    }
    const int type = session_.dictionary.variables[static_cast<std::size_t>(variable)].type;
    return std::string(value[0].bytes, ObsWords(type) * sizeof(OBS));
  }
  int formatCode_ = 0;

 private:
  bool read(int variable, const std::string& text, OwnedOBS& value) {
    VarSpecObj validator(source_, "TAKE", "");
    validator.SetVariable(variable);
    validator.SetErrorReport(false);
    KORA_Format format;
    const bool valid = validator.ValidateCatValue(text, value, format);
    formatCode_ = format.GetTypeCode();
    return valid;
  }
};

constexpr int plain = 0;
constexpr int string4 = 5;
constexpr int date = 8;
constexpr int boolean = 9;
constexpr int grade = 10;
constexpr int town = 11;

TEST_F(CategoryValue, IsANumberOfANumericVariable) {
  EXPECT_EQ(number(plain, "1.50"), 1.5);
  EXPECT_EQ(number(plain, "-2e1"), -20.0);
  EXPECT_EQ(number(plain, "+3"), 3.0);
  EXPECT_GT(formatCode_, 2);
  for (const char* text : {"", " ", "abc", "1x", "1 2", "inf", "nan", "0x10", "1e999", "2020-01-01",
                           "-1.7976931348623157e308"}) {
    EXPECT_EQ(number(plain, text), std::nullopt) << text;
  }
}

TEST_F(CategoryValue, IsAValueLabelOfANumericVariable) {
  EXPECT_EQ(number(grade, "high"), 2.0);
  EXPECT_EQ(number(grade, "High"), std::nullopt);
}

TEST_F(CategoryValue, IsOneOfTheDeclaredCategoriesWhereThereAreAny) {
  EXPECT_EQ(number(grade, "1"), 1.0);
  EXPECT_EQ(number(grade, "3"), std::nullopt);
  EXPECT_EQ(number(grade, "lost"), std::nullopt);
  EXPECT_EQ(bytes(town, "Bath"), "Bath    ");
  EXPECT_EQ(bytes(town, "Rome"), std::nullopt);
}

TEST_F(CategoryValue, IsIsoTextOfADate) {
  EXPECT_EQ(number(date, "1970-01-03"), 2.0);
  EXPECT_GT(formatCode_, 2);
  EXPECT_EQ(number(date, "17"), 17.0);
  EXPECT_EQ(number(date, "1970-13-03"), std::nullopt);
}

TEST_F(CategoryValue, IsTrueOrFalseOfABoolean) {
  EXPECT_EQ(number(boolean, "true"), 1.0);
  EXPECT_EQ(number(boolean, "0"), 0.0);
}

TEST_F(CategoryValue, PrefersANumberToALabel) {
  auto info = std::make_shared<output::VariableInfo>();
  info->numberLabels = {{7.0, "1"}};
  session_.dictionary.variables[plain].info = info;
  EXPECT_EQ(number(plain, "1"), 1.0);
}

TEST_F(CategoryValue, IsTheTextItselfOfAStringAndFitsTheWidth) {
  EXPECT_EQ(bytes(string4, "ab"), "ab      ");
  EXPECT_EQ(formatCode_, 1);
  EXPECT_EQ(bytes(string4, ""), "        ");
  EXPECT_EQ(bytes(string4, "abcde"), std::nullopt);
  EXPECT_EQ(bytes(string4, "\u00E4\u00E4\u00E4"), std::nullopt);
}

TEST_F(CategoryValue, IsReportedWhenItIsRefused) {
  VarSpecObj validator(source_, "TAKE", "");
  parse("TASTE /TRY a /TAKE RULE=LEVEL(1 nope)");
  validator.SetVariable(plain);
  std::string keyword;
  const TokenList tokens = parameter("TAKE", "RULE").getStringAndQual(keyword)->getTokenList();
  OwnedOBS value;
  KORA_Format format;
  EXPECT_FALSE(validator.ValidateCatValue(tokens[1].getString(), value, format));
  EXPECT_EQ(messages(), (std::vector<std::string>{"1:33:4 Value invalid ^1 ^2 ... [nope] [a]"}));
}

// Not even where the bytes after it would be cut off.
TEST_F(CategoryValue, IsNoStringWithNulInIt) {
  EXPECT_EQ(bytes(string4, std::string("a\0b", 3)), std::nullopt);
  EXPECT_EQ(bytes(string4, std::string("ab\0", 3)), std::nullopt);
}

TEST_F(CategoryValue, IsThatOfOneVariableAlone) {
  VarSpecObj validator(source_, "TAKE", "");
  OwnedOBS value;
  KORA_Format format;
  EXPECT_FALSE(validator.ValidateCatValue("1", value, format)) << "of none";
  const std::int32_t two[] = {0, 1};
  EXPECT_TRUE(validator.SetVariables(two, UPSpecTypes::RepeatRefused));
  EXPECT_FALSE(validator.ValidateCatValue("1", value, format)) << "of two";
  EXPECT_EQ(value, nullptr);
}

}  // namespace

}  // namespace embedded::command_tests
