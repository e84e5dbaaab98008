// Columns and fields become variables.
#include "DictionaryBuilder.h"

#include <unicode/unistr.h>

#include <algorithm>
#include <set>

#include "DataMessages.h"
#include "ImputationMessages.h"
#include "ImputationSource.h"
#include "IsoTime.h"
#include "ResampledSource.h"

namespace embedded::data {
namespace {

using output::ValueKind;

ValueKind valueKind(ColumnKind kind) {
  switch (kind) {
    case ColumnKind::Boolean:
      return ValueKind::Boolean;
    case ColumnKind::Text:
      return ValueKind::String;
    case ColumnKind::Date:
      return ValueKind::Date;
    case ColumnKind::Time:
      return ValueKind::Time;
    case ColumnKind::Timestamp:
      return ValueKind::Timestamp;
    default:
      return ValueKind::Number;
  }
}

KORA_Format formatOf(ColumnKind kind, int decimals) {
  const auto digits = static_cast<std::uint8_t>(decimals >= 0              ? decimals
                                                : kind == ColumnKind::Real ? 2
                                                                           : 0);
  switch (kind) {
    case ColumnKind::Boolean:
      return {FormatType::Boolean, 0, 5};
    case ColumnKind::Text:
      return {FormatType::String, 0, 1};
    case ColumnKind::Date:
      return {FormatType::Date, 0, 10};
    case ColumnKind::Time:
      return {FormatType::Time, 0, 8};
    case ColumnKind::Timestamp:
      return {FormatType::Timestamp, 0, 19};
    default:
      return {FormatType::Number, digits, 8};
  }
}

// What a field's type makes of a column; empty when it asks for nothing.
std::optional<ColumnKind> kindOfField(const std::string& type) {
  if (type == "string") return ColumnKind::Text;
  if (type == "integer" || type == "year") return ColumnKind::Integer;
  if (type == "number") return ColumnKind::Real;
  if (type == "boolean") return ColumnKind::Boolean;
  if (type == "date") return ColumnKind::Date;
  if (type == "time") return ColumnKind::Time;
  if (type == "datetime") return ColumnKind::Timestamp;
  if (type.empty()) return std::nullopt;
  return ColumnKind::Unsupported;
}

bool isKnownType(const std::string& type) {
  static constexpr std::string_view others[] = {"object",  "array",    "list",     "geopoint",
                                                "geojson", "duration", "yearmonth"};
  return kindOfField(type) != ColumnKind::Unsupported ||
         std::ranges::find(others, type) != std::end(others);
}

bool isNumeric(ColumnKind kind) {
  return kind == ColumnKind::Integer || kind == ColumnKind::Real || kind == ColumnKind::Boolean;
}

// Whether values of one kind can be read as another: texts as anything (each must then be such a
// value), anything as texts, numbers and booleans as each other.
bool canBecome(ColumnKind from, ColumnKind to) {
  if (from == to || isText(from) || isText(to)) return from != ColumnKind::Unsupported;
  return isNumeric(from) && isNumeric(to);
}

// Builds one variable.
class VariableBuilder {
 public:
  VariableBuilder(const Relation& relation, const Schema& schema, int column)
      : schema_(schema),
        column_(relation.columns()[static_cast<std::size_t>(column)]),
        textual_(relation.textual()) {
    read.column = column;
    variable.name = column_.name;
    variable.upperName = upper(column_.name);
    variable.columnType = column_.typeName;
    info_.name = column_.name;
    setKind(column_.kind);
  }

  void apply(const SchemaField& field) {
    info_.label = field.title;
    applyType(field);
    if (field.decimals >= 0) {
      info_.decimals = field.decimals;
      variable.format = formatOf(read.as, field.decimals);
    }
    if (isText(read.as) && field.maxLength > 0) {
      variable.declaredWidth = variable.type = read.width = field.maxLength;
      variable.format.width = static_cast<std::uint16_t>(field.maxLength);
      variable.widthKnown = read.widthDeclared = true;
    }
    if (!field.missingRanges.empty() && isText(read.as)) badValue("proportions:missingRanges");
    variable.missingRanges = field.missingRanges;
    variable.categoriesOrdered = field.categoriesOrdered;
    if (field.categories) addCategories(*field.categories);
  }

  void addMissing(const std::vector<SchemaValue>& values, bool ofField) {
    for (const SchemaValue& value : values) addMissingValue(value, ofField);
  }

  void finish() {
    if (info_.kind == ValueKind::Boolean && info_.numberLabels.empty())
      info_.numberLabels = {{0.0, "false"}, {1.0, "true"}};
    read.nullTexts = variable.nullTexts;
    read.trueTexts = variable.trueTexts;
    read.falseTexts = variable.falseTexts;
    variable.info = std::make_shared<const output::VariableInfo>(info_);
  }

  Variable variable;
  ColumnRead read;

 private:
  static std::string upper(const std::string& name) {
    std::string result;
    icu::UnicodeString::fromUTF8(name).toUpper().toUTF8String(result);
    return result;
  }

  [[noreturn]] void badValue(const std::string& value) const {
    fail(messages::schemaValue, {schema_.file, column_.name, value});
  }

  void setKind(ColumnKind kind) {
    read.as = kind;
    variable.supported = kind != ColumnKind::Unsupported;
    info_.kind = variable.kind = valueKind(kind);
    variable.format = formatOf(kind, -1);
    variable.type = read.width = isText(kind) ? 1 : 0;
    variable.widthKnown = !isText(kind);
  }

  void applyType(const SchemaField& field) {
    const std::optional<ColumnKind> kind = kindOfField(field.type);
    if (!isKnownType(field.type))
      fail(messages::schemaShape, {schema_.file, field.name + ".type", "Wanted a type ..."});
    if (!kind) return;
    if (*kind != ColumnKind::Unsupported && !canBecome(column_.kind, *kind))
      fail(messages::schemaType, {schema_.file, field.name, field.type, column_.typeName});
    const bool written = textual_ || isText(column_.kind);
    if (*kind == ColumnKind::Boolean && written && column_.kind != ColumnKind::Boolean) {
      variable.trueTexts = {"true", "True", "TRUE", "1"};
      variable.falseTexts = {"false", "False", "FALSE", "0"};
    }
    if (*kind == ColumnKind::Boolean && written) {
      if (!field.trueValues.empty()) variable.trueTexts = field.trueValues;
      if (!field.falseValues.empty()) variable.falseTexts = field.falseValues;
    }
    setKind(*kind);
  }

  void addCategories(const std::vector<SchemaValue>& categories) {
    if (isText(read.as)) variable.declaredStrings.emplace();
    if (!isText(read.as)) variable.declaredNumbers.emplace();
    for (const SchemaValue& category : categories) {
      if (isText(read.as)) {
        const std::string value = withoutTrailingBlanks(category.text);
        variable.declaredStrings->push_back(value);
        if (!category.label.empty()) info_.stringLabels[value] = category.label;
        continue;
      }
      const std::optional<double> value = numberOf(category.text, info_.kind);
      if (!value) badValue(category.text);
      variable.declaredNumbers->push_back(*value);
      if (!category.label.empty()) info_.numberLabels[*value] = category.label;
    }
  }

  void addMissingValue(const SchemaValue& value, bool ofField) {
    if (value.text.empty()) return;
    if (isText(read.as)) {
      variable.missingStrings.push_back(withoutTrailingBlanks(value.text));
      if (!value.label.empty()) info_.stringLabels[variable.missingStrings.back()] = value.label;
    } else if (const auto number = numberOf(value.text, info_.kind)) {
      variable.missingNumbers.push_back(*number);
      if (!value.label.empty()) info_.numberLabels[*number] = value.label;
    } else if (textual_ || isText(column_.kind)) {
      // A text in a column of numbers: there is no number to keep for it.
      variable.nullTexts.push_back(value.text);
    } else if (ofField) {
      badValue(value.text);
    }
  }

  static std::string withoutTrailingBlanks(const std::string& text) {
    return text.substr(0, text.find_last_not_of(' ') + 1);
  }

  const Schema& schema_;
  const Column& column_;
  bool textual_;
  output::VariableInfo info_;
};

// The field of each column, null for none.
std::vector<const SchemaField*> fieldsByColumn(const Dictionary& names, const Schema& schema) {
  std::vector<const SchemaField*> fields(names.variables.size());
  for (const SchemaField& field : schema.fields) {
    const int index = names.find(field.name);
    if (index < 0) {
      const std::string nearest = names.nearest(field.name);
      if (nearest.empty()) fail(messages::schemaUnknownField, {schema.file, field.name});
      fail(messages::schemaUnknownFieldNear, {schema.file, field.name, nearest});
    }
    const SchemaField*& place = fields[static_cast<std::size_t>(index)];
    if (place != nullptr) fail(messages::schemaFieldTwice, {schema.file, field.name});
    place = &field;
  }
  return fields;
}

// What `fieldsMatch` asks of fields that are all known to be columns.
void requireMatch(const Schema& schema, const Dictionary& names,
                  const std::vector<const SchemaField*>& fields) {
  const std::string& match = schema.fieldsMatch;
  const auto mismatch = [&](const std::string& column) {
    fail(messages::schemaFieldsMatch, {schema.file, match, column});
  };
  if (match == "partial" || match == "subset") return;
  if (match != "exact" && match != "equal" && match != "superset")
    fail(messages::schemaShape, {schema.file, "fieldsMatch", "Wanted for fieldsMatch ..."});
  for (std::size_t i = 0; i < fields.size(); ++i) {
    if (fields[i] == nullptr) mismatch(names.variables[i].name);
    if (match == "exact" && &schema.fields[i] != fields[i]) mismatch(names.variables[i].name);
  }
}

int required(const Dictionary& dictionary, const Schema& schema, const std::string& property,
             const std::string& name) {
  const int index = dictionary.find(name);
  if (index < 0) fail(messages::schemaUnknownVariable, {schema.file, property, name});
  return index;
}

int wanted(const Dictionary& dictionary, const std::string& option, const std::string& name) {
  const int index = dictionary.find(name);
  if (index >= 0) return index;
  const std::string nearest = dictionary.nearest(name);
  if (nearest.empty()) failUsage(messages::unknownVariable, {option, name});
  failUsage(messages::unknownVariableNear, {option, name, nearest});
}

void takeWeight(Dictionary& dictionary, int index) {
  const Variable& variable = dictionary.variables[static_cast<std::size_t>(index)];
  if (variable.format.IsString()) fail(messages::stringWeight, {variable.name});
  dictionary.weight = index;
}

// A numeric variable of this name would be taken for the number of a bootstrap sample.
void takeSplit(Dictionary& dictionary, int index) {
  const Variable& variable = dictionary.variables[static_cast<std::size_t>(index)];
  if (!variable.format.IsString() && variable.name == bootstrapVariable)
    failUsage(messages::splitReserved, {variable.name});
  dictionary.splits.push_back(index);
}

}  // namespace

std::vector<std::string> nullTextsOf(const Schema& schema) {
  std::vector<std::string> texts;
  const auto hasValue = [](const std::string& text) {
    return numberOf(text, ValueKind::Number) || numberOf(text, ValueKind::Boolean) ||
           numberOf(text, ValueKind::Time) || numberOf(text, ValueKind::Timestamp);
  };
  const auto add = [&](const std::vector<SchemaValue>& values) {
    for (const SchemaValue& value : values)
      if (!hasValue(value.text)) texts.push_back(value.text);
  };
  add(schema.missingValues);
  for (const SchemaField& field : schema.fields)
    if (field.missingValues) add(*field.missingValues);
  return texts;
}

DictionaryPlan buildDictionary(const Relation& relation, const Schema& schema) {
  DictionaryPlan plan;
  for (const Column& column : relation.columns())
    plan.dictionary.variables.emplace_back().name = column.name;
  const std::vector<const SchemaField*> fields = fieldsByColumn(plan.dictionary, schema);
  requireMatch(schema, plan.dictionary, fields);
  plan.dictionary.variables.clear();
  for (std::size_t i = 0; i < fields.size(); ++i) {
    VariableBuilder builder(relation, schema, static_cast<int>(i));
    const SchemaField* field = fields[i];
    if (field != nullptr) builder.apply(*field);
    const bool own = field != nullptr && field->missingValues.has_value();
    builder.addMissing(own ? *field->missingValues : schema.missingValues, own);
    builder.finish();
    plan.reads.push_back(std::move(builder.read));
    plan.dictionary.variables.push_back(std::move(builder.variable));
  }
  if (!schema.weight.empty())
    takeWeight(plan.dictionary,
               required(plan.dictionary, schema, "proportions:weight", schema.weight));
  for (const std::string& name : schema.splits)
    takeSplit(plan.dictionary, required(plan.dictionary, schema, "proportions:split", name));
  return plan;
}

void setWeight(Dictionary& dictionary, const std::string& name) {
  dictionary.weight = -1;
  if (!name.empty()) takeWeight(dictionary, wanted(dictionary, "--weight", name));
}

void setSplits(Dictionary& dictionary, const std::vector<std::string>& names) {
  dictionary.splits.clear();
  for (const std::string& name : names) {
    const int index = wanted(dictionary, "--split", name);
    if (std::ranges::find(dictionary.splits, index) != dictionary.splits.end())
      failUsage(messages::splitTwice, {name});
    takeSplit(dictionary, index);
  }
}

void setImputation(Dictionary& dictionary, const std::string& name, bool given) {
  const int index = wanted(dictionary, "--imputation", name);
  Variable& variable = dictionary.variables[static_cast<std::size_t>(index)];
  if (variable.format.IsString()) fail(messages::imputationString, {variable.name});
  if (std::erase(dictionary.splits, index) > 0 && given)
    failUsage(messages::splitTwice, {variable.name});
  for (const int split : dictionary.splits)
    if (isImputationNumber(dictionary.variables[static_cast<std::size_t>(split)]))
      failUsage(messages::imputationSplit,
                {dictionary.variables[static_cast<std::size_t>(split)].name});
  output::VariableInfo info = *variable.info;
  info.name = imputationName;
  info.label.clear();
  if (info.kind != ValueKind::Number) info.numberLabels.clear();
  info.kind = ValueKind::Number;
  variable.info = std::make_shared<const output::VariableInfo>(std::move(info));
  variable.presentedAs = imputationVariable;
  dictionary.splits.insert(dictionary.splits.begin(), index);
}

}  // namespace embedded::data
