#include "Cells.h"

#include <array>
#include <cstdio>

#include "Baselines.h"
#include "render/CaseTable.h"

namespace samples {

std::vector<render::ReaderTable> shownTables(const Document& document) {
  std::vector<render::ReaderTable> tables;
  const render::Context with = context();
  if (auto cases = render::caseTable(document, with)) {
    tables.push_back(std::move(*cases));
  }
  for (const auto& table : document.tables) {
    if (!table.cells.empty()) {
      tables.push_back(render::readerTable(document, table, with));
    }
  }
  return tables;
}

std::vector<std::string> provenance(const Document& document) {
  const auto& data = document.data;
  std::vector<std::string> words{data.source, data.fingerprint, document.version};
  if (!data.weight.empty()) {
    words.push_back(data.weight);
  }
  if (data.seed) {
    words.push_back(std::to_string(*data.seed));
  }
  return words;
}

std::string outputOf(const std::string& command) {
  std::string text;
  std::FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) {
    return text;
  }
  std::array<char, 4096> block{};
  for (std::size_t got = 0; (got = std::fread(block.data(), 1, block.size(), pipe)) > 0;) {
    text.append(block.data(), got);
  }
  return pclose(pipe) == 0 ? text : std::string();
}

}  // namespace samples
