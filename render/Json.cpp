// json: the whole document as one object, described by docs/document.schema.json. Cells leave as
// they are visited, so that memory does not grow with the tables' text.
#include <string>

#include "render/JsonLabels.h"
#include "render/JsonTable.h"
#include "render/Renderer.h"

namespace render {

namespace {

using embedded::output::CaseCounts;
using embedded::output::Message;
using embedded::output::Severity;

constexpr std::size_t blockSize = std::size_t{1} << 16;

Json textOrNull(const std::string& text) {
  return text.empty() ? Json(nullptr) : Json(text);
}

template <class Value>
Json valueOrNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json(nullptr);
}

Json countsOf(const CaseCounts& cases) {
  Json missing = Json::object();
  for (const auto& [name, lacking] : cases.missing) {
    missing[name] = {{"system", lacking.system}, {"user", lacking.user}};
  }
  return {{"read", cases.read}, {"invalid_weight", cases.invalidWeight}, {"missing", missing}};
}

Json dataOf(const Document& document, const Context& context) {
  const auto& data = document.data;
  Json json = {{"source", data.source},
               {"fingerprint", data.fingerprint},
               {"weight", textOrNull(data.weight)},
               {"split", jsonSplitNames(document)},
               {"seed", valueOrNull(data.seed)},
               {"cases", countsOf(data.cases)}};
  if (!data.casesBySplit.empty()) {
    Json groups = Json::array();
    for (const auto& [split, cases] : data.casesBySplit) {
      groups.push_back({{"split", jsonSplitValues(document, split, *context.sentences)},
                        {"cases", countsOf(cases)}});
    }
    json["cases_by_split"] = std::move(groups);
  }
  json["reading"] = data.reading == nullptr
                        ? Json(nullptr)
                        : Json{{"as", data.asPatterns ? "patterns" : "cases"},
                               {"reason", jsonLabel(*data.reading, *context.sentences)}};
  return json;
}

Json notesOf(const Document& document, const Context& context) {
  Json notes = Json::array();
  for (const auto& note : document.notes) {
    notes.push_back({{"kind", note.kind},
                     {"label", jsonLabel(*note.label, *context.sentences)},
                     {"value", jsonLabel(*note.text, *context.sentences)}});
  }
  return notes;
}

std::string_view nameOf(Severity severity) {
  switch (severity) {
    case Severity::Error:
      return "error";
    case Severity::Warning:
      return "warning";
    case Severity::Note:
      return "note";
  }
  return {};
}

Json messageOf(const Document& document, const Message& message, const Context& context) {
  Json json = {{"severity", nameOf(message.severity)},
               {"id", message.text->id},
               {"arguments", jsonArguments(*message.text)},
               {"text", embedded::output::readerText(*message.text, *context.sentences)}};
  json["where"] = message.where
                      ? Json{{"line", message.where->line}, {"column", message.where->column}}
                      : Json(nullptr);
  json["nearest"] = textOrNull(message.nearest);
  json["show"] = valueOrNull(message.show);
  json["level"] = valueOrNull(message.level);
  json["split"] = jsonSplitValues(document, message.split, *context.sentences);
  return json;
}

Json messagesOf(const Document& document, const Context& context) {
  Json list = Json::array();
  for (const Message& message : document.messages) {
    list.push_back(messageOf(document, message, context));
  }
  return list;
}

// What stands before the tables, as the opening of the object.
std::string opening(const Document& document, const Context& context) {
  return "{\"procedure\":" + jsonText(document.procedure) +
         ",\"version\":" + jsonText(document.version) +
         ",\"command\":" + jsonText(document.command) +
         ",\n\"data\":" + jsonText(dataOf(document, context)) +
         ",\n\"notes\":" + jsonText(notesOf(document, context)) +
         ",\n\"messages\":" + jsonText(messagesOf(document, context)) + ",\n\"tables\":[";
}

}  // namespace

void renderJson(const Document& document, const Context& reader, std::ostream& out) {
  Context context = reader;
  context.decimalPoint = ".";
  std::string block = opening(document, context);
  const auto flush = [&](std::size_t beyond) {
    if (block.size() > beyond) {
      out.write(block.data(), static_cast<std::streamsize>(block.size()));
      block.clear();
    }
  };
  for (std::size_t i = 0; i < document.tables.size(); ++i) {
    block += i == 0 ? "\n" : ",\n";
    writeJsonTable(document, document.tables[i], context, block, [&] { flush(blockSize); });
  }
  block += "]}\n";
  flush(0);
}

}  // namespace render
