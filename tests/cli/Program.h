// The finished program as its users meet it: started as a process of its own, in a folder of its
// own, with what it writes and its exit status.
//
// Every call runs under the same environment, so that neither terminal, nor language, nor colours
// of the machine change what comes out. A call that takes too long is ended by an alarm that the
// child itself carries (status 128 + SIGALRM), never by name.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace cli_tests {

// Seconds until the alarm; a program under a sanitizer takes some twenty times as long.
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
constexpr unsigned longestRun = 1200;
#else
constexpr unsigned longestRun = 60;
#endif

// A folder of its own that is removed with the object.
class Folder {
 public:
  Folder();
  ~Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  // Writes a file into the folder and returns its path.
  std::filesystem::path write(const std::string& name, const std::string& content) const;
  // The names of all files in the folder, in order.
  std::vector<std::string> files() const;

 private:
  std::filesystem::path path_;
};

std::string contentOf(const std::filesystem::path& file);

struct Call {
  std::vector<std::string> arguments;
  std::filesystem::path folder;          // where it runs; empty: where the test runs
  std::string input;                     // on standard input, at most what a pipe holds (64 KiB)
  bool closedOutput = false;             // standard output is a pipe that nobody reads
  std::filesystem::path temporary = {};  // for temporary files; empty: the machine's own folder
};

struct Outcome {
  int status = 0;  // the exit status, or 128 and the signal's number
  std::string out;
  std::string err;
};

// A program that was started and not waited for yet. Its standard input is a pipe.
class Running {
 public:
  explicit Running(const Call& call);
  ~Running();
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

  // The end of its standard input that is written to.
  int input() const { return input_; }
  // Sends a signal to this process alone.
  void signal(int number) const;
  // Ends the input and waits for the end.
  Outcome wait();
  // Waits for the end while its input stays open.
  Outcome waitWithOpenInput();

 private:
  pid_t pid_ = -1;
  int input_ = -1;
  int out_ = -1;  // unnamed files that hold what it writes
  int err_ = -1;
};

// Runs the program to its end.
Outcome run(const Call& call);
Outcome run(std::vector<std::string> arguments);

// What it wrote on standard output, as a JSON document; a failed test and null when it is none.
nlohmann::json document(const Outcome& outcome);

}  // namespace cli_tests
