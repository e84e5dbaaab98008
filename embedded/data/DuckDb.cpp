// The embedded engine's C interface, held by owners.
#include "DuckDb.h"

#include <chrono>
#include <exception>
#include <new>
#include <system_error>
#include <thread>

#include "DataMessages.h"
#include "embedded/session/Session.h"

namespace embedded::data {
namespace {

// A result that is destroyed with its scope.
struct Result {
  duckdb_result value{};
  Result() = default;
  Result(const Result&) = delete;
  Result& operator=(const Result&) = delete;
  ~Result() { duckdb_destroy_result(&value); }
};

struct Connection {
  duckdb_connection value = nullptr;
  explicit Connection(duckdb_database database) {
    if (duckdb_connect(database, &value) != DuckDBSuccess) throw EngineFailure("no connection");
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  // While an exception unwinds its thread, the engine closes a connection without waiting for the
  // workers that still hold it, and they would use what is gone: another thread closes it then.
  ~Connection() {
    if (std::uncaught_exceptions() == 0) {
      duckdb_disconnect(&value);
      return;
    }
    try {
      std::thread([this] { duckdb_disconnect(&value); }).join();
    } catch (const std::system_error&) {
      duckdb_disconnect(&value);  // no thread can be had
    }
  }
};

std::string textOr(const char* text, const char* otherwise) {
  return text != nullptr ? text : otherwise;
}

std::vector<TextRow> textRows(duckdb_result& result) {
  std::vector<TextRow> rows(duckdb_row_count(&result));
  for (std::size_t row = 0; row < rows.size(); ++row) {
    for (std::size_t column = 0; column < duckdb_column_count(&result); ++column) {
      char* text = duckdb_value_varchar(&result, column, row);
      rows[row].push_back(text == nullptr ? std::nullopt : std::optional<std::string>(text));
      duckdb_free(text);
    }
  }
  return rows;
}

void setOption(duckdb_config config, const char* name, const std::string& value) {
  if (duckdb_set_config(config, name, value.c_str()) != DuckDBSuccess)
    throw EngineFailure(std::string("the setting ") + name + " was refused");
}

// Has the engine tell how far the queries of a connection have come, but print nothing of it.
void watch(duckdb_connection connection) {
  for (const char* setting : {"SET enable_progress_bar = true",
                              "SET enable_progress_bar_print = false", "SET progress_bar_time = 0"})
    duckdb_query(connection, setting, nullptr);
}

Progress progressOf(duckdb_connection connection) {
  const duckdb_query_progress_type state = duckdb_query_progress(connection);
  if (state.percentage < 0) return {};
  return {state.rows_processed, state.total_rows_to_process};
}

void configure(duckdb_config config, const EngineOptions& options) {
  setOption(config, "autoinstall_known_extensions", "false");
  setOption(config, "autoload_known_extensions", "false");
  setOption(config, "preserve_insertion_order", "true");
  if (!options.temporaryFolder.empty())
    setOption(config, "temp_directory", options.temporaryFolder);
  if (options.threads > 0) setOption(config, "threads", std::to_string(options.threads));
  if (!options.memory.empty() &&
      duckdb_set_config(config, "memory_limit", options.memory.c_str()) != DuckDBSuccess)
    failUsage(messages::badMemory, {options.memory});
}

}  // namespace

std::string EngineFailure::brief() const {
  std::string line = what();
  line.resize(std::min(line.find('\n'), line.size()));
  const std::size_t colon = line.find("Error: ");
  return colon == std::string::npos ? line : line.substr(colon + 7);
}

struct Query::Handles {
  explicit Handles(duckdb_database database) : connection(database) {}
  Handles(const Handles&) = delete;
  Handles& operator=(const Handles&) = delete;
  ~Handles() {
    duckdb_destroy_pending(&pending);
    duckdb_destroy_prepare(&prepared);
  }
  // Stops what still runs before the result goes, so that no worker is left behind.
  void cancel() const { duckdb_interrupt(connection.value); }

  Connection connection;
  duckdb_prepared_statement prepared = nullptr;
  duckdb_pending_result pending = nullptr;
  Result result;
};

Query::Query(duckdb_database database, const std::string& sql,
             const std::vector<std::string>& blobs, const ProgressListener& progress)
    : handles_(std::make_unique<Handles>(database)) {
  if (progress) watch(handles_->connection.value);
  prepare(sql, blobs);
  start(progress);
}

Query::~Query() = default;

void Query::prepare(const std::string& sql, const std::vector<std::string>& blobs) {
  duckdb_prepared_statement& prepared = handles_->prepared;
  if (duckdb_prepare(handles_->connection.value, sql.c_str(), &prepared) != DuckDBSuccess)
    throw EngineFailure(textOr(duckdb_prepare_error(prepared), "not prepared"));
  for (std::size_t i = 0; i < blobs.size(); ++i)
    duckdb_bind_blob(prepared, i + 1, blobs[i].data(), blobs[i].size());
}

// Runs the query task by task until its first chunk is there, looking at the user in between.
void Query::start(const ProgressListener& progress) {
  duckdb_pending_result& pending = handles_->pending;
  if (duckdb_pending_prepared_streaming(handles_->prepared, &pending) != DuckDBSuccess)
    throw EngineFailure(textOr(duckdb_pending_error(pending), "not started"));
  for (;;) {
    if (Session::cancelled.load(std::memory_order_relaxed)) handles_->cancel();
    const duckdb_pending_state state = duckdb_pending_execute_task(pending);
    if (state == DUCKDB_PENDING_ERROR) {
      Session::checkCancelled();
      throw EngineFailure(textOr(duckdb_pending_error(pending), "failed"));
    }
    if (duckdb_pending_execution_is_finished(state)) break;
    if (progress) progress(progressOf(handles_->connection.value));
    if (state == DUCKDB_PENDING_NO_TASKS_AVAILABLE)
      std::this_thread::sleep_for(std::chrono::microseconds(100));
  }
  if (duckdb_execute_pending(pending, &handles_->result.value) != DuckDBSuccess)
    throw EngineFailure(textOr(duckdb_result_error(&handles_->result.value), "failed"));
}

bool Query::next(Chunk& chunk) {
  Session::checkCancelled();
  duckdb_data_chunk fetched = duckdb_fetch_chunk(handles_->result.value);
  chunk = Chunk(fetched);
  if (fetched != nullptr) return chunk.size() > 0;
  const char* error = duckdb_result_error(&handles_->result.value);
  if (error != nullptr && *error != '\0') throw EngineFailure(error);
  return false;
}

Engine::Engine(const EngineOptions& options) : progress_(options.progress) {
  duckdb_config config = nullptr;
  if (duckdb_create_config(&config) != DuckDBSuccess) throw std::bad_alloc();
  const std::unique_ptr<duckdb_config, void (*)(duckdb_config*)> owner(&config,
                                                                       duckdb_destroy_config);
  configure(config, options);
  char* error = nullptr;
  if (duckdb_open_ext(nullptr, &database_, config, &error) != DuckDBSuccess) {
    const std::string text = textOr(error, "not opened");
    duckdb_free(error);
    throw EngineFailure(text);
  }
}

Engine::~Engine() {
  duckdb_close(&database_);
}

std::unique_ptr<Query> Engine::query(const std::string& sql,
                                     const std::vector<std::string>& blobs) {
  return std::make_unique<Query>(database_, sql, blobs, progress_);
}

void Engine::add(duckdb_aggregate_function function) {
  const Connection connection(database_);
  if (duckdb_register_aggregate_function(connection.value, function) != DuckDBSuccess)
    throw EngineFailure("the function was refused");
}

void Engine::add(duckdb_scalar_function function) {
  const Connection connection(database_);
  if (duckdb_register_scalar_function(connection.value, function) != DuckDBSuccess)
    throw EngineFailure("the function was refused");
}

std::string Engine::newName(const std::string& beginning) {
  return beginning + '_' + std::to_string(++names_);
}

std::vector<TextRow> Engine::rows(const std::string& sql) {
  return rows(std::vector<std::string>{sql});
}

std::vector<TextRow> Engine::rows(const std::vector<std::string>& statements) {
  const Connection connection(database_);
  std::vector<TextRow> rows;
  for (const std::string& sql : statements) {
    Session::checkCancelled();
    Result result;
    if (duckdb_query(connection.value, sql.c_str(), &result.value) != DuckDBSuccess)
      throw EngineFailure(textOr(duckdb_result_error(&result.value), "failed"));
    rows = textRows(result.value);
  }
  return rows;
}

}  // namespace embedded::data
