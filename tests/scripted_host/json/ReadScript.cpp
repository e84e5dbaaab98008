// From the reference files' abstract commands and data sets to scripts.
#include "scripted_host/json/ReadScript.h"

#include "scripted_host/command/Words.h"

namespace scripted {

using nlohmann::json;

namespace {

Token readToken(const json& given) {
  if (given.is_string()) return {.text = given, .number = {}};
  if (given.contains("op")) return given["op"] == "WITH" ? with() : by();
  if (given.contains("qual")) return qualifier(given["qual"].get<std::string>());
  Token token{.text = given["text"], .number = {}};
  if (given.contains("num")) token.number = given["num"].get<double>();
  return token;
}

Tokens readTokens(const json& given) {
  Tokens tokens;
  for (const json& token : given) tokens.push_back(readToken(token));
  return tokens;
}

Param readQualified(const std::string& name, const json& given) {
  Param param{.name = name,
              .kind = Param::Qualified,
              .number = {},
              .keywords = {},
              .qualifier = given["qual"],
              .tokens = {}};
  if (given.contains("tokens")) param.tokens = readTokens(given["tokens"]);
  if (!given.contains("number")) return param;
  if (!given["number"].is_null()) param.number = given["number"].get<double>();
  param.tokens = Tokens{{.text = given["text"], .number = param.number}};
  return param;
}

Param readParam(const std::string& name, const json& given) {
  if (given.is_object()) return readQualified(name, given);
  if (given.is_array()) return keywords(name, given.get<std::vector<std::string>>());
  if (given.is_string()) return keyword(name, given);
  Param param = number(name, 0.0);
  param.number = given.is_null() ? std::nullopt : std::optional(given.get<double>());
  return param;
}

Value readValue(const json& given) {
  if (given.is_null()) return None;
  if (given.is_string()) return given.get<std::string>();
  return given.get<double>();
}

std::vector<Value> readValues(const json& given) {
  std::vector<Value> values;
  for (const json& value : given) values.push_back(readValue(value));
  return values;
}

Variable readVariable(const json& given) {
  Variable variable{.name = given["name"], .width = given["width"]};
  if (given.contains("fmt")) variable.formatType = static_cast<FormatType>(given["fmt"].get<int>());
  const json categories = given.value("cat", json::object());
  for (const auto& [text, number] : categories.items()) variable.categoryTexts[text] = number;
  for (const json& text : given.value("reject", json::array()))
    variable.rejectedTexts.insert(text.get<std::string>());
  variable.data = readValues(given.value("data", json::array()));
  const json missing = given.value("missing", json::object());
  variable.userMissing = readValues(missing.value("values", json::array()));
  for (const json& range : missing.value("ranges", json::array()))
    variable.missingRanges.emplace_back(range[0], range[1]);
  return variable;
}

// A value of a level as a token: as it stands in a command.
Token levelToken(const json& value) {
  if (value.is_string()) return {.text = value, .number = {}};
  return {.text = value.dump(), .number = value.get<double>()};
}

Param readRule(const std::string& name, const json& rule) {
  Param param = qualified(name, rule["option"]);
  if (rule.contains("value")) {
    param.number = rule["value"].get<double>();
    param.tokens = Tokens{levelToken(rule["value"])};
  }
  if (rule.contains("values")) {
    param.tokens.emplace();
    for (const json& value : rule["values"]) param.tokens->push_back(levelToken(value));
  }
  return param;
}

bool has(const json& given, const char* key) {
  return given.contains(key) && !given[key].is_null();
}

}  // namespace

Command readCommand(const json& given) {
  Command command;
  for (const json& sub : given) {
    SubCommand& subCommand = command.emplace_back(SubCommand{sub["sub"], {}, {}});
    if (sub.contains("list")) subCommand.list = readTokens(sub["list"]);
    for (const auto& [name, value] : sub["params"].items())
      subCommand.params.push_back(readParam(name, value));
  }
  return command;
}

DataSet readDictionary(const json& given) {
  DataSet data;
  for (const json& variable : given["variables"]) data.variables.push_back(readVariable(variable));
  if (has(given, "weight")) data.weight = given["weight"];
  data.splits = given["split"].get<std::vector<std::string>>();
  for (const json& name : given.value("host_refuses", json::array()))
    data.refusingValidators.insert(name.get<std::string>());
  return data;
}

DataSet readDataSet(const json& given) {
  DataSet data = readDictionary(given);
  data.splitsAsRows = given["splits_as_rows"];
  for (const std::string& split : data.splits) data.bootstrapping |= split == "$bootstrap_split";
  return data;
}

Command readRunCommand(const json& given) {
  const std::string design = given["design"];
  SubCommand test{design == "onesample" ? "ONESAMPLE"
                  : design == "paired"  ? "PAIREDSAMPLES"
                                        : "INDEPENDENTSAMPLES",
                  readTokens(given["variables"]),
                  {}};
  if (has(given, "with")) {
    test.list->push_back(with());
    for (const json& variable : given["with"]) test.list->push_back(readToken(variable));
  }
  if (has(given, "by")) {
    test.list->push_back(by());
    test.list->push_back(readToken(given["by"]));
  }
  if (has(given, "testval")) test.params.push_back(number("TESTVAL", given["testval"]));
  if (has(given, "select")) test.params.push_back(readRule("SELECT", given["select"]));
  for (const auto& [key, name] : {std::pair("testtypes", "TESTTYPES"), {"citypes", "CITYPES"}})
    if (has(given, key)) test.params.push_back(readParam(name, given[key]));
  Command command{test};
  if (has(given, "success")) command.push_back(success(readRule("VALUE", given["success"])));
  std::vector<Param> missing;
  if (has(given, "scope")) missing.push_back(keyword("SCOPE", given["scope"]));
  if (has(given, "usermissing")) missing.push_back(keyword("USERMISSING", given["usermissing"]));
  if (!missing.empty()) command.push_back({"MISSING", {}, missing});
  if (has(given, "cilevel"))
    command.push_back({"CRITERIA", {}, {number("CILEVEL", given["cilevel"])}});
  return command;
}

}  // namespace scripted
