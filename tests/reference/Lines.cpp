#include "reference/Lines.h"

#include <fstream>
#include <stdexcept>
#include <string_view>

namespace reference {

std::vector<Line> readLines(const std::string& file) {
  constexpr std::string_view start = R"({"id":")";
  std::ifstream in(std::string(TEST_DATA) + "/" + file);
  std::vector<Line> lines;
  for (std::string text; std::getline(in, text);) {
    const std::size_t end = text.find('"', start.size());
    if (!text.starts_with(start) || end == std::string::npos) {
      throw std::runtime_error(file + ": a line does not begin with its id: " + text);
    }
    lines.push_back({text.substr(start.size(), end - start.size()), text});
  }
  if (lines.empty()) {
    throw std::runtime_error("nothing in " + file);
  }
  return lines;
}

}  // namespace reference
