// One kind of table that the embedded engine can read: how it is found, what its columns are,
// and the SQL that stands for it.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "DataAddress.h"
#include "DuckDb.h"
#include "Relation.h"

namespace embedded::data {

class TableSource {
 public:
  virtual ~TableSource() = default;

  const std::vector<Column>& columns() const { return columns_; }
  // Whether values are texts that the reader turns into what is asked for.
  virtual bool textual() const { return false; }
  // The table expression that offers (at least) these columns under their own names.
  virtual std::string from(std::span<const ColumnRead> reads) const = 0;
  // The SQL expression of one column as it is asked for.
  virtual std::string value(const ColumnRead& read, std::span<const ColumnRead> reads) const;
  // Throws the Error(Data) that says best what the engine's failure means.
  [[noreturn]] virtual void explain(Engine& engine, const EngineFailure& failure,
                                    std::span<const ColumnRead> reads) const;

 protected:
  // Looks in `table`, which offers the column's own texts, for one that cannot be turned into
  // what is asked for, and throws the error that names its row.
  void explainText(Engine& engine, const std::string& table, const ColumnRead& read) const;

  explicit TableSource(std::string name) : name_(std::move(name)) {}
  std::string name_;  // what a person calls it
  std::vector<Column> columns_;
};

// Throws Error(Data) for a failure of the engine that came of too little memory or of too little
// room for temporary files, and says what can be done; returns for any other.
void explainLimit(const EngineFailure& failure, const std::string& source);

// Opens what an address names; `files` are its files, or where standard input was spooled.
// `nullTexts` are texts that stand for missing values everywhere, so that they do not make a
// column of numbers one of strings. Error(Data) for anything that cannot be read.
std::unique_ptr<TableSource> openTable(Engine& engine, const DataAddress& address,
                                       const std::vector<std::string>& nullTexts);

// What an engine's type is to us.
ColumnKind kindOfType(const std::string& typeName);
// The type by which a text format is read as this kind.
std::string sqlType(ColumnKind kind);
// `column`, a text, as the kind that is asked for; the texts of `read` are minded. `cast` is
// CAST, or TRY_CAST to get a null from what is no such value.
std::string fromText(const std::string& column, const ColumnRead& read,
                     const std::string& cast = "CAST");
// A list of SQL texts in parentheses or brackets.
std::string textList(const std::vector<std::string>& texts, char open, char close);
// The files as a list of paths in which no character is a wildcard.
std::string fileList(const std::vector<std::string>& files);
// Columns as the engine describes a table expression.
std::vector<Column> describeColumns(Engine& engine, const std::string& from);
// Error(Data) when two names are the same, also but for capital letters.
void requireUniqueNames(const std::vector<std::string>& names, const std::string& source);

}  // namespace embedded::data
