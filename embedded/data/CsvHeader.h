// The first record of a CSV file: its delimiter and the names of its columns.
//
// The engine would guess both, and guesses another dialect rather than refuse a broken file; so
// they are settled here: fields in double quotes, a quote doubled to stand for itself, the first
// record always names the columns.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace embedded::data {

struct CsvHeader {
  char delimiter = ',';
  std::vector<std::string> names;
  std::string record;        // as it stands in the file
  std::size_t end = 0;       // bytes of the file before the end of the record's line
  bool quotedEmpty = false;  // a quoted empty field stands in the first part of the file
};

// Reads the header. The delimiter is the one of `delimiters` that stands most often outside
// quotes in it. Blanks around a name are dropped; a column without a name is called columnN by
// its position. Error(Data): nothing in it, quotes that do not match, no UTF-8, equal names.
CsvHeader readCsvHeader(const std::string& file, const std::string& shownAs,
                        const std::string& delimiters);

}  // namespace embedded::data
