// From the log to the form of the reference files' expectations.
#include "scripted_host/json/WriteLog.h"

#include <cmath>
#include <cstdlib>

#include "host/distributions/MCMV.h"
#include "scripted_host/output/Text.h"

namespace scripted {

using nlohmann::json;

namespace {

json writeArguments(const std::vector<BpTextHandle>& args) {
  json list = json::array();
  for (const BpTextHandle& arg : args) list.push_back(writeLabel(arg));
  return list;
}

json writeSplit(const BpTextContent& content) {
  json pairs = json::array();
  for (std::size_t i = 0; i + 1 < content.args.size(); i += 2)
    pairs.push_back({writeLabel(content.args[i]), writeLabel(content.args[i + 1])});
  return {{"split", pairs}};
}

json writePath(const Path& path) {
  json labels = json::array();
  for (const BpTextHandle& label : path) labels.push_back(writeLabel(label));
  return labels;
}

// The preference that the first value in the label was made with; null without a value.
json preferenceOf(const BpTextContent& content) {
  if (content.kind == BpTextContent::NumberValue || content.kind == BpTextContent::TextValue)
    return content.preference;
  for (const BpTextHandle& arg : content.args)
    if (json found = preferenceOf(*arg); !found.is_null()) return found;
  return nullptr;
}

const char* formatName(BpFormatSpec format) {
  switch (format.kind) {
    case BpFormatSpec::CountFormat:
      return "Count";
    case BpFormatSpec::GeneralStatFormat:
      return "GeneralStat";
    case BpFormatSpec::SigDigitFormat:
      return "SigDigit";
  }
  return "none";
}

json writeCell(const Entry& entry) {
  json cell = {{"path", writePath(*entry.current[entry.dimension])}};
  cell["value"] = entry.cell ? writeNumber(entry.cell->value) : json();
  cell["format"] = entry.cell ? json(formatName(entry.cell->format)) : json();
  if (entry.cell && entry.cell->value == MCMV::Missing) cell["missing"] = true;
  if (entry.cell && !entry.cell->notes.empty())
    cell["footnote"] = writeLabel(entry.cell->notes.at(0).text);
  if (!entry.categoryNotes.empty())
    cell["category_footnote"] = writeLabel(entry.categoryNotes.at(0).text);
  return cell;
}

json writeLabels(const Dimension& dimension) {
  json labels = json::array();
  for (const Path& path : dimension.added) {
    json label = {{"label", writeLabel(path.back())}, {"pref", preferenceOf(*path.back())}};
    if (path.size() > 1) label["in_group"] = true;
    labels.push_back(label);
  }
  return labels;
}

}  // namespace

json writeNumber(double number) {
  if (number == MCMV::Missing) return nullptr;
  if (std::isnan(number)) return "nan";
  return number;
}

json writeLabel(const BpTextHandle& text) {
  switch (text->kind) {
    case BpTextContent::Number:
    case BpTextContent::NumberValue:
      return writeNumber(text->number);
    case BpTextContent::Composite:
      return {text->text, writeArguments(text->args)};
    case BpTextContent::List:
      return writeArguments(text->args);
    case BpTextContent::SplitValues:
      return writeSplit(*text);
    default:
      return text->text;
  }
}

json writeTable(const Table& table) {
  const bool hasRows = table.dimensions.size() == 3;
  const std::size_t variables = hasRows ? 1 : 0;
  json written = {{"title", writeLabel(table.title)}, {"group", table.group}};
  written["row_dimension"] = hasRows ? writeLabels(table.dimensions[0]) : json();
  written["variables"] = writeLabels(table.dimensions[variables]);
  json rows = json::array();
  for (const Entry& entry : table.entries) {
    // Everything after a row's label, up to the next one, belongs to the row.
    if (entry.dimension == 0) {
      rows.push_back({{"label", writeLabel(entry.current[0]->back())}, {"cells", json::array()}});
      if (!hasRows) written["group_label"] = writeLabel(entry.current[0]->front());
    }
    if (entry.dimension == variables + 1) rows.back()["cells"].push_back(writeCell(entry));
  }
  std::erase_if(rows.get_ref<json::array_t&>(),
                [](const json& row) { return row["cells"].empty(); });
  written["rows"] = rows;
  return written;
}

json writeNotes(const Log& log) {
  json notes = json::array();
  for (const Note& note : log.notes)
    notes.push_back({note.kind, writeLabel(note.label), writeLabel(note.text)});
  return notes;
}

json writeWarnings(const Log& log) {
  json warnings = json::array();
  for (const Warning& warning : log.warnings)
    warnings.push_back({{"id", warning.text->text},
                        {"args", writeArguments(warning.text->args)},
                        {"show", warning.show},
                        {"level", warning.level},
                        {"group", warning.group}});
  return warnings;
}

json writeMessages(const Log& log) {
  json messages = json::array();
  for (const Message& message : log.messages)
    messages.push_back(
        {{"kind", message.kind}, {"via", message.via}, {"id", message.id}, {"args", message.args}});
  return messages;
}

json writeEvents(const Log& log) {
  json events = json::array();
  for (const Event& event : log.events) {
    if (event.kind == "splitchange" || event.kind == "table")
      events.push_back({event.kind, std::atoi(event.what.c_str())});
    else
      events.push_back({event.kind, event.what});
  }
  return events;
}

}  // namespace scripted
