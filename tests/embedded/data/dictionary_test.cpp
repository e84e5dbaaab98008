// What columns and the fields of a sidecar make of each other.
#include "Support.h"
#include "embedded/data/DataMessages.h"
#include "embedded/data/DictionaryBuilder.h"
#include "embedded/data/Schema.h"

namespace embedded::data {
namespace {

class DictionaryTest : public DataTest {
 protected:
  // Options for a CSV file with this schema beside it.
  DataOptions withSchema(const std::string& schema, const std::string& csv) const {
    write("d.schema.json", schema);
    return optionsFor(write("d.csv", csv), CaseMode::CaseByCase);
  }
  Dictionary open(const std::string& schema,
                  const std::string& csv = "id,sex,score,day\n007,m,-9,2020-01-31\n") const {
    return openData(withSchema(schema, csv)).dictionary;
  }
  Failure failure(const std::string& schema) const {
    return failureOf([&] { open(schema); });
  }
  // The cases of a one-row Parquet file with a schema.
  std::vector<SeenCase> typed(const std::string& query, const std::string& schema) const {
    DataOptions options = optionsFor(parquet("t.parquet", query), CaseMode::CaseByCase);
    options.schema = write("t.json", schema);
    return readAll(options).cases;
  }
  Failure typedFailure(const std::string& query, const std::string& schema) const {
    return failureOf([&] { typed(query, schema); });
  }
};
using Fields = DictionaryTest;
using Arguments = std::vector<std::string>;

TEST_F(Fields, AYearIsAWholeNumber) {
  const Variable year = open(R"({"fields": [{"name": "id", "type": "year"}]})").variables[0];
  EXPECT_EQ(year.kind, output::ValueKind::Number);
  EXPECT_EQ(year.format.decimals, 0);
}

TEST_F(Fields, FieldsOfOtherTypesAreRefusedWhenUsed) {
  for (const std::string type :
       {"object", "array", "list", "geopoint", "geojson", "duration", "yearmonth"}) {
    const DataOptions options =
        withSchema(R"({"fields": [{"name": "b", "type": ")" + type + "\"}]}", "a,b\n1,2\n");
    EXPECT_FALSE(openData(options).dictionary.variables[1].supported);
    EXPECT_EQ(failureOf([&] { readAll(options, {"a"}); }).id, "");
    EXPECT_EQ(failureOf([&] { readAll(options, {"b"}); }).id, messages::unsupportedType.id);
  }
}

TEST_F(Fields, NumbersAndBooleansCanBeReadAsEachOther) {
  const std::string query = "SELECT true AS b, 1 AS i, 0.0::DOUBLE AS r";
  EXPECT_EQ(typed(query, R"({"fields": [{"name": "b", "type": "integer"},
                                        {"name": "i", "type": "boolean"},
                                        {"name": "r", "type": "boolean"}]})"),
            (std::vector<SeenCase>{{"1", "1", "0", "1"}, {}}));
  EXPECT_EQ(typed(query, R"({"fields": [{"name": "b", "type": "number"}]})").at(0).at(0), "1");
  for (const std::string name : {"b", "i", "r"}) {
    const Failure failure =
        typedFailure(query, R"({"fields": [{"name": ")" + name + R"(", "type": "date"}]})");
    EXPECT_EQ(failure.id, messages::schemaType.id) << name;
    EXPECT_EQ(failure.arguments.at(1), name);
  }
  EXPECT_EQ(typedFailure("SELECT DATE '2020-01-31' AS d",
                         R"({"fields": [{"name": "d", "type": "number"}]})")
                .id,
            messages::schemaType.id);
}

TEST_F(Fields, WrittenBooleansHaveWordsOfTheirOwnOrTheUsualOnes) {
  const DataOptions options = withSchema(R"({"fields": [
      {"name": "plain", "type": "boolean"}, {"name": "digits", "type": "boolean"},
      {"name": "yes", "type": "boolean", "trueValues": ["yes"]},
      {"name": "no", "type": "boolean", "falseValues": ["no"]}]})",
                                         "plain,digits,yes,no\ntrue,1,yes,1\nfalse,0,0,no\n");
  EXPECT_EQ(readAll(options).cases,
            (std::vector<SeenCase>{{"1", "1", "1", "1", "1"}, {"0", "0", "0", "0", "1"}, {}}));
}

TEST_F(Fields, BooleansAreCalledTrueAndFalseUnlessTheyHaveLabels) {
  using Labels = std::map<double, std::string>;
  const auto labels = [&](const std::string& field) {
    const auto info =
        open(R"({"fields": [{"name": "a", "type": "boolean")" + field + "}]}", "a\ntrue\nfalse\n")
            .variables[0]
            .info;
    return Labels(info->numberLabels.begin(), info->numberLabels.end());
  };
  EXPECT_EQ(labels(""), (Labels{{0, "false"}, {1, "true"}}));
  EXPECT_EQ(labels(R"(, "categories": [{"value": true, "label": "treated"}, false])"),
            (Labels{{1, "treated"}}));
}

TEST_F(Fields, AMissingStringMayHaveALabel) {
  const Variable sex = open(R"({"fields": [{"name": "sex", "missingValues":
      [{"value": "x ", "label": "not asked"}, "y"]}]})")
                           .variables[1];
  EXPECT_EQ(sex.missingStrings, (Arguments{"x", "y"}));
  EXPECT_EQ(sex.info->stringLabels.at("x"), "not asked");
  EXPECT_EQ(sex.info->stringLabels.count("y"), 0U);
}

TEST_F(Fields, StringsHaveNoMissingRanges) {
  const Failure refused = failure(R"({"fields": [{"name": "sex",
      "proportions:missingRanges": [{"min": 1, "max": 2}]}]})");
  EXPECT_EQ(refused.id, messages::schemaValue.id);
  EXPECT_EQ(refused.arguments,
            (Arguments{path("d.schema.json"), "sex", "proportions:missingRanges"}));
}

TEST_F(Fields, ATextThatATypedColumnCannotHoldIsRefusedOfItsFieldOnly) {
  const Failure refused =
      typedFailure("SELECT 1 AS a", R"({"fields": [{"name": "a", "missingValues": ["NA"]}]})");
  EXPECT_EQ(refused.id, messages::schemaValue.id);
  EXPECT_EQ(refused.arguments, (Arguments{path("t.json"), "a", "NA"}));
  // For all columns it is said of those that hold texts.
  EXPECT_EQ(typed("SELECT 1 AS a, 'NA' AS t", R"({"missingValues": ["NA", "-9"]})"),
            (std::vector<SeenCase>{{"1", "[NA]", "1"}, {}}));
}

TEST_F(Fields, AnUnknownFieldThatIsLikeNoneIsNamedAlone) {
  const Failure unknown = failure(R"({"fields": [{"name": "something else"}]})");
  EXPECT_EQ(unknown.id, messages::schemaUnknownField.id);
  EXPECT_EQ(unknown.arguments, (Arguments{path("d.schema.json"), "something else"}));
}

TEST_F(Fields, FieldsMatchTheColumnsAsTheSchemaSays) {
  const auto matching = [&](const std::string& match, const Arguments& fields) {
    std::string list;
    for (const std::string& name : fields)
      list += (list.empty() ? "" : ", ") + (R"({"name": ")" + name + "\"}");
    return failure(R"({"fieldsMatch": ")" + match + R"(", "fields": [)" + list + "]}");
  };
  const Arguments all{"id", "sex", "score", "day"};
  const Arguments others{"sex", "id", "score", "day"};
  for (const std::string match : {"exact", "equal", "superset", "subset", "partial"})
    EXPECT_EQ(matching(match, all).id, "") << match;
  for (const std::string match : {"equal", "superset", "subset", "partial"})
    EXPECT_EQ(matching(match, others).id, "") << match << " asks for no order";
  for (const std::string match : {"subset", "partial"})
    EXPECT_EQ(matching(match, {"day"}).id, "") << match;
  for (const std::string match : {"exact", "equal", "superset"}) {
    const Failure lacking = matching(match, {"id", "sex", "day"});
    EXPECT_EQ(lacking.id, messages::schemaFieldsMatch.id);
    EXPECT_EQ(lacking.arguments, (Arguments{path("d.schema.json"), match, "score"}));
  }
  const Failure disordered = matching("exact", others);
  EXPECT_EQ(disordered.id, messages::schemaFieldsMatch.id);
  EXPECT_EQ(disordered.arguments.at(2), "id");
  const Failure unknown = matching("roughly", all);
  EXPECT_EQ(unknown.id, messages::schemaShape.id);
  EXPECT_EQ(unknown.arguments.at(1), "fieldsMatch");
}

TEST_F(Fields, TextsThatAreValuesOfSomeKindAreNoNulls) {
  Schema schema;
  for (const std::string text : {"NA", "-9", "true", "12:30", "2020-01-31", "2020-01-31T12:30:00"})
    schema.missingValues.push_back({text, ""});
  schema.fields.emplace_back().missingValues = {{"none", ""}, {"7", ""}};
  schema.fields.emplace_back();
  EXPECT_EQ(nullTextsOf(schema), (Arguments{"NA", "none"}));
}

TEST_F(Fields, AnEmptyWeightTakesTheSchemasAway) {
  DataOptions options = withSchema(R"({"proportions:weight": "w"})", "v,w\n1,2\n");
  EXPECT_EQ(readAll(options, {"v"}).cases.at(0), (SeenCase{"1", "2"}));
  options.weight = "";
  EXPECT_EQ(openData(options).dictionary.weight, -1);
  EXPECT_EQ(readAll(options, {"v"}).cases.at(0), (SeenCase{"1", "1"}));
}

TEST_F(Fields, AnImputationIsANumberWhateverItsColumnHolds) {
  DataOptions options = optionsFor(write("i.csv", "imp,v\nfalse,1\ntrue,2\n"));
  options.imputation = "imp";
  const Variable flag = openData(options).dictionary.variables[0];
  EXPECT_EQ(flag.info->kind, output::ValueKind::Number);
  EXPECT_TRUE(flag.info->numberLabels.empty()) << "false and true are no names of imputations";
  write("j.schema.json", R"({"fields": [{"name": "imp", "title": "Number",
      "categories": [{"value": 0, "label": "original"}]}]})");
  options.address = write("j.csv", "imp,v\n0,1\n1,2\n");
  const Variable number = openData(options).dictionary.variables[0];
  EXPECT_EQ(number.info->numberLabels.at(0), "original");
  EXPECT_EQ(number.info->label, "");
}

}  // namespace
}  // namespace embedded::data
