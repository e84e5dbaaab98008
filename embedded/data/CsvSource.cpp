// CSV: the dialect is ours, the types are the sniffer's, and every refusal gets its place.
#include "CsvSource.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

#include "DataMessages.h"
#include "SqlDialect.h"

namespace embedded::data {
namespace {

constexpr int sniffedRows = 20480;

std::string dialectOptions(const CsvHeader& header) {
  return ", delim=" + duckDbDialect.text(std::string(1, header.delimiter)) +
         R"(, quote='"', escape='"', header=true, strict_mode=true)";
}

bool needsQuotedNulls(std::span<const ColumnRead> reads) {
  return std::ranges::none_of(reads, [](const ColumnRead& read) { return isText(read.as); });
}

}  // namespace

CsvSource::CsvSource(Engine& engine, const DataAddress& address,
                     const std::vector<std::string>& nullTexts)
    : TableSource(address.text), files_(address.files) {
  const std::string delimiters = address.kind == FileKind::Tsv ? "\t" : ",;\t|";
  const auto shown = [&](const std::string& file) {
    return address.standardInput ? std::string("-") : file;
  };
  header_ = readCsvHeader(files_.front(), shown(files_.front()), delimiters);
  form_.delimiter = header_.delimiter;
  form_.fields = header_.names.size();
  for (const std::string& file : files_) {
    const CsvHeader header = readCsvHeader(file, shown(file), delimiters);
    if (header.names != header_.names) fail(messages::otherHeader, {file, files_.front()});
    form_.files.push_back({file, header.end});
  }
  for (const std::string& name : header_.names)
    columns_.push_back({name, "VARCHAR", ColumnKind::Text});
  sniff(engine, nullTexts);
  findBooleans(engine);
}

// The first file that has more than a header; without one, the first.
const std::string& CsvSource::fileToSniff() const {
  constexpr std::size_t lineEnd = 2;  // a carriage return and a line feed at most
  const auto found = std::ranges::find_if(form_.files, [](const CsvForm::File& file) {
    std::error_code ignored;
    const auto size = std::filesystem::file_size(file.path, ignored);
    return ignored || size > file.header + lineEnd;
  });
  return found == form_.files.end() ? files_.front() : found->path;
}

// Types by the sniffer's sample. It may not guess booleans ("f" would be one) nor dates of any
// but the ISO form (01/02/2020 has two meanings).
void CsvSource::sniff(Engine& engine, const std::vector<std::string>& nullTexts) {
  std::vector<std::string> nulls = nullTexts;
  if (std::ranges::find(nulls, "") == nulls.end()) nulls.emplace_back();
  std::vector<TextRow> rows;
  const std::string file = fileList({fileToSniff()});
  try {
    rows = engine.rows(
        "SELECT unnest(Columns).type FROM sniff_csv(" + file.substr(1, file.size() - 2) +
        dialectOptions(header_) +
        ", allow_quoted_nulls=true, dateformat='%Y-%m-%d', nullstr=" + textList(nulls, '[', ']') +
        ", auto_type_candidates=['NULL','BIGINT','DOUBLE','TIME','DATE',"
        "'TIMESTAMP','TIMESTAMPTZ','VARCHAR'])");
  } catch (const EngineFailure& failure) {
    explain(engine, failure, {});
  }
  if (rows.size() != columns_.size())
    explain(engine, EngineFailure("Error: the columns could not be told apart"), {});
  for (std::size_t i = 0; i < rows.size(); ++i) {
    columns_[i].typeName = rows[i][0].value_or("VARCHAR");
    columns_[i].kind = kindOfType(columns_[i].typeName);
  }
}

// Columns of texts as far as the sniffer could tell: one of the words true and false is boolean,
// and one that has no value at all, as in a file with nothing but a header, is one of missing
// numbers.
void CsvSource::findBooleans(Engine& engine) {
  std::string tests;
  for (const Column& column : columns_) {
    if (!isText(column.kind)) continue;
    const std::string name = duckDbDialect.identifier(column.name);
    tests += (tests.empty() ? "" : ", ") + ("coalesce(bool_and(lower(" + name) +
             ") IN ('true', 'false')), false), count(" + name + ")";
  }
  if (tests.empty()) return;
  const std::string from = table({}, true, "");
  TextRow answers;
  try {
    answers = engine.rows("SELECT " + tests + " FROM (FROM " + from + " LIMIT " +
                          std::to_string(sniffedRows) + ")")[0];
  } catch (const EngineFailure& failure) {
    explain(engine, failure, {});
  }
  std::size_t at = 0;
  for (Column& column : columns_) {
    if (!isText(column.kind)) continue;
    const bool isBoolean = answers[at++] == "true";
    if (answers[at++] == "0" && !hasValue(engine, column)) {
      column.typeName = "NULL";
      column.kind = ColumnKind::Real;
    } else if (isBoolean) {
      column.typeName = "BOOLEAN";
      column.kind = ColumnKind::Boolean;
    }
  }
}

// Whether a column has a value anywhere; an empty text in quotes is one.
bool CsvSource::hasValue(Engine& engine, const Column& column) const {
  try {
    return !engine
                .rows("SELECT 1 FROM " + table({}, false, "") + " WHERE " +
                      duckDbDialect.identifier(column.name) + " IS NOT NULL LIMIT 1")
                .empty();
  } catch (const EngineFailure& failure) {
    explain(engine, failure, {});
  }
}

// The table with these types, one a column; all texts when there are none.
std::string CsvSource::table(const std::vector<std::string>& types, bool quotedNulls,
                             const std::string& more) const {
  std::string columns;
  for (std::size_t i = 0; i < columns_.size(); ++i)
    columns += (i == 0 ? "" : ", ") + duckDbDialect.text(columns_[i].name) + ": " +
               duckDbDialect.text(types.empty() ? "VARCHAR" : types[i]);
  return "read_csv(" + fileList(files_) + dialectOptions(header_) + ", auto_detect=false" +
         ", allow_quoted_nulls=" + (quotedNulls ? "true" : "false") + ", columns={" + columns +
         "}" + more + ")";
}

bool CsvSource::readAsText(const ColumnRead& read, std::span<const ColumnRead> reads) const {
  if (isText(read.as)) return false;
  const bool nulls = std::ranges::any_of(read.nullTexts, [](auto& text) { return !text.empty(); });
  // Where quoted empty strings are no nulls, those of a numeric column still are.
  return nulls || !read.trueTexts.empty() || (header_.quotedEmpty && !needsQuotedNulls(reads));
}

std::string CsvSource::typeOf(const ColumnRead& read, std::span<const ColumnRead> reads) const {
  if (readAsText(read, reads)) return "VARCHAR";
  const std::string& sniffed = columns_[static_cast<std::size_t>(read.column)].typeName;
  if (read.as == ColumnKind::Timestamp && sniffed == "TIMESTAMP WITH TIME ZONE") return sniffed;
  return sqlType(read.as);
}

std::string CsvSource::from(std::span<const ColumnRead> reads) const {
  std::vector<std::string> types(columns_.size(), "VARCHAR");
  for (const ColumnRead& read : reads)
    types[static_cast<std::size_t>(read.column)] = typeOf(read, reads);
  return table(types, needsQuotedNulls(reads), "");
}

std::string CsvSource::value(const ColumnRead& read, std::span<const ColumnRead> reads) const {
  const Column& column = columns_[static_cast<std::size_t>(read.column)];
  const std::string name = duckDbDialect.identifier(column.name);
  return readAsText(read, reads) ? fromText(name, read) : name;
}

CsvSource CsvSource::withTexts(const std::string& file, const std::vector<std::size_t>& wanted,
                               const std::vector<std::vector<std::string>>& texts) const {
  std::ofstream out(file, std::ios::binary);
  out << header_.record << '\n';
  std::size_t lines = 0;
  for (const auto& column : texts) lines = std::max(lines, column.size());
  std::vector<std::string_view> fields(columns_.size());
  for (std::size_t line = 0; line < lines; ++line) {
    for (std::size_t i = 0; i < wanted.size(); ++i)
      fields[wanted[i]] = line < texts[i].size() ? texts[i][line] : texts[i].front();
    for (std::size_t i = 0; i < fields.size(); ++i)
      out << (i == 0 ? "" : std::string_view(&header_.delimiter, 1)) << fields[i];
    out << '\n';
  }
  if (!out.flush()) throw EngineFailure("Error: no room for a temporary file");
  CsvSource source(*this);
  source.files_ = {file};
  return source;
}

void CsvSource::explain(Engine& engine, const EngineFailure& failure,
                        std::span<const ColumnRead> reads) const {
  explainLimit(failure, name_);
  std::vector<std::string> types(columns_.size(), "VARCHAR");
  for (const ColumnRead& read : reads)
    types[static_cast<std::size_t>(read.column)] = typeOf(read, reads);
  std::string every;
  for (const Column& column : columns_)
    every += (every.empty() ? "count(" : ", count(") + duckDbDialect.identifier(column.name) + ")";
  std::vector<TextRow> rejects;
  try {
    rejects = engine.rows(std::vector<std::string>{
        "SELECT " + every + " FROM " +
            table(types, needsQuotedNulls(reads), ", store_rejects=true, rejects_limit=1"),
        "SELECT error_type::VARCHAR, line, column_idx, column_name, error_message FROM "
        "reject_errors ORDER BY line LIMIT 1"});
  } catch (const EngineFailure&) {
    // The table cannot even be scanned with rejects; what the engine said first must do.
  }
  if (!rejects.empty()) explainReject(rejects.front());
  const std::string texts = table({}, needsQuotedNulls(reads), "");
  for (const ColumnRead& read : reads) explainText(engine, texts, read);
  fail(messages::engineFailure, {name_, failure.brief()});
}

void CsvSource::explainReject(const TextRow& reject) const {
  const std::string type = reject[0].value_or("");
  const std::string line = reject[1].value_or("?");
  const std::string column = reject[3].value_or(reject[2].value_or("?"));
  if (type == "MISSING COLUMNS" || type == "TOO MANY COLUMNS")
    fail(messages::raggedRow, {name_, line, column, std::to_string(columns_.size())});
  if (type == "UNQUOTED VALUE") fail(messages::badQuotes, {name_, line, column});
  if (type.find("ENCODING") != std::string::npos || type.find("UNICODE") != std::string::npos)
    fail(messages::badEncoding, {name_, line, column});
  // A value that does not fit its type is found among the texts, with the row's own number.
  if (type == "CAST") return;
  fail(messages::badCsv, {name_, line, column, EngineFailure(reject[4].value_or("")).brief()});
}

}  // namespace embedded::data
