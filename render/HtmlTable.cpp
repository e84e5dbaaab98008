#include "render/HtmlTable.h"

#include <algorithm>
#include <vector>

#include "render/HtmlText.h"
#include "render/Phrase.h"

namespace render {

namespace {

using embedded::output::State;

constexpr std::size_t mostPadding = 12;  // decimals that cells are padded by

std::string span(const char* attribute, std::size_t over) {
  return over > 1 ? " " + std::string(attribute) + "=\"" + std::to_string(over) + "\"" : "";
}

// The digits after the decimal point that a text shows; none for a text without a point.
std::size_t decimalsOf(std::string_view text, std::string_view point) {
  const std::size_t at = text.find(point);
  if (at == std::string_view::npos) {
    return 0;
  }
  const std::string_view rest = text.substr(at + point.size());
  return std::min(rest.find_first_not_of("0123456789"), rest.size());
}

class HtmlTable {
 public:
  HtmlTable(const ReaderTable& table, const std::string& id, const Context& context,
            std::ostream& out)
      : table_(table),
        id_(id),
        context_(context),
        out_(out),
        labels_(table.labelColumns()),
        firstPage_(htmlFirstPage(table)),
        linked_(table.footnotes.size(), false) {}

  void write() {
    measure();
    const std::string caption = id_ + "-caption";
    out_ << R"(<div class="scroll" role="region" tabindex="0" aria-labelledby=")" << caption
         << "\">\n<table data-rows=\"" << table_.rows.size() << "\">\n<caption id=\"" << caption
         << "\">" << htmlText(table_.title);
    if (!table_.split.empty()) {
      out_ << " <span class=\"split\">" << htmlText(table_.split) << "</span>";
    }
    out_ << "</caption>\n";
    writeHead();
    writeRows(0, firstPage_);
    out_ << "</table>\n";
    if (firstPage_ < table_.rows.size()) {
      out_ << "<noscript class=\"more\"><table>\n";
      writeHead();
      writeRows(firstPage_, table_.rows.size());
      out_ << "</table></noscript>\n";
    }
    out_ << "</div>\n";
    writeNotes();
  }

 private:
  // How many decimals the cells of each column have at most, and how many rows a label spans.
  void measure() {
    decimals_.assign(table_.columns.size(), 0);
    spans_.assign(table_.rows.size(), std::vector<std::size_t>(labels_, 0));
    std::vector<std::size_t> begin(labels_, 0);
    for (std::size_t r = 0; r < table_.rows.size(); ++r) {
      const ReaderRow& row = table_.rows[r];
      for (std::size_t h = 0; h < labels_; ++h) {
        begin[h] = h < sharedBy(r) ? begin[h] : r;
        ++spans_[begin[h]][h];
      }
      for (std::size_t c = 0; c < row.cells.size(); ++c) {
        decimals_[c] = std::max(decimals_[c], decimalsOf(row.cells[c].text, context_.decimalPoint));
      }
    }
  }

  void writeHead() {
    const auto lines = headLines(table_, 0, table_.columns.size());
    out_ << "<thead>\n";
    for (std::size_t line = 0; line < lines.size(); ++line) {
      out_ << "<tr>";
      if (line == 0) {
        writeRowHeads(lines.size());
      }
      for (const HeadCell& head : lines[line]) {
        const bool isGroup = head.bottom + 1 < lines.size();
        out_ << "<th scope=\"" << (isGroup ? "colgroup" : "col") << "\""
             << span("colspan", head.end - head.begin)
             << span("rowspan", head.bottom - head.top + 1) << ">" << htmlText(head.label->text);
        writeMarks(head.label->notes, false);
        out_ << "</th>";
      }
      out_ << "</tr>\n";
    }
    out_ << "</thead>\n";
  }

  // Split groups have rows of their own and no column.
  void writeRowHeads(std::size_t height) {
    for (std::size_t h = table_.splitHeads; h < table_.rowHeads.size(); ++h) {
      const RowHead& head = table_.rowHeads[h];
      out_ << R"(<th class="l" scope=")" << (head.width > 1 ? "colgroup" : "col") << "\""
           << span("colspan", head.width) << span("rowspan", height) << ">" << htmlText(head.text)
           << "</th>";
    }
  }

  // Leading labels that the row has in common with the row above it on the page.
  std::size_t sharedBy(std::size_t r) const {
    return r == 0 || r == firstPage_ ? 0 : table_.rows[r].shared;
  }

  void writeRows(std::size_t begin, std::size_t end) {
    out_ << "<tbody>\n";
    for (std::size_t r = begin; r < end; ++r) {
      const ReaderRow& row = table_.rows[r];
      if (table_.splitHeads > 0 && (r == begin || row.shared < table_.splitHeads)) {
        writeGroup(row, r > begin);
      }
      out_ << "<tr>";
      writeLabels(r, row);
      for (std::size_t c = 0; c < row.cells.size(); ++c) {
        writeCell(row.cells[c], decimals_[c]);
      }
      out_ << "</tr>\n";
    }
    out_ << "</tbody>\n";
  }

  void writeGroup(const ReaderRow& row, bool endsAnother) {
    out_ << (endsAnother ? "</tbody>\n<tbody>\n" : "")
         << R"(<tr class="group"><th scope="rowgroup")"
         << span("colspan", labels_ - table_.splitHeads + table_.columns.size()) << "><span>"
         << htmlText(splitOfRow(table_, row)) << "</span></th></tr>\n";
  }

  // Labels that the row does not share with the row above; empty ones widen the one before.
  void writeLabels(std::size_t r, const ReaderRow& row) {
    for (std::size_t h = std::max(sharedBy(r), table_.splitHeads); h < labels_;) {
      std::size_t end = h + 1;
      while (end < labels_ && row.labels[end].text.empty()) {
        ++end;
      }
      out_ << "<th scope=\"row\"" << span("colspan", end - h) << span("rowspan", spans_[r][h])
           << ">" << htmlText(row.labels[h].text);
      writeMarks(row.labels[h].notes, false);
      out_ << "</th>";
      h = end;
    }
  }

  void writeCell(const ReaderCell& cell, std::size_t most) {
    out_ << "<td>" << htmlText(cell.text);
    writeMarks(cell.notes, cell.isAtRangeEnd);
    const std::size_t has = decimalsOf(cell.text, context_.decimalPoint);
    if (has > 0 && has < most) {
      out_ << "<i class=\"p" << std::min(most - has, mostPadding) << "\"></i>";
    }
    out_ << "</td>";
  }

  // The marks of a label or cell, each a link; the first of a footnote is where it links back.
  void writeMarks(const NoteList& notes, bool isAtRangeEnd) {
    if (notes.empty() && !isAtRangeEnd) {
      return;
    }
    out_ << "<sup>" << (isAtRangeEnd ? atRangeEnd : "");
    for (std::size_t i = 0; i < notes.size(); ++i) {
      const std::string letter = footnoteLetter(notes[i]);
      out_ << (i == 0 ? "" : ",") << "<a href=\"#" << id_ << "-note-" << letter << "\"";
      if (!linked_[notes[i]]) {
        out_ << " id=\"" << id_ << "-mark-" << letter << "\"";
        linked_[notes[i]] = true;
      }
      out_ << ">" << letter << "</a>";
    }
    out_ << "</sup>";
  }

  void writeNotes() {
    if (table_.footnotes.empty() && table_.notes.empty()) {
      return;
    }
    out_ << "<ul class=\"notes\">\n";
    for (std::size_t n = 0; n < table_.footnotes.size(); ++n) {
      const std::string letter = footnoteLetter(n);
      out_ << "<li id=\"" << id_ << "-note-" << letter << "\"><sup>" << letter << "</sup> "
           << htmlText(table_.footnotes[n]);
      if (linked_[n]) {
        out_ << " <a href=\"#" << id_ << "-mark-" << letter << "\" aria-label=\""
             << htmlText(phrase(context_, "Back to the mark ^1", {letter})) << "\">\u21a9</a>";
      }
      out_ << "</li>\n";
    }
    for (const std::string& note : table_.notes) {
      out_ << "<li>" << htmlText(note) << "</li>\n";
    }
    out_ << "</ul>\n";
  }

  const ReaderTable& table_;
  const std::string& id_;
  const Context& context_;
  std::ostream& out_;
  std::size_t labels_;
  std::size_t firstPage_;                        // rows on it
  std::vector<std::vector<std::size_t>> spans_;  // by row and label; 0: spanned by one above
  std::vector<std::size_t> decimals_;            // by column
  std::vector<bool> linked_;                     // by footnote: whether a mark links to it
};

}  // namespace

std::size_t htmlFirstPage(const ReaderTable& table) {
  const std::size_t all = table.rows.size();
  for (std::size_t r = htmlPageRows; r < std::min(all, htmlPageRows * 3 / 2); ++r) {
    if (table.rows[r].shared < table.splitHeads) {
      return r;
    }
  }
  return std::min(all, htmlPageRows);
}

void writeHtmlTable(const ReaderTable& table, const std::string& id, const Context& context,
                    std::ostream& out) {
  HtmlTable(table, id, context, out).write();
}

}  // namespace render
