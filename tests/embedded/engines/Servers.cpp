#include "Servers.h"

#include <curl/curl.h>
#include <fcntl.h>
#include <libpq-fe.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cctype>
#include <csignal>
#include <sstream>
#include <system_error>

namespace engine_tests {
namespace {

constexpr int absent = 77;

void pipeOf(int (&ends)[2]) {
  if (pipe2(ends, O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category());
}

std::filesystem::path makeFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "engine-tests-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) throw std::system_error(errno, std::generic_category());
  // A server that runs as another user must find its folder.
  std::filesystem::permissions(name, std::filesystem::perms(0755));
  return name;
}

// Ends the shared servers when the tests are over, while errors can still be told.
class SharedServers : public ::testing::Environment {
 public:
  void TearDown() override {
    clickHouse_.reset();
    postgreSql_.reset();
  }
  std::unique_ptr<ClickHouse> clickHouse_;
  std::unique_ptr<PostgreSql> postgreSql_;
};

SharedServers& shared() {
  static auto* servers = new SharedServers;  // the framework deletes it
  return *servers;
}

const ::testing::Environment* const registered = ::testing::AddGlobalTestEnvironment(&shared());

std::size_t append(const char* data, std::size_t one, std::size_t size, void* text) {
  static_cast<std::string*>(text)->append(data, one * size);
  return one * size;
}

}  // namespace

ServerScript::ServerScript(const std::string& name) : folder_(makeFolder()) {
  static_cast<void>(registered);
  const std::string script = PROJECT_ROOT "/script/" + name;
  const std::string data = (folder_ / "servers").string();
  int input[2];
  int output[2];
  pipeOf(input);
  pipeOf(output);
  pid_ = fork();
  if (pid_ == 0) {
    dup2(input[0], STDIN_FILENO);
    dup2(output[1], STDOUT_FILENO);
    execl(script.c_str(), script.c_str(), data.c_str(), nullptr);
    _exit(127);
  }
  close(input[0]);
  close(output[1]);
  input_ = input[1];
  FILE* stream = fdopen(output[0], "r");
  bool isReady = false;
  for (char line[256]; !isReady && std::fgets(line, sizeof line, stream) != nullptr;) {
    std::istringstream words(line);
    std::vector<std::string> list{std::istream_iterator<std::string>(words), {}};
    isReady = !list.empty() && list[0] == "ready";
    if (!isReady) lines_.push_back(std::move(list));
  }
  fclose(stream);
  if (isReady) return;
  int status = 0;
  waitpid(std::exchange(pid_, -1), &status, 0);
  isAbsent_ = WIFEXITED(status) && WEXITSTATUS(status) == absent;
  if (!isAbsent_) throw std::runtime_error(name + " did not start");
}

ServerScript::~ServerScript() {
  end();
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

void ServerScript::end() {
  if (input_ >= 0) close(std::exchange(input_, -1));
  if (pid_ > 0) waitpid(std::exchange(pid_, -1), nullptr, 0);
}

std::vector<pid_t> ServerScript::processes() const {
  std::vector<pid_t> list;
  for (const auto& line : lines_) list.push_back(std::stoi(line[line[0] == "shard" ? 2 : 1]));
  return list;
}

std::string ClickHouse::port(int shard) const {
  return script_.lines().at(static_cast<std::size_t>(shard)).at(3);
}

pid_t ClickHouse::process(int shard) const {
  return script_.processes().at(static_cast<std::size_t>(shard));
}

std::string ClickHouse::execute(const std::string& sql, int shard) const {
  const std::unique_ptr<CURL, void (*)(CURL*)> curl(curl_easy_init(), curl_easy_cleanup);
  // Rows for a distributed table are on their shards when the statement returns.
  const std::string url = "http://127.0.0.1:" + port(shard) + "/?insert_distributed_sync=1";
  std::string text;
  curl_easy_setopt(curl.get(), CURLOPT_URL, url.c_str());
  curl_easy_setopt(curl.get(), CURLOPT_PROXY, "");
  curl_easy_setopt(curl.get(), CURLOPT_POSTFIELDS, sql.data());
  curl_easy_setopt(curl.get(), CURLOPT_POSTFIELDSIZE, static_cast<long>(sql.size()));
  curl_easy_setopt(curl.get(), CURLOPT_WRITEFUNCTION, &append);
  curl_easy_setopt(curl.get(), CURLOPT_WRITEDATA, &text);
  const CURLcode code = curl_easy_perform(curl.get());
  long status = 0;
  curl_easy_getinfo(curl.get(), CURLINFO_RESPONSE_CODE, &status);
  EXPECT_TRUE(code == CURLE_OK && status == 200) << sql << "\n" << text;
  return text;
}

void ClickHouse::executeOnAll(const std::string& sql) const {
  for (int shard = 0; shard < 3; ++shard) execute(sql, shard);
}

std::string ClickHouse::address(const std::string& table, const std::string& user) const {
  return "clickhouse://" + (user.empty() ? "" : user + "@") + "127.0.0.1:" + port(0) + "/default/" +
         escaped(table);
}

std::string PostgreSql::ask(const std::string& sql) const {
  const std::string port = script_.lines().at(0).at(2);
  const std::unique_ptr<PGconn, void (*)(PGconn*)> connection(
      PQconnectdb(("host=127.0.0.1 dbname=tests user=tester port=" + port).c_str()), PQfinish);
  const std::unique_ptr<PGresult, void (*)(PGresult*)> result(PQexec(connection.get(), sql.c_str()),
                                                              PQclear);
  const ExecStatusType status = PQresultStatus(result.get());
  EXPECT_TRUE(status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK)
      << sql << "\n"
      << PQerrorMessage(connection.get());
  return PQntuples(result.get()) > 0 ? PQgetvalue(result.get(), 0, 0) : "";
}

void PostgreSql::execute(const std::string& sql) const {
  ask(sql);
}

pid_t PostgreSql::process() const {
  return script_.processes().at(0);
}

std::string PostgreSql::address(const std::string& table, const std::string& user) const {
  return "postgresql://" + user + "@127.0.0.1:" + script_.lines().at(0).at(2) + "/tests/" +
         escaped(table);
}

ClickHouse& clickHouse() {
  if (!shared().clickHouse_) shared().clickHouse_ = std::make_unique<ClickHouse>();
  return *shared().clickHouse_;
}

PostgreSql& postgreSql() {
  if (!shared().postgreSql_) shared().postgreSql_ = std::make_unique<PostgreSql>();
  return *shared().postgreSql_;
}

std::string escaped(std::string_view name) {
  static constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  for (const char byte : name) {
    const auto value = static_cast<unsigned char>(byte);
    if (std::isalnum(value) != 0 || byte == '_')
      text += byte;
    else
      text += {'%', digits[value >> 4U], digits[value & 15U]};
  }
  return text;
}

}  // namespace engine_tests
