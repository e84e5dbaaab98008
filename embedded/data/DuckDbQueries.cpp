// SQL for the embedded engine.
#include "DuckDbQueries.h"

#include "SqlDialect.h"

namespace embedded::data {
namespace {

std::string alias(std::size_t index) {
  std::string name("v");
  name += std::to_string(index);
  return name;
}

// SELECT with every column of the request under its alias; `more` is appended to the list.
std::string aliased(const TableSource& table, const ScanRequest& request, const std::string& more) {
  std::string list;
  for (std::size_t i = 0; i < request.columns.size(); ++i)
    list +=
        (i == 0 ? "" : ", ") + table.value(request.columns[i], request.columns) + " AS " + alias(i);
  if (list.empty()) list = "1 AS one";
  return "SELECT " + list + more + " FROM " + table.from(request.columns);
}

// The value by which rows are ordered: without trailing blanks, and null for every number that
// is none.
std::string key(const ScanRequest& request, std::size_t index) {
  const std::string name = alias(index);
  switch (request.columns[index].as) {
    case ColumnKind::Text:
      return "rtrim(" + name + ", ' ')";
    case ColumnKind::Integer:
    case ColumnKind::Real:
      return "CASE WHEN isfinite(" + name + "::DOUBLE) THEN " + name + " END";
    case ColumnKind::Date:
    case ColumnKind::Timestamp:
      return "CASE WHEN isfinite(" + name + ") THEN " + name + " END";
    default:
      return name;
  }
}

std::string orderBy(const ScanRequest& request, const std::string& last) {
  std::string list;
  for (std::size_t i = 0; i < request.orderBy; ++i) {
    const std::string by = key(request, i);
    if (!list.empty()) list += ", ";
    if (isText(request.columns[i].as) && !request.collation.empty())
      list +=
          "icu_sort_key(" + by + ", " + duckDbDialect.text(request.collation) + ") NULLS FIRST, ";
    list += by + " NULLS FIRST";
  }
  if (!list.empty() && !last.empty()) list += ", " + last;
  return list.empty() ? "" : " ORDER BY " + list;
}

bool isWideInteger(const std::string& type) {
  return type == "BIGINT" || type == "UBIGINT" || type == "HUGEINT" || type == "UHUGEINT" ||
         type.starts_with("DECIMAL(");
}

// Expressions over the weight column: whether a case counts; of all cases of a pattern, the sum of
// rounded weights, how many weights are not finite, and the smallest.
struct WeightSql {
  std::string counts = "true";
  std::string sum = "count(*)::DOUBLE";
  std::string odd = "0::BIGINT";
  std::string smallest = "NULL::DOUBLE";
};

WeightSql weightSql(const TableSource& table, const ScanRequest& request) {
  if (request.weight < 0) return {};
  const std::string name = alias(static_cast<std::size_t>(request.weight));
  const std::string number = name + "::DOUBLE";
  WeightSql sql;
  sql.counts = "coalesce(isfinite(" + number + ") AND " + number + " >= 0.5, false)";
  sql.sum = "sum(CASE WHEN counted THEN floor(" + number + " + 0.5) ELSE 0::DOUBLE END)";
  // Of its own the count has 128 bits.
  sql.odd = "count_if(" + name + " IS NOT NULL AND NOT isfinite(" + number + "))::BIGINT";
  const ColumnRead& read = request.columns[static_cast<std::size_t>(request.weight)];
  if (isWideInteger(table.columns()[static_cast<std::size_t>(read.column)].typeName) ||
      table.textual())
    sql.smallest = "min(" + number + ")";
  return sql;
}

// The columns that make a pattern, comma-separated; strings without trailing blanks.
std::string patternKeys(const ScanRequest& request, bool named) {
  std::string list;
  for (std::size_t i = 0; i < request.columns.size(); ++i) {
    if (static_cast<int>(i) == request.weight) continue;
    const std::string name = alias(i);
    const bool text = isText(request.columns[i].as);
    list += (text && named ? "rtrim(" + name + ", ' ') AS " + name : name) + ", ";
  }
  return list;
}

}  // namespace

std::string rowsSql(const TableSource& table, const ScanRequest& request) {
  if (request.orderBy == 0) return aliased(table, request, "");
  // The engine's sort is not stable; the place of a row in the data settles ties.
  std::string list;
  for (std::size_t i = 0; i < request.columns.size(); ++i) list += (i == 0 ? "" : ", ") + alias(i);
  return "SELECT " + list + " FROM (" + aliased(table, request, ", row_number() OVER () AS place") +
         ")" + orderBy(request, "place");
}

std::string unorderedSql(const TableSource& table, const ScanRequest& request) {
  return aliased(table, request, "");
}

std::string patternsSql(const TableSource& table, const ScanRequest& request) {
  const WeightSql weight = weightSql(table, request);
  const std::string keys = patternKeys(request, false);
  const std::string raw =
      request.weight < 0 ? "" : ", " + alias(static_cast<std::size_t>(request.weight));
  return "SELECT " + keys + weight.sum + " AS total, count(*) AS cases, " + weight.odd +
         " AS odd, " + weight.smallest + " AS smallest FROM (SELECT " + patternKeys(request, true) +
         weight.counts + " AS counted" + raw + " FROM (" + aliased(table, request, "") +
         ")) GROUP BY " + keys + "counted" + orderBy(request, "");
}

std::string sampleSql(const TableSource& table, const ScanRequest& request, std::uint64_t sample) {
  const WeightSql weight = weightSql(table, request);
  return "SELECT coalesce(sum(n), 0)::BIGINT, count(*) FROM (SELECT count(*) AS n FROM (SELECT " +
         patternKeys(request, true) + weight.counts + " AS counted FROM (" +
         aliased(table, request, "") + " LIMIT " + std::to_string(sample) + ")) GROUP BY " +
         patternKeys(request, false) + "counted)";
}

std::string longestSql(const TableSource& table, std::span<const ColumnRead> columns) {
  std::string list;
  for (const ColumnRead& read : columns)
    list += (list.empty() ? "" : ", ") +
            ("coalesce(max(strlen(rtrim(" + table.value(read, columns)) + ", ' '))), 0)";
  return "SELECT " + list + " FROM " + table.from(columns);
}

std::string inexactSql(const TableSource& table, const ColumnRead& read) {
  ColumnRead asText = read;
  asText.as = ColumnKind::Text;
  asText.nullTexts.clear();
  const std::vector<ColumnRead> reads{asText};
  return "SELECT r, v FROM (SELECT row_number() OVER () AS r, " + table.value(asText, reads) +
         " AS v FROM " + table.from(reads) +
         ") WHERE TRY_CAST(v AS HUGEINT) IS NOT NULL AND abs(TRY_CAST(v AS DOUBLE)) >= "
         "9007199254740992"
         " AND TRY_CAST(TRY_CAST(v AS DOUBLE) AS HUGEINT) IS DISTINCT FROM TRY_CAST(v AS HUGEINT)"
         " LIMIT 1";
}

std::string longSql(const TableSource& table, const ColumnRead& read, std::uint64_t bytes) {
  const std::vector<ColumnRead> reads{read};
  return "SELECT r, n FROM (SELECT row_number() OVER () AS r, strlen(rtrim(" +
         table.value(read, reads) + ", ' ')) AS n FROM " + table.from(reads) + ") WHERE n > " +
         std::to_string(bytes) + " LIMIT 1";
}

}  // namespace embedded::data
