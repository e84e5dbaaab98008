#include "render/JsonTable.h"

#include "render/Footnotes.h"
#include "render/Grid.h"
#include "render/JsonLabels.h"
#include "render/JsonText.h"
#include "render/MachineNames.h"
#include "render/NodeTexts.h"
#include "render/Numbers.h"

namespace render {

namespace {

using embedded::output::NumberFormat;
using embedded::output::State;

std::string_view nameOf(Axis axis) {
  switch (axis) {
    case Axis::Row:
      return "row";
    case Axis::Column:
      return "column";
    case Axis::Layer:
      return "layer";
  }
  return {};
}

std::string_view nameOf(NumberFormat format) {
  switch (format) {
    case NumberFormat::Count:
      return "count";
    case NumberFormat::GeneralStat:
      return "general";
    case NumberFormat::SigDigit:
      return "digits";
  }
  return {};
}

class JsonTable {
 public:
  JsonTable(const Document& document, const Table& table, const Context& context,
            std::string& block)
      : document_(document),
        context_(context),
        table_(table),
        grid_(table),
        printer_(grid_, context),
        paths_(table, [this](const Dimension& d, Index node) { return pathText(d, node); }),
        footnotes_(table, ",", [this](const embedded::output::Text& t) { return labelText(t); }),
        block_(block) {}

  void write(const std::function<void()>& flush) {
    const bool split = table_.splitRows || table_.split != none;
    block_ += "{\"title\":" + labelText(*table_.title);
    block_ += ",\"dimensions\":" + dimensions();
    block_ += ",\"split\":" + (split ? jsonSplitNames(document_) : "[]");
    block_ += ",\"cells\":[";
    grid_.forEachRow([&](const Row& row) {
      addRow(row);
      flush();
    });
    block_ += "]}";
  }

 private:
  std::string labelText(const embedded::output::Text& text) const {
    return jsonLabel(text, *context_.sentences);
  }

  std::string pathText(const Dimension& dimension, Index node) const {
    return "[" +
           joinedPath(dimension, node, ",",
                      [this](const embedded::output::Text& label) { return labelText(label); }) +
           "]";
  }

  std::string dimensions() const {
    return jsonArray(table_.dimensions, [this](const Dimension& dimension) {
      return jsonObject(
          {{"axis", jsonText(nameOf(dimension.axis))}, {"label", labelText(*dimension.label)}});
    });
  }

  void addRow(const Row& row) {
    if (splitText_.empty() || row.split != split_) {
      split_ = row.split;
      splitText_ = split_ == none ? "[]" : jsonSplitValues(document_, split_, *context_.sentences);
    }
    printer_.print(row, texts_);
    for (std::size_t c = 0; c < row.cells.size(); ++c) {
      if (row.cells[c] != nullptr) {
        addCell(*row.cells[c], texts_[c].text);
      }
    }
  }

  void addCell(const Cell& cell, const std::string& shown) {
    block_ += first_ ? "\n{\"path\":[" : ",\n{\"path\":[";
    first_ = false;
    for (std::size_t d = 0; d < table_.dimensions.size(); ++d) {
      block_ += d == 0 ? "" : ",";
      block_ += paths_.of(d, cell.at[d]);
    }
    block_ += "],\"split\":";
    block_ += splitText_;
    block_ += ",\"value\":";
    block_ += cell.state == State::Valid ? jsonNumber(cell.value) : "null";
    block_ += ",\"state\":\"";
    block_ += stateName(cell.state);
    block_ += "\",\"text\":\"";
    block_ += shown;
    block_ += "\",\"format\":\"";
    block_ += nameOf(cell.format);
    block_ += "\",\"footnotes\":[";
    block_ += footnotes_.of(cell);
    block_ += "]}";
  }

  const Document& document_;
  const Context& context_;
  const Table& table_;
  Grid grid_;
  CellPrinter printer_;
  NodeTexts paths_;
  Footnotes footnotes_;
  std::string& block_;
  std::vector<CellText> texts_;
  std::string splitText_;
  Index split_ = none;
  bool first_ = true;
};

}  // namespace

std::string jsonSplitNames(const Document& document) {
  return jsonArray(document.data.splits,
                   [](const auto& variable) { return jsonText(variable->name); });
}

std::string jsonSplitValues(const Document& document, Index split,
                            const embedded::output::Sentences& sentences) {
  if (split == none) {
    return "null";
  }
  return jsonArray(document.splits[split].values, [&](const TextPtr& value) {
    return jsonObject({{"value", jsonValue(*value)},
                       {"text", jsonText(embedded::output::readerText(*value, sentences))}});
  });
}

void writeJsonTable(const Document& document, const Table& table, const Context& context,
                    std::string& block, const std::function<void()>& flush) {
  JsonTable(document, table, context, block).write(flush);
}

}  // namespace render
