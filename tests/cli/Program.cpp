#include "Program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

namespace cli_tests {

namespace {

constexpr const char* program = BUILD_ROOT "/bin/proportions";

int checked(int result) {
  if (result < 0) {
    throw std::system_error(errno, std::generic_category());
  }
  return result;
}

// A file without a name, gone when it is closed.
int unnamedFile() {
  std::string name = (std::filesystem::temp_directory_path() / "proportions-test-XXXXXX").string();
  const int file = checked(mkstemp(name.data()));
  unlink(name.c_str());
  return file;
}

std::string readAll(int file) {
  std::string text;
  char buffer[65536];
  lseek(file, 0, SEEK_SET);
  for (ssize_t got = 0; (got = read(file, buffer, sizeof buffer)) > 0;) {
    text.append(buffer, static_cast<std::size_t>(got));
  }
  return text;
}

// The write end of a pipe whose reader is gone.
int brokenPipe() {
  int ends[2];
  checked(pipe(ends));
  close(ends[0]);
  return ends[1];
}

// Becomes the program; never returns.
[[noreturn]] void become(const Call& call, int input, int out, int err) {
  if (!call.folder.empty() && chdir(call.folder.c_str()) != 0) {
    _exit(127);
  }
  dup2(input, STDIN_FILENO);
  dup2(out, STDOUT_FILENO);
  dup2(err, STDERR_FILENO);
  setenv("COLUMNS", "100", 1);
  setenv("LC_ALL", "C.UTF-8", 1);
  unsetenv("NO_COLOR");
  if (!call.temporary.empty()) {
    setenv("TMPDIR", call.temporary.c_str(), 1);
  }
  std::vector<std::string> words{program};
  words.insert(words.end(), call.arguments.begin(), call.arguments.end());
  std::vector<char*> pointers;
  std::transform(words.begin(), words.end(), std::back_inserter(pointers),
                 [](std::string& word) { return word.data(); });
  pointers.push_back(nullptr);
  alarm(longestRun);
  execv(program, pointers.data());
  _exit(127);
}

}  // namespace

Folder::Folder() {
  std::string name = (std::filesystem::temp_directory_path() / "proportions-test-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), name);
  }
  path_ = name;
}

Folder::~Folder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path Folder::write(const std::string& name, const std::string& content) const {
  const std::filesystem::path file = path_ / name;
  std::ofstream(file, std::ios::binary) << content;
  return file;
}

std::vector<std::string> Folder::files() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(path_)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

Running::Running(const Call& call) : out_(unnamedFile()), err_(unnamedFile()) {
  int ends[2];
  checked(pipe2(ends, O_CLOEXEC));
  const int out = call.closedOutput ? brokenPipe() : out_;
  pid_ = checked(fork());
  if (pid_ == 0) {
    become(call, ends[0], out, err_);
  }
  if (call.closedOutput) {
    close(out);
  }
  close(ends[0]);
  input_ = ends[1];
  // The child may have ended already; then nobody wants the input.
  std::signal(SIGPIPE, SIG_IGN);
  if (write(input_, call.input.data(), call.input.size()) < 0 && errno != EPIPE) {
    throw std::system_error(errno, std::generic_category(), "input");
  }
}

Running::~Running() {
  if (pid_ > 0) {
    kill(pid_, SIGKILL);
    wait();
  }
  close(out_);
  close(err_);
}

void Running::signal(int number) const {
  kill(pid_, number);
}

Outcome Running::wait() {
  close(input_);
  input_ = -1;
  return waitWithOpenInput();
}

Outcome Running::waitWithOpenInput() {
  int ended = 0;
  waitpid(pid_, &ended, 0);
  pid_ = -1;
  if (input_ >= 0) {
    close(input_);
    input_ = -1;
  }
  return {WIFEXITED(ended) ? WEXITSTATUS(ended) : 128 + WTERMSIG(ended), readAll(out_),
          readAll(err_)};
}

Outcome run(const Call& call) {
  return Running(call).wait();
}

Outcome run(std::vector<std::string> arguments) {
  return run(Call{.arguments = std::move(arguments), .folder = {}, .input = {}});
}

nlohmann::json document(const Outcome& outcome) {
  auto json = nlohmann::json::parse(outcome.out, nullptr, false);
  if (json.is_discarded()) {
    ADD_FAILURE() << "no JSON document (status " << outcome.status << ")\n"
                  << outcome.out << outcome.err;
    return nullptr;
  }
  return json;
}

}  // namespace cli_tests
