// Writes the sidecar form of a dictionary.
#include "Describe.h"

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "embedded/output/Values.h"

namespace embedded::data {
namespace {

using Json = nlohmann::ordered_json;
using output::ValueKind;

std::string typeOf(const Variable& variable) {
  if (!variable.supported) return "any";
  switch (variable.kind) {
    case ValueKind::String:
      return "string";
    case ValueKind::Date:
      return "date";
    case ValueKind::Time:
      return "time";
    case ValueKind::Timestamp:
      return "datetime";
    case ValueKind::Boolean:
      return "boolean";
    case ValueKind::Number:
      break;
  }
  return variable.format.decimals == 0 ? "integer" : "number";
}

// A number as the schema writes it: whole ones without a point, dates and times as ISO texts.
Json valueOf(const Variable& variable, double value) {
  if (variable.kind == ValueKind::Boolean) return value != 0;
  if (variable.kind != ValueKind::Number) return output::isoText(variable.kind, value);
  if (std::fabs(value) < 0x1p53 && value == std::trunc(value))
    return static_cast<std::int64_t>(value);
  return value;
}

// `{value, label}` where there is a label, else the value alone.
Json labelled(Json value, const std::string* label) {
  if (label == nullptr) return value;
  return {{"value", std::move(value)}, {"label", *label}};
}

template <class Map, class Key>
const std::string* labelOf(const Map& labels, const Key& key) {
  const auto found = labels.find(key);
  return found == labels.end() ? nullptr : &found->second;
}

Json categoriesOf(const Variable& variable) {
  Json list = Json::array();
  if (variable.declaredNumbers)
    for (const double value : *variable.declaredNumbers)
      list.push_back(
          labelled(valueOf(variable, value), labelOf(variable.info->numberLabels, value)));
  if (variable.declaredStrings)
    for (const std::string& value : *variable.declaredStrings)
      list.push_back(labelled(value, labelOf(variable.info->stringLabels, value)));
  return list;
}

// Missing values are texts, whatever the variable is.
Json missingOf(const Variable& variable) {
  Json list = Json::array({""});
  for (const double value : variable.missingNumbers) {
    const Json json = valueOf(variable, value);
    std::string text = json.is_string()    ? json.get<std::string>()
                       : json.is_boolean() ? (value != 0 ? "true" : "false")
                                           : output::shortest(value);
    list.push_back(labelled(std::move(text), labelOf(variable.info->numberLabels, value)));
  }
  for (const std::string& value : variable.missingStrings)
    list.push_back(labelled(value, labelOf(variable.info->stringLabels, value)));
  for (const std::string& text : variable.nullTexts) list.push_back(text);
  return list;
}

Json rangesOf(const Variable& variable) {
  Json list = Json::array();
  for (const MissingRange& range : variable.missingRanges) {
    Json entry = Json::object();
    if (range.min != std::numeric_limits<double>::lowest()) entry["min"] = range.min;
    if (range.max != std::numeric_limits<double>::max()) entry["max"] = range.max;
    if (!range.label.empty()) entry["label"] = range.label;
    list.push_back(std::move(entry));
  }
  return list;
}

Json fieldOf(const Variable& variable) {
  Json field{{"name", variable.name}, {"type", typeOf(variable)}};
  if (!variable.info->label.empty()) field["title"] = variable.info->label;
  if (variable.declaredNumbers || variable.declaredStrings)
    field["categories"] = categoriesOf(variable);
  if (variable.categoriesOrdered) field["categoriesOrdered"] = true;
  if (variable.hasUserMissing() || !variable.nullTexts.empty())
    field["missingValues"] = missingOf(variable);
  if (!variable.missingRanges.empty()) field["proportions:missingRanges"] = rangesOf(variable);
  if (variable.info->decimals >= 0)
    field["proportions:format"] = {{"decimals", variable.info->decimals}};
  if (variable.declaredWidth > 0) field["constraints"] = {{"maxLength", variable.declaredWidth}};
  if (!variable.trueTexts.empty()) field["trueValues"] = variable.trueTexts;
  if (!variable.falseTexts.empty()) field["falseValues"] = variable.falseTexts;
  return field;
}

Json readingOf(const Delivery& delivery) {
  Json reading{{"as", delivery.asPatterns ? "patterns" : "cases"}};
  switch (delivery.why) {
    case Delivery::Why::Asked:
      reading["because"] = "asked";
      break;
    case Delivery::Why::Sample:
      reading["because"] = "sample";
      reading["sampled"] = delivery.sampled;
      break;
    case Delivery::Why::ManyColumns:
      reading["because"] = "columns";
      break;
    case Delivery::Why::ManyPatterns:
      reading["because"] = "patterns";
      break;
  }
  reading["columns"] = delivery.columns;
  return reading;
}

}  // namespace

std::string describe(const Dictionary& dictionary, const Delivery* delivery) {
  Json schema{{"$schema", "https://datapackage.org/profiles/2.0/tableschema.json"}};
  schema["fields"] = Json::array();
  for (const Variable& variable : dictionary.variables)
    schema["fields"].push_back(fieldOf(variable));
  schema["fieldsMatch"] = "partial";
  const auto nameOf = [&](int index) {
    return dictionary.variables[static_cast<std::size_t>(index)].name;
  };
  if (dictionary.weight >= 0) schema["proportions:weight"] = nameOf(dictionary.weight);
  for (const int index : dictionary.splits) schema["proportions:split"].push_back(nameOf(index));
  if (delivery != nullptr) schema["proportions:reading"] = readingOf(*delivery);
  return schema.dump(2) + "\n";
}

}  // namespace embedded::data
