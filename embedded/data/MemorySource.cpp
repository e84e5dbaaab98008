#include "embedded/data/MemorySource.h"

#include <algorithm>
#include <cctype>

namespace embedded::data {

namespace {

Variable numericVariable(output::VariableInfo info) {
  Variable variable;
  variable.name = info.name;
  variable.upperName = info.name;
  std::transform(info.name.begin(), info.name.end(), variable.upperName.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  variable.columnType = "DOUBLE";
  variable.info = std::make_shared<const output::VariableInfo>(std::move(info));
  return variable;
}

// The one block of the table, once.
class MemoryStream final : public CaseStream {
 public:
  explicit MemoryStream(const CaseBlock& block) : block_(block) {}

  bool next(CaseBlock& block) override {
    if (done_ || block_.count == 0) {
      return false;
    }
    block = block_;
    done_ = true;
    return true;
  }

 private:
  CaseBlock block_;
  bool done_ = false;
};

}  // namespace

Dictionary dictionaryOf(const MemoryTable& table) {
  Dictionary dictionary;
  for (const output::VariableInfo& info : table.variables) {
    dictionary.variables.push_back(numericVariable(info));
  }
  dictionary.weight = static_cast<int>(dictionary.variables.size());
  output::VariableInfo weight;
  weight.name = table.weight;
  dictionary.variables.push_back(numericVariable(std::move(weight)));
  return dictionary;
}

MemorySource::MemorySource(const MemoryTable& table) {
  for (std::size_t i = 0; i < table.rows.size(); ++i) {
    if (table.counts[i] == 0) {
      continue;
    }
    rows_.push_back(table.rows[i]);
    counts_.push_back(table.counts[i]);
    weights_.push_back(static_cast<double>(table.counts[i]));
    rows_.back().push_back(weights_.back());
  }
  layout_.offsetOfVariable.assign(table.variables.size() + 1, -1);
}

void MemorySource::use(std::span<const int> columns) {
  const int weight = static_cast<int>(layout_.offsetOfVariable.size()) - 1;
  layout_.columns.assign(columns.begin(), columns.end());
  if (std::find(columns.begin(), columns.end(), weight) == columns.end()) {
    layout_.columns.push_back(weight);
  }
  for (const int column : layout_.columns) {
    layout_.offsetOfVariable[static_cast<std::size_t>(column)] = static_cast<int>(layout_.words++);
  }
  for (const auto& row : rows_) {
    for (const int column : layout_.columns) {
      words_.push_back({.number = row[static_cast<std::size_t>(column)]});
    }
  }
}

std::unique_ptr<CaseStream> MemorySource::open() {
  return std::make_unique<MemoryStream>(CaseBlock{.rows = words_.data(),
                                                  .weights = weights_.data(),
                                                  .counts = counts_.data(),
                                                  .count = rows_.size(),
                                                  .endsGroup = true});
}

}  // namespace embedded::data
