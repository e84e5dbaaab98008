// The bare engine as a program, so that it can be measured like any other: it runs the statements
// it is given, one after the other on one connection, and prints the result of the last.
//
//   bench_engine THREADS STATEMENT...
//
// Prints a line a row, its values separated by commas; nothing is quoted, so results are numbers.
#include <duckdb.h>
#include <fmt/format.h>

#include <cstdio>
#include <span>

namespace {

void print(duckdb_result& result) {
  for (idx_t row = 0; row < duckdb_row_count(&result); ++row) {
    for (idx_t column = 0; column < duckdb_column_count(&result); ++column) {
      char* text = duckdb_value_varchar(&result, column, row);
      fmt::print("{}{}", column == 0 ? "" : ",", text == nullptr ? "" : text);
      duckdb_free(text);
    }
    fmt::print("\n");
  }
}

bool run(duckdb_connection connection, const char* statement, bool shows) {
  duckdb_result result;
  const bool done = duckdb_query(connection, statement, &result) == DuckDBSuccess;
  if (!done) fmt::print(stderr, "{}\n", duckdb_result_error(&result));
  if (done && shows) print(result);
  duckdb_destroy_result(&result);
  return done;
}

}  // namespace

int main(int argc, char** argv) {
  const std::span<char*> arguments(argv, static_cast<std::size_t>(argc));
  duckdb_database database = nullptr;
  duckdb_connection connection = nullptr;
  if (arguments.size() < 3 || duckdb_open(nullptr, &database) != DuckDBSuccess ||
      duckdb_connect(database, &connection) != DuckDBSuccess)
    return 2;
  bool done = run(connection, fmt::format("SET threads = {}", arguments[1]).c_str(), false);
  for (std::size_t i = 2; done && i < arguments.size(); ++i)
    done = run(connection, arguments[i], i + 1 == arguments.size());
  duckdb_disconnect(&connection);
  duckdb_close(&database);
  return done ? 0 : 1;
}
