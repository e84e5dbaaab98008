// Commands in an abstract form with everything that the parser makes of them: the messages, all of
// them and in order, and the fields of the record.
#include "ModuleTest.h"
#include "reference/Lines.h"
#include "scripted_host/json/ReadScript.h"

namespace module_tests {
namespace {

using nlohmann::json;

const json& referenceFile() {
  static const json file = readFile("module/parser_cases.json");
  return file;
}

class ParserCase : public testing::TestWithParam<reference::Line> {};

TEST_P(ParserCase, ComesOutAsStated) {
  const json given = GetParam().parsed();
  const json& expect = given["expect"];
  const json& dictionary =
      given["dictionary"] == "default" ? referenceFile()["dictionary"] : given["dictionary"];
  Host host(scripted::readDictionary(dictionary), scripted::readCommand(given["command"]));
  const Parsed parsed;

  EXPECT_EQ(parsed.accepted, expect["result"] == "succeed");
  json messages = scripted::writeMessages(host.log);
  // The host words its own violations as it likes.
  for (json& message : messages)
    if (message["id"] == "syntax") message.erase("args");
  EXPECT_EQ(difference(messages, expect["messages"], "messages"), "");
  const json record = writeRecord(parsed.specs);
  for (const auto& [field, value] : expect["record"].items())
    EXPECT_EQ(difference(record[field], value, field), "");
}

// The cases of one command may come more than once.
std::string nameOf(const testing::TestParamInfo<reference::Line>& info) {
  return identifier(info.param.id) + "_" + std::to_string(info.index);
}

INSTANTIATE_TEST_SUITE_P(Reference, ParserCase,
                         testing::ValuesIn(reference::readLines("module/parser_cases.jsonl")),
                         nameOf);

json recordCase(const std::string& id) {
  for (const json& given : referenceFile()["record_cases"])
    if (given["id"] == id) return given;
  throw std::runtime_error("no case " + id);
}

TEST(Record, HasItsDefaultsWhenNew) {
  Host host({}, {});
  ProcedureDataSource source;
  const PRPValidSpecs specs(source);
  const json record = writeRecord(specs);
  const json given = recordCase("new-record");
  for (const auto& [field, value] : given["fields"].items())
    EXPECT_EQ(difference(record[field], value, field), "");
  EXPECT_EQ(specs.GetVarValidSpecs(), nullptr);
  EXPECT_EQ(specs.GetExtra2(), nullptr);
}

TEST(Record, AsksForTheWeightWhenMade) {
  Host host({}, {});
  ProcedureDataSource source;
  const PRPValidSpecs specs(source);
  EXPECT_EQ(host.log.count("ProcedureDataSource::GetWeightVarIndex"), 1u);
}

TEST(Record, GuardsItsLevel) {
  Host host({}, {});
  ProcedureDataSource source;
  PRPValidSpecs specs(source);
  const json given = recordCase("level-setter");
  for (const json& step : given["set"]) {
    try {
      specs.SetCILevelPct(step[0]);
    } catch (const scripted::AssertionFailed& failure) {
#ifdef NDEBUG
      FAIL() << failure.what();
#endif
      EXPECT_EQ(failure.source, "PRPValidSpecs");
    }
    EXPECT_EQ(specs.GetCILevelPct(), step[1].get<double>());
  }
}

TEST(Record, KeepsItsLevelWhenGivenNotANumber) {
  Host host({}, {});
  ProcedureDataSource source;
  PRPValidSpecs specs(source);
  try {
    specs.SetCILevelPct(std::numeric_limits<double>::quiet_NaN());
  } catch (const scripted::AssertionFailed& failure) {
    EXPECT_EQ(failure.expression, "ciLevelPct >= 0.0");
  }
  EXPECT_EQ(specs.GetCILevelPct(), 95.0);
}

TEST(Record, KeepsTheLengthOfValuesInWords) {
  const json given = recordCase("obs-len");
  for (const json& pair : given["width_to_obslen"]) {
    Host host({.variables = {{.name = "v", .width = pair[0]}}}, {scripted::oneSample({"v"})});
    const Parsed parsed;
    ASSERT_TRUE(parsed.accepted);
    EXPECT_EQ(parsed.specs.GetBinInfoElems().at(0)._obsLen, pair[1].get<int>()) << pair;
  }
}

TEST(Record, FillsNewElementsWithTheDefault) {
  std::vector<BinInfoElem> elems;
  elems.resize(2);
  for (const BinInfoElem& elem : elems) {
    EXPECT_EQ(difference(writeElem(elem), recordCase("default-element")["element"]), "");
    EXPECT_TRUE(elem._obsValues.empty());
    EXPECT_EQ(static_cast<int>(elem._format.type), 0);
  }
}

TEST(Record, CopiesAllSevenFieldsOfAnElement) {
  OBS value{.number = 2.0};
  BinInfoElem elem;
  elem._binOption = LEVEL;
  elem._bCategorical = false;
  elem._numValues = {2.0};
  elem._strValues = {"2"};
  elem._obsValues = {&value};
  elem._obsLen = 3;
  elem._format = {FormatType::Date, 1, 12};
  const BinInfoElem copy = elem;
  EXPECT_EQ(writeElem(copy), writeElem(elem));
  EXPECT_EQ(copy._obsValues, elem._obsValues);
  EXPECT_EQ(copy._format, elem._format);
}

TEST(Record, ShowsNoGroupElementWithoutAGroupingVariable) {
  Host host({}, {});
  ProcedureDataSource source;
  const PRPValidSpecs specs(source);
  specs.Display();
  const json given = recordCase("display-no-group");
  std::vector<std::string> labels;
  for (const scripted::Line& line : host.log.lines) labels.push_back(line.label);
  for (const json& text : given["display_contains"])
    EXPECT_THAT(labels, testing::Contains(text.get<std::string>()));
  for (const json& text : given["display_lacks"])
    EXPECT_THAT(labels, testing::Not(testing::Contains(text.get<std::string>())));
}

}  // namespace
}  // namespace module_tests
