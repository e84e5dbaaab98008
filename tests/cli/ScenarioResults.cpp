#include "ScenarioResults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace cli_tests {

namespace {

constexpr const char* header = "table,split,row,variable,statistic,value,state,footnotes";
constexpr std::string_view inFull = ", in full";

std::string trimmed(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(' ');
  return begin == std::string::npos ? ""
                                    : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

std::vector<std::string> parts(const std::string& text, const std::string& separator) {
  std::vector<std::string> out;
  std::size_t begin = 0;
  for (std::size_t at = 0; (at = text.find(separator, begin)) != std::string::npos;) {
    out.push_back(trimmed(text.substr(begin, at - begin)));
    begin = at + separator.size();
  }
  out.push_back(trimmed(text.substr(begin)));
  for (std::string& part : out) {
    part = part == "-" ? "" : part;
  }
  return out;
}

// Takes "[...]" from the front of a line and "(...)" from its end.
std::string takeSplit(std::string& line) {
  if (!line.starts_with("[")) {
    return "";
  }
  const std::size_t end = line.find(']');
  const std::string split = line.substr(1, end - 1);
  line = trimmed(line.substr(end + 1));
  return split;
}

std::string takeFootnotes(std::string& line) {
  const std::size_t begin = line.rfind(" (");
  if (!line.ends_with(")") || begin == std::string::npos) {
    return "";
  }
  const std::string notes = line.substr(begin + 2, line.size() - begin - 3);
  line = trimmed(line.substr(0, begin));
  return notes;
}

// Half a unit of the last digit that is written.
double halfUnit(const std::string& number) {
  const std::size_t exponentAt = number.find_first_of("eE");
  const std::string digits = number.substr(0, exponentAt);
  const std::size_t point = digits.find('.');
  const double decimals =
      point == std::string::npos ? 0 : static_cast<double>(digits.size() - point - 1);
  const double exponent =
      exponentAt == std::string::npos ? 0 : std::stod(number.substr(exponentAt + 1));
  return 0.5 * std::pow(10.0, exponent - decimals) * (1 + 1e-9);
}

CsvCell readLine(std::string line) {
  CsvCell cell;
  line = trimmed(line);
  cell.split = takeSplit(line);
  cell.footnotes = takeFootnotes(line);
  const std::size_t equals = line.rfind(" = ");
  EXPECT_NE(equals, std::string::npos) << "no value in: " << line;
  cell.value = trimmed(line.substr(equals + 3));
  const auto names = parts(line.substr(0, equals), " | ");
  EXPECT_EQ(names.size(), 3U) << "not row | variable | statistic: " << line;
  if (names.size() == 3) {
    cell.row = names[0];
    cell.variable = names[1];
    cell.statistic = names[2];
  }
  return cell;
}

bool samePlace(const CsvCell& a, const CsvCell& b) {
  return a.table == b.table && a.split == b.split && trimmed(a.row) == b.row &&
         trimmed(a.variable) == b.variable && a.statistic == b.statistic;
}

void expectCell(const CsvCell& want, const std::vector<CsvCell>& cells) {
  const auto found = std::find_if(cells.begin(), cells.end(),
                                  [&](const CsvCell& cell) { return samePlace(cell, want); });
  if (want.value == "unwritten") {
    EXPECT_EQ(found, cells.end()) << "a cell that must not be there";
    return;
  }
  ASSERT_NE(found, cells.end()) << "no such cell";
  EXPECT_EQ(found->footnotes, want.footnotes);
  if (want.value == "missing" || want.value == "nan") {
    EXPECT_EQ(found->state, want.value);
    EXPECT_EQ(found->value, "");
    return;
  }
  ASSERT_EQ(found->state, "valid");
  EXPECT_NEAR(std::stod(found->value), std::stod(want.value), halfUnit(want.value));
}

// Split group, row and variable of each row of a table, in order.
std::vector<std::string> rowsOf(const std::string& table, const std::vector<CsvCell>& cells) {
  std::vector<std::string> rows;
  for (const CsvCell& cell : cells) {
    if (cell.table != table) {
      continue;
    }
    const std::string row = (cell.split.empty() ? "" : "[" + cell.split + "] ") +
                            (cell.row.empty() ? "-" : cell.row) + " | " + cell.variable;
    if (rows.empty() || rows.back() != row) {
      rows.push_back(row);
    }
  }
  return rows;
}

}  // namespace

std::vector<std::vector<std::string>> csvRecords(const std::string& text) {
  std::vector<std::vector<std::string>> records{{""}};
  bool quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::string& field = records.back().back();
    const char c = text[i];
    if (quoted && c == '"' && i + 1 < text.size() && text[i + 1] == '"') {
      field += text[++i];
    } else if (c == '"') {
      EXPECT_TRUE(quoted || field.empty()) << "a quote inside a field, at byte " << i;
      quoted = !quoted;
    } else if (!quoted && c == ',') {
      records.back().emplace_back();
    } else if (!quoted && c == '\n') {
      records.push_back({""});
    } else {
      field += c;
    }
  }
  EXPECT_FALSE(quoted) << "the last field has no closing quote";
  EXPECT_TRUE(text.empty() || text.back() == '\n') << "the last line has no line feed";
  EXPECT_EQ(text.find('\r'), std::string::npos) << "carriage returns";
  records.pop_back();
  return records;
}

std::vector<CsvCell> readCsv(const std::string& text) {
  EXPECT_EQ(text.substr(0, text.find('\n')), header);
  std::vector<CsvCell> cells;
  const auto records = csvRecords(text);
  for (std::size_t i = 1; i < records.size(); ++i) {
    const auto& record = records[i];
    EXPECT_EQ(record.size(), 8U) << "record " << i;
    if (record.size() == 8) {
      cells.push_back(
          {record[0], record[1], record[2], record[3], record[4], record[5], record[6], record[7]});
    }
  }
  return cells;
}

void expectResults(const std::vector<std::string>& lines, const std::vector<CsvCell>& cells) {
  std::string table;
  std::vector<std::string> listed;
  bool listing = false;
  const auto endList = [&] {
    if (listing) {
      EXPECT_EQ(rowsOf(table, cells), listed) << table;
    }
    listed.clear();
  };
  for (const std::string& line : lines) {
    SCOPED_TRACE(line);
    if (!line.starts_with(" ")) {
      endList();
      listing = line.ends_with(inFull);
      table = listing ? line.substr(0, line.size() - inFull.size()) : line;
    } else if (listing) {
      listed.push_back(trimmed(line));
    } else {
      CsvCell want = readLine(line);
      want.table = table;
      expectCell(want, cells);
    }
  }
  endList();
}

}  // namespace cli_tests
