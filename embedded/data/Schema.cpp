// Reads the JSON of a sidecar. What it means for the data is the dictionary builder's affair.
#include "Schema.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <nlohmann/json.hpp>
#include <system_error>

#include "DataMessages.h"
#include "InputFile.h"
#include "embedded/output/Values.h"

namespace embedded::data {
namespace {

using Json = nlohmann::json;
namespace fs = std::filesystem;

std::string textOf(const std::string& file) {
  try {
    return contentOf(file);
  } catch (const std::system_error& problem) {
    fail(messages::schemaUnreadable, {file, problem.code().message()});
  }
}

// Whether there is such a file. One that may be there, but cannot be looked at, is an error: the
// data would mean something else without it.
bool isThere(const fs::path& file) {
  std::error_code problem;
  const bool found = fs::exists(file, problem);
  if (problem) fail(messages::schemaUnreadable, {file.string(), problem.message()});
  return found;
}

// Refuses the text for what the JSON library says of this place in it.
[[noreturn]] void refuseSyntax(const std::string& file, const std::string& text, std::size_t place,
                               std::string what) {
  const std::string before = text.substr(0, place);
  const auto line = std::ranges::count(before, '\n') + 1;
  const std::size_t column = before.size() - (before.rfind('\n') + 1) + 1;
  if (const std::size_t at = what.rfind("; "); at != std::string::npos) what.erase(0, at + 2);
  if (const std::size_t at = what.rfind("] "); at != std::string::npos) what.erase(0, at + 2);
  fail(messages::schemaSyntax, {file, std::to_string(line), std::to_string(column), what});
}

Json parse(const std::string& file) {
  const std::string text = textOf(file);
  try {
    return Json::parse(text);
  } catch (const Json::parse_error& error) {
    refuseSyntax(file, text, error.byte == 0 ? 0 : error.byte - 1, error.what());
  } catch (const Json::out_of_range& error) {
    // A number that no double holds; its text stands in quotes, its place is not told.
    const std::string what = error.what();
    const std::size_t begin = what.find('\'') + 1;
    const std::size_t place = text.find(what.substr(begin, what.rfind('\'') - begin));
    refuseSyntax(file, text, place == std::string::npos ? 0 : place, what);
  }
}

// Reads properties of one object and says where in the file one has the wrong form.
class Reader {
 public:
  Reader(const std::string& file, std::string place, const Json& object)
      : file_(file), place_(std::move(place)), object_(object) {
    if (!object.is_object()) wrong("", "Wanted an object ...");
  }

  [[noreturn]] void wrong(const std::string& property, const std::string& wanted) const {
    const std::string place = placeOf(property);
    fail(messages::schemaShape,
         {file_, place.empty() ? "Wanted of whole file ..." : place, wanted});
  }

  const Json* find(const char* property) const {
    const auto found = object_.find(property);
    return found == object_.end() || found->is_null() ? nullptr : &*found;
  }

  std::string text(const char* property) const {
    const Json* value = find(property);
    if (value == nullptr) return "";
    if (!value->is_string()) wrong(property, "Wanted a text ...");
    return value->get<std::string>();
  }

  const Json* list(const char* property) const {
    const Json* value = find(property);
    if (value != nullptr && !value->is_array()) wrong(property, "Wanted a list ...");
    return value;
  }

  std::vector<std::string> texts(const char* property) const {
    std::vector<std::string> result;
    const Json* values = find(property);
    if (values != nullptr && values->is_string()) return {values->get<std::string>()};
    if (values = list(property); values == nullptr) return result;
    for (const Json& value : *values) {
      if (!value.is_string()) wrong(property, "Wanted a list of texts ...");
      result.push_back(value.get<std::string>());
    }
    return result;
  }

  int integer(const Json& value, const std::string& property, int least, int most,
              const std::string& wanted) const {
    if (!value.is_number_integer() || value.get<double>() < least || value.get<double>() > most)
      wrong(property, wanted);
    return value.get<int>();
  }

  // A list of values, or of objects with `value` and `label`; nulls count as "".
  std::optional<std::vector<SchemaValue>> values(const char* property) const {
    const Json* entries = list(property);
    if (entries == nullptr) return std::nullopt;
    std::vector<SchemaValue> result;
    for (const Json& entry : *entries) {
      if (!entry.is_object()) {
        result.push_back({scalar(entry, property), ""});
        continue;
      }
      const Reader inner(file_, placeOf(property), entry);
      if (!entry.contains("value")) inner.wrong("value", "Wanted at all ...");
      result.push_back({scalar(entry["value"], property), inner.text("label")});
    }
    return result;
  }

  std::vector<MissingRange> ranges(const char* property) const {
    std::vector<MissingRange> result;
    const Json* entries = list(property);
    if (entries == nullptr) return result;
    for (const Json& entry : *entries) {
      const Reader inner(file_, placeOf(property), entry);
      MissingRange range{inner.bound("min", std::numeric_limits<double>::lowest()),
                         inner.bound("max", std::numeric_limits<double>::max()),
                         inner.text("label")};
      if (range.min > range.max) inner.wrong("min", "Wanted below max ...");
      result.push_back(range);
    }
    return result;
  }

 private:
  // A property's place in the file; this object's own when none is named.
  std::string placeOf(const std::string& property) const {
    if (place_.empty() || property.empty()) return place_ + property;
    return place_ + "." + property;
  }

  std::string scalar(const Json& value, const char* property) const {
    if (value.is_string()) return value.get<std::string>();
    if (value.is_null()) return "";
    if (value.is_number()) return output::shortest(value.get<double>());
    if (value.is_boolean()) return value.get<bool>() ? "true" : "false";
    wrong(property, "Wanted a list of values ...");
  }

  double bound(const char* property, double otherwise) const {
    const Json* value = find(property);
    if (value == nullptr) return otherwise;
    if (!value->is_number()) wrong(property, "Wanted a number ...");
    return value->get<double>();
  }

  const std::string& file_;
  std::string place_;
  const Json& object_;
};

int maxLengthOf(const std::string& file, const std::string& place, const Reader& reader) {
  const Json* constraints = reader.find("constraints");
  if (constraints == nullptr) return 0;
  const Reader inner(file, place + ".constraints", *constraints);
  const Json* length = inner.find("maxLength");
  return length == nullptr ? 0
                           : inner.integer(*length, "maxLength", 1, 32767, "Wanted a length ...");
}

SchemaField fieldOf(const std::string& file, std::size_t index, const Json& json) {
  const std::string place = "fields[" + std::to_string(index) + "]";
  const Reader reader(file, place, json);
  SchemaField field;
  field.name = reader.text("name");
  if (field.name.empty()) reader.wrong("name", "Wanted at all ...");
  field.type = reader.text("type");
  if (field.type == "any") field.type.clear();
  field.title = reader.text("title");
  field.categories = reader.values("categories");
  if (const Json* ordered = reader.find("categoriesOrdered"); ordered != nullptr) {
    if (!ordered->is_boolean()) reader.wrong("categoriesOrdered", "Wanted true or false ...");
    field.categoriesOrdered = ordered->get<bool>();
  }
  field.missingValues = reader.values("missingValues");
  field.missingRanges = reader.ranges("proportions:missingRanges");
  if (const Json* format = reader.find("proportions:format"); format != nullptr) {
    const Reader inner(file, place + ".proportions:format", *format);
    if (const Json* decimals = inner.find("decimals"); decimals != nullptr)
      field.decimals = inner.integer(*decimals, "decimals", 0, 16, "Wanted decimals ...");
  }
  field.maxLength = maxLengthOf(file, place, reader);
  field.trueValues = reader.texts("trueValues");
  field.falseValues = reader.texts("falseValues");
  return field;
}

Schema schemaOf(const std::string& file, const Json& json) {
  const Reader reader(file, "", json);
  Schema schema;
  schema.file = file;
  const Json* fields = reader.list("fields");
  for (std::size_t i = 0; fields != nullptr && i < fields->size(); ++i)
    schema.fields.push_back(fieldOf(file, i, (*fields)[i]));
  schema.missingValues = reader.values("missingValues").value_or(std::vector<SchemaValue>{});
  const std::vector<std::string> match = reader.texts("fieldsMatch");
  if (!match.empty()) schema.fieldsMatch = match.front();
  schema.weight = reader.text("proportions:weight");
  schema.splits = reader.texts("proportions:split");
  return schema;
}

bool names(const Json& resource, const std::string& dataFile) {
  if (!resource.is_object() || !resource.contains("path")) return false;
  const Json& path = resource["path"];
  const std::string name = fs::path(dataFile).filename().string();
  const auto matches = [&](const Json& entry) {
    return entry.is_string() && fs::path(entry.get<std::string>()).lexically_normal() == name;
  };
  if (path.is_array()) return std::ranges::any_of(path, matches);
  return matches(path);
}

// The schema of the package's resource for this file.
std::optional<Schema> fromPackage(const std::string& file, const Json& package,
                                  const std::string& dataFile) {
  const Reader reader(file, "", package);
  const Json* resources = reader.list("resources");
  for (std::size_t i = 0; resources != nullptr && i < resources->size(); ++i) {
    const Json& resource = (*resources)[i];
    if (!names(resource, dataFile) || !resource.contains("schema")) continue;
    const Json& schema = resource["schema"];
    if (!schema.is_string()) return schemaOf(file, schema);
    const std::string other = (fs::path(file).parent_path() / schema.get<std::string>()).string();
    return schemaOf(other, parse(other));
  }
  return std::nullopt;
}

}  // namespace

Schema readSchema(const std::string& file, const std::string& dataFile) {
  const Json json = parse(file);
  if (!json.is_object() || !json.contains("resources")) return schemaOf(file, json);
  std::optional<Schema> schema = fromPackage(file, json, dataFile);
  if (!schema) fail(messages::schemaNoResource, {file, dataFile});
  return *schema;
}

Schema findSchema(const std::string& dataFile) {
  const fs::path beside = fs::path(dataFile).replace_extension(".schema.json");
  if (isThere(beside)) return readSchema(beside.string(), dataFile);
  const fs::path package = fs::path(dataFile).replace_filename("datapackage.json");
  if (!isThere(package)) return {};
  return fromPackage(package.string(), parse(package.string()), dataFile).value_or(Schema{});
}

}  // namespace embedded::data
