// SQL that all kinds of tables share.
#include "TableSource.h"

#include <unicode/unistr.h>

#include <array>
#include <filesystem>
#include <set>
#include <utility>

#include "EngineMessages.h"
#include "SqlDialect.h"

namespace embedded::data {
namespace {

constexpr std::array<std::pair<std::string_view, ColumnKind>, 27> kinds{{
    {"BOOLEAN", ColumnKind::Boolean},
    {"TINYINT", ColumnKind::Integer},
    {"SMALLINT", ColumnKind::Integer},
    {"INTEGER", ColumnKind::Integer},
    {"BIGINT", ColumnKind::Integer},
    {"HUGEINT", ColumnKind::Integer},
    {"UTINYINT", ColumnKind::Integer},
    {"USMALLINT", ColumnKind::Integer},
    {"UINTEGER", ColumnKind::Integer},
    {"UBIGINT", ColumnKind::Integer},
    {"UHUGEINT", ColumnKind::Integer},
    {"FLOAT", ColumnKind::Real},
    {"DOUBLE", ColumnKind::Real},
    {"VARCHAR", ColumnKind::Text},
    {"UUID", ColumnKind::Text},
    {"DATE", ColumnKind::Date},
    {"TIME", ColumnKind::Time},
    {"TIME_NS", ColumnKind::Time},
    {"TIMESTAMP", ColumnKind::Timestamp},
    {"TIMESTAMP_S", ColumnKind::Timestamp},
    {"TIMESTAMP_MS", ColumnKind::Timestamp},
    {"TIMESTAMP_NS", ColumnKind::Timestamp},
    {"TIMESTAMP WITH TIME ZONE", ColumnKind::Timestamp},
    // A column without any value has no type; it is one of missing numbers.
    {"\"NULL\"", ColumnKind::Real},
    {"NULL", ColumnKind::Real},
    {"JSON", ColumnKind::Unsupported},
    {"BLOB", ColumnKind::Unsupported},
}};

// A path in which the engine's wildcards stand for themselves.
std::string literalPath(const std::string& path) {
  std::string result;
  for (const char c : path) {
    if (c == '*' || c == '?' || c == '[')
      result += std::string{'[', c, ']'};
    else
      result += c;
  }
  return result;
}

}  // namespace

ColumnKind kindOfType(const std::string& typeName) {
  if (typeName.ends_with(']')) return ColumnKind::Unsupported;  // lists and arrays
  if (typeName.starts_with("DECIMAL(")) return ColumnKind::Real;
  if (typeName.starts_with("ENUM(")) return ColumnKind::Text;
  for (const auto& [name, kind] : kinds)
    if (name == typeName) return kind;
  return ColumnKind::Unsupported;
}

std::string sqlType(ColumnKind kind) {
  switch (kind) {
    case ColumnKind::Boolean:
      return "BOOLEAN";
    case ColumnKind::Integer:  // a whole number is read as a real one: the engine rounds "1.5"
    case ColumnKind::Real:
      return "DOUBLE";
    case ColumnKind::Date:
      return "DATE";
    case ColumnKind::Time:
      return "TIME";
    case ColumnKind::Timestamp:
      return "TIMESTAMP";
    case ColumnKind::Text:
    case ColumnKind::Unsupported:
      break;
  }
  return "VARCHAR";
}

std::string textList(const std::vector<std::string>& texts, char open, char close) {
  std::string list(1, open);
  for (const std::string& text : texts) {
    if (list.size() > 1) list += ", ";
    list += duckDbDialect.text(text);
  }
  return list + close;
}

std::string fileList(const std::vector<std::string>& files) {
  std::vector<std::string> literal;
  literal.reserve(files.size());
  for (const std::string& file : files) literal.push_back(literalPath(file));
  return textList(literal, '[', ']');
}

std::string fromText(const std::string& column, const ColumnRead& read, const std::string& cast) {
  if (read.as == ColumnKind::Text) return column;
  std::vector<std::string> nulls = read.nullTexts;
  nulls.emplace_back();
  const std::string isNull = "WHEN " + column + " IN " + textList(nulls, '(', ')') + " THEN NULL ";
  if (read.as == ColumnKind::Boolean && !read.trueTexts.empty() && !read.falseTexts.empty())
    return "CASE " + isNull + "WHEN " + column + " IN " + textList(read.trueTexts, '(', ')') +
           " THEN true WHEN " + column + " IN " + textList(read.falseTexts, '(', ')') +
           " THEN false ELSE " + cast + "(" + column + " AS BOOLEAN) END";
  return cast + "(CASE " + isNull + "ELSE " + column + " END AS " + sqlType(read.as) + ")";
}

std::string TableSource::value(const ColumnRead& read, std::span<const ColumnRead>) const {
  const Column& column = columns_[static_cast<std::size_t>(read.column)];
  const std::string name = duckDbDialect.identifier(column.name);
  if (column.typeName == "\"NULL\"" || column.typeName == "NULL")
    return "CAST(" + name + " AS DOUBLE)";
  if (read.as == ColumnKind::Text)
    return column.typeName == "VARCHAR" ? name : "CAST(" + name + " AS VARCHAR)";
  // The engine's C interface has no values of this type.
  if (column.typeName == "TIME_NS") return "(epoch_ns(" + name + ") / 1e9)";
  return column.kind == ColumnKind::Text ? fromText("CAST(" + name + " AS VARCHAR)", read) : name;
}

void TableSource::explainText(Engine& engine, const std::string& table,
                              const ColumnRead& read) const {
  if (isText(read.as)) return;
  const std::string& column = columns_[static_cast<std::size_t>(read.column)].name;
  std::vector<std::string> nulls = read.nullTexts;
  nulls.emplace_back();
  std::vector<TextRow> rows;
  try {
    rows = engine.rows("SELECT r, v FROM (SELECT row_number() OVER () AS r, CAST(" +
                       duckDbDialect.identifier(column) + " AS VARCHAR) AS v FROM " + table +
                       ") WHERE " + fromText("v", read, "TRY_CAST") + " IS NULL AND v NOT IN " +
                       textList(nulls, '(', ')') + " LIMIT 1");
  } catch (const EngineFailure&) {
    return;  // no value is wrong but the file's form, or the file cannot be read
  }
  if (!rows.empty()) fail(messages::badValue, {name_, *rows[0][0], column, *rows[0][1]});
}

void TableSource::explain(Engine& engine, const EngineFailure& failure,
                          std::span<const ColumnRead> reads) const {
  for (const ColumnRead& read : reads)
    if (isText(columns_[static_cast<std::size_t>(read.column)].kind))
      explainText(engine, from(reads), read);
  fail(messages::engineFailure, {name_, failure.brief()});
}

void explainLimit(const EngineFailure& failure, const std::string& source) {
  const std::string_view text = failure.what();
  const auto says = [&](std::string_view words) { return text.find(words) != text.npos; };
  // The files that it spills to are called so; of a full disk it knows beforehand.
  if (says("duckdb_temp_storage") || says("max_temp_directory_size")) {
    std::error_code ignored;
    fail(messages::noRoomToSpill,
         {source, std::filesystem::temp_directory_path(ignored).string(), failure.brief()});
  }
  if (text.starts_with("Out of Memory Error"))
    fail(messages::memoryTooSmall, {source, failure.brief()});
}

std::vector<Column> describeColumns(Engine& engine, const std::string& from) {
  std::vector<Column> columns;
  for (const TextRow& row : engine.rows("DESCRIBE SELECT * FROM " + from)) {
    const std::string type = row[1].value_or("");
    columns.push_back({row[0].value_or(""), type, kindOfType(type)});
  }
  return columns;
}

void requireUniqueNames(const std::vector<std::string>& names, const std::string& source) {
  std::set<icu::UnicodeString> seen;
  for (const std::string& name : names)
    if (!seen.insert(icu::UnicodeString::fromUTF8(name).foldCase()).second)
      fail(messages::duplicateColumn, {name, source});
}

}  // namespace embedded::data
