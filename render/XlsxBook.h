// A workbook under way: the library's file, with the styles that its cells share.
#pragma once

#include <xlsxwriter.h>

#include <map>
#include <string>
#include <string_view>

#include "render/ReaderTable.h"

namespace render {

// A cell's place, counted from 0.
struct XlsxPlace {
  lxw_row_t row = 0;
  lxw_col_t column = 0;
};

class XlsxBook {
 public:
  enum class Style { Plain, Title, Head, Spanner, Wrapped, Code };

  // Begins a workbook in the file, to which close() writes it.
  XlsxBook(const std::string& path, const std::string& title, const std::string& program);
  ~XlsxBook();
  XlsxBook(const XlsxBook&) = delete;
  XlsxBook& operator=(const XlsxBook&) = delete;

  // A sheet whose name begins so. Names are cut to what programs allow, and numbered.
  lxw_worksheet* addSheet(std::string_view name);

  // A text, which no program takes for anything else.
  void writeText(lxw_worksheet* sheet, XlsxPlace at, std::string_view text,
                 Style look = Style::Plain);
  // A text over all cells from one to another.
  void writeText(lxw_worksheet* sheet, XlsxPlace from, XlsxPlace to, std::string_view text,
                 Style look);
  // The cell's number, shown as its text is, or what stands for it when it has none.
  void writeNumber(lxw_worksheet* sheet, XlsxPlace at, const ReaderCell& cell);

  // Whether the whole workbook was written; nothing can be added afterwards.
  bool close();

 private:
  lxw_format* style(Style style);
  lxw_format* numberStyle(const std::string& pattern);
  void expect(lxw_error result) { whole_ = whole_ && result == LXW_NO_ERROR; }

  lxw_workbook* book_;
  std::map<Style, lxw_format*> styles_;
  std::map<std::string, lxw_format*, std::less<>> numberStyles_;
  bool whole_ = true;
};

// The number format that shows a number as the text of its cell does, with the mark of a range end
// and those of footnotes after it.
std::string xlsxPattern(const ReaderCell& cell);

}  // namespace render
