// What the user wrote for DATA: which files, of which kind, which table; or which server.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace embedded::data {

enum class FileKind { Csv, Tsv, Parquet, Json, DuckDb };

// A table on a server: SCHEME://USER@HOST:PORT/DATABASE/TABLE, percent-encoded, and behind a "?"
// those parameters of the connection that the engine allows, as NAME=VALUE&...
struct ServerAddress {
  std::string scheme;
  bool secure = false;  // over TLS; by the scheme
  std::string user;     // empty when none is named
  std::string host;     // without the brackets of an IPv6 address
  int port = 0;
  std::string database;
  std::string schema;  // of SCHEMA.TABLE; a point that is part of a name is written %2E
  std::string table;
  std::vector<std::pair<std::string, std::string>> parameters;
};

struct DataAddress {
  std::string text;  // as written
  FileKind kind = FileKind::Csv;
  bool standardInput = false;
  std::vector<std::string> files;  // existing files, in the order of their names
  std::string table;               // of a database file; empty when none was named
  std::optional<ServerAddress> server;
};

// Reads an address and looks whether its files are there; no server is asked. `-` stands for CSV
// on standard input and has no files yet. Error(Data): no such file, a folder, an unknown kind,
// files of several kinds, an address of a network that belongs to no engine. Error(Usage): an
// engine's address that is malformed or holds a password. No message shows a password.
DataAddress parseAddress(const std::string& text);

}  // namespace embedded::data
