// Servers that the tests start by the project's own scripts and end with themselves.
//
// A server lives as long as its object: the script behind it waits for the end of its standard
// input, and that pipe closes also when the test program dies.
#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace engine_tests {

// A script of script/ that runs servers.
class ServerScript {
 public:
  explicit ServerScript(const std::string& name);
  ~ServerScript();
  ServerScript(const ServerScript&) = delete;
  ServerScript& operator=(const ServerScript&) = delete;

  // Whether the server program is there at all.
  bool isInstalled() const { return !isAbsent_; }
  // The words of the lines that it printed before "ready".
  const std::vector<std::vector<std::string>>& lines() const { return lines_; }
  // The processes of its servers.
  std::vector<pid_t> processes() const;
  // Ends it and waits for the end.
  void end();

 private:
  std::filesystem::path folder_;
  pid_t pid_ = -1;
  int input_ = -1;
  bool isAbsent_ = false;
  std::vector<std::vector<std::string>> lines_;
};

// Three shards. Tables are made on all of them; the table that a test reads is on the first.
class ClickHouse {
 public:
  ClickHouse() : script_("clickhouse-servers") {}

  ServerScript& script() { return script_; }
  // Does a statement on a shard, from 0, or on all; a failed test and its text when it is refused.
  std::string execute(const std::string& sql, int shard = 0) const;
  void executeOnAll(const std::string& sql) const;
  pid_t process(int shard) const;
  std::string address(const std::string& table, const std::string& user = "") const;

 private:
  std::string port(int shard) const;
  ServerScript script_;
};

class PostgreSql {
 public:
  PostgreSql() : script_("postgresql-servers") {}

  ServerScript& script() { return script_; }
  void execute(const std::string& sql) const;
  // The first value of the answer.
  std::string ask(const std::string& sql) const;
  pid_t process() const;
  std::string address(const std::string& table, const std::string& user = "tester") const;

 private:
  ServerScript script_;
};

// Those that most tests share, started when first asked for.
ClickHouse& clickHouse();
PostgreSql& postgreSql();

// A name as an address writes it.
std::string escaped(std::string_view name);

}  // namespace engine_tests

// Ends a test that has no server program to run against.
#define REQUIRE_INSTALLED(server)              \
  ASSERT_TRUE((server).script().isInstalled()) \
      << "the server is not installed: script/setup installs it"
