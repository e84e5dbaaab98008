// The footnotes of a cell as one text: its own first, then those of its categories and their
// groups. Made once for cells that have the same ones.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "render/NodeTexts.h"

namespace render {

class Footnotes {
 public:
  using Print = std::function<std::string(const embedded::output::Text&)>;

  // Refers to the table, which must outlive this.
  Footnotes(const Table& table, std::string_view separator, const Print& print);

  // The cell's footnotes with the separator between them.
  std::string_view of(const Cell& cell);

 private:
  std::string separator_;
  std::vector<std::string> lists_;            // by list of the table
  NodeTexts nodes_;                           // of a category and the groups above it
  std::vector<std::size_t> notedDimensions_;  // those with a footnote on some node
  std::string joined_;
};

}  // namespace render
