#include <algorithm>
#include <array>

#include "render/Binary.h"
#include "render/Renderer.h"

namespace render {

namespace {

constexpr std::array table{
    Format{"text", "txt", false, true, renderText},
    Format{"json", "json", true, true, renderJson},
    Format{"csv", "csv", true, false, renderCsv, renderCsvHeader, renderCsvRows},
    Format{"html", "html htm", false, true, renderHtml},
    Format{"markdown", "md markdown", false, true, renderMarkdown},
    Format{"latex", "tex", false, true, renderLatex},
    Format{"xlsx", "xlsx", false, true, renderXlsx},
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

bool isBinary(const Format& format) {
  return format.render == renderXlsx;
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
