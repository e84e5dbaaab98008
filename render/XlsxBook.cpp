#include "render/XlsxBook.h"

#include <cmath>

#include "render/Columns.h"

namespace render {

namespace {

constexpr std::size_t longestText = 32767;  // characters that a cell can hold
constexpr std::size_t longestName = 31;     // of a sheet
constexpr time_t noTime = 315532800;        // 1980: a run's file does not hang on the clock
constexpr std::string_view notInNames = "[]:*?/\\";
constexpr std::string_view hexDigits = "0123456789abcdefABCDEF";

// What programs would read as the code of a character, "_x000D_", told from a text of that look.
std::string withoutCodes(std::string text) {
  constexpr std::size_t codeLength = 7;
  constexpr std::string_view escape = "_x005F";
  for (std::size_t at = 0; (at = text.find("_x", at)) != std::string::npos; ++at) {
    const std::string_view code = std::string_view(text).substr(at, codeLength);
    if (code.size() == codeLength && code.back() == '_' &&
        code.substr(2, 4).find_first_not_of(hexDigits) == std::string_view::npos) {
      text.insert(at, escape);
      at += escape.size();
    }
  }
  return text;
}

// The text as a cell can hold it; line breaks stay.
std::string cellText(std::string_view text) {
  std::string out;
  while (true) {
    const std::size_t end = text.find('\n');
    out += visible(text.substr(0, end));
    if (end == std::string_view::npos) {
      break;
    }
    out += '\n';
    text.remove_prefix(end + 1);
  }
  out = withoutCodes(std::move(out));
  if (const std::size_t end = endOfCharacters(out, longestText - 1); end < out.size()) {
    out.resize(end);
    out += "\u2026";
  }
  return out;
}

std::string sheetName(std::string_view name) {
  std::string out = visible(name);
  for (char& c : out) {
    c = notInNames.find(c) == std::string_view::npos ? c : ' ';
  }
  out.resize(endOfCharacters(out, longestName));
  out.erase(out.find_last_not_of(" '") + 1);
  return out;
}

// Text inside of a number format.
std::string literal(const std::string& text) {
  return "\"" + text + "\"";
}

}  // namespace

std::string xlsxPattern(const ReaderCell& cell) {
  const std::string& text = cell.text;
  std::string digits = text;
  if (text.starts_with('<')) {
    digits = literal(text);
  } else if (const std::size_t exponent = text.find('e'); exponent != std::string::npos) {
    const std::size_t point = text.find('.');
    const std::size_t decimals = point < exponent ? exponent - point - 1 : 0;
    digits = (decimals > 0 ? "0." + std::string(decimals, '0') : "0") + "E+00";
  } else {
    const std::size_t point = text.find('.');
    const std::size_t decimals = point == std::string::npos ? 0 : text.size() - point - 1;
    digits = decimals > 0 ? "0." + std::string(decimals, '0') : "0";
  }
  const std::string marks = (cell.isAtRangeEnd ? std::string(atRangeEnd) : "") +
                            (cell.notes.empty() ? "" : " " + footnoteMarks(cell.notes));
  const std::string pattern = digits + (marks.empty() ? "" : literal(marks));
  // What is shown without its sign has a pattern of its own for negative numbers.
  const bool hidesSign = cell.cell != nullptr && cell.cell->value < 0.0 && !text.starts_with('-');
  return hidesSign ? pattern + ";" + pattern : pattern;
}

XlsxBook::XlsxBook(const std::string& path, const std::string& title, const std::string& program)
    : book_(workbook_new(path.c_str())) {
  lxw_doc_properties properties{};
  std::string name = cellText(title);
  std::string maker = cellText(program);
  properties.title = name.data();
  properties.comments = maker.data();
  properties.created = noTime;
  expect(workbook_set_properties(book_, &properties));
}

XlsxBook::~XlsxBook() {
  close();
}

bool XlsxBook::close() {
  if (book_ != nullptr) {
    expect(workbook_close(book_));
    book_ = nullptr;
  }
  return whole_;
}

lxw_worksheet* XlsxBook::addSheet(std::string_view name) {
  return workbook_add_worksheet(book_, sheetName(name).c_str());
}

lxw_format* XlsxBook::style(Style style) {
  lxw_format*& format = styles_[style];
  if (format != nullptr || style == Style::Plain) {
    return format;
  }
  format = workbook_add_format(book_);
  switch (style) {
    case Style::Plain:
      break;
    case Style::Title:
      format_set_bold(format);
      format_set_font_size(format, 13);
      break;
    case Style::Head:
      format_set_bold(format);
      format_set_text_wrap(format);
      format_set_align(format, LXW_ALIGN_VERTICAL_BOTTOM);
      format_set_bottom(format, LXW_BORDER_THIN);
      break;
    case Style::Spanner:
      format_set_bold(format);
      format_set_align(format, LXW_ALIGN_CENTER);
      format_set_bottom(format, LXW_BORDER_THIN);
      break;
    case Style::Wrapped:
      format_set_text_wrap(format);
      format_set_align(format, LXW_ALIGN_VERTICAL_TOP);
      break;
    case Style::Code:
      format_set_font_name(format, "Courier New");
      break;
  }
  return format;
}

lxw_format* XlsxBook::numberStyle(const std::string& pattern) {
  lxw_format*& format = numberStyles_[pattern];
  if (format == nullptr) {
    format = workbook_add_format(book_);
    format_set_num_format(format, pattern.c_str());
    format_set_align(format, LXW_ALIGN_RIGHT);
  }
  return format;
}

void XlsxBook::writeText(lxw_worksheet* sheet, XlsxPlace at, std::string_view text, Style look) {
  expect(worksheet_write_string(sheet, at.row, at.column, cellText(text).c_str(), style(look)));
}

void XlsxBook::writeText(lxw_worksheet* sheet, XlsxPlace from, XlsxPlace to, std::string_view text,
                         Style look) {
  if (from.row == to.row && from.column == to.column) {
    writeText(sheet, from, text, look);
  } else {
    expect(worksheet_merge_range(sheet, from.row, from.column, to.row, to.column,
                                 cellText(text).c_str(), style(look)));
  }
}

void XlsxBook::writeNumber(lxw_worksheet* sheet, XlsxPlace at, const ReaderCell& cell) {
  using embedded::output::State;
  const bool isNumber =
      cell.cell != nullptr && cell.cell->state == State::Valid && std::isfinite(cell.cell->value);
  if (isNumber) {
    expect(worksheet_write_number(sheet, at.row, at.column, cell.cell->value,
                                  numberStyle(xlsxPattern(cell))));
    return;
  }
  // A count that stands in no cell of the document.
  if (cell.cell == nullptr && !cell.text.empty() &&
      cell.text.find_first_not_of("0123456789") == std::string::npos) {
    expect(worksheet_write_number(sheet, at.row, at.column, std::stod(cell.text),
                                  numberStyle(xlsxPattern(cell))));
    return;
  }
  const std::string marks = footnoteMarks(cell.notes);
  const std::string shown = cell.text + (cell.text.empty() || marks.empty() ? "" : " ") + marks;
  if (!shown.empty()) {
    expect(worksheet_write_string(sheet, at.row, at.column, shown.c_str(), numberStyle("@")));
  }
}

}  // namespace render
