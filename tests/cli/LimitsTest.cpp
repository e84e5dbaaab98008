// What the machine does not give, and files that are cut short: a message that says what can be
// done, exit status 3 (4 for results, 130 for an interrupt), an older file of results kept whole,
// and no temporary file left behind.
#include <duckdb.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <chrono>
#include <csignal>
#include <thread>

#include "KeptResults.h"

namespace cli_tests {
namespace {

using namespace std::chrono_literals;

// Does a statement in a database of its own.
void execute(const std::string& sql) {
  duckdb_database database = nullptr;
  duckdb_connection connection = nullptr;
  ASSERT_EQ(duckdb_open(nullptr, &database), DuckDBSuccess);
  ASSERT_EQ(duckdb_connect(database, &connection), DuckDBSuccess);
  EXPECT_EQ(duckdb_query(connection, sql.c_str(), nullptr), DuckDBSuccess) << sql;
  duckdb_disconnect(&connection);
  duckdb_close(&database);
}

// No file that is written grows beyond this, as on a disk without room; programs inherit it.
class LargestFile {
 public:
  explicit LargestFile(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit now{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &now);
  }
  ~LargestFile() { setrlimit(RLIMIT_FSIZE, &before_); }
  LargestFile(const LargestFile&) = delete;
  LargestFile& operator=(const LargestFile&) = delete;

 private:
  rlimit before_{};
};

class Limits : public KeptResults {
 protected:
  // Sorting these rows takes more memory than spilling_ allows.
  void makeRows(int rows) {
    execute("COPY (SELECT i * 7919 % 3 AS g, i % 2 AS v, i * 31 % 1000003 AS x FROM range(" +
            std::to_string(rows) + ") t(i)) TO '" + (folder_.path() / "rows.parquet").string() +
            "' (FORMAT parquet, ROW_GROUP_SIZE 20000)");
    files_ = {"results.txt", "rows.parquet"};
  }
  static constexpr const char* sorted_ = "PROPORTIONS /ONESAMPLE v x TESTTYPES=NONE";
  const std::vector<std::string> spilling_{"--split",   "g", "--case-by-case", "--memory", "20MB",
                                           "--threads", "1"};

  bool hasSpilled() const {
    std::error_code gone;
    for (auto at = std::filesystem::recursive_directory_iterator(temporary_.path(), gone);
         !gone && at != std::filesystem::recursive_directory_iterator(); at.increment(gone)) {
      if (at->path().filename().string().starts_with("duckdb_temp")) {
        return true;
      }
    }
    return false;
  }

  bool waitUntilItSpills() const {
    for (int i = 0; i < 30000; ++i) {
      if (hasSpilled()) {
        return true;
      }
      std::this_thread::sleep_for(1ms);
    }
    return false;
  }
};

TEST_F(Limits, ARunThatSpillsComesToItsEnd) {
  makeRows(1000000);
  Running running(call("rows.parquet", sorted_, spilling_));
  EXPECT_TRUE(waitUntilItSpills());
  const Outcome outcome = running.wait();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(temporary_.files(), std::vector<std::string>{});
}

TEST_F(Limits, NoRoomToSpill) {
  makeRows(1000000);
  const LargestFile small(65536);
  const Outcome outcome = run(call("rows.parquet", sorted_, spilling_));
  expectFailure(outcome, 3, "room for temporary files");
  EXPECT_NE(outcome.err.find("TMPDIR"), std::string::npos) << outcome.err;
}

TEST_F(Limits, NoRoomForStandardInput) {
  Call input = call("-", "PROPORTIONS /ONESAMPLE v TESTTYPES=NONE");
  input.input = "v\n";
  while (input.input.size() < 40000) {
    input.input += "1\n0\n";
  }
  const LargestFile small(16384);
  expectFailure(run(input), 3, "room for temporary files");
}

TEST_F(Limits, NoRoomForResults) {
  folder_.write("data.csv", "v\n1\n0\n");
  files_ = {"data.csv", "results.txt"};
  const LargestFile small(100);
  expectFailure(run(call("data.csv", "PROPORTIONS /ONESAMPLE v")), 4, "File too large");
}

// A sheet is larger before it is packed than the workbook that holds it, and may have no room where
// that has.
TEST_F(Limits, RoomForTheWorkbookIsEnough) {
  std::string names = "v0";
  std::string row = "1";
  for (int i = 1; i < 40; ++i) {
    names += ",v" + std::to_string(i);
    row += "," + std::to_string(i % 2);
  }
  folder_.write("data.csv", names + "\n" + row + "\n" + row + "\n");
  Call wide = call("data.csv", "PROPORTIONS /ONESAMPLE *", {"--format", "xlsx"});
  ASSERT_EQ(run(wide).status, 0);
  const std::string whole = contentOf(folder_.path() / "results.txt");
  ASSERT_LT(whole.size(), 20000U);
  const LargestFile small(20000);
  const Outcome outcome = run(wide);
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_TRUE(contentOf(folder_.path() / "results.txt") == whole);
}

// A folder is no file: reading it is an error, not an empty text.
TEST_F(Limits, AFolderIsNoFileOfTexts) {
  folder_.write("data.csv", "v\n1\n0\n");
  files_ = {"data.csv", "results.txt"};
  expectFailure(run(call("data.csv", "PROPORTIONS /ONESAMPLE v", {"--schema", "/"})), 3,
                "Is a directory");
  Call fromFile = call("data.csv", "", {"-f", "/"});
  fromFile.arguments.erase(fromFile.arguments.begin() + 2, fromFile.arguments.begin() + 4);
  expectFailure(run(fromFile), 2, "Is a directory");
}

TEST_F(Limits, TooLittleMemory) {
  folder_.write("data.csv", "v,g\n1,1\n0,2\n");
  makeRows(100000);
  files_ = {"data.csv", "results.txt", "rows.parquet"};
  for (const char* data : {"data.csv", "rows.parquet"}) {
    const Outcome outcome =
        run(call(data, "PROPORTIONS /ONESAMPLE v TESTTYPES=NONE", {"--memory", "100KB"}));
    expectFailure(outcome, 3, "larger --memory");
    EXPECT_NE(outcome.err.find(data), std::string::npos) << outcome.err;
  }
}

TEST_F(Limits, AnInterruptWhileSpilling) {
  makeRows(2000000);
  Running running(call("rows.parquet", sorted_, spilling_));
  ASSERT_TRUE(waitUntilItSpills());
  running.signal(SIGINT);
  expectFailure(running.wait(), 130, "");
}

// Cut at the beginning, within the pages of data, and within the description at the end.
TEST_F(Limits, AParquetFileThatIsCutShort) {
  makeRows(100000);
  const std::string whole = contentOf(folder_.path() / "rows.parquet");
  const std::string description = whole.substr(whole.size() - 8, 4);
  const std::size_t length = static_cast<unsigned char>(description[0]) +
                             256U * static_cast<unsigned char>(description[1]);
  ASSERT_LT(length + 8, whole.size() / 2);
  for (const std::size_t kept : {std::size_t{0}, std::size_t{3}, std::size_t{4}, std::size_t{12},
                                 whole.size() / 4, whole.size() / 2, whole.size() - length - 8,
                                 whole.size() - length / 2, whole.size() - 4, whole.size() - 1}) {
    folder_.write("rows.parquet", whole.substr(0, kept));
    for (const char* way : {"--quiet", "--case-by-case"}) {
      SCOPED_TRACE(std::to_string(kept) + way);
      expectFailure(run(call("rows.parquet", sorted_, {way})), 3, "rows.parquet");
    }
  }
}

// The description is whole, but what it describes is not there.
TEST_F(Limits, AParquetFileWithoutItsPages) {
  makeRows(100000);
  std::string content = contentOf(folder_.path() / "rows.parquet");
  const std::size_t half = content.size() / 2;
  content.replace(4, half, half, '\0');
  folder_.write("rows.parquet", content);
  for (const char* way : {"--quiet", "--case-by-case"}) {
    expectFailure(run(call("rows.parquet", sorted_, {way})), 3, "rows.parquet");
  }
}

}  // namespace
}  // namespace cli_tests
