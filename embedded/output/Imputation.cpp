// Adds pooled rows to the tables of a run, and says beside them how they were made.
#include "embedded/output/Imputation.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "embedded/output/ImputedTable.h"
#include "embedded/output/PooledRow.h"
#include "embedded/output/PooledSplits.h"

namespace embedded::output {

namespace {

constexpr const char* pooledValue = "pooled";
constexpr const char* heading = "Multiple Imputation";

// What is to be added to one table.
struct PooledTable {
  std::vector<PooledRow> rows;
  std::vector<TextPtr> methodsWithoutRule;
};

void addOnce(std::vector<TextPtr>& texts, const TextPtr& text) {
  const bool known =
      std::any_of(texts.begin(), texts.end(), [&](const TextPtr& t) { return *t == *text; });
  if (!known) {
    texts.push_back(text);
  }
}

PooledTable poolTable(const ImputedTable& table, const std::vector<ImputedTable>& all,
                      const Description& description, PoolingDf df) {
  const TableLinks links(table, all, description);
  PooledTable pooled;
  for (const ImputedRow& row : table.rows()) {
    const std::string_view rule = poolingRuleOf(table, row, description);
    if (!rule.empty()) {
      pooled.rows.push_back(poolRow(table, row, rule, links, df));
    } else if (const TextPtr method = table.methodOf(row)) {
      addOnce(pooled.methodsWithoutRule, method);
    }
  }
  std::stable_sort(pooled.rows.begin(), pooled.rows.end(),
                   [](const auto& a, const auto& b) { return a.place.user < b.place.user; });
  return pooled;
}

// Writes pooled rows into a table.
class TableWriter {
 public:
  TableWriter(Table& table, const std::vector<Index>& pooledSplits)
      : table_(table), statistics_(statisticsDimension(table)), pooledSplits_(pooledSplits) {}

  void write(const PooledRow& row) {
    at_ = row.place.at;
    split_ = pooledSplits_[row.place.user == none ? 0 : row.place.user];
    for (const PooledCell& pooled : row.cells) {
      Cell& cell = add(columnOf(pooled), pooled.value);
      cell.state = pooled.state;
      cell.format = pooled.format;
      cell.footnotes = pooled.note ? footnoteList(table_, pooled.note) : pooled.footnotes;
    }
    if (row.estimate) {
      writeDiagnostics(*row.estimate, row.df);
    }
  }

 private:
  Cell& add(Index column, double value) {
    Cell cell;
    cell.at = at_;
    cell.at[statistics_] = column;
    cell.split = split_;
    cell.value = value;
    table_.cells.push_back(cell);
    return table_.cells.back();
  }

  // A column that only pooled rows have stands right behind the one that it takes the place of.
  Index columnOf(const PooledCell& pooled) {
    if (pooled.label.empty()) {
      return pooled.column;
    }
    Dimension& dimension = table_.dimensions[statistics_];
    const Index parent = dimension.nodes[pooled.column].parent;
    const std::size_t known = dimension.nodes.size();
    const Index column = childNode(dimension, parent, Text::string(pooled.label), false);
    if (dimension.nodes.size() > known) {
      auto& children = dimension.nodes[parent].children;
      const auto beside = std::find(children.begin(), children.end(), pooled.column);
      std::rotate(beside + 1, children.end() - 1, children.end());
    }
    return column;
  }

  Cell& addDiagnostic(const char* label, double value) {
    Dimension& dimension = table_.dimensions[statistics_];
    const Index group = childNode(dimension, 0, Text::string(heading), true);
    return add(childNode(dimension, group, Text::string(label), false), value);
  }

  void writeDiagnostics(const PooledEstimate& estimate, const std::optional<double>& df) {
    addDiagnostic("Fraction of Missing Information", estimate.missingInformation);
    const bool finite = std::isfinite(estimate.increase);
    Cell& increase =
        addDiagnostic("Relative Increase in Variance", finite ? estimate.increase : 0.0);
    if (!finite) {
      increase.state = State::Missing;
      increase.footnotes = footnoteList(table_, Text::string("Imputations without variance ..."));
    }
    addDiagnostic("Relative Efficiency", estimate.efficiency);
    if (df && std::isfinite(*df)) {
      addDiagnostic("Degrees of Freedom", *df);
    }
  }

  Table& table_;
  Index statistics_;
  const std::vector<Index>& pooledSplits_;
  std::array<Index, maxDimensions> at_{};
  Index split_ = none;
};

class Pooling {
 public:
  Pooling(Document& document, const Description& description, PoolingDf df)
      : document_(document),
        description_(description),
        df_(df),
        splits_(readPooledSplits(document)),
        order_(splits_) {}

  void apply() {
    if (order_.imputations < 2) {
      return;
    }
    const std::vector<PooledTable> pooled = poolTables();
    addSplitGroups();
    for (std::size_t i = 0; i < pooled.size(); ++i) {
      TableWriter writer(document_.tables[i], pooledSplits_);
      for (const PooledRow& row : pooled[i].rows) {
        writer.write(row);
      }
      markCells(document_.tables[i]);
    }
    tell();
    for (std::size_t i = 0; i < pooled.size(); ++i) {
      tellMethods(*document_.tables[i].title, pooled[i].methodsWithoutRule);
    }
  }

 private:
  // Before anything is written: what is pooled refers to the cells of the tables.
  std::vector<PooledTable> poolTables() const {
    std::vector<ImputedTable> tables;
    tables.reserve(document_.tables.size());
    for (const Table& table : document_.tables) {
      tables.emplace_back(table, description_, splits_, order_);
    }
    std::vector<PooledTable> pooled;
    pooled.reserve(tables.size());
    for (const ImputedTable& table : tables) {
      pooled.push_back(poolTable(table, tables, description_, df_));
    }
    return pooled;
  }

  // A pooled split group for each of the user's, or one alone; none for those that no imputation
  // has.
  void addSplitGroups() {
    const std::size_t users = std::max<std::size_t>(splits_.userGroups.size(), 1);
    std::vector<Index> original(users, none);
    std::vector<bool> imputed(users, false);
    for (Index split = 0; split < splits_.number.size(); ++split) {
      const std::size_t user = splits_.user[split] == none ? 0 : splits_.user[split];
      if (order_.ofSplit[split] >= 0) {
        imputed[user] = true;
      } else {
        original[user] = split;
      }
    }
    const TextPtr value =
        Text::ofValue(document_.data.splits.front(), std::string(pooledValue), false);
    pooledSplits_.assign(users, none);
    for (std::size_t user = 0; user < users; ++user) {
      if (!imputed[user]) {
        warnOfGroup(original[user]);
        continue;
      }
      pooledSplits_[user] = static_cast<Index>(document_.splits.size());
      SplitGroup group{{value}};
      if (user < splits_.userGroups.size()) {
        const auto& values = splits_.userGroups[user].values;
        group.values.insert(group.values.end(), values.begin(), values.end());
      }
      document_.splits.push_back(std::move(group));
    }
  }

  void warnOfGroup(Index split) {
    Message& message = add(Severity::Warning, Text::string("Split group without imputations ..."));
    message.split = split;
  }

  void tell() {
    add(Severity::Note,
        Text::composite(
            df_ == PoolingDf::BarnardRubin
                ? "Pooled over ^1 imputations, degrees of freedom of Barnard and Rubin ..."
                : "Pooled over ^1 imputations, degrees of freedom of Rubin ...",
            {Text::number(order_.imputations, NumberFormat::Count)}));
  }

  void tellMethods(const Text& title, const std::vector<TextPtr>& methods) {
    if (!methods.empty()) {
      add(Severity::Note,
          Text::composite("No pooling rule in ^1 for [%1:, ^1:]2 ...",
                          {std::make_shared<const Text>(title), Text::list(methods)}));
    }
  }

  Message& add(Severity severity, TextPtr text) {
    Message message;
    message.severity = severity;
    message.text = std::move(text);
    document_.messages.push_back(std::move(message));
    return document_.messages.back();
  }

  Document& document_;
  const Description& description_;
  PoolingDf df_;
  PooledSplits splits_;
  ImputationOrder order_;
  std::vector<Index> pooledSplits_;  // by the user's split group
};

}  // namespace

void poolImputations(Document& document, const Description& description, PoolingDf df) {
  Pooling(document, description, df).apply();
}

}  // namespace embedded::output
