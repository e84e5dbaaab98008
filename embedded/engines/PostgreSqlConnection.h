// A connection to PostgreSQL, or to whatever speaks its protocol, and the rows of one query at a
// time in binary form.
#pragma once

#include <libpq-fe.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "embedded/data/SqlServer.h"

namespace embedded::engines {

struct ClearResult {
  void operator()(PGresult* result) const { PQclear(result); }
};
using ResultPtr = std::unique_ptr<PGresult, ClearResult>;

// While it waits it looks whether the user interrupted, and how long the server has been silent.
// Errors are those of data::SqlResult.
class PostgreSqlConnection {
 public:
  // The password is taken by the library from PGPASSWORD or its password file.
  PostgreSqlConnection(const data::ServerAddress& address, data::ServerOptions options);

  // Does a statement of few rows; the result holds them.
  ResultPtr execute(const std::string& sql);
  // Starts a query whose rows are fetched one by one. What was left of another is given up.
  void start(const std::string& sql);
  // The next row, or null at the end. The result holds exactly one row.
  ResultPtr fetch();

 private:
  struct Finish {
    void operator()(PGconn* connection) const { PQfinish(connection); }
  };

  void connect();
  void abandon();
  void send(const std::string& sql);
  void wait(bool forWriting);
  ResultPtr result();
  [[noreturn]] void failConnection() const;
  [[noreturn]] void failResult(const PGresult* result) const;

  data::ServerOptions options_;
  std::unique_ptr<PGconn, Finish> connection_;
  std::chrono::steady_clock::time_point heard_;
  bool busy_ = false;       // rows of a query may still come
  std::uint64_t rows_ = 0;  // of it, so far
};

}  // namespace embedded::engines
