// The sidecar of a data file: a Frictionless Table Schema 2.0 with a few properties of our own.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Dictionary.h"

namespace embedded::data {

// A value as the schema writes it, numbers as their text.
struct SchemaValue {
  std::string text;
  std::string label;
};

struct SchemaField {
  std::string name;
  std::string type;  // empty when none is given, or "any"
  std::string title;
  std::optional<std::vector<SchemaValue>> categories;
  bool categoriesOrdered = false;
  std::optional<std::vector<SchemaValue>> missingValues;  // replaces the schema's
  std::vector<MissingRange> missingRanges;
  int decimals = -1;  // of "proportions:format"
  int maxLength = 0;  // bytes; 0 when none is given
  std::vector<std::string> trueValues;
  std::vector<std::string> falseValues;
};

struct Schema {
  std::string file;  // where it came from; empty when there is none
  std::vector<SchemaField> fields;
  std::vector<SchemaValue> missingValues;
  std::string fieldsMatch = "partial";
  std::string weight;
  std::vector<std::string> splits;
};

// Reads a schema or a data package; of a package the resource whose `path` names `dataFile`.
// Error(Data): no such file, bad JSON with its place, a property of the wrong form, a package
// without that resource.
Schema readSchema(const std::string& file, const std::string& dataFile);

// The schema that belongs to a data file without asking: NAME.schema.json beside NAME.csv, then a
// datapackage.json beside it that has the file as a resource; an empty schema when there is none.
Schema findSchema(const std::string& dataFile);

}  // namespace embedded::data
