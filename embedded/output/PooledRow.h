// What imputations together say in one row of a table.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "embedded/output/ImputedTable.h"
#include "embedded/output/Rubin.h"

namespace embedded::output {

struct PooledCell {
  Index column = none;
  std::string label;  // the column beside that one where the cell stands; empty: that very one
  State state = State::Valid;
  double value = 0.0;
  NumberFormat format = NumberFormat::GeneralStat;
  Index footnotes = none;  // a list that the table has already
  TextPtr note;            // or why there is no value
};

struct PooledRow {
  PlaceKey place;
  std::vector<PooledCell> cells;
  // The estimate that the row is about; nothing when it could not be pooled.
  std::optional<PooledEstimate> estimate;
  // Degrees of freedom of the row's interval or test: infinite where the imputations agree,
  // nothing where there are none or several.
  std::optional<double> df;
};

// Where rows of a table find their numbers of cases, and the two estimates behind a difference.
class TableLinks {
 public:
  TableLinks(const ImputedTable& table, const std::vector<ImputedTable>& all,
             const Description& description);

  const ImputedTable* counts() const { return counts_; }
  const ImputedTable* groups() const { return groups_; }
  std::vector<const ImputedRow*> countsOf(const ImputedRow& row) const;
  std::vector<const ImputedRow*> groupsOf(const ImputedRow& row) const;

 private:
  const ImputedTable* counts_ = nullptr;
  const ImputedTable* groups_ = nullptr;
  std::optional<RelatedRows> countRows_;
  std::optional<RelatedRows> groupRows_;
};

// The rule, as the description names it, by which the row's interval or test is pooled; empty
// where it has none. Rows without a method have the rule of estimates alone.
std::string_view poolingRuleOf(const ImputedTable& table, const ImputedRow& row,
                               const Description& description);

// Pools a row that has a rule. Where all imputations agree on everything in it, it is theirs. A
// statistic that some imputation lacks is missing, with a note that says so.
PooledRow poolRow(const ImputedTable& table, const ImputedRow& row, std::string_view rule,
                  const TableLinks& links, PoolingDf df);

}  // namespace embedded::output
