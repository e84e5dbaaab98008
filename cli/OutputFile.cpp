#include "OutputFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#include "embedded/errors/Error.h"

namespace cli {

namespace {

constexpr mode_t permissions = 0666;  // less what the user's mask takes

}  // namespace

OutputFile::OutputFile(std::string path) : path_(std::move(path)), buffer_(STDOUT_FILENO) {
  if (!path_.empty()) {
    open();
  }
}

// A device or a pipe is written to as it is; there is nothing to keep whole.
void OutputFile::open() {
  std::error_code ignored;
  const auto status = std::filesystem::status(path_, ignored);
  if (std::filesystem::is_directory(status)) {
    fail(std::strerror(EISDIR));
  }
  const bool special = std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
  const std::string target = special ? path_ : path_ + ".part" + std::to_string(getpid());
  descriptor_ = ::open(target.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, permissions);
  if (descriptor_ < 0) {
    fail(std::strerror(errno));
  }
  buffer_.redirect(descriptor_);
  beside_ = special ? "" : target;
}

std::string OutputFile::shownPath() const {
  return path_.empty() ? "Standard output ..." : path_;
}

void OutputFile::fail(const std::string& reason) const {
  throw embedded::Error(embedded::ErrorKind::Output, "Cannot write ^1: ^2 ...",
                        {shownPath(), reason});
}

void OutputFile::failFor(const std::string& folder, const std::string& reason) const {
  throw embedded::Error(embedded::ErrorKind::Output, "Cannot write ^1 for want of ^2: ^3 ...",
                        {shownPath(), folder, reason});
}

OutputFile::~OutputFile() {
  if (descriptor_ >= 0) {
    close(descriptor_);
  }
  if (!beside_.empty()) {
    unlink(beside_.c_str());
  }
}

void OutputFile::check() {
  stream().flush();
  if (buffer_.problem() != 0 || !stream_) {
    fail(std::strerror(buffer_.problem() != 0 ? buffer_.problem() : EIO));
  }
}

void OutputFile::commit() {
  check();
  if (path_.empty()) {
    return;
  }
  if (close(std::exchange(descriptor_, -1)) != 0) {
    fail(std::strerror(errno));
  }
  if (!beside_.empty()) {
    std::error_code problem;
    std::filesystem::rename(beside_, path_, problem);
    if (problem) {
      fail(problem.message());
    }
    beside_.clear();
  }
}

}  // namespace cli
