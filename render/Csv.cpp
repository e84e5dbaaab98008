// Tidy csv: one row a cell, for programs. Labels are identifiers, values have full precision.
//
// The rows of a split group stand together, those of all its tables, so that groups can leave as
// soon as they are finished. Whatever many rows share is made once, and rows leave in blocks: the
// time goes into the digits of the values, and the memory does not grow with the rows.
#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/output/Values.h"
#include "render/Footnotes.h"
#include "render/Grid.h"
#include "render/MachineNames.h"
#include "render/NodeTexts.h"
#include "render/Renderer.h"

namespace render {

namespace {

using embedded::output::machineText;
using embedded::output::State;

constexpr std::string_view header = "table,split,row,variable,statistic,value,state,footnotes\n";
constexpr std::string_view pathSeparator = " / ";
constexpr std::size_t blockSize = std::size_t{1} << 16;

// A field as RFC 4180 quotes it.
void appendField(std::string& out, std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
    out += text;
    return;
  }
  out += '"';
  for (const char c : text) {
    out.append(c == '"' ? 2 : 1, c);
  }
  out += '"';
}

// A name or value inside the split column.
void appendSplitPart(std::string& out, std::string_view text) {
  for (const char c : text) {
    if (c == ';' || c == '=' || c == '\\') {
      out += '\\';
    }
    out += c;
  }
}

std::string splitText(const Document& document, Index split) {
  std::string out;
  if (split != none) {
    for (const TextPtr& value : document.splits[split].values) {
      out += out.empty() ? "" : "; ";
      appendSplitPart(out, value->variable->name);
      out += '=';
      appendSplitPart(out, machineText(*value));
    }
  }
  return out;
}

std::string pathText(const Dimension& dimension, Index node) {
  return joinedPath(dimension, node, pathSeparator, machineText);
}

// The rows of one table, written behind one another into a block of text. It stays where it is
// made: its texts refer to its grid's table.
class CsvTable {
 public:
  CsvTable(const Document& document, const Table& table, std::string& block)
      : document_(document),
        grid_(table),
        paths_(table, pathText),
        footnotes_(table, " | ", [](const embedded::output::Text& t) { return machineText(t); }),
        block_(block) {
    appendField(title_, machineText(*table.title));
    for (const Column& column : grid_.columns()) {
      statistics_.emplace_back();
      appendField(statistics_.back(), pathsOn(grid_.columnDimensions(), column.nodes));
    }
  }

  const std::vector<Grid::Group>& groups() const { return grid_.groups(); }

  void write(const Grid::Group& group) {
    grid_.forEachRow(group, [&](const Row& row) {
      startRow(row);
      for (std::size_t c = 0; c < row.cells.size(); ++c) {
        if (row.cells[c] != nullptr) {
          addCell(*row.cells[c], statistics_[c]);
        }
      }
    });
  }

 private:
  std::string pathsOn(std::span<const std::size_t> dimensions, std::span<const Index> nodes) {
    std::string out;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      out += i == 0 ? "" : pathSeparator;
      out += paths_.of(dimensions[i], nodes[i]);
    }
    return out;
  }

  // The fields that the cells of a row share. The innermost row dimension is the variable;
  // whatever stands outside it is what the row is about, a method or a group.
  void startRow(const Row& row) {
    if (start_.empty() || row.split != split_) {
      split_ = row.split;
      start_ = title_ + ',';
      appendField(start_, splitText(document_, split_));
      start_ += ',';
      splitLength_ = start_.size();
    }
    start_.resize(splitLength_);
    const std::span<const Index> nodes(row.nodes);
    const std::size_t outer = nodes.empty() ? 0 : nodes.size() - 1;
    appendField(start_, pathsOn(grid_.rowDimensions(), nodes.first(outer)));
    start_ += ',';
    if (!nodes.empty()) {
      appendField(start_, paths_.of(grid_.rowDimensions()[outer], nodes[outer]));
    }
    start_ += ',';
  }

  void addCell(const Cell& cell, const std::string& statistic) {
    block_ += start_;
    block_ += statistic;
    block_ += ',';
    if (cell.state == State::Valid) {
      block_ += embedded::output::fullPrecision(cell.value);
    }
    block_ += ',';
    block_ += stateName(cell.state);
    block_ += ',';
    appendField(block_, footnotes_.of(cell));
    block_ += '\n';
  }

  const Document& document_;
  Grid grid_;
  NodeTexts paths_;
  Footnotes footnotes_;
  std::string& block_;
  std::string title_;
  std::vector<std::string> statistics_;  // by column
  std::string start_;
  std::size_t splitLength_ = 0;  // of the part of `start_` up to the split values
  Index split_ = none;
};

// The cells of one split group in one table.
struct Part {
  Index split;
  CsvTable* table;
  const Grid::Group* group;
};

// By split group; within a group, and without any, in the order of the tables.
std::vector<Part> partsOf(std::vector<CsvTable>& tables) {
  std::vector<Part> parts;
  for (CsvTable& table : tables) {
    for (const Grid::Group& group : table.groups()) {
      parts.push_back({group.split, &table, &group});
    }
  }
  std::stable_sort(parts.begin(), parts.end(), [](const Part& a, const Part& b) {
    return a.split != b.split && (a.split == none || (b.split != none && a.split < b.split));
  });
  return parts;
}

}  // namespace

void renderCsvHeader(const Document& /*document*/, const Context& /*context*/, std::ostream& out) {
  out << header;
}

void renderCsvRows(const Document& document, const Context& /*context*/, std::ostream& out) {
  std::string block;
  const auto flush = [&](std::size_t beyond) {
    if (block.size() > beyond) {
      out.write(block.data(), static_cast<std::streamsize>(block.size()));
      block.clear();
    }
  };
  std::vector<CsvTable> tables;
  tables.reserve(document.tables.size());
  for (const Table& table : document.tables) {
    tables.emplace_back(document, table, block);
  }
  for (const Part& part : partsOf(tables)) {
    part.table->write(*part.group);
    flush(blockSize);
  }
  flush(0);
}

void renderCsv(const Document& document, const Context& context, std::ostream& out) {
  renderCsvHeader(document, context, out);
  renderCsvRows(document, context, out);
}

}  // namespace render
