// Parquet, JSON, database files.
#include "FileSources.h"

#include <algorithm>
#include <set>

#include "CsvSource.h"
#include "DataMessages.h"
#include "SqlDialect.h"

namespace embedded::data {
namespace {

std::vector<Column> described(Engine& engine, const std::string& from, const std::string& name) {
  try {
    return describeColumns(engine, from);
  } catch (const EngineFailure& failure) {
    explainLimit(failure, name);
    fail(messages::unreadable, {name, failure.brief()});
  }
}

// The engine gives the second of two equal names another one; the file knows the true ones.
void requireTrueNames(Engine& engine, const std::vector<Column>& columns, const std::string& file,
                      const std::string& shownAs) {
  std::set<std::string> names;
  for (const TextRow& row :
       engine.rows("SELECT name FROM parquet_schema(" + fileList({file}) + ")"))
    names.insert(row[0].value_or(""));
  for (const Column& column : columns)
    if (!names.contains(column.name))
      fail(messages::duplicateColumn, {column.name.substr(0, column.name.rfind('_')), shownAs});
}

std::string listed(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

}  // namespace

ParquetSource::ParquetSource(Engine& engine, const DataAddress& address)
    : TableSource(address.text), files_(address.files) {
  columns_ = described(engine, from({}), name_);
  requireTrueNames(engine, columns_, files_.front(), name_);
}

std::string ParquetSource::from(std::span<const ColumnRead>) const {
  return "read_parquet(" + fileList(files_) + ")";
}

JsonSource::JsonSource(Engine& engine, const DataAddress& address)
    : TableSource(address.text), files_(address.files) {
  columns_ = described(engine, "read_json(" + fileList(files_) + ")", name_);
  if (columns_.size() == 1 && columns_[0].name == "json" && !holdObjects(engine))
    fail(messages::unreadable, {name_, "Reason no list of objects ..."});
  findEmpty(engine);
}

// The engine calls what is no object a column "json"; objects may have a column of that name.
bool JsonSource::holdObjects(Engine& engine) const {
  return engine
             .rows(
                 "SELECT bool_and(json_type(json) = 'OBJECT') AND bool_or(json_exists(json, "
                 "'$.json')) FROM read_json_objects(" +
                 fileList(files_) + ")")
             .at(0)
             .at(0) == "true";
}

// The engine calls a column without any value one of JSON values; it is one of missing numbers.
void JsonSource::findEmpty(Engine& engine) {
  std::string counts;
  for (const Column& column : columns_)
    if (column.typeName == "JSON")
      counts +=
          (counts.empty() ? "count(" : ", count(") + duckDbDialect.identifier(column.name) + ")";
  if (counts.empty()) return;
  const TextRow values =
      engine.rows("SELECT " + counts + " FROM read_json(" + fileList(files_) + ")").at(0);
  std::size_t at = 0;
  for (Column& column : columns_) {
    if (column.typeName != "JSON" || values[at++] != "0") continue;
    column.typeName = "NULL";
    column.kind = ColumnKind::Real;
  }
}

std::string JsonSource::table(std::span<const ColumnRead> reads, bool texts) const {
  std::string columns;
  for (const ColumnRead& read : reads) {
    const Column& column = columns_[static_cast<std::size_t>(read.column)];
    const bool viaText = texts || isText(column.kind) || !read.nullTexts.empty();
    columns += (columns.empty() ? "" : ", ") + duckDbDialect.text(column.name) + ": " +
               duckDbDialect.text(viaText ? "VARCHAR" : sqlType(read.as));
  }
  // Rows are counted even when no column is asked for.
  if (columns.empty()) columns = duckDbDialect.text(columns_.front().name) + ": 'JSON'";
  return "read_json(" + fileList(files_) + ", columns={" + columns + "})";
}

std::string JsonSource::from(std::span<const ColumnRead> reads) const {
  return table(reads, false);
}

std::string JsonSource::value(const ColumnRead& read, std::span<const ColumnRead>) const {
  const Column& column = columns_[static_cast<std::size_t>(read.column)];
  const std::string name = duckDbDialect.identifier(column.name);
  return isText(column.kind) || !read.nullTexts.empty() ? fromText(name, read) : name;
}

void JsonSource::explain(Engine& engine, const EngineFailure& failure,
                         std::span<const ColumnRead> reads) const {
  for (const ColumnRead& read : reads) explainText(engine, table(reads, true), read);
  fail(messages::unreadable, {name_, failure.brief()});
}

DatabaseSource::DatabaseSource(Engine& engine, const DataAddress& address)
    : TableSource(address.text) {
  const std::string& file = address.files.front();
  std::vector<TextRow> tables;
  try {
    engine.rows("ATTACH " + duckDbDialect.text(file) + " AS attached_data (READ_ONLY)");
    tables = engine.rows(
        "SELECT schema_name, table_name FROM duckdb_tables() WHERE database_name = "
        "'attached_data' UNION ALL SELECT schema_name, view_name FROM duckdb_views() WHERE "
        "database_name = 'attached_data' AND NOT internal ORDER BY ALL");
  } catch (const EngineFailure& failure) {
    fail(messages::unreadable, {file, failure.brief()});
  }
  std::vector<std::string> names;
  for (const TextRow& row : tables) {
    const std::string name = *row[0] == "main" ? *row[1] : *row[0] + "." + *row[1];
    names.push_back(name);
    if (name == address.table)
      table_ = "attached_data." + duckDbDialect.identifier(*row[0]) + "." +
               duckDbDialect.identifier(*row[1]);
  }
  if (address.table.empty()) fail(messages::tableWanted, {file, listed(names)});
  if (table_.empty()) fail(messages::noTable, {address.table, file, listed(names)});
  columns_ = described(engine, table_, name_);
}

std::string DatabaseSource::from(std::span<const ColumnRead>) const {
  return table_;
}

std::unique_ptr<TableSource> openTable(Engine& engine, const DataAddress& address,
                                       const std::vector<std::string>& nullTexts) {
  switch (address.kind) {
    case FileKind::Csv:
    case FileKind::Tsv:
      break;
    case FileKind::Parquet:
      return std::make_unique<ParquetSource>(engine, address);
    case FileKind::Json:
      return std::make_unique<JsonSource>(engine, address);
    case FileKind::DuckDb:
      return std::make_unique<DatabaseSource>(engine, address);
  }
  return std::make_unique<CsvSource>(engine, address, nullTexts);
}

}  // namespace embedded::data
