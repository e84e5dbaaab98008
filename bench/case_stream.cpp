// How fast cases stream from a Parquet file through the module, one by one, beside the bare
// engine that reads the same columns on the same number of threads.
//
//   bench_case_stream [ROWS]
//
// Prints one line a reader: wall time, processor time, peak memory, and case values (rows times
// columns of one pass) a second of processor time: of one pass - a run case by case makes two - and
// of the whole run. Checks that all count the same successes.
#include <duckdb.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

extern char** environ;

namespace {

constexpr int columns = 4;

// One connection to an engine of its own.
class Engine {
 public:
  Engine() {
    if (duckdb_open(nullptr, &database_) == DuckDBError ||
        duckdb_connect(database_, &connection_) == DuckDBError) {
      throw std::runtime_error("the engine does not start");
    }
    query("SET threads = 1");
  }
  ~Engine() {
    duckdb_disconnect(&connection_);
    duckdb_close(&database_);
  }
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  // The first value of the result.
  double query(const std::string& sql) {
    duckdb_result result;
    if (duckdb_query(connection_, sql.c_str(), &result) == DuckDBError) {
      const std::string reason = duckdb_result_error(&result);
      duckdb_destroy_result(&result);
      throw std::runtime_error(reason);
    }
    const double value = duckdb_row_count(&result) > 0 ? duckdb_value_double(&result, 0, 0) : 0.0;
    duckdb_destroy_result(&result);
    return value;
  }

 private:
  duckdb_database database_ = nullptr;
  duckdb_connection connection_ = nullptr;
};

struct Measured {
  double wall = 0.0;
  double processor = 0.0;
  double peakMegabytes = 0.0;
};

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

// Runs a program to its end, its output into a file.
Measured runProgram(const std::vector<std::string>& arguments, const std::string& output) {
  std::vector<char*> raw;
  for (const std::string& argument : arguments) {
    raw.push_back(const_cast<char*>(argument.c_str()));
  }
  raw.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(),
                                   O_WRONLY | O_CREAT | O_TRUNC, 0600);
  const auto start = std::chrono::steady_clock::now();
  pid_t child = 0;
  if (posix_spawn(&child, raw.front(), &actions, nullptr, raw.data(), environ) != 0) {
    throw std::runtime_error("cannot start " + arguments.front());
  }
  posix_spawn_file_actions_destroy(&actions);
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    throw std::runtime_error(fmt::format("{} failed with {}", arguments.front(), status));
  }
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
  return {wall.count(), seconds(usage.ru_utime) + seconds(usage.ru_stime),
          static_cast<double>(usage.ru_maxrss) / 1024.0};
}

// The successes of the first variable, from tidy csv.
double successesIn(const std::string& path) {
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (line.find("Observed / Successes,") != std::string::npos) {
      std::istringstream rest(line.substr(line.find("Observed / Successes,") + 21));
      double value = 0.0;
      rest >> value;
      return value;
    }
  }
  throw std::runtime_error("no successes in the output");
}

void print(const char* reader, const Measured& measured, double values, int passes) {
  const double rate = values / measured.processor / 1e6;
  fmt::print("{:<28}{:>9.2f} s{:>9.2f} s{:>10.1f} M/s{:>10.1f} M/s{:>8.0f} MB\n", reader,
             measured.wall, measured.processor, rate * passes, rate, measured.peakMegabytes);
}

void measure(long long rows, const std::filesystem::path& folder) {
  const std::string data = (folder / "data.parquet").string();
  const std::string output = (folder / "out.csv").string();
  Engine engine;
  engine.query(
      fmt::format("COPY (SELECT (hash(i) % 10 < 3)::DOUBLE AS a, (hash(i + 1) % 2)::DOUBLE "
                  "AS b, (hash(i + 2) % 7 = 0)::DOUBLE AS c, (hash(i + 3) % 3 = 0)::DOUBLE "
                  "AS d FROM range({}) t(i)) TO '{}' (FORMAT parquet)",
                  rows, data));
  const double values = static_cast<double>(rows) * columns;
  fmt::print("{} rows of {} columns, Parquet, one thread\n", rows, columns);
  fmt::print("{:<28}{:>11}{:>11}{:>14}{:>14}{:>11}\n", "reader", "wall", "processor", "of a pass",
             "of the run", "peak");

  const auto start = std::chrono::steady_clock::now();
  rusage before{};
  getrusage(RUSAGE_SELF, &before);
  const double expected = engine.query("SELECT sum(a) FROM read_parquet('" + data + "')");
  engine.query("SELECT sum(a), sum(b), sum(c), sum(d) FROM read_parquet('" + data + "')");
  rusage after{};
  getrusage(RUSAGE_SELF, &after);
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - start;
  print("bare engine, sums",
        {wall.count(), seconds(after.ru_utime) - seconds(before.ru_utime),
         static_cast<double>(after.ru_maxrss) / 1024.0},
        values, 1);

  for (const char* way : {"--case-by-case", "--quiet"}) {
    const Measured measured =
        runProgram({BUILD_ROOT "/bin/proportions", "run", data, "-c",
                    "PROPORTIONS ONESAMPLE a b c d", way, "--threads", "1", "--format", "csv"},
                   output);
    const bool chosen = std::string_view(way) == "--quiet";
    print(chosen ? "proportions, as it chooses" : "proportions, case by case", measured, values,
          chosen ? 1 : 2);
    if (successesIn(output) != expected) {
      throw std::runtime_error("the counts differ from the engine's");
    }
  }
}

}  // namespace

int main(int argc, char** argv) {
  const long long rows = argc > 1 ? std::atoll(argv[1]) : 10'000'000;
  std::string pattern = (std::filesystem::temp_directory_path() / "bench-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    return 1;
  }
  int status = 0;
  try {
    measure(rows, pattern);
  } catch (const std::exception& problem) {
    fmt::print(stderr, "{}\n", problem.what());
    status = 1;
  }
  std::filesystem::remove_all(pattern);
  return status;
}
