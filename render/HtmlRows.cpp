#include "render/HtmlRows.h"

#include <algorithm>

#include "render/HtmlTable.h"
#include "render/HtmlText.h"

namespace render {

void writeHtmlRows(const ReaderTable& table, std::string_view cssClass,
                   const std::function<std::string(std::size_t row)>& item, std::ostream& out) {
  const auto write = [&](std::size_t begin, std::size_t end) {
    for (std::size_t r = begin; r < end; ++r) {
      if (table.splitHeads > 0 && (r == begin || table.rows[r].shared < table.splitHeads)) {
        out << "<li class=\"head\">" << htmlText(splitOfRow(table, table.rows[r])) << "</li>\n";
      }
      const std::string content = item(r);
      out << (content.empty() ? "<li hidden>" : "<li>") << content << "</li>\n";
    }
  };
  const std::size_t firstPage = htmlFirstPage(table);
  out << "<ol class=\"" << cssClass << "\" data-rows>\n";
  write(0, firstPage);
  out << "</ol>\n";
  if (firstPage < table.rows.size()) {
    out << R"(<noscript class="more"><ol class=")" << cssClass << "\">\n";
    write(firstPage, table.rows.size());
    out << "</ol></noscript>\n";
  }
}

}  // namespace render
