// Texts of the nodes of a table's dimensions, each made once however many cells it stands at.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "render/Grid.h"

namespace render {

class NodeTexts {
 public:
  // `make` gives the text of a node of a dimension.
  using Make = std::function<std::string(const Dimension& dimension, Index node)>;

  // Refers to the table, which must outlive this.
  NodeTexts(const Table& table, Make make) : table_(&table), make_(std::move(make)) {
    for (const Dimension& dimension : table.dimensions) {
      texts_.emplace_back(dimension.nodes.size());
    }
  }

  const std::string& of(std::size_t dimension, Index node) {
    std::optional<std::string>& text = texts_[dimension][node];
    if (!text) {
      text = make_(table_->dimensions[dimension], node);
    }
    return *text;
  }

 private:
  const Table* table_;
  Make make_;
  std::vector<std::vector<std::optional<std::string>>> texts_;
};

}  // namespace render
