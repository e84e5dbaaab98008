// The SQL that the embedded engine is asked, from a request and the table it is about.
#pragma once

#include <string>

#include "Relation.h"
#include "TableSource.h"

namespace embedded::data {

// Columns v0, v1, ... of the request, in its order.
std::string rowsSql(const TableSource& table, const ScanRequest& request);
// The same in no order.
std::string unorderedSql(const TableSource& table, const ScanRequest& request);
// Columns of the request without the weight, named by their place in it, then: weight sum, number
// of cases, number of weights that are not finite, and the smallest weight when that weight is a
// wide integer (else null).
std::string patternsSql(const TableSource& table, const ScanRequest& request);
// Rows and distinct patterns of the first `sample` rows.
std::string sampleSql(const TableSource& table, const ScanRequest& request, std::uint64_t sample);
std::string longestSql(const TableSource& table, std::span<const ColumnRead> columns);
// The row number and value of the first row in which a whole number of this column, as it is
// written or stored, is not what a double makes of it.
std::string inexactSql(const TableSource& table, const ColumnRead& read);
// The row number and length of the first string of more than `bytes` bytes.
std::string longSql(const TableSource& table, const ColumnRead& read, std::uint64_t bytes);

}  // namespace embedded::data
