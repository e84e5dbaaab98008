#include "render/ReaderTable.h"

#include <algorithm>
#include <set>

#include "embedded/output/Values.h"
#include "render/Numbers.h"

namespace render {

namespace {

using embedded::output::readerText;

class Builder {
 public:
  Builder(const Document& document, const Table& table, const Context& context)
      : document_(document), context_(context), grid_(table), printer_(grid_, context) {}

  ReaderTable build() {
    result_.title = shown(*grid_.table().title);
    findRowDepths();
    nameRowHeads();
    nameColumns();
    grid_.forEachRow([&](const Row& row) { addRow(row); });
    if (const auto& direction = context_.description->table(grid_.table().title->id).direction;
        !direction.empty()) {
      result_.notes.insert(result_.notes.begin(),
                           sentence("Differences are taken") + " " + sentence(direction) + ".");
    }
    if (rangeEnds_) {
      result_.notes.insert(result_.notes.begin(),
                           std::string(atRangeEnd) + " " + sentence("At the end of its range"));
    }
    return std::move(result_);
  }

 private:
  std::string sentence(std::string_view id) const {
    return std::string(context_.sentences->sentence(id));
  }
  std::string shown(const embedded::output::Text& text) const {
    return readerText(text, *context_.sentences);
  }
  bool splitsLead() const { return grid_.table().splitRows; }

  // A row dimension takes as many header columns as its deepest shown category.
  void findRowDepths() {
    for (const std::size_t d : grid_.rowDimensions()) {
      const Dimension& dimension = grid_.table().dimensions[d];
      std::size_t deepest = 1;
      for (Index node = 1; node < dimension.nodes.size(); ++node) {
        if (dimension.nodes[node].hasCells && !dimension.nodes[node].isGroup) {
          deepest = std::max(deepest, pathOf(dimension, node).size());
        }
      }
      depths_.push_back(deepest);
    }
  }

  void nameRowHeads() {
    if (splitsLead()) {
      for (const auto& variable : document_.data.splits) {
        result_.rowHeads.push_back(variable->label.empty() ? variable->name : variable->label);
      }
    }
    for (std::size_t i = 0; i < depths_.size(); ++i) {
      const Dimension& dimension = grid_.table().dimensions[grid_.rowDimensions()[i]];
      result_.rowHeads.insert(result_.rowHeads.end(), depths_[i] - 1, "");
      result_.rowHeads.push_back(shown(*dimension.label));
    }
    if (grid_.table().split != none) {
      result_.split = splitSentence(grid_.table().split);
    }
  }

  std::string splitSentence(Index split) const {
    std::string out;
    for (const TextPtr& value : document_.splits[split].values) {
      const auto& variable = *value->variable;
      out += (out.empty() ? "" : ", ") + (variable.label.empty() ? variable.name : variable.label) +
             " = " + shown(*value);
    }
    return out;
  }

  void nameColumns() {
    for (const Column& column : grid_.columns()) {
      std::vector<std::string> labels;
      std::string marks;
      for (std::size_t i = 0; i < column.nodes.size(); ++i) {
        const Dimension& dimension = grid_.table().dimensions[grid_.columnDimensions()[i]];
        for (const TextPtr& label : pathOf(dimension, column.nodes[i])) {
          labels.push_back(shown(*label));
        }
        for (Index node = column.nodes[i]; node != none; node = dimension.nodes[node].parent) {
          marks += marksOf(dimension.nodes[node].footnotes);
        }
      }
      result_.columns.push_back(std::move(labels));
      result_.columnMarks.push_back(std::move(marks));
    }
  }

  std::string marksOf(const std::vector<TextPtr>& notes) {
    std::string marks;
    for (const TextPtr& note : notes) {
      const std::string text = shown(*note);
      const auto found = std::find(result_.footnotes.begin(), result_.footnotes.end(), text);
      const auto index = static_cast<std::size_t>(found - result_.footnotes.begin());
      if (found == result_.footnotes.end()) {
        result_.footnotes.push_back(text);
      }
      marks += (marks.empty() ? "" : ",") + footnoteLetter(index);
    }
    return marks;
  }

  void addRow(const Row& row) {
    ReaderRow shownRow;
    if (splitsLead() && row.split != none) {
      for (const TextPtr& value : document_.splits[row.split].values) {
        shownRow.labels.push_back(shown(*value));
      }
    }
    for (std::size_t i = 0; i < row.nodes.size(); ++i) {
      const Dimension& dimension = grid_.table().dimensions[grid_.rowDimensions()[i]];
      const auto path = pathOf(dimension, row.nodes[i]);
      for (const TextPtr& label : path) {
        shownRow.labels.push_back(shown(*label));
        addMeaning(*label);
      }
      shownRow.labels.insert(shownRow.labels.end(), depths_[i] - std::min(depths_[i], path.size()),
                             "");
    }
    addCells(row, shownRow);
    result_.rows.push_back(std::move(shownRow));
  }

  void addCells(const Row& row, ReaderRow& shownRow) {
    std::vector<std::string> texts = printer_.print(row);
    for (std::size_t c = 0; c < texts.size(); ++c) {
      ReaderCell cell{std::move(texts[c]), {}};
      rangeEnds_ = rangeEnds_ || cell.text.ends_with(atRangeEnd);
      if (row.cells[c] != nullptr && row.cells[c]->footnotes != none) {
        cell.marks = marksOf(grid_.table().footnoteLists[row.cells[c]->footnotes]);
      }
      shownRow.cells.push_back(std::move(cell));
    }
  }

  // What the description says of a label, once.
  void addMeaning(const embedded::output::Text& label) {
    const std::string note = context_.description->of(grid_.table().title->id, label.id).note;
    if (!note.empty() && told_.insert(label.id).second) {
      result_.notes.push_back(shown(label) + ": " + sentence(note) + ".");
    }
  }

  const Document& document_;
  const Context& context_;
  Grid grid_;
  CellPrinter printer_;
  std::vector<std::size_t> depths_;
  std::set<std::string> told_;
  bool rangeEnds_ = false;
  ReaderTable result_;
};

}  // namespace

std::string footnoteLetter(std::size_t n) {
  std::string letters(1, static_cast<char>('a' + n % 26));
  while (n >= 26) {
    n = n / 26 - 1;
    letters.insert(letters.begin(), static_cast<char>('a' + n % 26));
  }
  return letters;
}

ReaderTable readerTable(const Document& document, const Table& table, const Context& context) {
  return Builder(document, table, context).build();
}

}  // namespace render
