#include "render/Footnotes.h"

namespace render {

namespace {

void append(std::string& text, std::string_view separator, std::string_view more) {
  if (!text.empty() && !more.empty()) {
    text += separator;
  }
  text += more;
}

std::string printed(const std::vector<TextPtr>& notes, std::string_view separator,
                    const Footnotes::Print& print) {
  std::string text;
  for (const TextPtr& note : notes) {
    append(text, separator, print(*note));
  }
  return text;
}

bool hasNotes(const Dimension& dimension) {
  for (const Node& node : dimension.nodes) {
    if (!node.footnotes.empty()) {
      return true;
    }
  }
  return false;
}

}  // namespace

Footnotes::Footnotes(const Table& table, std::string_view separator, const Print& print)
    : separator_(separator),
      nodes_(table, [sign = separator_, print](const Dimension& dimension, Index node) {
        std::string text;
        for (; node != none; node = dimension.nodes[node].parent) {
          append(text, sign, printed(dimension.nodes[node].footnotes, sign, print));
        }
        return text;
      }) {
  for (const auto& list : table.footnoteLists) {
    lists_.push_back(printed(list, separator, print));
  }
  for (std::size_t d = 0; d < table.dimensions.size(); ++d) {
    if (hasNotes(table.dimensions[d])) {
      notedDimensions_.push_back(d);
    }
  }
}

std::string_view Footnotes::of(const Cell& cell) {
  joined_.clear();
  if (cell.footnotes != none) {
    joined_ = lists_[cell.footnotes];
  }
  for (const std::size_t d : notedDimensions_) {
    append(joined_, separator_, nodes_.of(d, cell.at[d]));
  }
  return joined_;
}

}  // namespace render
