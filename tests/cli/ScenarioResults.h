// The section `results` of a scenario: cells of the tidy csv, written for people.
//
//   One-Sample Proportions Tests                          a table's title, at the line's start
//     [region=North] Score | v = 1 | Z = -1.897 (note)    a cell, indented
//
// A cell names the split group when there is one, the row, the variable, the statistic, its value
// and the footnotes. A value is a number, which must agree to the last digit that stands there,
// or `missing`, `nan`, or `unwritten` for a cell that must not exist. An empty part is `-`.
// Under a title that ends in `, in full` every row of the table must be named, as
// `[split] row | variable`, in order: that is how the order of rows and groups is stated.
#pragma once

#include <string>
#include <vector>

namespace cli_tests {

// One record of the tidy csv.
struct CsvCell {
  std::string table, split, row, variable, statistic, value, state, footnotes;
};

// Reads the tidy csv: fails the test when the header or the form is not as promised.
std::vector<CsvCell> readCsv(const std::string& text);

// The records of RFC 4180 text with line feeds; fails the test when it is not well formed.
std::vector<std::vector<std::string>> csvRecords(const std::string& text);

// Fails the test for every line that the cells do not bear out.
void expectResults(const std::vector<std::string>& lines, const std::vector<CsvCell>& cells);

}  // namespace cli_tests
