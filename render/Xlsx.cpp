// xlsx: a workbook with a sheet for the run and one for each table. Cells hold the numbers
// themselves, to 16 digits, and their number formats show them as the other formats print them.
// Texts are always written as texts, so that none becomes a formula or a link.
//
// The library writes a file; it is made in the folder for temporary files and copied from there.
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <new>
#include <string>
#include <system_error>
#include <vector>

#include "embedded/output/Values.h"
#include "render/CaseTable.h"
#include "render/Columns.h"
#include "render/Messages.h"
#include "render/ReaderTable.h"
#include "render/Reading.h"
#include "render/Renderer.h"
#include "render/XlsxBook.h"
#include "render/XlsxParts.h"

namespace render {

namespace {

using embedded::output::readerText;
using Style = XlsxBook::Style;

constexpr lxw_row_t headRow = 2;          // below the title and the split group
constexpr std::size_t widestColumn = 60;  // in characters; wider texts hang over or break
constexpr double textColumn = 100.0;

lxw_col_t columnNumber(std::size_t column) {
  return static_cast<lxw_col_t>(column);
}

std::string textOf(const ReaderLabel& label) {
  const std::string marks = footnoteMarks(label.notes);
  return marks.empty() ? label.text : label.text + " " + marks;
}

// A table on its own sheet: title, split group, head lines, rows, footnotes.
class XlsxTable {
 public:
  XlsxTable(XlsxBook& book, lxw_worksheet* sheet, const ReaderTable& table, const Context& context)
      : book_(book),
        sheet_(sheet),
        table_(table),
        context_(context),
        labels_(table.labelColumns()) {}

  void write() {
    book_.writeText(sheet_, {0, 0}, table_.title, Style::Title);
    if (!table_.split.empty()) {
      book_.writeText(sheet_, {1, 0}, table_.split);
    }
    const lxw_row_t first = writeHead();
    worksheet_freeze_panes(sheet_, first, columnNumber(labels_));
    lxw_row_t row = first;
    for (const ReaderRow& shown : table_.rows) {
      writeRow(shown, row++);
    }
    ++row;
    for (std::size_t i = 0; i < table_.footnotes.size(); ++i) {
      book_.writeText(sheet_, {row++, 0}, footnoteLetter(i) + " " + table_.footnotes[i]);
    }
    for (const std::string& note : table_.notes) {
      book_.writeText(sheet_, {row++, 0}, note);
    }
    writeSentences(row + 1);
    setWidths();
  }

 private:
  // The row below the head.
  lxw_row_t writeHead() {
    const auto lines = headLines(table_, 0, table_.columns.size());
    const auto last = headRow + static_cast<lxw_row_t>(lines.size() - 1);
    std::size_t column = 0;
    for (const RowHead& head : table_.rowHeads) {
      book_.writeText(sheet_, {last, columnNumber(column)},
                      {last, columnNumber(column + head.width - 1)}, head.text, Style::Head);
      column += head.width;
    }
    for (const auto& line : lines) {
      for (const HeadCell& head : line) {
        book_.writeText(
            sheet_,
            {headRow + static_cast<lxw_row_t>(head.top), columnNumber(labels_ + head.begin)},
            {headRow + static_cast<lxw_row_t>(head.bottom), columnNumber(labels_ + head.end - 1)},
            textOf(*head.label), head.end - head.begin > 1 ? Style::Spanner : Style::Head);
      }
    }
    return last + 1;
  }

  // Row labels stand in every row, so that rows can be sorted and filtered.
  void writeRow(const ReaderRow& shown, lxw_row_t row) {
    for (std::size_t h = 0; h < shown.labels.size(); ++h) {
      if (const std::string text = textOf(shown.labels[h]); !text.empty()) {
        book_.writeText(sheet_, {row, columnNumber(h)}, text);
      }
    }
    for (std::size_t c = 0; c < shown.cells.size(); ++c) {
      book_.writeNumber(sheet_, {row, columnNumber(labels_ + c)}, shown.cells[c]);
    }
  }

  // The rows as sentences, where they are asked for.
  void writeSentences(lxw_row_t row) {
    for (const ReaderRow& shown : table_.rows) {
      const std::string one = context_.rowSentences ? rowSentence(table_, shown, context_) : "";
      if (!one.empty()) {
        book_.writeText(sheet_, {row++, 0}, one);
      }
    }
  }

  void setWidths() {
    std::vector<std::size_t> widths(labels_ + table_.columns.size(), 8);
    std::size_t column = 0;
    for (const RowHead& head : table_.rowHeads) {
      widths[column] = std::max(widths[column], columnsOf(head.text));
      column += head.width;
    }
    for (std::size_t c = 0; c < table_.columns.size(); ++c) {
      const auto& labels = table_.columns[c].labels;
      widths[labels_ + c] =
          std::max(widths[labels_ + c], labels.empty() ? 0 : longestWord(textOf(labels.back())));
    }
    for (const ReaderRow& row : table_.rows) {
      for (std::size_t h = 0; h < row.labels.size(); ++h) {
        widths[h] = std::max(widths[h], columnsOf(textOf(row.labels[h])));
      }
      for (std::size_t c = 0; c < row.cells.size(); ++c) {
        widths[labels_ + c] = std::max(widths[labels_ + c], columnsOf(row.cells[c].text) + 2);
      }
    }
    for (std::size_t c = 0; c < widths.size(); ++c) {
      const auto width = static_cast<double>(std::min(widths[c], widestColumn) + 2);
      worksheet_set_column(sheet_, columnNumber(c), columnNumber(c), width, nullptr);
    }
  }

  XlsxBook& book_;
  lxw_worksheet* sheet_;
  const ReaderTable& table_;
  const Context& context_;
  std::size_t labels_;  // columns of row labels
};

// How the run was made, the procedure's notes and the messages.
void writeRun(XlsxBook& book, const Document& document, const Context& context) {
  const std::string title(context.sentences->sentence(document.procedure));
  lxw_worksheet* sheet = book.addSheet(context.sentences->sentence("Run"));
  book.writeText(sheet, {0, 0}, title, Style::Title);
  auto facts = runFacts(document, context);
  for (const auto& note : document.notes) {
    facts.emplace_back(readerText(*note.label, *context.sentences),
                       readerText(*note.text, *context.sentences));
  }
  lxw_row_t row = headRow;
  std::size_t widest = 8;
  for (const auto& [label, text] : facts) {
    book.writeText(sheet, {row, 0}, label, Style::Wrapped);
    book.writeText(sheet, {row++, 1}, text, Style::Wrapped);
    widest = std::max(widest, columnsOf(label));
  }
  for (const auto& message : document.messages) {
    const std::string text = messageText(document, message, context);
    ++row;
    for (std::size_t at = 0; at < text.size();) {
      const std::size_t end = std::min(text.find('\n', at), text.size());
      book.writeText(sheet, {row++, 1}, std::string_view(text).substr(at, end - at),
                     at == 0 ? Style::Wrapped : Style::Code);
      at = end + 1;
    }
  }
  worksheet_set_column(sheet, 0, 0, static_cast<double>(widest + 2), nullptr);
  worksheet_set_column(sheet, 1, 1, textColumn, nullptr);
}

bool writeBook(const std::string& path, const Document& document, const Context& context) {
  XlsxBook book(path, std::string(context.sentences->sentence(document.procedure)),
                "proportions " + document.version);
  writeRun(book, document, context);
  int number = 0;
  const auto writeTable = [&](const ReaderTable& shown) {
    lxw_worksheet* sheet = book.addSheet(fmt::format("{} {}", ++number, shown.title));
    XlsxTable(book, sheet, shown, context).write();
  };
  if (const auto cases = caseTable(document, context)) {
    writeTable(*cases);
  }
  for (const Table& table : document.tables) {
    if (!table.cells.empty()) {
      writeTable(readerTable(document, table, context));
    }
  }
  return book.close();
}

// A file that the library can write to: it knows no streams.
class TemporaryFile {
 public:
  TemporaryFile() {
    std::error_code problem;
    folder_ = std::filesystem::temp_directory_path(problem);
    if (problem) {
      fail(problem.value());
    }
    std::string path = (folder_ / "proportions-XXXXXX").string();
    const int descriptor = mkstemp(path.data());
    if (descriptor < 0) {
      fail(errno);
    }
    close(descriptor);
    path_ = path;
  }
  ~TemporaryFile() { unlink(path_.c_str()); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::string& path() const { return path_; }

  void copyTo(std::ostream& out) const {
    std::vector<char> buffer(std::size_t{64} << 10U);
    errno = 0;
    std::ifstream in(path_, std::ios::binary);
    do {
      in.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
      out.write(buffer.data(), in.gcount());
    } while (in.good());
    // A stream that could not be read is bad; at its end it has only failed.
    if (in.bad() || !in.is_open()) {
      fail(errno);
    }
  }

  // Throws std::filesystem::filesystem_error with the folder and the reason, a number of errno.
  [[noreturn]] void fail(int reason) const {
    throw std::filesystem::filesystem_error("temporary file", folder_,
                                            {reason == 0 ? EIO : reason, std::generic_category()});
  }

 private:
  std::filesystem::path folder_;
  std::string path_;
};

}  // namespace

void renderXlsx(const Document& document, const Context& context, std::ostream& out) {
  Context plainNumbers = context;
  plainNumbers.colour = false;
  plainNumbers.decimalPoint = ".";  // the program that opens it has its own
  const TemporaryFile file;
  partsAreWhole();  // those of an older workbook are forgotten
  errno = 0;
  const bool isWritten = writeBook(file.path(), document, plainNumbers);
  const int reason = errno;
  if (!partsAreWhole()) {
    throw std::bad_alloc();
  }
  if (!isWritten) {
    file.fail(reason);
  }
  file.copyTo(out);
}

}  // namespace render
