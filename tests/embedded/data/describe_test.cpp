// The sidecar form of a dictionary, property by property.
#include "embedded/data/Describe.h"

#include <nlohmann/json.hpp>

#include "Support.h"

namespace embedded::data {
namespace {

using Json = nlohmann::json;

class Describe : public DataTest {
 protected:
  // The fields that are written of a CSV file with this schema beside it.
  Json fields(const std::string& schema, const std::string& csv) const {
    write("d.schema.json", schema);
    return Json::parse(describe(openData(optionsFor(write("d.csv", csv))).dictionary))["fields"];
  }
};

TEST_F(Describe, WritesBooleansAsBooleansAndTheirMissingValuesAsTexts) {
  const Json written = fields(R"({"fields": [
      {"name": "a", "type": "boolean", "categories": [true, {"value": false, "label": "no"}],
       "missingValues": ["false"]},
      {"name": "b", "missingValues": ["true"]}]})",
                              "a,b\ntrue,true\nfalse,false\n");
  EXPECT_EQ(written[0], Json::parse(R"({"name": "a", "type": "boolean",
      "categories": [true, {"value": false, "label": "no"}],
      "missingValues": ["", {"value": "false", "label": "no"}]})"));
  EXPECT_EQ(written[1], Json::parse(R"({"name": "b", "type": "boolean",
      "missingValues": ["", {"value": "true", "label": "true"}]})"));
}

TEST_F(Describe, WritesTheWordsOfBooleans) {
  EXPECT_EQ(fields(R"({"fields": [{"name": "a", "type": "boolean", "trueValues": ["yes"],
                                   "falseValues": ["no", "never"]}]})",
                   "a\nyes\nno\n")[0],
            Json::parse(R"({"name": "a", "type": "boolean", "trueValues": ["yes"],
                            "falseValues": ["no", "never"]})"));
}

TEST_F(Describe, WritesWholeNumbersWithoutAPointAndLargeOnesAsTheyAre) {
  const Json written = fields(R"({"fields": [{"name": "a", "type": "number",
      "categories": [3, 0.5, 1e300], "categoriesOrdered": true}]})",
                              "a\n3\n0.5\n");
  EXPECT_EQ(written[0], Json::parse(R"({"name": "a", "type": "number",
      "categories": [3, 0.5, 1e300], "categoriesOrdered": true})"));
  EXPECT_TRUE(written[0]["categories"][0].is_number_integer());
}

TEST_F(Describe, WritesTextsThatStandForNoNumber) {
  const Json written = fields(R"({"missingValues": ["NA"], "fields": [{"name": "a"},
      {"name": "b", "missingValues": ["none", "-9"]}]})",
                              "a,b\n1,1\nNA,none\n");
  EXPECT_EQ(written[0]["missingValues"], Json::parse(R"(["", "NA"])"));
  EXPECT_EQ(written[1]["missingValues"], Json::parse(R"(["", "-9", "none"])"));
}

TEST_F(Describe, WritesOpenRangesWithTheirOneBound) {
  const Json ranges = Json::parse(R"([{"max": -1}, {"min": 90}, {"min": 7, "max": 8}])");
  Json schema;
  schema["fields"][0] = {{"name", "a"}, {"proportions:missingRanges", ranges}};
  const Json written = fields(schema.dump(), "a\n1\n");
  EXPECT_EQ(written[0]["proportions:missingRanges"], ranges);
}

TEST_F(Describe, TellsHowTheDataWouldBeReadAndWhy) {
  const auto reading = [](const Delivery& delivery) {
    return Json::parse(describe(Dictionary{}, &delivery))["proportions:reading"];
  };
  using Why = Delivery::Why;
  EXPECT_EQ(reading({true, Why::Asked, 0, 2}),
            Json::parse(R"({"as": "patterns", "because": "asked", "columns": 2})"));
  EXPECT_EQ(
      reading({true, Why::Sample, 500, 3}),
      Json::parse(R"({"as": "patterns", "because": "sample", "sampled": 500, "columns": 3})"));
  EXPECT_EQ(reading({false, Why::ManyColumns, 0, 65}),
            Json::parse(R"({"as": "cases", "because": "columns", "columns": 65})"));
  EXPECT_EQ(reading({false, Why::ManyPatterns, 0, 4}),
            Json::parse(R"({"as": "cases", "because": "patterns", "columns": 4})"));
  EXPECT_FALSE(Json::parse(describe(Dictionary{})).contains("proportions:reading"));
}

}  // namespace
}  // namespace embedded::data
