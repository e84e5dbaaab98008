#include <algorithm>
#include <array>

#include "render/Renderer.h"

namespace render {

namespace {

constexpr std::array table{
    Format{"text", "txt", Content::Text, false, true, renderText},
    Format{"json", "json", Content::Text, true, true, renderJson},
    Format{"csv", "csv", Content::Text, true, false, renderCsv, renderCsvHeader, renderCsvRows},
    Format{"html", "html htm", Content::Text, false, true, renderHtml},
    Format{"markdown", "md markdown", Content::Text, false, true, renderMarkdown},
    Format{"latex", "tex", Content::Text, false, true, renderLatex},
    Format{"xlsx", "xlsx", Content::Bytes, false, true, renderXlsx},
};

bool lists(std::string_view endings, std::string_view ending) {
  for (std::size_t at = 0; at < endings.size();) {
    const std::size_t end = std::min(endings.find(' ', at), endings.size());
    if (endings.substr(at, end - at) == ending) {
      return true;
    }
    at = end + 1;
  }
  return false;
}

}  // namespace

std::span<const Format> formats() {
  return table;
}

const Format* findFormat(std::string_view name) {
  const auto found =
      std::find_if(table.begin(), table.end(), [&](const Format& f) { return f.name == name; });
  return found == table.end() ? nullptr : &*found;
}

const Format* formatOfFile(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos) {
    return nullptr;
  }
  const auto found = std::find_if(table.begin(), table.end(), [&](const Format& f) {
    return lists(f.endings, path.substr(dot + 1));
  });
  return found == table.end() ? nullptr : &*found;
}

}  // namespace render
