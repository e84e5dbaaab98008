// How far a long read has come, on a terminal and nowhere else.
#include <fcntl.h>
#include <pty.h>
#include <sys/wait.h>

#include <cstdlib>

#include "FakeServer.h"
#include "Servers.h"
#include "tests_cli/Program.h"

namespace engine_tests {
namespace {

using cli_tests::Folder;

constexpr const char* command = "PROPORTIONS /ONESAMPLE v CITYPES=WALD TESTTYPES=NONE";
constexpr const char* emptyLine = "\r\x1b[K";

// The program with a terminal as its standard error; what it writes there. Its results go to a
// file "results.csv".
std::string onTerminal(const Folder& folder, std::vector<std::string> words, int& status) {
  int terminal = -1;
  const pid_t pid = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (pid == 0) {
    const int out =
        open((folder.path() / "results.csv").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    dup2(out, STDOUT_FILENO);
    words.insert(words.begin(), BUILD_ROOT "/bin/proportions");
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    alarm(60);
    execv(pointers[0], pointers.data());
    _exit(127);
  }
  std::string text;
  char buffer[4096];
  for (ssize_t got = 0; (got = read(terminal, buffer, sizeof buffer)) > 0;)
    text.append(buffer, static_cast<std::size_t>(got));
  waitpid(pid, &status, 0);
  close(terminal);
  return text;
}

void expectShown(const std::string& address, const std::string& option, const std::string& words) {
  const Folder folder;
  int status = 0;
  const std::string shown =
      onTerminal(folder, {"run", address, "-c", command, "--format", "csv", option}, status);
  EXPECT_EQ(status, 0) << shown;
  EXPECT_NE(shown.find(words), std::string::npos) << shown;
  EXPECT_TRUE(shown.ends_with(emptyLine)) << shown;
}

// A table of 3000 rows whose counting takes a while, of which the head of the answer tells.
std::string slowAnswer(const std::string& sql) {
  const auto answer = [](const std::string& body, const std::string& head = "") {
    return "HTTP/1.1 200 OK\r\n" + head + "Content-Length: " + std::to_string(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
  };
  const std::string three("\xB8\x0B\0\0\0\0\0\0", 8);
  if (sql.find("system.settings") != std::string::npos) return answer("");
  if (sql.find("system.columns") != std::string::npos) return answer("\x01v\x05UInt8");
  if (sql.starts_with("SELECT count(*)")) return answer(three);
  std::string head;
  for (const char* rows : {"1000", "2000", "3000"})
    head += std::string("X-ClickHouse-Progress: {\"read_rows\":\"") + rows +
            "\",\"read_bytes\":\"9\",\"total_rows\":\"3000\"}\r\n" + std::string(FakeServer::pause);
  // The sample: 3000 rows, one pattern; and then that pattern.
  if (sql.find("some_rows") != std::string::npos)
    return answer(std::string("\0\0\0\0\0\x70\xA7\x40\x01\0\0\0\0\0\0\0", 16), head);
  return answer(std::string(1, '\x01') + three, head);
}

TEST(Progress, OfAServerIsShownOnATerminalAndTakenAway) {
  const FakeServer server(slowAnswer);
  const Folder folder;
  int status = 0;
  const std::string shown =
      onTerminal(folder, {"run", server.address(), "-c", command, "--format", "csv"}, status);
  EXPECT_EQ(status, 0) << shown;
  EXPECT_NE(shown.find("Reading: 2 000 of 3 000 rows, "), std::string::npos) << shown;
  EXPECT_TRUE(shown.ends_with(emptyLine)) << shown;
  const std::string results = cli_tests::contentOf(folder.path() / "results.csv");
  EXPECT_EQ(results.find("Reading"), std::string::npos);
  EXPECT_EQ(results.find('\x1b'), std::string::npos);
  EXPECT_NE(results.find("Observed / Trials,3000,"), std::string::npos) << results;
}

TEST(Progress, IsNotShownWhenItIsUnwanted) {
  const FakeServer server(slowAnswer);
  const Folder folder;
  int status = 0;
  EXPECT_EQ(onTerminal(folder, {"run", server.address(), "-c", command, "--quiet"}, status), "");
  EXPECT_EQ(status, 0);
}

TEST(Progress, GoesToNoFile) {
  const FakeServer server(slowAnswer);
  const auto outcome = cli_tests::run({"run", server.address(), "-c", command, "--format", "csv"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
}

// The line goes before a message comes.
TEST(Progress, IsTakenAwayBeforeAnError) {
  const FakeServer server([](const std::string& sql) {
    std::string answer = slowAnswer(sql);
    if (sql.find("GROUP BY") != std::string::npos && sql.find("some_rows") == std::string::npos)
      answer.resize(answer.size() - 1);
    return answer;
  });
  const Folder folder;
  int status = 0;
  const std::string shown = onTerminal(folder, {"run", server.address(), "-c", command}, status);
  EXPECT_EQ(WEXITSTATUS(status), 3);
  EXPECT_NE(shown.find("Reading: "), std::string::npos) << shown;
  EXPECT_NE(shown.find(std::string(emptyLine) + "proportions: "), std::string::npos) << shown;
}

// Each part of the table is read by itself, so that the server has something to tell in between.
TEST(Progress, OfClickHouseIsShown) {
  REQUIRE_INSTALLED(clickHouse());
  clickHouse().execute("CREATE TABLE parts (v UInt8) ENGINE = MergeTree ORDER BY tuple()");
  for (int i = 0; i < 6; ++i)
    clickHouse().execute("INSERT INTO parts SELECT number % 2 FROM system.numbers LIMIT 100");
  clickHouse().execute("CREATE VIEW watched AS SELECT v + sleepEachRow(0.006) AS v FROM parts");
  expectShown(clickHouse().address("watched"), "--sentences", " rows, ");
}

TEST(Progress, OfPostgreSqlIsShown) {
  REQUIRE_INSTALLED(postgreSql());
  postgreSql().execute(
      "CREATE VIEW watched AS SELECT (i % 2)::float8 AS v FROM "
      "generate_series(1, 500) AS i WHERE pg_sleep(0.002)::text = ''");
  // While it counts, nothing tells how far it is; rows of a stream are counted here.
  expectShown(postgreSql().address("watched"), "--sentences", "Reading (");
  expectShown(postgreSql().address("watched"), "--case-by-case", " rows, ");
}

}  // namespace
}  // namespace engine_tests
