// text: aligned tables for a terminal or a log, with footnotes lettered under each table. A table
// wider than the line is split by columns, with its row labels repeated.
#include <algorithm>
#include <string>

#include "embedded/output/Values.h"
#include "render/Columns.h"
#include "render/Messages.h"
#include "render/ReaderTable.h"
#include "render/Renderer.h"

namespace render {

namespace {

using embedded::output::readerText;

constexpr const char* bold = "\x1b[1m";
constexpr const char* faint = "\x1b[2m";
constexpr const char* plain = "\x1b[0m";
constexpr std::size_t gap = 2;  // blanks between columns

std::string rule(std::size_t width, std::string_view line = "\u2500") {
  std::string out;
  for (std::size_t i = 0; i < width; ++i) {
    out += line;
  }
  return out;
}

std::string trimmed(std::string line) {
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

// Digits and marks after the decimal point; what they are aligned by.
std::size_t afterPoint(const std::string& text, std::string_view point) {
  const std::size_t at = text.find(point);
  return at == std::string::npos || text.front() == '<' ? 0 : columnsOf(text.substr(at));
}

std::size_t longestWord(const std::string& text) {
  std::size_t longest = 0;
  for (const std::string& line : wrapped(text, 1)) {
    longest = std::max(longest, columnsOf(line));
  }
  return longest;
}

// One table laid out in lines.
class TextTable {
 public:
  TextTable(const ReaderTable& table, const Context& context, std::ostream& out)
      : table_(table), context_(context), out_(out) {}

  void write() {
    alignCells();
    measure();
    const auto line = static_cast<std::size_t>(std::max(context_.width, 40));
    for (std::size_t begin = 0; begin < widths_.size();) {
      std::size_t end = begin;
      std::size_t used = labelsWidth_;
      while (end < widths_.size() && (end == begin || used + gap + widths_[end] <= line)) {
        used += gap + widths_[end++];
      }
      end = keepSpannerWhole(begin, end);
      writePart(begin, end);
      begin = end;
    }
    writeNotes(line);
  }

 private:
  // Pads the cells of each column so that their decimal points stand under one another.
  void alignCells() {
    const std::size_t columns = table_.columns.size();
    std::vector<std::size_t> most(columns, 0);
    for (const ReaderRow& row : table_.rows) {
      for (std::size_t c = 0; c < columns; ++c) {
        const std::string text = row.cells[c].text + row.cells[c].marks;
        most[c] = std::max(most[c], afterPoint(text, context_.decimalPoint));
      }
    }
    for (const ReaderRow& row : table_.rows) {
      std::vector<std::string> texts;
      for (std::size_t c = 0; c < columns; ++c) {
        std::string text = row.cells[c].text + row.cells[c].marks;
        if (text.find(context_.decimalPoint) != std::string::npos) {
          text.append(
              most[c] - std::min(most[c], columnsOf(text.substr(text.find(context_.decimalPoint)))),
              ' ');
        }
        texts.push_back(std::move(text));
      }
      cells_.push_back(std::move(texts));
    }
  }

  void measure() {
    for (std::size_t h = 0; h < table_.rowHeads.size(); ++h) {
      std::size_t width = columnsOf(table_.rowHeads[h]);
      for (const ReaderRow& row : table_.rows) {
        width = std::max(width, columnsOf(row.labels[h]));
      }
      labelWidths_.push_back(width);
      labelsWidth_ += (h == 0 ? 0 : gap) + width;
    }
    for (std::size_t c = 0; c < table_.columns.size(); ++c) {
      std::size_t width = longestWord(leafHead(c));
      for (const auto& row : cells_) {
        width = std::max(width, columnsOf(row[c]));
      }
      widths_.push_back(width);
    }
    widenForSpanners();
  }

  // A spanning label must fit over its columns, if need be in several lines.
  void widenForSpanners() {
    for (std::size_t begin = 0; begin < widths_.size();) {
      const std::size_t end = spannerEnd(begin);
      if (const std::string& label = spanner(begin); !label.empty()) {
        const std::size_t needs = std::min(columnsOf(label), longestWord(label) + 8);
        std::size_t has = spanWidth(begin, end);
        for (std::size_t c = begin; has < needs; c = c + 1 == end ? begin : c + 1, ++has) {
          ++widths_[c];
        }
      }
      begin = end;
    }
  }

  std::string leafHead(std::size_t c) const {
    const std::string& marks = table_.columnMarks[c];
    return table_.columns[c].empty()
               ? ""
               : table_.columns[c].back() + (marks.empty() ? "" : " " + marks);
  }
  // The label above a column's own, empty when there is none.
  std::string spanner(std::size_t c) const {
    std::string out;
    for (std::size_t i = 0; i + 1 < table_.columns[c].size(); ++i) {
      out += (out.empty() ? "" : ", ") + table_.columns[c][i];
    }
    return out;
  }
  std::size_t spannerEnd(std::size_t begin) const {
    std::size_t end = begin + 1;
    while (end < widths_.size() && !spanner(begin).empty() && spanner(end) == spanner(begin)) {
      ++end;
    }
    return end;
  }
  std::size_t spanWidth(std::size_t begin, std::size_t end) const {
    std::size_t width = (end - begin - 1) * gap;
    for (std::size_t c = begin; c < end; ++c) {
      width += widths_[c];
    }
    return width;
  }

  // The end of a part, moved back so that columns under one spanner stay together.
  std::size_t keepSpannerWhole(std::size_t begin, std::size_t end) const {
    if (end == widths_.size()) {
      return end;
    }
    std::size_t start = begin;
    while (start < end && spannerEnd(start) <= end) {
      start = spannerEnd(start);
    }
    return start == begin ? end : start;
  }

  void writeLine(const std::string& line) { out_ << trimmed(line) << '\n'; }

  void writePart(std::size_t begin, std::size_t end) {
    const std::size_t width = labelsWidth_ + gap + spanWidth(begin, end);
    out_ << rule(width, "\u2501") << '\n';
    writeSpanners(begin, end);
    writeHeads(begin, end);
    out_ << rule(width) << '\n';
    writeRows(begin, end);
    out_ << rule(width, "\u2501") << '\n';
  }

  void writeSpanners(std::size_t begin, std::size_t end) {
    std::vector<std::vector<std::string>> lines;
    std::vector<std::size_t> spans;
    std::size_t deepest = 0;
    std::string under = std::string(labelsWidth_, ' ');
    for (std::size_t c = begin; c < end;) {
      const std::size_t next = std::min(spannerEnd(c), end);
      spans.push_back(spanWidth(c, next));
      lines.push_back(wrapped(spanner(c), spans.back()));
      deepest = std::max(deepest, lines.back().size());
      under += std::string(gap, ' ') +
               (spanner(c).empty() ? std::string(spans.back(), ' ') : rule(spans.back()));
      c = next;
    }
    if (deepest == 0) {
      return;
    }
    for (std::size_t i = 0; i < deepest; ++i) {
      std::string line(labelsWidth_, ' ');
      for (std::size_t s = 0; s < spans.size(); ++s) {
        const std::size_t skip = deepest - lines[s].size();
        line += std::string(gap, ' ') + centred(i < skip ? "" : lines[s][i - skip], spans[s]);
      }
      writeLine(line);
    }
    writeLine(under);
  }

  void writeHeads(std::size_t begin, std::size_t end) {
    std::vector<std::vector<std::string>> lines;
    std::size_t deepest = 1;
    for (std::size_t c = begin; c < end; ++c) {
      lines.push_back(wrapped(leafHead(c), widths_[c]));
      deepest = std::max(deepest, lines.back().size());
    }
    for (std::size_t i = 0; i < deepest; ++i) {
      std::string line;
      for (std::size_t h = 0; h < table_.rowHeads.size(); ++h) {
        line += (h == 0 ? "" : std::string(gap, ' ')) +
                padRight(i + 1 == deepest ? table_.rowHeads[h] : "", labelWidths_[h]);
      }
      for (std::size_t c = begin; c < end; ++c) {
        const auto& head = lines[c - begin];
        const std::size_t skip = deepest - head.size();
        line += std::string(gap, ' ') + padLeft(i < skip ? "" : head[i - skip], widths_[c]);
      }
      writeLine(line);
    }
  }

  void writeRows(std::size_t begin, std::size_t end) {
    const ReaderRow* above = nullptr;
    for (std::size_t r = 0; r < table_.rows.size(); ++r) {
      const ReaderRow& row = table_.rows[r];
      std::string line;
      bool same = above != nullptr;
      for (std::size_t h = 0; h < row.labels.size(); ++h) {
        // An outer label is printed once for the rows that share it.
        same = same && h + 1 < row.labels.size() && row.labels[h] == above->labels[h];
        line += (h == 0 ? "" : std::string(gap, ' ')) +
                padRight(same ? "" : row.labels[h], labelWidths_[h]);
      }
      for (std::size_t c = begin; c < end; ++c) {
        line += std::string(gap, ' ') + padLeft(cells_[r][c], widths_[c]);
      }
      writeLine(line);
      above = &row;
    }
  }

  void writeNotes(std::size_t line) {
    for (std::size_t i = 0; i < table_.footnotes.size(); ++i) {
      writeIndented(footnoteLetter(i) + " ", table_.footnotes[i], line);
    }
    for (const std::string& note : table_.notes) {
      writeIndented("", note, line);
    }
  }

  void writeIndented(const std::string& mark, const std::string& text, std::size_t line) {
    std::string start = mark;
    for (const std::string& part : wrapped(text, line - mark.size())) {
      out_ << (context_.colour ? faint : "") << start << part << (context_.colour ? plain : "")
           << '\n';
      start = std::string(mark.size(), ' ');
    }
  }

  const ReaderTable& table_;
  const Context& context_;
  std::ostream& out_;
  std::vector<std::vector<std::string>> cells_;
  std::vector<std::size_t> labelWidths_;
  std::vector<std::size_t> widths_;
  std::size_t labelsWidth_ = 0;
};

void writeHeading(const std::string& text, const Context& context, std::ostream& out) {
  out << (context.colour ? bold : "") << text << (context.colour ? plain : "") << '\n';
}

// How the run was made, as label and text by line.
void writeRun(const Document& document, const Context& context, std::ostream& out) {
  for (const auto& [label, text] : runFacts(document, context)) {
    out << padRight(label + ":", 22) << text << '\n';
  }
  for (const auto& note : document.notes) {
    out << padRight(readerText(*note.label, *context.sentences) + ":", 22)
        << readerText(*note.text, *context.sentences) << '\n';
  }
}

}  // namespace

void renderText(const Document& document, const Context& context, std::ostream& out) {
  if (!document.procedure.empty()) {
    writeHeading(std::string(context.sentences->sentence(document.procedure)), context, out);
    writeRun(document, context, out);
  }
  for (const auto& message : document.messages) {
    out << '\n' << messageText(document, message, context);
  }
  for (const Table& table : document.tables) {
    if (table.cells.empty()) {
      continue;
    }
    const ReaderTable shown = readerTable(document, table, context);
    out << '\n';
    writeHeading(shown.title + (shown.split.empty() ? "" : " (" + shown.split + ")"), context, out);
    TextTable(shown, context, out).write();
  }
}

}  // namespace render
