#include "render/ReaderTable.h"

#include <algorithm>
#include <set>
#include <unordered_map>

#include "embedded/output/Values.h"
#include "render/Phrase.h"

namespace render {

namespace {

using embedded::output::readerText;
using embedded::output::Role;
using embedded::output::Text;

constexpr std::size_t mostOutcomes = 6;  // that a note lists

std::string nameOf(const embedded::output::VariableInfo& variable) {
  return variable.label.empty() ? variable.name : variable.label;
}

// How many leading texts two split groups have in common.
std::size_t sharedValues(const std::vector<TextPtr>& a, const std::vector<TextPtr>& b) {
  const auto ends = std::mismatch(a.begin(), a.end(), b.begin(), b.end(),
                                  [](const TextPtr& x, const TextPtr& y) { return *x == *y; });
  return static_cast<std::size_t>(ends.first - a.begin());
}

class Builder {
 public:
  Builder(const Document& document, const Table& table, const Context& context)
      : document_(document),
        context_(context),
        table_(table),
        grid_(table),
        printer_(grid_, context) {
    for (const Dimension& dimension : table.dimensions) {
      told_.emplace_back(dimension.nodes.size(), false);
    }
  }

  ReaderTable build() {
    result_.title = shown(*table_.title);
    if (table_.split != none) {
      result_.split = splitSentence(document_, table_.split, *context_.sentences);
    }
    result_.direction = context_.description->table(table_.title->id).direction;
    result_.meanings = printer_.meanings();
    result_.splitHeads = splitsLead() ? document_.data.splits.size() : 0;
    nameRows();
    nameColumns();
    grid_.forEachRow([&](const Row& row) { addRow(row); });
    addTableNotes();
    return std::move(result_);
  }

 private:
  std::string sentence(std::string_view id) const {
    return std::string(context_.sentences->sentence(id));
  }
  std::string shown(const Text& text) const { return readerText(text, *context_.sentences); }
  bool splitsLead() const { return table_.splitRows; }

  // A row dimension takes as many columns of labels as its deepest shown category.
  std::size_t depthOf(const Dimension& dimension) const {
    std::size_t deepest = 1;
    for (Index node = 1; node < dimension.nodes.size(); ++node) {
      if (dimension.nodes[node].hasCells) {
        deepest = std::max(deepest, pathOf(dimension, node).size());
      }
    }
    return deepest;
  }

  void nameRows() {
    if (splitsLead()) {
      for (const auto& variable : document_.data.splits) {
        result_.rowHeads.push_back({nameOf(*variable)});
      }
    }
    for (const std::size_t d : grid_.rowDimensions()) {
      const Dimension& dimension = table_.dimensions[d];
      result_.rowHeads.push_back({shown(*dimension.label), depthOf(dimension)});
    }
  }

  void nameColumns() {
    std::vector<Index> before;
    for (const Column& column : grid_.columns()) {
      ReaderColumn& head = result_.columns.emplace_back();
      std::vector<Index> path;
      for (std::size_t i = 0; i < column.nodes.size(); ++i) {
        const Dimension& dimension = table_.dimensions[grid_.columnDimensions()[i]];
        for (const Index node : pathOf(dimension, column.nodes[i])) {
          path.push_back(node);
          head.labels.push_back(labelOf(dimension, node));
        }
      }
      const auto ends = std::mismatch(path.begin(), path.end(), before.begin(), before.end());
      head.shared = static_cast<std::size_t>(ends.first - path.begin());
      before = std::move(path);
    }
  }

  ReaderLabel labelOf(const Dimension& dimension, Index node) {
    const Text& label = *dimension.nodes[node].label;
    return {shown(label), notesOf(dimension.nodes[node].footnotes),
            context_.description->of(table_.title->id, label.id).role};
  }

  NoteList notesOf(const std::vector<TextPtr>& notes) {
    NoteList list;
    for (const TextPtr& note : notes) {
      std::string text = shown(*note);
      const auto [found, isNew] = noteIndex_.try_emplace(text, result_.footnotes.size());
      if (isNew) {
        result_.footnotes.push_back(std::move(text));
      }
      list.push_back(found->second);
    }
    return list;
  }

  void addRow(const Row& row) {
    ReaderRow& shownRow = result_.rows.emplace_back();
    shownRow.split = row.split;
    bool same = result_.rows.size() > 1;
    if (splitsLead() && row.split != none) {
      addSplit(row.split, shownRow, same);
    }
    for (std::size_t i = 0; i < row.nodes.size(); ++i) {
      const std::size_t d = grid_.rowDimensions()[i];
      const Dimension& dimension = table_.dimensions[d];
      const auto path = pathOf(dimension, row.nodes[i]);
      const auto above = same ? pathOf(dimension, before_.nodes[i]) : std::vector<Index>();
      for (std::size_t k = 0; k < path.size(); ++k) {
        same = same && k < above.size() && path[k] == above[k];
        shownRow.shared += same ? 1 : 0;
        shownRow.labels.push_back(labelOf(dimension, path[k]));
        addMeaning(d, path[k]);
      }
      shownRow.labels.resize(shownRow.labels.size() + depthOfHead(i) - path.size());
      shownRow.shared += same ? depthOfHead(i) - path.size() : 0;
    }
    addCells(row, shownRow);
    before_ = row;
  }

  std::size_t depthOfHead(std::size_t rowDimension) const {
    return result_.rowHeads[rowDimension + splitColumns()].width;
  }
  std::size_t splitColumns() const {
    return result_.rowHeads.size() - grid_.rowDimensions().size();
  }

  void addSplit(Index split, ReaderRow& shownRow, bool& same) {
    const auto& values = document_.splits[split].values;
    for (const TextPtr& value : values) {
      shownRow.labels.push_back({shown(*value), {}});
    }
    if (same && split != before_.split) {
      shownRow.shared = sharedValues(values, document_.splits[before_.split].values);
      same = false;
    } else if (same) {
      shownRow.shared = values.size();
    }
  }

  void addCells(const Row& row, ReaderRow& shownRow) {
    printer_.print(row, texts_);
    shownRow.cells.reserve(texts_.size());
    for (std::size_t c = 0; c < texts_.size(); ++c) {
      ReaderCell& cell = shownRow.cells.emplace_back();
      cell.text = std::move(texts_[c].text);
      cell.isAtRangeEnd = texts_[c].isAtRangeEnd;
      cell.cell = row.cells[c];
      rangeEnds_ = rangeEnds_ || cell.isAtRangeEnd;
      if (cell.cell != nullptr && cell.cell->footnotes != none) {
        cell.notes = notesOf(table_.footnoteLists[cell.cell->footnotes]);
      }
    }
  }

  // What the description says of a label, once.
  void addMeaning(std::size_t dimension, Index node) {
    if (told_[dimension][node]) {
      return;
    }
    told_[dimension][node] = true;
    const Text& label = *table_.dimensions[dimension].nodes[node].label;
    const std::string note = context_.description->of(table_.title->id, label.id).note;
    if (!note.empty()) {
      result_.notes.push_back(
          phrase(context_, "Variant of method ^1: ^2", {shown(label), sentence(note)}));
    }
  }

  // What stands above the notes of the rows: the mark of range ends, and how differences are
  // taken.
  void addTableNotes() {
    std::vector<std::string> first;
    if (rangeEnds_) {
      first.push_back(std::string(atRangeEnd) + " " + sentence("At the end of its range"));
    }
    std::set<std::string> directions{result_.direction};
    if (directions.contains("")) {
      for (const auto& meaning : result_.meanings) {
        directions.insert(meaning.direction);
      }
      directions.erase("");
    }
    for (const std::string& direction : directions) {
      first.push_back(phrase(context_, "Differences are taken as ^1", {sentence(direction)}));
    }
    if (std::string success = successNote(); !success.empty()) {
      first.push_back(std::move(success));
    }
    result_.notes.insert(result_.notes.begin(), first.begin(), first.end());
  }

  // What counts as a success: in the rows themselves, or as the document's other tables say.
  std::string successNote() const {
    const std::set<std::string> own = outcomesOf(table_);
    if (!own.empty()) {
      return own.size() > mostOutcomes ? sentence("A success is what the row says")
                                       : successes(own);
    }
    std::set<std::string> all;
    for (const Table& other : document_.tables) {
      if (other.split == table_.split) {
        all.merge(outcomesOf(other));
      }
    }
    if (all.empty() || all.size() > mostOutcomes) {
      return {};
    }
    return successes(all);
  }

  // The shown labels of a table that say what a success is.
  std::set<std::string> outcomesOf(const Table& table) const {
    std::set<std::string> found;
    for (const Dimension& dimension : table.dimensions) {
      for (const Node& node : dimension.nodes) {
        if (node.hasCells && node.label != nullptr &&
            context_.description->of(table.title->id, node.label->id).role == Role::Outcome) {
          found.insert(shown(*node.label));
        }
      }
    }
    return found;
  }

  std::string successes(const std::set<std::string>& outcomes) const {
    return phraseWithList(context_, "A success is [%1:, ^1:]1", {},
                          {outcomes.begin(), outcomes.end()});
  }

  const Document& document_;
  const Context& context_;
  const Table& table_;
  Grid grid_;
  CellPrinter printer_;
  std::vector<std::vector<bool>> told_;  // by dimension and node
  std::unordered_map<std::string, std::size_t> noteIndex_;
  std::vector<CellText> texts_;
  Row before_;
  bool rangeEnds_ = false;
  ReaderTable result_;
};

}  // namespace

std::size_t ReaderTable::labelColumns() const {
  std::size_t columnsOfLabels = 0;
  for (const RowHead& head : rowHeads) {
    columnsOfLabels += head.width;
  }
  return columnsOfLabels;
}

std::string footnoteLetter(std::size_t n) {
  std::string letters(1, static_cast<char>('a' + n % 26));
  while (n >= 26) {
    n = n / 26 - 1;
    letters.insert(letters.begin(), static_cast<char>('a' + n % 26));
  }
  return letters;
}

std::string footnoteMarks(const NoteList& notes) {
  std::string marks;
  for (const std::size_t note : notes) {
    marks += (marks.empty() ? "" : ",") + footnoteLetter(note);
  }
  return marks;
}

std::string markedText(const ReaderCell& cell) {
  return cell.isAtRangeEnd ? cell.text + std::string(atRangeEnd) : cell.text;
}

std::string splitSentence(const Document& document, Index split,
                          const embedded::output::Sentences& sentences) {
  std::string out;
  for (const TextPtr& value : document.splits[split].values) {
    out += (out.empty() ? "" : ", ") + nameOf(*value->variable) + " = " +
           readerText(*value, sentences);
  }
  return out;
}

std::string splitOfRow(const ReaderTable& table, const ReaderRow& row) {
  std::string out;
  for (std::size_t h = 0; h < table.splitHeads && h < row.labels.size(); ++h) {
    out += (out.empty() ? "" : ", ") + table.rowHeads[h].text + " = " + row.labels[h].text;
  }
  return out;
}

ReaderTable readerTable(const Document& document, const Table& table, const Context& context) {
  return Builder(document, table, context).build();
}

std::vector<std::vector<HeadCell>> headLines(const ReaderTable& table, std::size_t begin,
                                             std::size_t end) {
  std::size_t depth = 1;
  for (std::size_t c = begin; c < end; ++c) {
    depth = std::max(depth, table.columns[c].labels.size());
  }
  std::vector<std::vector<HeadCell>> lines(depth);
  for (std::size_t c = begin; c < end; ++c) {
    const auto& labels = table.columns[c].labels;
    for (std::size_t line = 0; line < labels.size(); ++line) {
      const bool own = line + 1 == labels.size();
      // A group that has cells of its own does not span those of its categories.
      const bool spans = c > begin && table.columns[c].shared > line && !own &&
                         table.columns[c - 1].labels.size() > line + 1;
      if (spans) {
        ++lines[line].back().end;
      } else {
        lines[line].push_back({c, c + 1, line, own ? depth - 1 : line, &labels[line]});
      }
    }
  }
  return lines;
}

}  // namespace render
