#include "ReferenceRun.h"

#include <algorithm>
#include <utility>

namespace cli_tests {

namespace {

using Json = nlohmann::json;

std::string quoted(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    out += c == '"' ? "\"\"" : std::string(1, c);
  }
  return out + '"';
}

std::string field(const Json& value) {
  if (value.is_null()) {
    return "";
  }
  return value.is_string() ? quoted(value.get<std::string>()) : value.dump();
}

bool given(const Json& json, const char* key) {
  return json.contains(key) && !json[key].is_null();
}

std::string joined(const Json& words) {
  std::string out;
  for (const Json& word : words) {
    out += " " + word.get<std::string>();
  }
  return out;
}

// FIRST, CUTPOINT(2), LEVEL("a" "c"): a rule of SUCCESS or SELECT.
std::string ruleText(const Json& rule) {
  std::string out = rule["option"].get<std::string>();
  if (given(rule, "value")) {
    return out + "(" + rule["value"].dump() + ")";
  }
  if (given(rule, "values") && !rule["values"].empty()) {
    std::string values;
    for (const Json& value : rule["values"]) {
      values += (values.empty() ? "" : " ") + field(value);
    }
    out += "(" + values + ")";
  }
  return out;
}

std::string subcommandOf(const std::string& design) {
  if (design == "onesample") {
    return "ONESAMPLE";
  }
  return design == "paired" ? "PAIREDSAMPLES" : "INDEPENDENTSAMPLES";
}

std::string missingText(const Json& command) {
  std::string out;
  if (given(command, "scope")) {
    out += " SCOPE=" + command["scope"].get<std::string>();
  }
  if (given(command, "usermissing")) {
    out += " USERMISSING=" + command["usermissing"].get<std::string>();
  }
  return out.empty() ? out : "\n  /MISSING" + out;
}

Json fieldOf(const Json& variable) {
  const auto width = variable["width"].get<int>();
  Json out = {{"name", variable["name"]}, {"type", width == 0 ? "number" : "string"}};
  if (width > 0) {
    out["constraints"] = {{"maxLength", width}};
  }
  out["missingValues"] = Json::array();
  for (const Json& value : variable["missing"]["values"]) {
    out["missingValues"].push_back(value.is_string() ? value : Json(value.dump()));
  }
  for (const Json& range : variable["missing"]["ranges"]) {
    out["proportions:missingRanges"].push_back({{"min", range[0]}, {"max", range[1]}});
  }
  return out;
}

// The reference programs took split groups as they stood in the data; the host hands them out in
// the order of their values, missing first.
bool standsBefore(const Json& group, const Json& other) {
  for (std::size_t i = 0; i < group["split"].size(); ++i) {
    const Json& value = group["split"][i][1];
    const Json& otherValue = other["split"][i][1];
    if (value != otherValue) {
      return value.is_null() || (!otherValue.is_null() && value < otherValue);
    }
  }
  return false;
}

// Numbers the groups in the host's order, and brings what belongs to them into that order.
void orderGroups(Json& expect) {
  auto groups = expect["groups"].get<std::vector<Json>>();
  std::stable_sort(groups.begin(), groups.end(), standsBefore);
  for (const char* list : {"tables", "warnings"}) {
    auto entries = expect[list].get<std::vector<Json>>();
    for (Json& entry : entries) {
      const Json& group = expect["groups"][entry["group"].get<std::size_t>()];
      entry["group"] = std::find(groups.begin(), groups.end(), group) - groups.begin();
    }
    std::stable_sort(entries.begin(), entries.end(),
                     [](const Json& a, const Json& b) { return a["group"] < b["group"]; });
    expect[list] = entries;
  }
  expect["groups"] = groups;
}

}  // namespace

ReferenceRun readRun(const reference::Line& line) {
  Json given = line.parsed();
  orderGroups(given["expect"]);
  Json expect = given["expect"];
  return {std::move(given), std::move(expect)};
}

std::string commandText(const Json& command) {
  std::string out = "PROPORTIONS\n  /" + subcommandOf(command["design"].get<std::string>()) +
                    joined(command["variables"]);
  if (given(command, "with")) {
    out += " WITH" + joined(command["with"]);
  }
  if (given(command, "by")) {
    out += " BY " + command["by"].get<std::string>();
  }
  if (given(command, "testval")) {
    out += " TESTVAL=" + command["testval"].dump();
  }
  if (given(command, "select")) {
    out += " SELECT=" + ruleText(command["select"]);
  }
  if (given(command, "testtypes")) {
    out += " TESTTYPES=" + joined(command["testtypes"]);
  }
  if (given(command, "citypes")) {
    out += " CITYPES=" + joined(command["citypes"]);
  }
  if (given(command, "success")) {
    out += "\n  /SUCCESS VALUE=" + ruleText(command["success"]);
  }
  out += missingText(command);
  if (given(command, "cilevel")) {
    out += "\n  /CRITERIA CILEVEL=" + command["cilevel"].dump();
  }
  return out;
}

std::size_t rowsOf(const Json& dataset) {
  return dataset["variables"][0]["data"].size();
}

void writeData(const Json& dataset, const Folder& folder) {
  std::string csv = "row";
  Json fields = Json::array();
  for (const Json& variable : dataset["variables"]) {
    csv += "," + variable["name"].get<std::string>();
    fields.push_back(fieldOf(variable));
  }
  csv += '\n';
  for (std::size_t row = 0; row < rowsOf(dataset); ++row) {
    csv += std::to_string(row);
    for (const Json& variable : dataset["variables"]) {
      csv += "," + field(variable["data"][row]);
    }
    csv += '\n';
  }
  folder.write("data.csv", csv);
  folder.write("data.schema.json", Json{{"fields", fields}}.dump(1));
}

std::vector<std::string> argumentsOf(const ReferenceRun& run,
                                     const std::vector<std::string>& extra) {
  const Json& dataset = run.given["dataset"];
  std::vector<std::string> words{"run", "data.csv", "-c", commandText(run.given["command"])};
  if (given(dataset, "weight")) {
    words.insert(words.end(), {"--weight", dataset["weight"].get<std::string>()});
  }
  if (!dataset["split"].empty()) {
    const std::string layout = dataset["splits_as_rows"].get<bool>() ? "rows" : "tables";
    words.insert(words.end(), {"--split-layout", layout});
  }
  for (const Json& variable : dataset["split"]) {
    words.insert(words.end(), {"--split", variable.get<std::string>()});
  }
  words.insert(words.end(), extra.begin(), extra.end());
  return words;
}

}  // namespace cli_tests
