// A file that is read, and what stops it: no error of a read is taken for the end of the file.
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace embedded::data {

// Reads that an interrupt breaks off, or that bring less than was asked for, are taken up again.
class InputFile {
 public:
  // Opens a file, or what else has a path, such as a pipe. Throws std::system_error with the reason
  // when it cannot be opened; so do all that follow when it cannot be read.
  explicit InputFile(const std::string& path);
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  std::size_t size() const;
  // Fills `bytes` with what comes next, and returns how many there were: fewer at the end alone.
  std::size_t read(std::span<char> bytes) const;
  // The same from a place in a file; pipes have none.
  std::size_t readAt(std::size_t offset, std::span<char> bytes) const;

 private:
  int descriptor_ = -1;
};

// The bytes of a file, or as many of the first as `most`. Throws std::system_error.
std::string contentOf(const std::string& path, std::size_t most = std::string::npos);

}  // namespace embedded::data
