// Sidecars: what they add, where they are found, and how they are refused.
#include "Support.h"
#include "embedded/data/DataMessages.h"
#include "embedded/data/Describe.h"
#include "embedded/data/IsoTime.h"

namespace embedded::data {
namespace {

class SchemaTest : public DataTest {
 protected:
  // Opens a small CSV file with this schema beside it.
  OpenedData open(const std::string& schema,
                  const std::string& csv = "id,sex,score,day\n007,m,-9,2020-01-31\n1,f,3,\n") {
    write("d.schema.json", schema);
    return openData(optionsFor(write("d.csv", csv)));
  }
  Failure failure(const std::string& schema) {
    return failureOf([&] { open(schema); });
  }
};
using Schemas = SchemaTest;
using Arguments = std::vector<std::string>;

TEST_F(Schemas, TitleTypeLabelsAndMissingValues) {
  const OpenedData opened = open(R"({"fields": [
    {"name": "id", "type": "string"},
    {"name": "sex", "title": "Sex", "categories": [{"value": "m", "label": "male"}, "f"],
     "categoriesOrdered": true},
    {"name": "score", "missingValues": ["-9", {"value": "-8", "label": "refused"}],
     "proportions:missingRanges": [{"min": 90, "max": 99, "label": "odd"}]},
    {"name": "day", "missingValues": ["2020-01-31"]}],
    "proportions:weight": "score", "proportions:split": "sex"})");
  const Dictionary& dictionary = opened.dictionary;
  EXPECT_TRUE(dictionary.variables[0].format.IsString());
  EXPECT_EQ(dictionary.variables[1].info->label, "Sex");
  EXPECT_EQ(dictionary.variables[1].info->stringLabels.at("m"), "male");
  EXPECT_TRUE(dictionary.variables[1].categoriesOrdered);
  EXPECT_EQ(dictionary.variables[1].declaredStrings, (Arguments{"m", "f"}));
  EXPECT_EQ(dictionary.variables[2].missingNumbers, (std::vector<double>{-9, -8}));
  EXPECT_EQ(dictionary.variables[2].info->numberLabels.at(-8), "refused");
  const OBS odd{95.0};
  EXPECT_TRUE(dictionary.variables[2].IsMissing(&odd));
  EXPECT_EQ(dictionary.variables[3].missingNumbers,
            std::vector<double>{*numberOf("2020-01-31", output::ValueKind::Date)});
  EXPECT_EQ(dictionary.weight, 2);
  EXPECT_EQ(dictionary.splits, std::vector<int>{1});
}

TEST_F(Schemas, AStringTypeKeepsLeadingZeros) {
  open(R"({"fields": [{"name": "id", "type": "string"}]})");
  EXPECT_EQ(readAll(optionsFor(path("d.csv"), CaseMode::CaseByCase), {"id"}).cases.at(0).at(0),
            "[007]");
}

TEST_F(Schemas, MissingTextsInAColumnOfNumbersAreSystemMissing) {
  write("m.schema.json", R"({"missingValues": ["", "NA", "-1"]})");
  const Seen seen =
      readAll(optionsFor(write("m.csv", "a,b\n1,NA\nNA,x\n-1,y\n"), CaseMode::CaseByCase));
  EXPECT_EQ(seen.cases, (std::vector<SeenCase>{
                            {"1", "[NA]", "1"}, {".", "[x ]", "1"}, {"-1", "[y ]", "1"}, {}}));
  EXPECT_EQ(seen.document.data.cases.missing.at(0).second.system, 1U);
  EXPECT_EQ(seen.document.data.cases.missing.at(0).second.user, 1U);
  EXPECT_EQ(seen.document.data.cases.missing.at(1).second.user, 1U);
}

TEST_F(Schemas, AFieldsMissingValuesReplaceTheSchemas) {
  const OpenedData opened = open(R"({"missingValues": ["3"], "fields": [
    {"name": "score", "missingValues": ["-9"]}]})");
  EXPECT_EQ(opened.dictionary.variables[2].missingNumbers, std::vector<double>{-9});
  EXPECT_EQ(opened.dictionary.variables[1].missingStrings, Arguments{"3"});
}

TEST_F(Schemas, BooleansByTheirOwnWords) {
  write("b.schema.json", R"({"fields": [{"name": "a", "type": "boolean",
    "trueValues": ["yes"], "falseValues": ["no"]}]})");
  EXPECT_EQ(readAll(optionsFor(write("b.csv", "a\nyes\nno\n"), CaseMode::CaseByCase)).cases,
            (std::vector<SeenCase>{{"1", "1"}, {"0", "1"}, {}}));
  const Failure failure =
      failureOf([&] { readAll(optionsFor(write("b.csv", "a\nyes\nperhaps\n"))); });
  EXPECT_EQ(failure.id, messages::badValue.id);
  EXPECT_EQ(failure.arguments.at(1), "2");
}

TEST_F(Schemas, MaxLengthIsTheWidthAndALongerStringAnError) {
  const std::string schema = R"({"fields": [{"name": "sex", "constraints": {"maxLength": 3}}]})";
  EXPECT_EQ(open(schema).dictionary.variables[1].type, 3);
  const Failure failure = failureOf([&] {
    open(schema, "id,sex\n1,abc\n2,abcd\n");
    readAll(optionsFor(path("d.csv")), {"sex"});
  });
  EXPECT_EQ(failure.id, messages::widerString.id);
  EXPECT_EQ(failure.arguments, (Arguments{path("d.csv"), "2", "sex", "4", "3"}));
}

TEST_F(Schemas, UnknownFieldComesWithTheNearest) {
  const Failure unknown = failure(R"({"fields": [{"name": "scor"}]})");
  EXPECT_EQ(unknown.id, messages::schemaUnknownFieldNear.id);
  EXPECT_EQ(unknown.arguments, (Arguments{path("d.schema.json"), "scor", "score"}));
}

TEST_F(Schemas, WhatDoesNotFitIsRefused) {
  EXPECT_EQ(failure(R"({"fields": [{"name": "day", "type": "number"}]})").id,
            messages::schemaType.id);
  EXPECT_EQ(failure(R"({"fields": [{"name": "score", "type": "wood"}]})").id,
            messages::schemaShape.id);
  EXPECT_EQ(failure(R"({"fields": [{"name": "score"}, {"name": "SCORE"}]})").id,
            messages::schemaFieldTwice.id);
  EXPECT_EQ(failure(R"({"fields": [{"name": "score", "categories": ["x"]}]})").id,
            messages::schemaValue.id);
  EXPECT_EQ(failure(R"({"fields": [{"title": "score"}]})").id, messages::schemaShape.id);
  EXPECT_EQ(failure(R"({"fields": {"name": "score"}})").id, messages::schemaShape.id);
  EXPECT_EQ(failure(R"({"proportions:weight": "none"})").id, messages::schemaUnknownVariable.id);
  EXPECT_EQ(failure(R"({"proportions:split": ["none"]})").id, messages::schemaUnknownVariable.id);
  EXPECT_EQ(failure(R"({"proportions:weight": "sex"})").id, messages::stringWeight.id);
  EXPECT_EQ(failure(R"({"fieldsMatch": "exact", "fields": [{"name": "id"}]})").id,
            messages::schemaFieldsMatch.id);
}

TEST_F(Schemas, BadJsonComesWithItsPlace) {
  const Failure bad = failure("{\n  \"fields\": [,]\n}");
  EXPECT_EQ(bad.id, messages::schemaSyntax.id);
  EXPECT_EQ(bad.arguments.at(1), "2");
  EXPECT_EQ(bad.arguments.at(2), "14");
}

TEST_F(Schemas, ANumberThatNoDoubleHoldsIsBadJson) {
  // Found by fuzzing: it went out as an internal error.
  const Failure bad = failure("{\n  \"decimals\": 991e999\n}");
  EXPECT_EQ(bad.id, messages::schemaSyntax.id);
  EXPECT_EQ(bad.arguments.at(1), "2");
  EXPECT_EQ(bad.arguments.at(2), "15");
}

TEST_F(Schemas, ANamedSchemaThatIsNotThere) {
  DataOptions options = optionsFor(write("a.csv", "a\n1\n"));
  options.schema = path("none.json");
  EXPECT_EQ(failureOf([&] { openData(options); }).id, messages::schemaUnreadable.id);
}

TEST_F(Schemas, ADataPackageIsFoundByThePathOfItsResource) {
  write("datapackage.json", R"({"resources": [
    {"path": "other.csv", "schema": {"fields": [{"name": "zzz"}]}},
    {"path": ["./p.csv"], "schema": {"fields": [{"name": "a", "title": "A"}]}}]})");
  const std::string file = write("p.csv", "a\n1\n");
  EXPECT_EQ(openData(optionsFor(file)).dictionary.variables[0].info->label, "A");
  EXPECT_EQ(failureOf([&] { openData(optionsFor(write("q.csv", "a\n1\n"))); }).id, "");
  DataOptions options = optionsFor(path("q.csv"));
  options.schema = path("datapackage.json");
  EXPECT_EQ(failureOf([&] { openData(options); }).id, messages::schemaNoResource.id);
}

TEST_F(Schemas, DescribeReadsBackAsTheSameDictionary) {
  const OpenedData opened = open(R"({"missingValues": ["NA", "7"], "fields": [
    {"name": "id", "type": "string", "constraints": {"maxLength": 5}},
    {"name": "sex", "title": "Sex", "categories": [{"value": "m", "label": "male"}, "f"]},
    {"name": "score", "type": "number", "missingValues": [{"value": "-9", "label": "none"}],
     "categories": [0.5, 3], "proportions:format": {"decimals": 3},
     "proportions:missingRanges": [{"min": 90}, {"min": -3, "max": -2, "label": "low"}]},
    {"name": "day", "missingValues": ["2020-01-31"], "categories": ["2020-01-31"]}],
    "proportions:split": ["sex", "day"], "proportions:weight": "score"})");
  const std::string text = describe(opened.dictionary);
  const OpenedData again = open(text);
  EXPECT_EQ(describe(again.dictionary), text);
  for (std::size_t i = 0; i < 4; ++i) {
    const Variable& one = opened.dictionary.variables[i];
    const Variable& other = again.dictionary.variables[i];
    EXPECT_EQ(one.kind, other.kind) << one.name;
    EXPECT_EQ(one.format, other.format);
    EXPECT_EQ(one.missingNumbers, other.missingNumbers);
    EXPECT_EQ(one.missingStrings, other.missingStrings);
    EXPECT_EQ(one.nullTexts, other.nullTexts);
    EXPECT_EQ(one.declaredNumbers, other.declaredNumbers);
    EXPECT_EQ(one.declaredStrings, other.declaredStrings);
    EXPECT_EQ(one.info->numberLabels, other.info->numberLabels);
    EXPECT_EQ(one.info->stringLabels, other.info->stringLabels);
    EXPECT_EQ(one.missingRanges.size(), other.missingRanges.size());
  }
  EXPECT_EQ(again.dictionary.weight, opened.dictionary.weight);
  EXPECT_EQ(again.dictionary.splits, opened.dictionary.splits);
}

TEST_F(Schemas, DescribeOfEveryTypeReadsBack) {
  const std::string file = parquet(
      "t.parquet",
      "SELECT 1.25::DECIMAL(9,2) AS dec, 'b'::ENUM('a','b') AS e, DATE '1970-01-11' AS d, TIME "
      "'00:00:01' AS t, TIMESTAMP '1970-01-01 00:00:02' AS ts, true AS b, 1 AS i, [1] AS l");
  const std::string text = describe(openData(optionsFor(file)).dictionary);
  write("t.schema.json", text);
  EXPECT_EQ(describe(openData(optionsFor(file)).dictionary), text);
}

TEST(Variables, MissingStringsAreComparedWithoutTrailingBlanks) {
  Variable variable;
  variable.type = 8;
  variable.missingStrings = {"no", ""};
  const OBS no{.bytes = {'n', 'o', ' ', ' ', ' ', ' ', ' ', ' '}};
  const OBS blank{.bytes = {' ', ' ', ' ', ' ', ' ', ' ', ' ', ' '}};
  const OBS null{.bytes = {}};
  const OBS yes{.bytes = {'y', ' ', ' ', ' ', ' ', ' ', ' ', ' '}};
  EXPECT_TRUE(variable.isUserMissing(&no));
  EXPECT_TRUE(variable.isUserMissing(&blank));
  EXPECT_TRUE(variable.IsMissing(&null));
  EXPECT_TRUE(variable.isSystemMissing(&null));
  EXPECT_FALSE(variable.isSystemMissing(&blank));
  EXPECT_FALSE(variable.IsMissing(&yes));
}

TEST(Dictionaries, ExactNamesWinOverOtherCapitals) {
  Dictionary dictionary;
  dictionary.variables.resize(2);
  dictionary.variables[0].name = "AGE";
  dictionary.variables[1].name = "Sex";
  EXPECT_EQ(dictionary.find("age"), 0);
  EXPECT_EQ(dictionary.find("Sex"), 1);
  EXPECT_EQ(dictionary.find("x"), -1);
  EXPECT_EQ(dictionary.nearest("sexx"), "Sex");
  EXPECT_EQ(dictionary.nearest("completely"), "");
}

TEST(IsoTime, ReadsAndRefuses) {
  using output::ValueKind;
  EXPECT_EQ(numberOf("1969-12-31", ValueKind::Date), -1);
  EXPECT_EQ(numberOf("01:00:00.5", ValueKind::Time), 3600.5);
  EXPECT_EQ(numberOf("1970-01-02T00:00:01Z", ValueKind::Timestamp), 86401);
  EXPECT_EQ(numberOf("2020-02-30", ValueKind::Date), std::nullopt);
  EXPECT_EQ(numberOf("2020-02-3", ValueKind::Date), std::nullopt);
  EXPECT_EQ(numberOf("24:00", ValueKind::Time), std::nullopt);
  EXPECT_EQ(numberOf("1e3", ValueKind::Number), 1000);
  EXPECT_EQ(numberOf("1,5", ValueKind::Number), std::nullopt);
  EXPECT_EQ(numberOf("nan", ValueKind::Number), std::nullopt);
}

}  // namespace
}  // namespace embedded::data
