#include "render/TextTable.h"

#include <algorithm>
#include <numeric>
#include <string>

#include "render/Columns.h"
#include "render/Panel.h"

namespace render {

namespace {

constexpr std::size_t gap = 2;  // blanks between columns
constexpr std::size_t narrowestLine = 40;
constexpr std::size_t narrowestLabel = 8;
constexpr std::size_t slackOfSpanner = 8;  // a spanner breaks rather than widen its columns more
constexpr std::string_view heavy = "\u2501";
constexpr std::string_view light = "\u2500";

std::string rule(std::size_t width, std::string_view line) {
  std::string out;
  for (std::size_t i = 0; i < width; ++i) {
    out += line;
  }
  return out;
}

std::string textOf(const ReaderLabel& label) {
  const std::string marks = footnoteMarks(label.notes);
  return marks.empty() ? label.text : label.text + " " + marks;
}

void makeVisible(ReaderTable& table) {
  const auto clean = [](std::string& text) { text = visible(text); };
  for (RowHead& head : table.rowHeads) {
    clean(head.text);
  }
  for (ReaderColumn& column : table.columns) {
    std::for_each(column.labels.begin(), column.labels.end(), [&](auto& l) { clean(l.text); });
  }
  for (ReaderRow& row : table.rows) {
    std::for_each(row.labels.begin(), row.labels.end(), [&](auto& l) { clean(l.text); });
  }
  std::for_each(table.footnotes.begin(), table.footnotes.end(), clean);
  std::for_each(table.notes.begin(), table.notes.end(), clean);
}

// Columns from the decimal point on, the point included.
std::size_t afterPoint(const std::string& text, std::string_view point) {
  const std::size_t at = text.find(point);
  return at == std::string::npos ? 0 : columnsOf(std::string_view(text).substr(at));
}

class TextTable {
 public:
  TextTable(ReaderTable table, const Context& context, std::ostream& out)
      : table_(std::move(table)),
        context_(context),
        out_(out),
        line_(std::max(static_cast<std::size_t>(std::max(context.width, 0)), narrowestLine)) {
    makeVisible(table_);
  }

  void write() {
    printCells();
    measureLabels();
    measureColumns();
    std::size_t begin = 0;
    do {
      const std::size_t end = endOfPart(begin);
      writePart(begin, end);
      begin = end;
    } while (begin < widths_.size());
    writeNotes();
  }

 private:
  // Prints the cells, padded so that the decimal points of a column stand under one another.
  void printCells() {
    const std::string_view point = context_.decimalPoint;
    std::vector<std::size_t> most(table_.columns.size(), 0);
    for (const ReaderRow& row : table_.rows) {
      auto& texts = cells_.emplace_back();
      for (std::size_t c = 0; c < row.cells.size(); ++c) {
        texts.push_back(markedText(row.cells[c]) + footnoteMarks(row.cells[c].notes));
        most[c] = std::max(most[c], afterPoint(texts.back(), point));
      }
    }
    for (auto& texts : cells_) {
      for (std::size_t c = 0; c < texts.size(); ++c) {
        if (const std::size_t has = afterPoint(texts[c], point); has > 0) {
          texts[c].append(most[c] - has, ' ');
        }
      }
    }
  }

  // Row labels take what they need, up to about half the line; beyond that the widest are wrapped.
  void measureLabels() {
    labelWidths_.assign(table_.labelColumns(), 0);
    for (const ReaderRow& row : table_.rows) {
      for (std::size_t h = 0; h < row.labels.size(); ++h) {
        labelWidths_[h] = std::max(labelWidths_[h], columnsOf(textOf(row.labels[h])));
      }
    }
    std::size_t first = 0;
    for (const RowHead& head : table_.rowHeads) {
      const std::size_t has = labelSpan(first, first + head.width);
      const std::size_t needs = columnsOf(head.text);
      first += head.width;
      labelWidths_[first - 1] += needs > has ? needs - has : 0;
    }
    while (labelSpan(0, labelWidths_.size()) > line_ / 2) {
      const auto widest = std::max_element(labelWidths_.begin(), labelWidths_.end());
      if (*widest <= narrowestLabel) {
        break;
      }
      --*widest;
    }
    labelsWidth_ = labelSpan(0, labelWidths_.size());
  }

  std::size_t labelSpan(std::size_t begin, std::size_t end) const {
    return begin == end ? 0
                        : std::accumulate(labelWidths_.begin() + static_cast<std::ptrdiff_t>(begin),
                                          labelWidths_.begin() + static_cast<std::ptrdiff_t>(end),
                                          (end - begin - 1) * gap);
  }

  void measureColumns() {
    for (const ReaderColumn& column : table_.columns) {
      widths_.push_back(column.labels.empty() ? 0 : longestWord(textOf(column.labels.back())));
    }
    for (const auto& texts : cells_) {
      for (std::size_t c = 0; c < texts.size(); ++c) {
        widths_[c] = std::max(widths_[c], columnsOf(texts[c]));
      }
    }
    // A spanning label must fit over its columns, if need be in several lines; inner ones first.
    const auto lines = headLines(table_, 0, widths_.size());
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
      for (const HeadCell& head : *line) {
        widenFor(head);
      }
    }
  }

  void widenFor(const HeadCell& head) {
    const std::string text = textOf(*head.label);
    const std::size_t needs = head.end - head.begin == 1
                                  ? longestWord(text)
                                  : std::min(columnsOf(text), longestWord(text) + slackOfSpanner);
    std::size_t column = head.begin;
    for (std::size_t has = spanWidth(head.begin, head.end); has < needs; ++has) {
      ++widths_[column];
      column = column + 1 == head.end ? head.begin : column + 1;
    }
  }

  std::size_t spanWidth(std::size_t begin, std::size_t end) const {
    std::size_t width = end > begin ? (end - begin - 1) * gap : 0;
    for (std::size_t c = begin; c < end; ++c) {
      width += widths_[c];
    }
    return width;
  }

  // The columns from `begin` that fit the line, cut where the fewest header labels are torn.
  std::size_t endOfPart(std::size_t begin) const {
    std::size_t most = begin;
    for (std::size_t used = labelsWidth_;
         most < widths_.size() && (most == begin || used + gap + widths_[most] <= line_); ++most) {
      used += gap + widths_[most];
    }
    if (most == widths_.size()) {
      return most;
    }
    std::size_t best = most;
    for (std::size_t end = most; end > begin; --end) {
      if (table_.columns[end].shared < table_.columns[best].shared) {
        best = end;
      }
    }
    return best;
  }

  void writeLine(std::string line) {
    line.erase(line.find_last_not_of(' ') + 1);
    out_ << line << '\n';
  }

  void writePart(std::size_t begin, std::size_t end) {
    const std::size_t width = labelsWidth_ + gap + spanWidth(begin, end);
    out_ << (begin == 0 ? "" : "\n") << rule(width, heavy) << '\n';
    const auto lines = headLines(table_, begin, end);
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
      writeSpanners(lines[i], begin);
    }
    writeHeads(begin, end);
    out_ << rule(width, light) << '\n';
    for (const PanelRow& row : rowsOfPanel(table_, begin, end)) {
      writeRow(row, begin, end);
    }
    out_ << rule(width, heavy) << '\n';
  }

  // One level of spanning labels, with a rule under each over the columns that it spans.
  void writeSpanners(const std::vector<HeadCell>& heads, std::size_t begin) {
    std::vector<std::vector<std::string>> lines;
    std::vector<std::pair<std::size_t, std::size_t>> places;  // columns of the line
    std::size_t deepest = 0;
    for (const HeadCell& head : heads) {
      if (head.bottom != head.top) {
        continue;  // a column's own label, which stands in the last line
      }
      const std::size_t before = head.begin == begin ? 0 : spanWidth(begin, head.begin) + gap;
      places.emplace_back(labelsWidth_ + gap + before, spanWidth(head.begin, head.end));
      lines.push_back(wrapped(textOf(*head.label), places.back().second));
      deepest = std::max(deepest, lines.back().size());
    }
    for (std::size_t i = 0; i < deepest; ++i) {
      std::string line;
      for (std::size_t s = 0; s < lines.size(); ++s) {
        const std::size_t skip = deepest - lines[s].size();
        line = padRight(line, places[s].first);
        line += centred(i < skip ? "" : lines[s][i - skip], places[s].second);
      }
      writeLine(std::move(line));
    }
    std::string under;
    for (const auto& [place, width] : places) {
      under = padRight(under, place) + rule(width, light);
    }
    writeLine(std::move(under));
  }

  void writeHeads(std::size_t begin, std::size_t end) {
    std::vector<std::vector<std::string>> lines;
    std::size_t deepest = 1;
    for (std::size_t c = begin; c < end; ++c) {
      const auto& labels = table_.columns[c].labels;
      lines.push_back(wrapped(labels.empty() ? "" : textOf(labels.back()), widths_[c]));
      deepest = std::max(deepest, lines.back().size());
    }
    for (std::size_t i = 0; i < deepest; ++i) {
      std::string line = i + 1 == deepest ? rowHeads() : std::string(labelsWidth_, ' ');
      for (std::size_t c = begin; c < end; ++c) {
        const auto& head = lines[c - begin];
        const std::size_t skip = deepest - head.size();
        line.append(gap, ' ').append(padLeft(i < skip ? "" : head[i - skip], widths_[c]));
      }
      writeLine(std::move(line));
    }
  }

  std::string rowHeads() const {
    std::string line;
    std::size_t first = 0;
    for (const RowHead& head : table_.rowHeads) {
      const std::size_t width = labelSpan(first, first + head.width);
      const std::string text = wrapped(head.text, std::max<std::size_t>(width, 1)).front();
      line.append(first == 0 ? 0 : gap, ' ').append(padRight(text, width));
      first += head.width;
    }
    return line;
  }

  // A label that a row shares with the row above is printed once.
  void writeRow(const PanelRow& shown, std::size_t begin, std::size_t end) {
    const ReaderRow& row = table_.rows[shown.row];
    std::vector<std::vector<std::string>> labels;
    std::size_t height = 1;
    for (std::size_t h = 0; h < row.labels.size(); ++h) {
      labels.push_back(wrapped(h < shown.shared ? "" : textOf(row.labels[h]), labelWidths_[h]));
      height = std::max(height, labels.back().size());
    }
    for (std::size_t i = 0; i < height; ++i) {
      std::string line;
      for (std::size_t h = 0; h < labels.size(); ++h) {
        line.append(h == 0 ? 0 : gap, ' ');
        line += padRight(i < labels[h].size() ? labels[h][i] : "", labelWidths_[h]);
      }
      for (std::size_t c = begin; i == 0 && c < end; ++c) {
        line.append(gap, ' ').append(padLeft(cells_[shown.row][c], widths_[c]));
      }
      writeLine(std::move(line));
    }
  }

  void writeNotes() {
    for (std::size_t i = 0; i < table_.footnotes.size(); ++i) {
      writeIndented(footnoteLetter(i) + " ", table_.footnotes[i]);
    }
    for (const std::string& note : table_.notes) {
      writeIndented("", note);
    }
  }

  void writeIndented(const std::string& mark, const std::string& text) {
    std::string start = mark;
    for (const std::string& part : wrapped(text, line_ - mark.size())) {
      out_ << (context_.colour ? faint : "") << start << part << (context_.colour ? plain : "")
           << '\n';
      start.assign(mark.size(), ' ');
    }
  }

  ReaderTable table_;
  const Context& context_;
  std::ostream& out_;
  std::size_t line_;
  std::vector<std::vector<std::string>> cells_;  // by row and column
  std::vector<std::size_t> labelWidths_;
  std::vector<std::size_t> widths_;  // of columns
  std::size_t labelsWidth_ = 0;      // of all row labels with the gaps between them
};

}  // namespace

void writeTextTable(ReaderTable table, const Context& context, std::ostream& out) {
  TextTable(std::move(table), context, out).write();
}

}  // namespace render
