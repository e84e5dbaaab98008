// json: the whole document as one object, described by docs/document.schema.json. Cells leave as
// they are visited, so that memory does not grow with the tables' text.
#include <optional>
#include <string>

#include "render/JsonLabels.h"
#include "render/JsonTable.h"
#include "render/JsonText.h"
#include "render/MessageParts.h"
#include "render/Renderer.h"

namespace render {

namespace {

using embedded::output::CaseCounts;
using embedded::output::Message;

constexpr std::size_t blockSize = std::size_t{1} << 16;

std::string textOrNull(const std::string& text) {
  return text.empty() ? "null" : jsonText(text);
}

template <class Number>
std::string numberOrNull(const std::optional<Number>& number) {
  return number ? std::to_string(*number) : "null";
}

std::string countsOf(const CaseCounts& cases) {
  std::string missing = "{";
  for (const auto& [name, lacking] : cases.missing) {
    missing += (missing.size() == 1 ? "" : ",") + jsonText(name) + ":" +
               jsonObject({{"system", std::to_string(lacking.system)},
                           {"user", std::to_string(lacking.user)}});
  }
  return jsonObject({{"read", std::to_string(cases.read)},
                     {"invalid_weight", std::to_string(cases.invalidWeight)},
                     {"missing", missing + "}"}});
}

std::string dataOf(const Document& document, const Context& context) {
  const auto& data = document.data;
  std::string json = jsonObject({{"source", jsonText(data.source)},
                                 {"fingerprint", jsonText(data.fingerprint)},
                                 {"weight", textOrNull(data.weight)},
                                 {"split", jsonSplitNames(document)},
                                 {"seed", numberOrNull(data.seed)},
                                 {"cases", countsOf(data.cases)}});
  if (!data.casesBySplit.empty()) {
    json.back() = ',';
    json += "\"cases_by_split\":" +
            jsonArray(data.casesBySplit,
                      [&](const auto& group) {
                        return jsonObject(
                            {{"split", jsonSplitValues(document, group.first, *context.sentences)},
                             {"cases", countsOf(group.second)}});
                      }) +
            "}";
  }
  return json;
}

std::string notesOf(const Document& document, const Context& context) {
  return jsonArray(document.notes, [&](const auto& note) {
    return jsonObject({{"kind", std::to_string(note.kind)},
                       {"label", jsonLabel(*note.label, *context.sentences)},
                       {"value", jsonLabel(*note.text, *context.sentences)}});
  });
}

std::string placeOf(const Message& message) {
  if (!message.where) {
    return "null";
  }
  return jsonObject({{"line", std::to_string(message.where->line)},
                     {"column", std::to_string(message.where->column)}});
}

std::string messageOf(const Document& document, const Message& message, const Context& context) {
  const std::string text = embedded::output::readerText(*message.text, *context.sentences);
  return jsonObject({{"severity", jsonText(severityId(message.severity))},
                     {"id", jsonText(message.text->id)},
                     {"arguments", jsonArguments(*message.text)},
                     {"text", jsonText(text)},
                     {"where", placeOf(message)},
                     {"nearest", textOrNull(message.nearest)},
                     {"show", numberOrNull(message.show)},
                     {"level", numberOrNull(message.level)},
                     {"split", jsonSplitValues(document, message.split, *context.sentences)}});
}

std::string messagesOf(const Document& document, const Context& context) {
  return jsonArray(document.messages,
                   [&](const Message& message) { return messageOf(document, message, context); });
}

// What stands before the tables, as the opening of the object.
std::string opening(const Document& document, const Context& context) {
  return "{\"procedure\":" + jsonText(document.procedure) +
         ",\"version\":" + jsonText(document.version) +
         ",\"command\":" + jsonText(document.command) + ",\n\"data\":" + dataOf(document, context) +
         ",\n\"notes\":" + notesOf(document, context) +
         ",\n\"messages\":" + messagesOf(document, context) + ",\n\"tables\":[";
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
