#include "embedded/session/DescriptionFile.h"

#include <nlohmann/json.hpp>
#include <system_error>
#include <utility>

#include "embedded/data/InputFile.h"
#include "embedded/errors/Error.h"

namespace embedded {

namespace {

using Json = nlohmann::json;
using output::Description;
using output::Meaning;
using output::Role;
using output::TableMeaning;

Role roleOf(const std::string& name) {
  static const std::pair<const char*, Role> names[] = {
      {"outcome", Role::Outcome},       {"group", Role::Group},
      {"comparison", Role::Comparison}, {"count", Role::Count},
      {"trials", Role::Trials},         {"estimate", Role::Estimate},
      {"difference", Role::Difference}, {"standardError", Role::StandardError},
      {"level", Role::Level},           {"lower", Role::Lower},
      {"upper", Role::Upper},           {"statistic", Role::Statistic},
      {"pOneSided", Role::POneSided},   {"pTwoSided", Role::PTwoSided},
      {"method", Role::Method},         {"reference", Role::Reference}};
  for (const auto& [known, role] : names) {
    if (name == known) {
      return role;
    }
  }
  return Role::None;
}

std::string text(const Json& json, const char* member) {
  return json.value(member, std::string());
}

Meaning meaningOf(const Json& json) {
  Meaning meaning;
  meaning.role = roleOf(text(json, "role"));
  meaning.pooling = text(json, "pooling");
  meaning.direction = text(json, "direction");
  meaning.note = text(json, "note");
  if (const auto range = json.find("range"); range != json.end()) {
    const auto end = [&](std::size_t i) {
      return range->at(i).is_null() ? std::nullopt : std::optional(range->at(i).get<double>());
    };
    meaning.rangeLow = end(0);
    meaning.rangeHigh = end(1);
  }
  if (const auto reference = json.find("reference"); reference != json.end()) {
    if (reference->is_number()) {
      meaning.reference = reference->get<double>();
    } else {
      meaning.referenceArgumentOf = text(*reference, "argumentOf");
    }
  }
  return meaning;
}

template <class Map>
void readLabels(const Json& json, Map& labels) {
  if (const auto found = json.find("labels"); found != json.end()) {
    for (const auto& [label, meaning] : found->items()) {
      labels[label] = meaningOf(meaning);
    }
  }
}

TableMeaning tableOf(const Json& json) {
  TableMeaning table;
  table.holds = text(json, "holds");
  table.direction = text(json, "direction");
  table.estimate = text(json, "estimate");
  if (const auto groups = json.find("groups"); groups != json.end()) {
    table.groupsTable = text(*groups, "table");
    table.groupsEstimate = text(*groups, "estimate");
  }
  if (const auto df = json.find("degreesOfFreedom"); df != json.end()) {
    table.degreesOfFreedom = {.table = text(*df, "table"),
                              .counts = text(*df, "counts"),
                              .take = text(*df, "take"),
                              .minus = df->value("minus", 0.0)};
  }
  readLabels(json, table.labels);
  return table;
}

Description descriptionOf(const Json& json) {
  Description description;
  description.command = json.at("command");
  description.title = json.at("title");
  description.library = json.at("library");
  description.diagnosticLibrary = text(json, "diagnosticLibrary");
  if (const auto flags = json.find("diagnosticFlags"); flags != json.end()) {
    for (const auto& [name, symbol] : flags->items()) {
      description.diagnosticFlags[name] = symbol;
    }
  }
  description.entry = json.at("entry");
  description.attach = json.at("attach");
  description.catalogue = text(json, "catalogue");
  if (const auto level = json.find("level"); level != json.end()) {
    description.levelSubcommand = text(*level, "subcommand");
    description.levelParameter = text(*level, "parameter");
  }
  readLabels(json, description.labels);
  for (const auto& [title, table] : json.at("tables").items()) {
    description.tables[title] = tableOf(table);
  }
  return description;
}

}  // namespace

output::Description readDescription(const std::string& path) {
  try {
    return descriptionOf(Json::parse(data::contentOf(path)));
  } catch (const std::system_error& problem) {
    throw Error(ErrorKind::Usage, "Cannot read module description ^1: ^2 ...",
                {path, problem.code().message()});
  } catch (const Json::exception& problem) {
    throw Error(ErrorKind::Usage, "Invalid module description ^1: ^2 ...", {path, problem.what()});
  }
}

}  // namespace embedded
