// Tidy csv: one row a cell, for programs. Labels are identifiers, values have full precision.
#include <string>

#include "embedded/output/Values.h"
#include "render/Footnotes.h"
#include "render/Grid.h"
#include "render/Renderer.h"

namespace render {

namespace {

using embedded::output::machineText;
using embedded::output::SplitGroup;
using embedded::output::State;
using embedded::output::Text;

constexpr const char* header = "table,split,row,variable,statistic,value,state,footnotes\n";

// A field as RFC 4180 quotes it.
std::string field(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) {
    return text;
  }
  std::string out = "\"";
  for (const char c : text) {
    out += c;
    if (c == '"') {
      out += c;
    }
  }
  return out + '"';
}

std::string joined(const std::vector<TextPtr>& texts, const char* separator) {
  std::string out;
  for (const TextPtr& text : texts) {
    out += (&text == &texts.front() ? "" : separator) + machineText(*text);
  }
  return out;
}

// A name or value inside the split column.
std::string splitPart(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (c == ';' || c == '=' || c == '\\') {
      out += '\\';
    }
    out += c;
  }
  return out;
}

std::string splitText(const Document& document, Index split) {
  std::string out;
  if (split != none) {
    for (const TextPtr& value : document.splits[split].values) {
      out += (out.empty() ? "" : "; ") + splitPart(value->variable->name) + "=" +
             splitPart(machineText(*value));
    }
  }
  return out;
}

const char* stateName(State state) {
  switch (state) {
    case State::Valid:
      return "valid";
    case State::Missing:
      return "missing";
    case State::NotANumber:
      return "nan";
  }
  return "";
}

// The fields of a row's outer dimensions and of its innermost one. The innermost is the
// variable; whatever stands outside it is what the row is about, a method or a group.
std::string rowFields(const Grid& grid, const Row& row) {
  std::string outer;
  std::string variable;
  for (std::size_t i = 0; i < row.nodes.size(); ++i) {
    const auto& dimension = grid.table().dimensions[grid.rowDimensions()[i]];
    const std::string label = joined(pathOf(dimension, row.nodes[i]), " / ");
    if (i + 1 == row.nodes.size()) {
      variable = label;
    } else {
      outer += (outer.empty() ? "" : " / ") + label;
    }
  }
  return field(outer) + "," + field(variable);
}

std::vector<std::string> columnFields(const Grid& grid) {
  std::vector<std::string> fields;
  for (const Column& column : grid.columns()) {
    std::vector<TextPtr> path;
    for (std::size_t i = 0; i < column.nodes.size(); ++i) {
      const auto part =
          pathOf(grid.table().dimensions[grid.columnDimensions()[i]], column.nodes[i]);
      path.insert(path.end(), part.begin(), part.end());
    }
    fields.push_back(field(joined(path, " / ")));
  }
  return fields;
}

void writeTable(const Document& document, const embedded::output::Table& table, std::ostream& out) {
  const Grid grid(table);
  const std::string title = field(machineText(*table.title)) + ",";
  const std::vector<std::string> statistics = columnFields(grid);
  grid.forEachRow([&](const Row& row) {
    const std::string start =
        title + field(splitText(document, row.split)) + "," + rowFields(grid, row) + ",";
    std::string lines;
    for (std::size_t c = 0; c < row.cells.size(); ++c) {
      const embedded::output::Cell* cell = row.cells[c];
      if (cell == nullptr) {
        continue;
      }
      lines += start + statistics[c] + ",";
      lines += cell->state == State::Valid ? embedded::output::fullPrecision(cell->value) : "";
      lines += std::string(",") + stateName(cell->state) + ",";
      lines += field(joined(footnotesOf(table, *cell), " | ")) + "\n";
    }
    out << lines;
  });
}

}  // namespace

void renderCsv(const Document& document, const Context& /*context*/, std::ostream& out) {
  out << header;
  for (const embedded::output::Table& table : document.tables) {
    writeTable(document, table, out);
  }
}

}  // namespace render
