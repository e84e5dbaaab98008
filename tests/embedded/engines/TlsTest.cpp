// Servers over TLS: whom the program trusts, and what it says of those that it does not.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "Servers.h"
#include "tests_cli/Program.h"

namespace engine_tests {
namespace {

using cli_tests::Folder;
using cli_tests::Outcome;

constexpr const char* command = "PROPORTIONS /ONESAMPLE v CITYPES=WALD TESTTYPES=NONE";

// Takes TLS off what comes and hands it on to a port of this machine; prints its own port, and
// ends with its standard input. Its second line says how many bytes it was sent by clients.
constexpr const char* front = R"(
import socket, ssl, sys, threading
context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
context.load_cert_chain(sys.argv[1], sys.argv[2])
listener = socket.create_server(("127.0.0.1", 0))
print(listener.getsockname()[1], flush=True)
taken = 0

def pump(source, target, counts):
    global taken
    try:
        while data := source.recv(65536):
            taken += len(data) if counts else 0
            target.sendall(data)
        target.shutdown(socket.SHUT_WR)
    except OSError:
        pass

def serve(client):
    try:
        client = context.wrap_socket(client, server_side=True)
    except OSError:
        return
    server = socket.create_connection(("127.0.0.1", int(sys.argv[3])))
    threading.Thread(target=pump, args=(client, server, True), daemon=True).start()
    pump(server, client, False)
    client.close()

def listen():
    while True:
        threading.Thread(target=serve, args=(listener.accept()[0],), daemon=True).start()

threading.Thread(target=listen, daemon=True).start()
sys.stdin.read()
print(taken, flush=True)
)";

class TlsFront {
 public:
  TlsFront(const Folder& folder, const std::string& certificate, const std::string& port) {
    int input[2];
    int output[2];
    EXPECT_EQ(pipe2(input, O_CLOEXEC) + pipe2(output, O_CLOEXEC), 0);
    pid_ = fork();
    if (pid_ == 0) {
      dup2(input[0], STDIN_FILENO);
      dup2(output[1], STDOUT_FILENO);
      const std::string file = (folder.path() / certificate).string();
      execlp("python3", "python3", "-c", front, (file + ".pem").c_str(), (file + ".key").c_str(),
             port.c_str(), nullptr);
      _exit(127);
    }
    close(input[0]);
    close(output[1]);
    input_ = input[1];
    output_ = fdopen(output[0], "r");
    EXPECT_EQ(std::fscanf(output_, "%d", &port_), 1);
  }
  ~TlsFront() {
    if (pid_ > 0) bytes();
  }
  TlsFront(const TlsFront&) = delete;
  TlsFront& operator=(const TlsFront&) = delete;

  int port() const { return port_; }
  // Ends it; how many bytes it was trusted with.
  int bytes() {
    close(input_);
    int count = -1;
    EXPECT_EQ(std::fscanf(output_, "%d", &count), 1);
    std::fclose(output_);
    waitpid(std::exchange(pid_, -1), nullptr, 0);
    return count;
  }

 private:
  pid_t pid_ = -1;
  int input_ = -1;
  FILE* output_ = nullptr;
  int port_ = 0;
};

class Variable {
 public:
  Variable(const char* name, const std::string& value) : name_(name) {
    setenv(name, value.c_str(), 1);
  }
  ~Variable() { unsetenv(name_); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
};

class Tls : public testing::Test {
 protected:
  void SetUp() override {
    REQUIRE_INSTALLED(clickHouse());
    clickHouse().execute("CREATE TABLE IF NOT EXISTS behind (v Int8) ENGINE = Memory");
    if (clickHouse().execute("SELECT count() FROM behind") == "0\n")
      clickHouse().execute("INSERT INTO behind VALUES (1), (0), (1)");
    // An authority, a certificate of it for 127.0.0.1, and one for another machine.
    openssl(
        "req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 2 -subj /CN=tests "
        "-keyout ca.key -out ca.pem");
    makeCertificate("right", "IP:127.0.0.1");
    makeCertificate("other", "DNS:elsewhere.test");
    unsetenv("CURL_CA_BUNDLE");
    unsetenv("SSL_CERT_FILE");
  }

  void openssl(const std::string& words) const {
    const std::string line = "cd '" + folder_.path().string() + "' && openssl " + words + " 2>log";
    ASSERT_EQ(std::system(line.c_str()), 0) << cli_tests::contentOf(folder_.path() / "log");
  }
  void makeCertificate(const std::string& name, const std::string& host) const {
    folder_.write(name + ".ext", "subjectAltName=" + host + "\n");
    openssl("req -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -subj /CN=server -keyout " +
            name + ".key -out " + name + ".csr");
    openssl("x509 -req -days 2 -CA ca.pem -CAkey ca.key -CAcreateserial -in " + name +
            ".csr -extfile " + name + ".ext -out " + name + ".pem");
  }

  static std::string plainPort() {
    const std::string address = clickHouse().address("behind");
    const std::size_t begin = address.rfind(':') + 1;
    return address.substr(begin, address.find('/', begin) - begin);
  }
  static std::string addressAt(const std::string& scheme, const std::string& port) {
    return scheme + "://guarded@127.0.0.1:" + port + "/default/behind";
  }
  static Outcome start(const std::string& address, const std::string& timeout = "20") {
    const Variable password("CLICKHOUSE_PASSWORD", "secret");
    return cli_tests::run({"run", address, "-c", command, "--format", "csv", "--timeout", timeout});
  }
  static void expectFailure(const Outcome& outcome, const std::string& said) {
    EXPECT_EQ(outcome.status, 3) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find(said), std::string::npos) << outcome.err;
    EXPECT_EQ(outcome.err.find("secret"), std::string::npos) << outcome.err;
  }
  std::string authority() const { return (folder_.path() / "ca.pem").string(); }

  Folder folder_;
};

TEST_F(Tls, IsReadWhereTheAuthorityIsTrusted) {
  const std::string plain = start(addressAt("clickhouse", plainPort())).out;
  EXPECT_NE(plain.find("Observed / Trials,3,"), std::string::npos) << plain;
  const TlsFront server(folder_, "right", plainPort());
  for (const char* variable : {"CURL_CA_BUNDLE", "SSL_CERT_FILE"}) {
    const Variable trusted(variable, authority());
    const Outcome outcome = start(addressAt("clickhouse+https", std::to_string(server.port())));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, plain);
  }
}

TEST_F(Tls, IsReadWhereAFolderOfAuthoritiesIsTrusted) {
  const TlsFront server(folder_, "right", plainPort());
  const std::string address = addressAt("clickhouse+https", std::to_string(server.port()));
  const std::filesystem::path authorities = folder_.path() / "authorities";
  std::filesystem::create_directory(authorities);
  std::filesystem::copy(authority(), authorities / "ca.pem");
  openssl("rehash authorities");
  {
    const Variable trusted("SSL_CERT_DIR", authorities.string());
    EXPECT_EQ(start(address).status, 0);
  }
  const Variable none("SSL_CERT_DIR", "");
  expectFailure(start(address), "could not prove");
}

// As where a variable is not set.
TEST_F(Tls, AnEmptyVariableNamesNoFileOfAuthorities) {
  const TlsFront server(folder_, "right", plainPort());
  const Variable empty("CURL_CA_BUNDLE", "");
  const Variable trusted("SSL_CERT_FILE", authority());
  const Outcome outcome = start(addressAt("clickhouse+https", std::to_string(server.port())));
  EXPECT_EQ(outcome.status, 0) << outcome.err;
}

TEST_F(Tls, OfAnUnknownAuthorityIsRefusedBeforeAnythingIsSaid) {
  TlsFront server(folder_, "right", plainPort());
  expectFailure(start(addressAt("clickhouse+https", std::to_string(server.port()))),
                "could not prove");
  EXPECT_EQ(server.bytes(), 0);
}

TEST_F(Tls, OfAnotherMachineIsRefusedBeforeAnythingIsSaid) {
  TlsFront server(folder_, "other", plainPort());
  const Variable trusted("CURL_CA_BUNDLE", authority());
  expectFailure(start(addressAt("clickhouse+https", std::to_string(server.port()))),
                "could not prove");
  EXPECT_EQ(server.bytes(), 0);
}

TEST_F(Tls, WithAFileOfAuthoritiesThatIsNotThere) {
  const TlsFront server(folder_, "right", plainPort());
  const Variable trusted("CURL_CA_BUNDLE", authority() + ".none");
  expectFailure(start(addressAt("clickhouse+https", std::to_string(server.port()))), "ca.pem.none");
}

TEST_F(Tls, AndWithoutItDoNotUnderstandEachOther) {
  // The greeting is random to a server without TLS: it answers, or waits for the rest of a line.
  const Outcome greeted = start(addressAt("clickhouse+https", plainPort()), "3");
  const bool answered = greeted.err.find("no connection") != std::string::npos;
  expectFailure(greeted, answered ? "no connection" : "did not answer for 3 seconds");
  const TlsFront server(folder_, "right", plainPort());
  expectFailure(start(addressAt("clickhouse", std::to_string(server.port()))), "broke off");
}

// What the address says of TLS goes to the library that connects; this server has none.
TEST(PostgreSqlTls, IsAskedForInTheAddress) {
  REQUIRE_INSTALLED(postgreSql());
  postgreSql().execute("CREATE TABLE plain AS SELECT 1 AS v");
  const std::string address = postgreSql().address("plain");
  const auto start = [&](const std::string& parameters) {
    return cli_tests::run({"run", address + parameters, "-c", command, "--format", "csv"});
  };
  EXPECT_EQ(start("?sslmode=disable").status, 0);
  EXPECT_EQ(start("?sslmode=prefer&sslrootcert=%2Fno%2Fsuch%2Ffile").status, 0);
  for (const char* mode : {"?sslmode=require", "?sslmode=nonsense"}) {
    const Outcome outcome = start(mode);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_NE(outcome.err.find("no connection"), std::string::npos) << outcome.err;
  }
  const Variable mode("PGSSLMODE", "require");
  EXPECT_EQ(start("").status, 3);
  // No other parameter of the library, above all no password.
  for (const char* wrong :
       {"?", "?sslmode", "?sslmode=", "?password=hidden", "?sslmode=disable&", "?host=elsewhere",
        "?sslmode=disable&options=-c", "? sslmode =disable"}) {
    const Outcome outcome = start(wrong);
    EXPECT_EQ(outcome.status, 2) << wrong << outcome.err;
    EXPECT_EQ(outcome.err.find("hidden"), std::string::npos);
  }
}

}  // namespace
}  // namespace engine_tests
