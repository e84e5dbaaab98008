#include "OutputFile.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iostream>

#include "embedded/errors/Error.h"

namespace cli {

namespace {

[[noreturn]] void fail(const std::string& path) {
  throw embedded::Error(embedded::ErrorKind::Output, "Cannot write ^1: ^2 ...",
                        {path.empty() ? "Standard output ..." : path, std::strerror(errno)});
}

}  // namespace

OutputFile::OutputFile(std::string path) : path_(std::move(path)) {
  if (path_.empty()) {
    return;
  }
  // A device or a pipe is written to as it is; there is nothing to keep whole.
  const std::filesystem::path target(path_);
  std::error_code ignored;
  const auto status = std::filesystem::status(target, ignored);
  const bool special = std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
  if (std::filesystem::is_directory(status)) {
    errno = EISDIR;
    fail(path_);
  }
  beside_ = special ? path_ : path_ + ".part" + std::to_string(getpid());
  file_.open(beside_, std::ios::binary | std::ios::trunc);
  if (!file_) {
    beside_.clear();
    fail(path_);
  }
  if (special) {
    beside_.clear();
  }
}

OutputFile::~OutputFile() {
  if (!beside_.empty()) {
    file_.close();
    std::error_code ignored;
    std::filesystem::remove(beside_, ignored);
  }
}

std::ostream& OutputFile::stream() {
  return path_.empty() ? std::cout : file_;
}

void OutputFile::check() {
  errno = 0;
  stream().flush();
  if (!stream()) {
    // An earlier write may have failed, whose reason is gone: what stops one more is the same.
    if (errno == 0 && !path_.empty()) {
      stream().clear();
      stream().put('\n').flush();
    }
    fail(path_);
  }
}

void OutputFile::commit() {
  check();
  if (path_.empty()) {
    return;
  }
  file_.close();
  if (!file_) {
    fail(path_);
  }
  if (!beside_.empty()) {
    std::error_code problem;
    std::filesystem::rename(beside_, path_, problem);
    if (problem) {
      errno = problem.value();
      fail(path_);
    }
    beside_.clear();
  }
}

}  // namespace cli
