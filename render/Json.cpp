// json: the whole document as one object, described by a JSON Schema in docs/. Cells are written
// as they are visited, so that memory does not grow with the tables' text.
#include <nlohmann/json.hpp>
#include <string>

#include "embedded/output/Values.h"
#include "render/Footnotes.h"
#include "render/Grid.h"
#include "render/Numbers.h"
#include "render/Renderer.h"

namespace render {

namespace {

using embedded::output::CaseCounts;
using embedded::output::isSystemMissing;
using embedded::output::Message;
using embedded::output::NumberFormat;
using embedded::output::readerText;
using embedded::output::Severity;
using embedded::output::State;
using embedded::output::Text;
using embedded::output::ValueKind;
using Json = nlohmann::ordered_json;

std::string dump(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// A value without its label: a number, a date as ISO text, a string; null when missing.
Json rawValue(const Text& text) {
  const auto* number = std::get_if<double>(&text.value);
  if (number == nullptr) {
    return embedded::output::rawText(*text.variable, text.value);
  }
  if (isSystemMissing(*number)) {
    return nullptr;
  }
  const bool plain = !text.variable || text.variable->kind == ValueKind::Number ||
                     text.variable->kind == ValueKind::Boolean;
  return plain ? Json(*number) : Json(embedded::output::isoText(text.variable->kind, *number));
}

Json argumentOf(const Text& text) {
  switch (text.kind) {
    case Text::Kind::Variable:
      return text.variable->name;
    case Text::Kind::Number:
    case Text::Kind::Value:
      return rawValue(text);
    case Text::Kind::String:
      return text.id;
    case Text::Kind::Composite:
      return embedded::output::machineText(text);
    case Text::Kind::List:
      break;
  }
  Json items = Json::array();
  for (const TextPtr& item : text.items) {
    items.push_back(argumentOf(*item));
  }
  return items;
}

Json argumentsOf(const Text& text) {
  Json arguments = Json::array();
  for (const TextPtr& item : text.items) {
    arguments.push_back(argumentOf(*item));
  }
  return arguments;
}

class Writer {
 public:
  Writer(const Document& document, const Context& context, std::ostream& out)
      : document_(document), context_(context), out_(out) {}

  void write() {
    out_ << "{" << head().substr(1, head().size() - 2) << ",\n\"notes\":" << dump(notes())
         << ",\n\"messages\":" << dump(messages()) << ",\n\"tables\":[";
    for (std::size_t i = 0; i < document_.tables.size(); ++i) {
      out_ << (i == 0 ? "\n" : ",\n");
      writeTable(document_.tables[i]);
    }
    out_ << "]}\n";
  }

 private:
  Json label(const Text& text) const {
    Json json;
    json["id"] = text.kind == Text::Kind::String || text.kind == Text::Kind::Composite
                     ? text.id
                     : embedded::output::machineText(text);
    if (text.kind == Text::Kind::Composite) {
      json["arguments"] = argumentsOf(text);
    }
    json["text"] = readerText(text, *context_.sentences);
    return json;
  }

  Json splitValues(Index split) const {
    if (split == none) {
      return nullptr;
    }
    Json values = Json::array();
    for (const TextPtr& value : document_.splits[split].values) {
      values.push_back(
          {{"value", rawValue(*value)}, {"text", readerText(*value, *context_.sentences)}});
    }
    return values;
  }

  static Json counts(const CaseCounts& cases) {
    Json missing = Json::object();
    for (const auto& [name, lacking] : cases.missing) {
      missing[name] = {{"system", lacking.system}, {"user", lacking.user}};
    }
    return {{"read", cases.read}, {"invalid_weight", cases.invalidWeight}, {"missing", missing}};
  }

  Json splitNames() const {
    Json names = Json::array();
    for (const auto& variable : document_.data.splits) {
      names.push_back(variable->name);
    }
    return names;
  }

  std::string head() const {
    const auto& data = document_.data;
    Json json = {{"procedure", document_.procedure},
                 {"version", document_.version},
                 {"command", document_.command}};
    json["data"] = {{"source", data.source},
                    {"fingerprint", data.fingerprint},
                    {"weight", data.weight.empty() ? Json(nullptr) : Json(data.weight)},
                    {"split", splitNames()},
                    {"seed", data.seed ? Json(*data.seed) : Json(nullptr)},
                    {"cases", counts(data.cases)}};
    if (!data.casesBySplit.empty()) {
      Json groups = Json::array();
      for (const auto& [split, cases] : data.casesBySplit) {
        groups.push_back({{"split", splitValues(split)}, {"cases", counts(cases)}});
      }
      json["data"]["cases_by_split"] = std::move(groups);
    }
    return dump(json);
  }

  Json notes() const {
    Json notes = Json::array();
    for (const auto& note : document_.notes) {
      notes.push_back(
          {{"kind", note.kind}, {"label", label(*note.label)}, {"value", label(*note.text)}});
    }
    return notes;
  }

  Json message(const Message& message) const {
    static constexpr const char* names[] = {"error", "warning", "note"};
    Json json = {{"severity", names[static_cast<std::size_t>(message.severity)]},
                 {"id", message.text->id},
                 {"arguments", argumentsOf(*message.text)},
                 {"text", readerText(*message.text, *context_.sentences)}};
    json["where"] = message.where
                        ? Json{{"line", message.where->line}, {"column", message.where->column}}
                        : Json(nullptr);
    json["nearest"] = message.nearest.empty() ? Json(nullptr) : Json(message.nearest);
    json["show"] = message.show ? Json(*message.show) : Json(nullptr);
    json["level"] = message.level ? Json(*message.level) : Json(nullptr);
    json["split"] = splitValues(message.split);
    return json;
  }

  Json messages() const {
    Json list = Json::array();
    for (const Message& m : document_.messages) {
      list.push_back(message(m));
    }
    return list;
  }

  Json dimensions(const Table& table) const {
    static constexpr const char* axes[] = {"row", "column", "layer"};
    Json list = Json::array();
    for (const Dimension& dimension : table.dimensions) {
      list.push_back({{"axis", axes[static_cast<std::size_t>(dimension.axis)]},
                      {"label", label(*dimension.label)}});
    }
    return list;
  }

  Json path(const Table& table, const Cell& cell) const {
    Json paths = Json::array();
    for (std::size_t d = 0; d < table.dimensions.size(); ++d) {
      Json labels = Json::array();
      for (const TextPtr& text : pathOf(table.dimensions[d], cell.at[d])) {
        labels.push_back(label(*text));
      }
      paths.push_back(std::move(labels));
    }
    return paths;
  }

  std::string cellText(const Table& table, const Row& row, const Cell& cell,
                       const std::string& shown) const {
    static constexpr const char* states[] = {"valid", "missing", "nan"};
    static constexpr const char* formats[] = {"count", "general", "digits"};
    Json json;
    json["path"] = path(table, cell);
    json["split"] = row.split == none ? Json::array() : splitValues(row.split);
    json["value"] = cell.state == State::Valid ? Json(cell.value) : Json(nullptr);
    json["state"] = states[static_cast<std::size_t>(cell.state)];
    json["text"] = shown;
    json["format"] = formats[static_cast<std::size_t>(cell.format)];
    json["footnotes"] = Json::array();
    for (const TextPtr& note : footnotesOf(table, cell)) {
      json["footnotes"].push_back(label(*note));
    }
    return dump(json);
  }

  void writeTable(const Table& table) {
    const bool split = table.splitRows || table.split != none;
    out_ << "{\"title\":" << dump(label(*table.title))
         << ",\"dimensions\":" << dump(dimensions(table))
         << ",\"split\":" << dump(split ? splitNames() : Json::array()) << ",\"cells\":[";
    const Grid grid(table);
    const CellPrinter printer(grid, context_);
    bool first = true;
    grid.forEachRow([&](const Row& row) {
      const std::vector<std::string> texts = printer.print(row);
      for (std::size_t c = 0; c < row.cells.size(); ++c) {
        if (row.cells[c] != nullptr) {
          out_ << (first ? "\n" : ",\n") << cellText(table, row, *row.cells[c], texts[c]);
          first = false;
        }
      }
    });
    out_ << "]}";
  }

  const Document& document_;
  const Context& context_;
  std::ostream& out_;
};

}  // namespace

void renderJson(const Document& document, const Context& context, std::ostream& out) {
  Writer(document, context, out).write();
}

}  // namespace render
