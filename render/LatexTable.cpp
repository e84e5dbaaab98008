#include "render/LatexTable.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <numeric>

#include "render/Columns.h"
#include "render/Panel.h"

namespace render {

namespace {

constexpr std::size_t widestLabel = 36;    // wider ones break
constexpr std::size_t gap = 2;             // what lies between two columns, in characters
constexpr std::size_t slackOfSpanner = 8;  // a spanner breaks rather than widen its columns more

// Ways to lay a table on a page, and about how many characters a line then holds.
struct Layout {
  std::string_view size;
  bool onItsSide;
  std::size_t line;
};
constexpr std::array<Layout, 4> layouts{{{"\\small", false, 98},
                                         {"\\footnotesize", false, 112},
                                         {"\\footnotesize", true, 168},
                                         {"\\scriptsize", true, 188}}};

std::string stacked(const std::vector<std::string>& lines, char side, LatexText& text) {
  if (lines.size() == 1) {
    return text.escaped(lines.front());
  }
  std::string out = fmt::format("\\shortstack[{}]{{", side);
  for (std::size_t i = 0; i < lines.size(); ++i) {
    out += (i == 0 ? "" : "\\\\") + text.escaped(lines[i]);
  }
  return out + "}";
}

std::string marksOf(const NoteList& notes) {
  return notes.empty() ? "" : "\\textsuperscript{" + footnoteMarks(notes) + "}";
}

class LatexTable {
 public:
  LatexTable(const ReaderTable& table, const Context& context, LatexText& text)
      : table_(table), point_(context.decimalPoint), text_(text) {
    measure();
  }

  std::string write() {
    const std::size_t whole = lineOf(0, widths_.size());
    const auto* fits = std::find_if(layouts.begin(), layouts.end() - 1,
                                    [&](const Layout& layout) { return whole <= layout.line; });
    const Layout& layout = *fits;
    out_ += layout.onItsSide ? "\\begin{landscape}\n" : "";
    out_ += fmt::format("\\begingroup{}\\setlength{{\\tabcolsep}}{{4pt}}\n", layout.size);
    std::size_t begin = 0;
    do {
      const std::size_t end = endOfPart(begin, layout.line);
      writePart(begin, end);
      begin = end;
    } while (begin < widths_.size());
    writeNotes();
    out_ += "\\endgroup\n";
    out_ += layout.onItsSide ? "\\end{landscape}\n" : "";
    return std::move(out_);
  }

 private:
  void measure() {
    labelWidths_.assign(table_.labelColumns(), 1);
    afterPoint_.assign(table_.columns.size(), 0);
    for (const ReaderColumn& column : table_.columns) {
      widths_.push_back(column.labels.empty() ? 1 : longestWord(column.labels.back().text));
    }
    for (const ReaderRow& row : table_.rows) {
      for (std::size_t h = 0; h < row.labels.size(); ++h) {
        labelWidths_[h] = std::max(labelWidths_[h], columnsOf(visible(row.labels[h].text)));
      }
      for (std::size_t c = 0; c < row.cells.size(); ++c) {
        widths_[c] = std::max(widths_[c], columnsOf(markedText(row.cells[c])));
        afterPoint_[c] = std::max(afterPoint_[c], fractionOf(row.cells[c].text).size());
      }
    }
    grouped_ = std::any_of(table_.rows.begin(), table_.rows.end(),
                           [](const ReaderRow& row) { return row.shared > 0; });
    std::size_t first = 0;
    for (const RowHead& head : table_.rowHeads) {
      first += head.width;
      labelWidths_[first - 1] = std::max(labelWidths_[first - 1], longestWord(head.text));
    }
    for (const auto& line : headLines(table_, 0, widths_.size())) {
      std::for_each(line.begin(), line.end(), [&](const HeadCell& head) { widenFor(head); });
    }
  }

  // A spanning label fits over its columns, if need be in several lines.
  void widenFor(const HeadCell& head) {
    const std::string& text = head.label->text;
    const std::size_t needs = std::min(columnsOf(text), longestWord(text) + slackOfSpanner);
    std::size_t column = head.begin;
    for (std::size_t has = spanOf(head.begin, head.end); head.end - head.begin > 1 && has < needs;
         ++has) {
      ++widths_[column];
      column = column + 1 == head.end ? head.begin : column + 1;
    }
  }

  std::string_view fractionOf(std::string_view cell) const {
    const std::size_t at = cell.find(point_);
    return at == std::string_view::npos ? std::string_view() : cell.substr(at);
  }

  std::size_t spanOf(std::size_t begin, std::size_t end) const {
    return std::accumulate(widths_.begin() + static_cast<std::ptrdiff_t>(begin),
                           widths_.begin() + static_cast<std::ptrdiff_t>(end),
                           end > begin ? (end - begin - 1) * gap : 0);
  }

  std::size_t lineOf(std::size_t begin, std::size_t end) const {
    std::size_t line = spanOf(begin, end);
    for (const std::size_t width : labelWidths_) {
      line += std::min(width, widestLabel) + gap;
    }
    return line;
  }

  // The columns from `begin` that fit the line, cut where the fewest header labels are torn.
  std::size_t endOfPart(std::size_t begin, std::size_t line) const {
    std::size_t most = std::min(begin + 1, widths_.size());
    while (most < widths_.size() && lineOf(begin, most + 1) <= line) {
      ++most;
    }
    std::size_t best = most;
    for (std::size_t end = most; most < widths_.size() && end > begin; --end) {
      best = table_.columns[end].shared < table_.columns[best].shared ? end : best;
    }
    return best;
  }

  void writePart(std::size_t begin, std::size_t end) {
    out_ += "\\begin{longtable}{@{}";
    for (const std::size_t width : labelWidths_) {
      out_ += width <= widestLabel
                  ? "l"
                  : fmt::format(">{{\\raggedright\\arraybackslash}}p{{{}em}}", widestLabel / 2);
    }
    out_.append(end - begin, 'r').append("@{}}\n");
    if (begin == 0) {
      out_ += "\\caption{" + text_.escaped(table_.title) +
              (table_.split.empty() ? "" : " (" + text_.escaped(table_.split) + ")") + "}\\\\\n";
    }
    out_ += "\\toprule\n";
    writeHead(begin, end);
    out_ += "\\midrule\\endhead\n\\bottomrule\\endfoot\n";
    bool first = true;
    for (const PanelRow& row : rowsOfPanel(table_, begin, end)) {
      out_ += !first && row.shared == 0 && grouped_ ? "\\addlinespace\n" : "";
      writeRow(row, begin, end);
      first = false;
    }
    out_ += "\\end{longtable}\n";
    out_ += begin == 0 ? "" : "\\addtocounter{table}{-1}\n";  // a part of the same table
  }

  void writeHead(std::size_t begin, std::size_t end) {
    const auto lines = headLines(table_, begin, end);
    for (std::size_t line = 0; line < lines.size(); ++line) {
      const bool last = line + 1 == lines.size();
      std::string cells;
      std::string rules;
      std::size_t column = begin;
      for (const HeadCell& head : headsEndingAt(lines, line)) {
        cells.append(head.begin - column, '&');
        cells += headCell(head);
        rules += last ? ""
                      : fmt::format("\\cmidrule(lr){{{}-{}}}",
                                    labelWidths_.size() + head.begin - begin + 1,
                                    labelWidths_.size() + head.end - begin);
        column = head.end - 1;
      }
      cells.append(end > column ? end - 1 - column : 0, '&');
      out_ += last ? rowHeads() : std::string(labelColumnsBefore(), '&');
      out_ += end > begin && !labelWidths_.empty() ? " & " : "";
      out_.append(cells).append("\\\\").append(rules).append("\n");
    }
  }

  // A label stands on the lowest line that it reaches down to.
  static std::vector<HeadCell> headsEndingAt(const std::vector<std::vector<HeadCell>>& lines,
                                             std::size_t line) {
    std::vector<HeadCell> heads;
    for (const auto& level : lines) {
      std::copy_if(level.begin(), level.end(), std::back_inserter(heads),
                   [&](const HeadCell& head) { return head.bottom == line; });
    }
    std::sort(heads.begin(), heads.end(),
              [](const HeadCell& a, const HeadCell& b) { return a.begin < b.begin; });
    return heads;
  }

  std::size_t labelColumnsBefore() const {
    return labelWidths_.empty() ? 0 : labelWidths_.size() - 1;
  }

  std::string headCell(const HeadCell& head) {
    const std::size_t columns = head.end - head.begin;
    const bool spans = columns > 1;
    const auto lines = wrapped(visible(head.label->text), spanOf(head.begin, head.end));
    return fmt::format("\\multicolumn{{{}}}{{{}}}{{{}}}", columns, spans ? 'c' : 'r',
                       stacked(lines, spans ? 'c' : 'r', text_) + marksOf(head.label->notes));
  }

  std::string rowHeads() {
    std::string out;
    for (const RowHead& head : table_.rowHeads) {
      const std::string text = text_.escaped(head.text);
      out += (out.empty() ? "" : " & ");
      out +=
          head.width == 1 ? text : fmt::format("\\multicolumn{{{}}}{{l}}{{{}}}", head.width, text);
    }
    return out;
  }

  // A label that a row shares with the row above is printed once.
  void writeRow(const PanelRow& shown, std::size_t begin, std::size_t end) {
    const ReaderRow& row = table_.rows[shown.row];
    for (std::size_t h = 0; h < row.labels.size(); ++h) {
      const ReaderLabel& label = row.labels[h];
      out_ += h == 0 ? "" : " & ";
      out_ += h < shown.shared ? "" : text_.escaped(label.text) + marksOf(label.notes);
    }
    for (std::size_t c = begin; c < end; ++c) {
      out_ += (c > begin || !row.labels.empty() ? " & " : "") + cellText(row.cells[c], c);
    }
    out_ += "\\\\\n";
  }

  // What a number lacks behind its point is taken up by blanks of the same width; marks hang over.
  std::string cellText(const ReaderCell& cell, std::size_t column) {
    std::string marks = (cell.isAtRangeEnd ? text_.escaped(atRangeEnd) : "") + marksOf(cell.notes);
    if (cell.text.empty()) {
      return marks;
    }
    std::string out = text_.escaped(cell.text);
    out += marks.empty() ? "" : "\\rlap{" + marks + "}";
    const std::size_t has = fractionOf(cell.text).size();
    if (cell.text.find_first_of("0123456789") != std::string::npos && has < afterPoint_[column]) {
      const std::string missing(afterPoint_[column] - std::max(has, point_.size()), '0');
      out += "\\phantom{" + (has == 0 ? std::string(point_) : "") + missing + "}";
    }
    return out;
  }

  void writeNotes() {
    for (std::size_t i = 0; i < table_.footnotes.size(); ++i) {
      out_ += R"(\par\noindent\textsuperscript{)" + footnoteLetter(i) + "} " +
              text_.escaped(table_.footnotes[i]) + "\n";
    }
    for (const std::string& note : table_.notes) {
      out_ += "\\par\\noindent " + text_.escaped(note) + "\n";
    }
    out_ += "\\par\n";
  }

  const ReaderTable& table_;
  std::string_view point_;
  LatexText& text_;
  std::string out_;
  bool grouped_ = false;  // some rows share a label with the row above
  std::vector<std::size_t> labelWidths_;
  std::vector<std::size_t> widths_;      // of columns, in characters
  std::vector<std::size_t> afterPoint_;  // by column: the longest fraction, its point included
};

}  // namespace

std::string latexTable(const ReaderTable& table, const Context& context, LatexText& text) {
  return LatexTable(table, context, text).write();
}

}  // namespace render
