// The SQL that servers are asked, from a request and the table it is about. It is flat wherever
// the rows go through, so that a distributed table counts where its rows are.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "Relation.h"
#include "SqlServer.h"

namespace embedded::data {

// The order of a column that the server cannot put in order by itself: its texts (without trailing
// blanks) with their places; 0 is the place of null and of texts that are read as missing.
struct TextOrder {
  std::size_t column = 0;  // index into ScanRequest::columns
  std::vector<std::string> texts;
  std::vector<std::size_t> places;
};

class SqlQueries {
 public:
  explicit SqlQueries(const SqlServer& server);

  // All columns of the request; after the order asked for, rows come in the order of all values.
  SqlQuery rows(const ScanRequest& request, std::span<const TextOrder> orders) const;
  // The columns of the request without the weight, then: sum of rounded weights, number of cases,
  // number of weights that are not finite, and smallest and largest weight. Where the weight is a
  // text on the server, all columns of the request, then the number of cases.
  SqlQuery patterns(const ScanRequest& request, std::span<const TextOrder> orders) const;
  // Rows and distinct patterns of the first `sample` rows.
  SqlQuery sample(const ScanRequest& request, std::uint64_t sample) const;
  SqlQuery rowCount() const;
  SqlQuery longest(std::span<const ColumnRead> columns) const;
  // The different texts of a column, at most `most` of them.
  SqlQuery texts(const ColumnRead& read, std::size_t most) const;
  // Values of a column of numbers that may be too large for a double.
  SqlQuery large(const ColumnRead& read) const;

  // Whether the server holds numbers in this column, so that it can compute with them.
  bool isNumber(const ColumnRead& read) const;

 private:
  SqlColumn column(const ColumnRead& read) const;
  std::string alias(std::size_t index) const { return prefix_ + std::to_string(index); }
  std::string keys(const ScanRequest& request, std::span<const TextOrder> orders,
                   std::vector<std::string>& list) const;
  void addValue(SqlQuery& query, const ScanRequest& request, std::size_t index) const;
  void addWeight(SqlQuery& query, const ColumnRead& read) const;
  std::string counted(const ColumnRead& read) const;
  void add(SqlQuery& query, const std::string& expression, std::string_view type) const;

  const SqlServer& server_;
  const SqlDialect& dialect_;
  std::string prefix_;  // of aliases; no column's name begins with it
};

}  // namespace embedded::data
