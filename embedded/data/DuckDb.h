// The embedded engine: RAII over its C interface. Nothing here knows what is asked.
//
// The engine never fetches or loads an extension; what it spills goes to the folder it is given.
#pragma once

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "DuckDbFunctions.h"
#include "Progress.h"

namespace embedded::data {

struct EngineOptions {
  int threads = 0;              // 0: as many as the machine has
  std::string memory;           // "512MB"; empty for the engine's own limit
  std::string temporaryFolder;  // where it may spill
  ProgressListener progress = {};
};

// What the engine refused, in its own words; the relation turns it into an Error(Data).
class EngineFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  // The first line of what the engine said, without its class of error.
  std::string brief() const;
};

// A chunk of a result, valid until the next one is fetched.
class Chunk {
 public:
  Chunk() = default;
  explicit Chunk(duckdb_data_chunk chunk) : chunk_(chunk) {}
  Chunk& operator=(Chunk&& other) noexcept {
    std::swap(chunk_, other.chunk_);
    return *this;
  }
  ~Chunk() { duckdb_destroy_data_chunk(&chunk_); }

  std::size_t size() const { return duckdb_data_chunk_get_size(chunk_); }
  duckdb_vector column(std::size_t index) const {
    return duckdb_data_chunk_get_vector(chunk_, index);
  }

 private:
  duckdb_data_chunk chunk_ = nullptr;
};

// A running query whose result is streamed in chunks. It has a connection of its own, so that
// several may be open. While it works it looks at Session::cancelled and throws
// Error(Cancelled); what the engine refuses is an EngineFailure.
class Query {
 public:
  // `progress` is told until the first chunk is there, and must outlive that.
  Query(duckdb_database database, const std::string& sql, const std::vector<std::string>& blobs,
        const ProgressListener& progress);
  ~Query();
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;

  // False at the end. A chunk has at least one row.
  bool next(Chunk& chunk);

 private:
  struct Handles;
  void prepare(const std::string& sql, const std::vector<std::string>& blobs);
  void start(const ProgressListener& progress);
  std::unique_ptr<Handles> handles_;
};

using TextRow = std::vector<std::optional<std::string>>;

class Engine {
 public:
  explicit Engine(const EngineOptions& options);
  ~Engine();
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  std::unique_ptr<Query> query(const std::string& sql, const std::vector<std::string>& blobs = {});
  // The whole, small result of a query as texts, null for null.
  std::vector<TextRow> rows(const std::string& sql);
  // Makes a function known to all further queries.
  void add(duckdb_aggregate_function function);
  void add(duckdb_scalar_function function);
  // A name that no other function added to this engine has.
  std::string newName(const std::string& beginning);
  // Several statements on one connection; the result of the last.
  std::vector<TextRow> rows(const std::vector<std::string>& statements);

 private:
  duckdb_database database_ = nullptr;
  ProgressListener progress_;
  int names_ = 0;
};

}  // namespace embedded::data
