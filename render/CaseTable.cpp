#include "render/CaseTable.h"

#include <algorithm>
#include <functional>

#include "render/Phrase.h"

namespace render {

namespace {

using embedded::output::CaseCounts;
using embedded::output::readerText;

// A column of counts: its labels, outermost first, and the count of a group.
struct CountColumn {
  std::vector<std::string> labels;
  std::function<std::uint64_t(const CaseCounts&)> count;
};

// The counts of a variable in a group; zero where the group says nothing of it.
CaseCounts::Missing missingOf(const CaseCounts& cases, const std::string& variable) {
  for (const auto& [name, missing] : cases.missing) {
    if (name == variable) {
      return missing;
    }
  }
  return {};
}

std::vector<CountColumn> allColumns(const Document& document, const Context& context) {
  std::vector<CountColumn> columns;
  columns.push_back({{phrase(context, "Read")}, [](const CaseCounts& c) { return c.read; }});
  columns.push_back(
      {{phrase(context, "Invalid weight")}, [](const CaseCounts& c) { return c.invalidWeight; }});
  for (const auto& [name, ignored] : document.data.cases.missing) {
    columns.push_back({{name, phrase(context, "System-missing")},
                       [name](const CaseCounts& c) { return missingOf(c, name).system; }});
    columns.push_back({{name, phrase(context, "User-missing")},
                       [name](const CaseCounts& c) { return missingOf(c, name).user; }});
  }
  return columns;
}

// Those that say something; the first always does.
std::vector<CountColumn> tellingColumns(const Document& document, const Context& context) {
  std::vector<CountColumn> columns = allColumns(document, context);
  const auto& groups = document.data.casesBySplit;
  columns.erase(std::remove_if(columns.begin() + 1, columns.end(),
                               [&](const CountColumn& column) {
                                 return std::none_of(
                                     groups.begin(), groups.end(),
                                     [&](const auto& g) { return column.count(g.second) > 0; });
                               }),
                columns.end());
  return columns;
}

void addHeads(const Document& document, const std::vector<CountColumn>& columns,
              ReaderTable& table) {
  for (const auto& variable : document.data.splits) {
    table.rowHeads.push_back({variable->label.empty() ? variable->name : variable->label});
  }
  for (std::size_t c = 0; c < columns.size(); ++c) {
    ReaderColumn& head = table.columns.emplace_back();
    for (const std::string& label : columns[c].labels) {
      head.labels.emplace_back().text = label;
    }
    const bool shares = c > 0 && head.labels.size() > 1 &&
                        columns[c - 1].labels.front() == columns[c].labels.front();
    head.shared = shares ? 1 : 0;
  }
  table.meanings.resize(columns.size());
}

}  // namespace

std::optional<ReaderTable> caseTable(const Document& document, const Context& context) {
  const auto& groups = document.data.casesBySplit;
  if (groups.empty() || document.data.splits.empty()) {
    return std::nullopt;
  }
  ReaderTable table;
  table.title = phrase(context, "Cases of the split groups");
  const std::vector<CountColumn> columns = tellingColumns(document, context);
  addHeads(document, columns, table);
  for (const auto& [split, cases] : groups) {
    ReaderRow& row = table.rows.emplace_back();
    row.split = split;
    for (const auto& value : document.splits[split].values) {
      row.labels.emplace_back().text = readerText(*value, *context.sentences);
    }
    if (table.rows.size() > 1) {
      const auto& above = table.rows[table.rows.size() - 2].labels;
      while (row.shared + 1 < row.labels.size() &&
             row.labels[row.shared].text == above[row.shared].text) {
        ++row.shared;
      }
    }
    for (const CountColumn& column : columns) {
      row.cells.emplace_back().text = std::to_string(column.count(cases));
    }
  }
  return table;
}

}  // namespace render
