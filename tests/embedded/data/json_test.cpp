// Tables in JSON: what becomes of their values, and what is no table.
#include "Support.h"
#include "embedded/data/DataMessages.h"

namespace embedded::data {
namespace {

using Arguments = std::vector<std::string>;

class JsonFiles : public DataTest {
 protected:
  std::vector<SeenCase> casesOf(const std::string& content, const std::string& schema = "{}") {
    write("d.schema.json", schema);
    return readAll(optionsFor(write("d.json", content), CaseMode::CaseByCase)).cases;
  }
  Failure failureOfReading(const std::string& content, const std::string& schema = "{}") {
    return failureOf([&] { casesOf(content, schema); });
  }
};

// It was taken for a list of values, which the engine calls so.
TEST_F(JsonFiles, MayHaveOneColumnCalledJson) {
  const std::vector<SeenCase> expected{{"1", "1"}, {"0", "1"}, {}};
  EXPECT_EQ(casesOf(R"([{"json": 1}, {"json": 0}])"), expected);
  EXPECT_EQ(casesOf("{\"json\": 1}\n{\"json\": 0}\n"), expected);
}

TEST_F(JsonFiles, AreListsOfObjects) {
  for (const char* content : {"[1, 2]", "[]", "[{}]", "7", "[[1]]"}) {
    const Failure failure = failureOfReading(content);
    EXPECT_EQ(failure.id, messages::unreadable.id) << content;
    EXPECT_EQ(failure.arguments, (Arguments{path("d.json"), "Reason no list of objects ..."}))
        << content;
  }
}

TEST_F(JsonFiles, ColumnsWithoutAnyValueAreMissingNumbers) {
  EXPECT_EQ(casesOf(R"([{"a": null, "b": 1, "c": null}, {"b": 2}])"),
            (std::vector<SeenCase>{{".", "1", ".", "1"}, {".", "2", ".", "1"}, {}}));
}

TEST_F(JsonFiles, ColumnsOfObjectsAndNumbersCannotBeAnalysed) {
  const std::string file = write("d.json", R"([{"a": {"x": 1}, "b": 1}, {"a": 3, "b": 2}])");
  const Failure failure = failureOf([&] { readAll(optionsFor(file), {"a"}); });
  EXPECT_EQ(failure.id, messages::unsupportedType.id);
  EXPECT_EQ(failure.arguments, (Arguments{"a", "JSON"}));
  EXPECT_EQ(readAll(optionsFor(file, CaseMode::CaseByCase), {"b"}).cases,
            (std::vector<SeenCase>{{"1", "1"}, {"2", "1"}, {}}));
}

TEST_F(JsonFiles, MissingTextsOfASchemaLeaveNumbersAsTheyAre) {
  EXPECT_EQ(
      casesOf(R"([{"a": 1.5}, {"a": null}, {"a": -9}])", R"({"missingValues": ["NA", "-9"]})"),
      (std::vector<SeenCase>{{"1.5", "1"}, {".", "1"}, {"-9", "1"}, {}}));
}

// The words of the file's own format are known besides those of the schema.
TEST_F(JsonFiles, BooleansOfASchemaWithAWordForTrueAlone) {
  EXPECT_EQ(casesOf(R"([{"a": true}, {"a": false}, {"a": null}])",
                    R"({"fields": [{"name": "a", "type": "boolean", "trueValues": ["yes"],
                        "missingValues": ["NA"]}]})"),
            (std::vector<SeenCase>{{"1", "1"}, {"0", "1"}, {".", "1"}, {}}));
}

TEST_F(JsonFiles, TextsAreReadAsASchemaSaysAndABadOneIsNamed) {
  const std::string schema = R"({"fields": [{"name": "a", "type": "number"},
    {"name": "b", "type": "number", "missingValues": ["-"]}]})";
  EXPECT_EQ(
      casesOf(R"([{"t": "x", "a": "1", "b": "-"}, {"t": "y", "a": "2.5", "b": "3"}])", schema),
      (std::vector<SeenCase>{{"[x]", "1", ".", "1"}, {"[y]", "2.5", "3", "1"}, {}}));
  // The texts before it are all right.
  const Failure failure = failureOfReading(
      R"([{"t": "x", "a": "1", "b": "-"}, {"t": "y", "a": "2", "b": "three"}])", schema);
  EXPECT_EQ(failure.id, messages::badValue.id);
  EXPECT_EQ(failure.arguments, (Arguments{path("d.json"), "2", "b", "three"}));
}

// The types are found by the first of many files.
class ManyJsonFiles : public DataTest {
 protected:
  Failure failureWith(const std::string& last) {
    for (int i = 10; i < 50; ++i) write("p" + std::to_string(i) + ".json", "{\"a\": 1}\n");
    write("p50.json", last);
    return failureOf([&] { readAll(optionsFor(path("p*.json"), CaseMode::CaseByCase)); });
  }
};

TEST_F(ManyJsonFiles, WithAValueOfAnotherTypeInTheLast) {
  EXPECT_EQ(failureWith("{\"a\": 2}\n").id, "");
  const Failure failure = failureWith("{\"a\": \"x\"}\n");
  EXPECT_EQ(failure.id, messages::badValue.id);
  EXPECT_EQ(failure.arguments, (Arguments{path("p*.json"), "41", "a", "x"}));
}

TEST_F(ManyJsonFiles, OfWhichTheLastIsBroken) {
  const Failure failure = failureWith("{\"a\":\n");
  EXPECT_EQ(failure.id, messages::unreadable.id);
  EXPECT_NE(failure.arguments.at(1).find("p50.json"), std::string::npos) << failure.arguments.at(1);
}

TEST_F(JsonFiles, RowsAreCountedWithoutAskingForAColumn) {
  const OpenedData opened = openData(optionsFor(write("d.json", R"([{"a": 1}, {"a": [2]}, {}])")));
  EXPECT_EQ(opened.cases->relation().rowCount(), 3U);
}

}  // namespace
}  // namespace embedded::data
