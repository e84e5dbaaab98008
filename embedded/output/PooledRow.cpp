// From what the imputations say in a row to one row: which formula of Rubin.h is asked for what
// stands in the description, where its arguments stand in the tables of the run.
#include "embedded/output/PooledRow.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

namespace embedded::output {

namespace {

constexpr std::string_view estimates = "rubin";
constexpr double usualLevel = 95.0;
constexpr double infinity = std::numeric_limits<double>::infinity();

const ImputedTable* find(const std::vector<ImputedTable>& all, std::string_view title) {
  const auto found = std::find_if(all.begin(), all.end(), [&](const ImputedTable& table) {
    return table.table().title->id == title;
  });
  return found == all.end() || title.empty() ? nullptr : &*found;
}

bool isResult(Role role) {
  return role == Role::Lower || role == Role::Upper || role == Role::Statistic ||
         role == Role::POneSided || role == Role::PTwoSided;
}

bool same(const Cell* a, const Cell* b) {
  return a == b || (a != nullptr && b != nullptr && a->state == b->state && a->value == b->value);
}

bool agree(const ImputedTable& table, const ImputedRow& row, Index column) {
  const auto cells = table.cellsOf(row, column);
  return std::all_of(cells.begin(), cells.end(),
                     [&](const Cell* cell) { return same(cell, cells.front()); });
}

// The mean of a column over the imputations; nothing where one of them has no number there.
std::optional<double> meanOf(const ImputedTable& table, const ImputedRow& row, Index column) {
  const std::vector<double> values = table.valuesOf(row, column);
  if (column == none || values.size() < row.cells.size()) {
    return std::nullopt;
  }
  const std::vector<double> exact(values.size(), 0.0);
  return poolEstimates(values, exact, std::nullopt, PoolingDf::Rubin).estimate;
}

// The estimate under a label with its standard error.
std::optional<PooledEstimate> poolIn(const ImputedTable& table, const ImputedRow& row,
                                     std::string_view label, std::optional<double> completeDf,
                                     PoolingDf rule) {
  const auto values = table.valuesOf(row, table.columnOf(row, label));
  const auto errors = table.valuesOf(row, table.columnOf(row, Role::StandardError));
  if (values.size() < row.cells.size() || errors.size() < row.cells.size()) {
    return std::nullopt;
  }
  return poolEstimates(values, errors, completeDf, rule);
}

class RowPooling {
 public:
  RowPooling(const ImputedTable& table, const ImputedRow& row, std::string_view rule,
             const TableLinks& links, PoolingDf df)
      : table_(table), row_(row), rule_(rule), links_(links), df_(df) {
    for (const Index column : table.columnsOf(row)) {
      if (isPooled(column)) {
        columns_.push_back(column);
      }
    }
    result_.place = row.place;
    result_.estimate = poolIn(table, row, table.meaning().estimate, completeDf(), df);
  }

  PooledRow pool() {
    const auto all = table_.columnsOf(row_);
    if (std::all_of(all.begin(), all.end(),
                    [&](Index column) { return agree(table_, row_, column); })) {
      takeAgreed();
      return std::move(result_);
    }
    if (result_.estimate) {
      computeInterval(*result_.estimate);
      test_ = pooledTest(*result_.estimate);
    }
    for (const Index column : columns_) {
      result_.cells.push_back(cellFor(column));
    }
    return std::move(result_);
  }

 private:
  bool isPooled(Index column) const {
    const Meaning& meaning = table_.meaningOf(column);
    return meaning.pooling == estimates || (rule_ != estimates && isResult(meaning.role));
  }

  // Degrees of freedom of the complete data: the counts less a number. Where the imputations have
  // different counts, it is their mean.
  std::optional<double> completeDf() const {
    const auto& freedom = table_.meaning().degreesOfFreedom;
    if (!freedom) {
      return std::nullopt;
    }
    const ImputedTable* counts = freedom->table.empty() ? &table_ : links_.counts();
    const auto rows =
        freedom->table.empty() ? std::vector<const ImputedRow*>{&row_} : links_.countsOf(row_);
    double total = 0.0;
    for (const ImputedRow* row : rows) {
      const auto mean = meanOf(*counts, *row, counts->columnOf(*row, freedom->counts));
      if (!mean) {
        return std::nullopt;
      }
      total += *mean;
      if (freedom->take == "first") {
        break;
      }
    }
    return rows.empty() ? std::nullopt : std::optional(std::max(0.0, total - freedom->minus));
  }

  void takeAgreed() {
    for (const Index column : columns_) {
      const Cell& cell = *table_.cellsOf(row_, column).front();
      result_.cells.push_back({.column = column,
                               .label = {},
                               .state = cell.state,
                               .value = cell.value,
                               .format = cell.format,
                               .footnotes = cell.footnotes,
                               .note = nullptr});
    }
    if (!result_.estimate) {
      result_.estimate = PooledEstimate{};
    }
    result_.df = infinity;
  }

  // The level that stands in the label above a bound, in percent.
  double levelAbove(Index bound) const {
    const auto& nodes = table_.table().dimensions[table_.statistics()].nodes;
    const auto& items = nodes[nodes[bound].parent].label->items;
    const double* level = items.empty() ? nullptr : std::get_if<double>(&items.front()->value);
    return level == nullptr ? usualLevel : *level;
  }

  void computeInterval(const PooledEstimate& estimate) {
    result_.df = estimate.df;
    const Index lower = table_.columnOf(row_, Role::Lower);
    const Index upper = table_.columnOf(row_, Role::Upper);
    if (lower == none || upper == none) {
      return;
    }
    if (rule_ == "wald") {
      interval_ = pooledWald(estimate, levelAbove(lower),
                             table_.meaningOf(lower).rangeLow.value_or(-infinity),
                             table_.meaningOf(upper).rangeHigh.value_or(infinity));
    } else if (rule_ == "wilson") {
      result_.df = rubinDf(estimate.imputations, estimate.increase);
      if (const auto trials = meanOf(table_, row_, table_.columnOf(row_, Role::Trials))) {
        interval_ = pooledWilson(estimate, *trials, levelAbove(lower));
      }
    } else if (rule_ == "newcombe") {
      result_.df.reset();
      computeNewcombe(levelAbove(lower));
    }
  }

  void computeNewcombe(double level) {
    const auto rows = links_.groupsOf(row_);
    if (rows.size() != 2) {
      return;
    }
    const ImputedTable& groups = *links_.groups();
    const auto& label = table_.meaning().groupsEstimate;
    const auto first = poolIn(groups, *rows[0], label, std::nullopt, df_);
    const auto second = poolIn(groups, *rows[1], label, std::nullopt, df_);
    const auto trials = [&](const ImputedRow& row) {
      return meanOf(groups, row, groups.columnOf(row, Role::Trials));
    };
    const auto firstTrials = trials(*rows[0]);
    const auto secondTrials = trials(*rows[1]);
    if (first && second && firstTrials && secondTrials) {
      interval_ = pooledNewcombe(*first, *firstTrials, *second, *secondTrials, level);
    }
  }

  // The pooled number in a column that is pooled.
  std::optional<double> valueOf(Index column) const {
    switch (table_.meaningOf(column).role) {
      case Role::StandardError:
        return result_.estimate ? std::optional(result_.estimate->standardError) : std::nullopt;
      case Role::Lower:
        return interval_ ? std::optional(interval_->lower) : std::nullopt;
      case Role::Upper:
        return interval_ ? std::optional(interval_->upper) : std::nullopt;
      case Role::Statistic:
        return test_ ? std::optional(test_->statistic) : std::nullopt;
      case Role::POneSided:
        return test_ ? std::optional(test_->oneSided) : std::nullopt;
      case Role::PTwoSided:
        return test_ ? std::optional(test_->twoSided) : std::nullopt;
      default:
        return meanOf(table_, row_, column);
    }
  }

  // A pooled statistic follows another law than the procedure's, and has the name of that one.
  std::string labelFor(Index column) const {
    const Meaning& meaning = table_.meaningOf(column);
    return meaning.role == Role::Statistic ? meaning.pooling : std::string();
  }

  PooledCell cellFor(Index column) const {
    PooledCell cell{.column = column, .label = labelFor(column), .note = nullptr};
    if (const auto value = valueOf(column)) {
      cell.value = *value;
      cell.state = std::isnan(*value) ? State::NotANumber : State::Valid;
      return cell;
    }
    cell.state = State::Missing;
    const std::size_t lacking = lackingFor(column);
    cell.note =
        lacking == 0
            ? Text::string("Pooled statistic not computed ...")
            : Text::composite("Imputations not computed ^1 ...",
                              {Text::number(static_cast<double>(lacking), NumberFormat::Count)});
    return cell;
  }

  // In how many imputations the statistic, or what it rests on, could not be computed.
  std::size_t lackingFor(Index column) const {
    const auto lacking = [&](Index of) {
      return row_.cells.size() - table_.valuesOf(row_, of).size();
    };
    const Role role = table_.meaningOf(column).role;
    if (role != Role::StandardError && !isResult(role)) {
      return lacking(column);
    }
    return std::max(lacking(table_.columnOf(row_, Role::StandardError)),
                    lacking(table_.columnOf(row_, table_.meaning().estimate)));
  }

  const ImputedTable& table_;
  const ImputedRow& row_;
  std::string_view rule_;
  const TableLinks& links_;
  PoolingDf df_;
  std::vector<Index> columns_;
  std::optional<PooledInterval> interval_;
  std::optional<PooledTest> test_;
  PooledRow result_;
};

}  // namespace

TableLinks::TableLinks(const ImputedTable& table, const std::vector<ImputedTable>& all,
                       const Description& description) {
  const TableMeaning& meaning = table.meaning();
  if (meaning.degreesOfFreedom) {
    counts_ = find(all, meaning.degreesOfFreedom->table);
  }
  groups_ = find(all, meaning.groupsTable);
  if (counts_ != nullptr) {
    countRows_.emplace(table, *counts_, description);
  }
  if (groups_ != nullptr) {
    groupRows_.emplace(table, *groups_, description);
  }
}

std::vector<const ImputedRow*> TableLinks::countsOf(const ImputedRow& row) const {
  return countRows_ ? countRows_->of(row) : std::vector<const ImputedRow*>();
}

std::vector<const ImputedRow*> TableLinks::groupsOf(const ImputedRow& row) const {
  return groupRows_ ? groupRows_->of(row) : std::vector<const ImputedRow*>();
}

std::string_view poolingRuleOf(const ImputedTable& table, const ImputedRow& row,
                               const Description& description) {
  const TextPtr method = table.methodOf(row);
  if (method == nullptr) {
    return table.meaning().estimate.empty() ? std::string_view() : estimates;
  }
  const std::string& title = table.table().title->id;
  static constexpr std::string_view known[] = {"wald", "wilson", "newcombe"};
  const std::string named = description.of(title, method->id).pooling;
  const auto* rule = std::find(std::begin(known), std::end(known), named);
  return rule == std::end(known) ? std::string_view() : *rule;
}

PooledRow poolRow(const ImputedTable& table, const ImputedRow& row, std::string_view rule,
                  const TableLinks& links, PoolingDf df) {
  return RowPooling(table, row, rule, links, df).pool();
}

}  // namespace embedded::output
