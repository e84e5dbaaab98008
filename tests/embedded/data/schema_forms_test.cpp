// Properties of a sidecar in each form that they may have; a wrong one is named by its place.
#include "Support.h"
#include "embedded/data/DataMessages.h"
#include "embedded/data/Schema.h"

namespace embedded::data {
namespace {

using Arguments = std::vector<std::string>;

class SchemaForms : public DataTest {
 protected:
  Schema read(const std::string& content) const {
    return readSchema(write("d.schema.json", content), path("d.csv"));
  }
  SchemaField field(const std::string& properties) const {
    return read(R"({"fields": [{"name": "a", )" + properties + "}]}").fields.at(0);
  }
  // The place of what is wrong, and what is wanted there.
  void expectWrong(const std::string& content, const std::string& place,
                   const std::string& wanted) const {
    const Failure failure = failureOf([&] { read(content); });
    EXPECT_EQ(failure.id, messages::schemaShape.id) << content;
    EXPECT_EQ(failure.arguments, (Arguments{path("d.schema.json"), place, wanted})) << content;
  }
  void expectWrongField(const std::string& properties, const std::string& place,
                        const std::string& wanted) const {
    expectWrong(R"({"fields": [{"name": "a", )" + properties + "}]}", "fields[0]." + place, wanted);
  }
};

TEST_F(SchemaForms, TheWholeIsAnObject) {
  expectWrong("[1]", "Wanted of whole file ...", "Wanted an object ...");
  expectWrong(R"({"fields": [3]})", "fields[0]", "Wanted an object ...");
}

TEST_F(SchemaForms, NullIsTheSameAsNothing) {
  const Schema schema =
      read(R"({"fields": [{"name": "a", "title": null, "categories": null}], "missingValues": null,
               "proportions:weight": null})");
  EXPECT_EQ(schema.fields.at(0).title, "");
  EXPECT_FALSE(schema.fields.at(0).categories);
  EXPECT_EQ(schema.weight, "");
  EXPECT_TRUE(read(R"({"fields": null})").fields.empty());
}

TEST_F(SchemaForms, TextsAreTexts) {
  expectWrongField(R"("title": 5)", "title", "Wanted a text ...");
  expectWrong(R"({"proportions:split": ["a", 1]})", "proportions:split",
              "Wanted a list of texts ...");
  expectWrongField(R"("categoriesOrdered": 1)", "categoriesOrdered", "Wanted true or false ...");
}

TEST_F(SchemaForms, WholeNumbersAreBounded) {
  EXPECT_EQ(field(R"("constraints": {"maxLength": 32767})").maxLength, 32767);
  EXPECT_EQ(field(R"("constraints": {})").maxLength, 0);
  for (const char* length : {"\"3\"", "2.5", "0", "32768"})
    expectWrongField(R"("constraints": {"maxLength": )" + std::string(length) + "}",
                     "constraints.maxLength", "Wanted a length ...");
  EXPECT_EQ(field(R"("proportions:format": {"decimals": 16})").decimals, 16);
  EXPECT_EQ(field(R"("proportions:format": {})").decimals, -1);
  for (const char* decimals : {"-1", "17"})
    expectWrongField(R"("proportions:format": {"decimals": )" + std::string(decimals) + "}",
                     "proportions:format.decimals", "Wanted decimals ...");
}

TEST_F(SchemaForms, ValuesAreTextsNumbersTruthsOrNull) {
  const auto values = *field(R"("categories": ["x", 2.5, true, false, null])").categories;
  Arguments texts;
  for (const SchemaValue& value : values) texts.push_back(value.text);
  EXPECT_EQ(texts, (Arguments{"x", "2.5", "true", "false", ""}));
  expectWrongField(R"("categories": [[1]])", "categories", "Wanted a list of values ...");
}

TEST_F(SchemaForms, ValuesMayHaveLabels) {
  const Schema schema = read(R"({"missingValues": [{"value": "NA", "label": "none"}, ""]})");
  ASSERT_EQ(schema.missingValues.size(), 2U);
  EXPECT_EQ(schema.missingValues[0].label, "none");
  expectWrong(R"({"missingValues": [{"label": "none"}]})", "missingValues.value",
              "Wanted at all ...");
  expectWrongField(R"("missingValues": [{"label": "none"}])", "missingValues.value",
                   "Wanted at all ...");
}

TEST_F(SchemaForms, RangesHaveBoundsInOrder) {
  const MissingRange below =
      field(R"("proportions:missingRanges": [{"max": -1}])").missingRanges[0];
  EXPECT_EQ(below.min, std::numeric_limits<double>::lowest());
  EXPECT_EQ(below.max, -1.0);
  expectWrongField(R"("proportions:missingRanges": [{"min": "x"}])",
                   "proportions:missingRanges.min", "Wanted a number ...");
  expectWrongField(R"("proportions:missingRanges": [{"min": 2, "max": 1}])",
                   "proportions:missingRanges.min", "Wanted below max ...");
}

TEST_F(SchemaForms, AnEmptyFileIsBadJson) {
  const Failure failure = failureOf([&] { read(""); });
  EXPECT_EQ(failure.id, messages::schemaSyntax.id);
  EXPECT_EQ(failure.arguments.at(1), "1");
  EXPECT_EQ(failure.arguments.at(2), "1");
}

// Data packages: which of their resources a file is.
class Packages : public DataTest {
 protected:
  // The title of the one field, by a package beside the file; empty when it has none for it.
  std::string titleBy(const std::string& resources) const {
    write("datapackage.json", R"({"resources": )" + resources + "}");
    const Schema schema = findSchema(path("p.csv"));
    return schema.fields.empty() ? "" : schema.fields[0].title;
  }
};

TEST_F(Packages, PassOverResourcesThatAreNoFiles) {
  const std::string good =
      R"({"path": "p.csv", "schema": {"fields": [{"name": "a", "title": "A"}]}})";
  EXPECT_EQ(titleBy("[" + good + "]"), "A");
  EXPECT_EQ(titleBy(R"([5, {"name": "p.csv"}, {"path": 3}, {"path": [3, null]}, )" + good + "]"),
            "A");
}

TEST_F(Packages, MayHaveNothingForAFile) {
  EXPECT_EQ(titleBy("null"), "");
  EXPECT_EQ(titleBy("[]"), "");
  EXPECT_EQ(titleBy(R"([{"path": "p.csv"}])"), "") << "no schema";
}

TEST_F(Packages, MayNameAFileOfASchema) {
  write("other.json", R"({"fields": [{"name": "a", "title": "Other"}]})");
  EXPECT_EQ(titleBy(R"([{"path": "p.csv", "schema": "other.json"}])"), "Other");
  const Failure failure =
      failureOf([&] { titleBy(R"([{"path": "p.csv", "schema": "none.json"}])"); });
  EXPECT_EQ(failure.id, messages::schemaUnreadable.id);
  EXPECT_EQ(failure.arguments, (Arguments{path("none.json"), "No such file or directory"}));
}

}  // namespace
}  // namespace embedded::data
