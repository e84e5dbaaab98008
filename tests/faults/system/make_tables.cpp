// Does statements in a database of the engine's, one argument each. The tests make files with it
// that only the engine writes.
#include <duckdb.h>

#include <cstdio>
#include <cstdlib>
#include <span>

int main(int argc, char** argv) {
  duckdb_database database = nullptr;
  duckdb_connection connection = nullptr;
  if (duckdb_open(nullptr, &database) != DuckDBSuccess ||
      duckdb_connect(database, &connection) != DuckDBSuccess) {
    return EXIT_FAILURE;
  }
  int status = EXIT_SUCCESS;
  for (const char* sql : std::span(argv, static_cast<std::size_t>(argc)).subspan(1)) {
    if (duckdb_query(connection, sql, nullptr) != DuckDBSuccess) {
      std::fprintf(stderr, "refused: %s\n", sql);
      status = EXIT_FAILURE;
    }
  }
  duckdb_disconnect(&connection);
  duckdb_close(&database);
  return status;
}
