// What the user wrote for DATA: which files, of which kind, which table.
#pragma once

#include <string>
#include <vector>

namespace embedded::data {

enum class FileKind { Csv, Tsv, Parquet, Json, DuckDb };

struct DataAddress {
  std::string text;  // as written
  FileKind kind = FileKind::Csv;
  bool standardInput = false;
  std::vector<std::string> files;  // existing files, in the order of their names
  std::string table;               // of a database file; empty when none was named
};

// Reads an address and looks whether its files are there. `-` stands for CSV on standard input
// and has no files yet. Error(Data): no such file, a folder, an unknown kind, files of several
// kinds, an address of a network.
DataAddress parseAddress(const std::string& text);

}  // namespace embedded::data
