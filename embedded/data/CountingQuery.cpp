// The aggregate: registered for one query, with the job of that query as its extra information.
#include "CountingQuery.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <memory>
#include <mutex>
#include <numeric>
#include <string_view>
#include <utility>

#include "CountingTable.h"
#include "CountingValues.h"

namespace embedded::data {
namespace {

// The columns that make a pattern.
struct PatternColumns {
  std::vector<int> widths;
  bool weighted = false;  // by a column behind these
  bool textual = false;
};

// What one thread has counted.
class Counter {
 public:
  explicit Counter(const PatternColumns& pattern) : table_(pattern.widths, pattern.weighted) {
    for (const int width : pattern.widths) addColumn(width, pattern.textual);
    if (pattern.weighted) addColumn(0, pattern.textual);
  }

  bool add(duckdb_data_chunk chunk) {
    const std::size_t count = duckdb_data_chunk_get_size(chunk);
    std::vector<const OBS*> values;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      Column& column = columns_[i];
      const std::size_t words = ObsWords(column.width);
      column.words.resize(count * words);
      column.writer.write(duckdb_data_chunk_get_vector(chunk, i), count, column.words.data(), words,
                          column.faults);
      values.push_back(column.words.data());
    }
    return table_.add(values, count);
  }

  bool combine(const Counter& other) {
    for (std::size_t i = 0; i < columns_.size(); ++i) {
      ColumnFaults& faults = columns_[i].faults;
      const ColumnFaults& theirs = other.columns_[i].faults;
      faults.nonFinite += theirs.nonFinite;
      faults.suspect |= theirs.suspect;
      faults.tooLong |= theirs.tooLong;
    }
    return table_.combine(other.table_);
  }

  CountedPatterns finish() const {
    CountedPatterns counted;
    counted.batch = table_.finish();
    for (const Column& column : columns_) counted.faults.push_back(column.faults);
    return counted;
  }

 private:
  struct Column {
    int width;
    ColumnWriter writer;
    std::vector<OBS> words;
    ColumnFaults faults;
  };
  void addColumn(int width, bool textual) {
    columns_.push_back({width, ColumnWriter(width, textual), {}, {}});
  }

  CountingTable table_;
  std::vector<Column> columns_;
};

// What all threads of one query share. It owns their counters: a query that ends early does not
// give back all of its states.
struct Job {
  PatternColumns pattern;
  std::atomic<bool> tooMany = false;
  std::mutex mutex;
  std::exception_ptr problem;                      // guarded by the mutex
  std::vector<std::unique_ptr<Counter>> counters;  // guarded by the mutex
  std::optional<CountedPatterns> result;

  void keep(std::exception_ptr what) {
    const std::scoped_lock lock(mutex);
    if (!problem) problem = std::move(what);
  }

  Counter* newCounter() {
    auto counter = std::make_unique<Counter>(pattern);
    const std::scoped_lock lock(mutex);
    return counters.emplace_back(std::move(counter)).get();
  }

  void discard(const Counter* counter) {
    const std::scoped_lock lock(mutex);
    std::erase_if(counters, [&](const auto& one) { return one.get() == counter; });
  }
};

// The engine's state: a counter of the job, made when it is needed.
struct State {
  Counter* counter;
};

State& stateAt(duckdb_aggregate_state* states, std::size_t index) {
  return *reinterpret_cast<State*>(states[index]);
}

// Does a part of the work of a query. No exception crosses the engine: what is thrown is kept for
// the one who asked, and the engine is told to stop.
template <class Work>
void guarded(duckdb_function_info info, const Work& work) {
  Job& job = *static_cast<Job*>(duckdb_aggregate_function_get_extra_info(info));
  try {
    if (work(job)) return;
    job.tooMany = true;
  } catch (...) {
    job.keep(std::current_exception());
  }
  duckdb_aggregate_function_set_error(info, "counting stopped");
}

idx_t stateSize(duckdb_function_info) {
  return sizeof(State);
}

void begin(duckdb_function_info, duckdb_aggregate_state state) {
  stateAt(&state, 0).counter = nullptr;
}

// The query has no groups, so all cases of a chunk belong to one state.
void update(duckdb_function_info info, duckdb_data_chunk chunk, duckdb_aggregate_state* states) {
  guarded(info, [&](Job& job) {
    if (job.tooMany) return false;
    if (duckdb_data_chunk_get_size(chunk) == 0) return true;
    State& state = stateAt(states, 0);
    if (state.counter == nullptr) state.counter = job.newCounter();
    return state.counter->add(chunk);
  });
}

void combine(duckdb_function_info info, duckdb_aggregate_state* from, duckdb_aggregate_state* to,
             idx_t count) {
  guarded(info, [&](Job& job) {
    for (std::size_t i = 0; i < count; ++i) {
      Counter* const source = std::exchange(stateAt(from, i).counter, nullptr);
      State& target = stateAt(to, i);
      if (source == nullptr) continue;
      if (target.counter == nullptr) {
        target.counter = source;
      } else {
        if (!target.counter->combine(*source)) return false;
        job.discard(source);
      }
    }
    return true;
  });
}

// The value of the aggregate is of no interest; the patterns go to the job.
void finish(duckdb_function_info info, duckdb_aggregate_state* states, duckdb_vector values,
            idx_t count, idx_t offset) {
  guarded(info, [&](Job& job) {
    for (std::size_t i = 0; i < count; ++i) {
      static_cast<bool*>(duckdb_vector_get_data(values))[offset + i] = true;
      const State& state = stateAt(states, i);
      job.result =
          state.counter == nullptr ? Counter(job.pattern).finish() : state.counter->finish();
    }
    return true;
  });
}

struct Type {
  explicit Type(duckdb_type id) : value(duckdb_create_logical_type(id)) {}
  Type(const Type&) = delete;
  Type& operator=(const Type&) = delete;
  ~Type() { duckdb_destroy_logical_type(&value); }
  duckdb_logical_type value;
};

// The engine keeps the function until it is closed; it is called by this query only.
void registerCounting(Engine& engine, const std::string& name, std::size_t parameters, Job& job) {
  duckdb_aggregate_function function = duckdb_create_aggregate_function();
  const std::unique_ptr<duckdb_aggregate_function, void (*)(duckdb_aggregate_function*)> owner(
      &function, duckdb_destroy_aggregate_function);
  duckdb_aggregate_function_set_name(function, name.c_str());
  const Type any(DUCKDB_TYPE_ANY);
  const Type boolean(DUCKDB_TYPE_BOOLEAN);
  for (std::size_t i = 0; i < parameters; ++i)
    duckdb_aggregate_function_add_parameter(function, any.value);
  duckdb_aggregate_function_set_return_type(function, boolean.value);
  duckdb_aggregate_function_set_special_handling(function);  // nulls are values here
  duckdb_aggregate_function_set_functions(function, stateSize, begin, update, combine, finish);
  duckdb_aggregate_function_set_extra_info(function, &job, nullptr);
  engine.add(function);
}

// Runs the query; nothing when there are too many patterns.
std::optional<CountedPatterns> runCounting(Engine& engine, const std::string& rows,
                                           const std::vector<std::string>& columns, Job& job) {
  const std::string name = engine.newName("count_patterns");
  registerCounting(engine, name, columns.size(), job);
  std::string list;
  for (const std::string& column : columns) list += (list.empty() ? "" : ", ") + column;
  try {
    const auto query = engine.query("SELECT " + name + "(" + list + ") FROM (" + rows + ")");
    Chunk chunk;
    while (query->next(chunk)) {
    }
  } catch (const EngineFailure&) {
    if (job.problem) std::rethrow_exception(job.problem);
    if (!job.tooMany) throw;
  }
  job.counters.clear();  // the result is a copy
  if (job.tooMany) return std::nullopt;
  return std::move(job.result);
}

// Compares two strings as the engine orders them: none first, else by bytes without the blanks
// that fill them up.
int compareStrings(const OBS* a, const OBS* b, int width) {
  const auto text = [width](const OBS* value) {
    std::string_view bytes(value->bytes, ObsWords(width) * sizeof(OBS));
    return bytes.substr(0, bytes.find_last_not_of(' ') + 1);
  };
  const auto isNull = [width](const OBS* value) {
    const auto end = value->bytes + ObsWords(width) * sizeof(OBS);
    return std::all_of(value->bytes, end, [](char c) { return c == '\0'; });
  };
  if (isNull(a) || isNull(b)) return isNull(a) ? (isNull(b) ? 0 : -1) : 1;
  return text(a).compare(text(b));
}

}  // namespace

void sortBySplits(PatternBatch& batch, const ScanRequest& request) {
  if (request.orderBy == 0 || batch.weights.empty()) return;
  const std::size_t words = batch.rows.size() / batch.weights.size();
  const auto less = [&](std::size_t a, std::size_t b) {
    const OBS* x = batch.rows.data() + a * words;
    const OBS* y = batch.rows.data() + b * words;
    for (std::size_t c = 0; c < request.orderBy; ++c) {
      const int width = request.columns[c].width;
      if (width == 0 && x->number != y->number) return x->number < y->number;
      if (width != 0)
        if (const int order = compareStrings(x, y, width); order != 0) return order < 0;
      x += ObsWords(width);
      y += ObsWords(width);
    }
    return false;
  };
  std::vector<std::size_t> order(batch.weights.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::ranges::sort(order, less);
  PatternBatch sorted;
  sorted.rows.reserve(batch.rows.size());
  for (const std::size_t i : order) {
    const auto row = batch.rows.begin() + static_cast<std::ptrdiff_t>(i * words);
    sorted.rows.insert(sorted.rows.end(), row, row + static_cast<std::ptrdiff_t>(words));
    sorted.weights.push_back(batch.weights[i]);
    sorted.counts.push_back(batch.counts[i]);
  }
  batch = std::move(sorted);
}

bool canCount(const ScanRequest& request) {
  if (request.columns.empty()) return false;
  for (std::size_t i = 0; i < request.orderBy; ++i)
    if (isText(request.columns[i].as) && !request.collation.empty()) return false;
  return true;
}

std::optional<CountedPatterns> countPatterns(Engine& engine, const CountedRows& rows,
                                             const ScanRequest& request) {
  Job job;
  job.pattern.weighted = request.weight >= 0;
  job.pattern.textual = rows.textual;
  std::vector<std::size_t> order;  // of the columns: the weight goes last
  for (std::size_t i = 0; i < request.columns.size(); ++i) {
    if (static_cast<int>(i) == request.weight) continue;
    order.push_back(i);
    job.pattern.widths.push_back(request.columns[i].width);
  }
  if (job.pattern.weighted) order.push_back(static_cast<std::size_t>(request.weight));
  std::vector<std::string> columns;
  std::vector<std::unique_ptr<CountingValues>> values;
  for (const std::size_t i : order) {
    columns.push_back("v" + std::to_string(i));
    values.push_back(rows.dictionaries[i] ? std::make_unique<CountingValues>(engine) : nullptr);
    if (values.back()) columns.back() = values.back()->call(columns.back());
  }
  std::optional<CountedPatterns> result = runCounting(engine, rows.sql, columns, job);
  if (!result) return std::nullopt;
  CountedPatterns counted{std::move(result->batch), {}};
  counted.faults.resize(order.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    ColumnFaults& faults = counted.faults[order[i]];
    faults = result->faults[i];
    faults.suspect |= values[i] && values[i]->suspect();
  }
  sortBySplits(counted.batch, request);
  return counted;
}

}  // namespace embedded::data
