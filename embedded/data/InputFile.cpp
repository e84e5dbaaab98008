// Descriptors, since streams hide what was wrong.
#include "InputFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace embedded::data {
namespace {

[[noreturn]] void failForErrno() {
  throw std::system_error(errno, std::generic_category());
}

// Repeats read(bytes, how many before) until all bytes are there or there are no more.
template <class Read>
std::size_t readAll(std::span<char> bytes, const Read& read) {
  std::size_t before = 0;
  while (before < bytes.size()) {
    const ssize_t got = read(bytes.subspan(before), before);
    if (got == 0) break;
    if (got > 0)
      before += static_cast<std::size_t>(got);
    else if (errno != EINTR)
      failForErrno();
  }
  return before;
}

}  // namespace

InputFile::InputFile(const std::string& path) {
  do descriptor_ = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  while (descriptor_ < 0 && errno == EINTR);
  if (descriptor_ < 0) failForErrno();
}

InputFile::~InputFile() {
  close(descriptor_);
}

std::size_t InputFile::size() const {
  struct stat status{};
  if (fstat(descriptor_, &status) != 0) failForErrno();
  return static_cast<std::size_t>(status.st_size);
}

std::size_t InputFile::read(std::span<char> bytes) const {
  return readAll(bytes, [&](std::span<char> rest, std::size_t) {
    return ::read(descriptor_, rest.data(), rest.size());
  });
}

std::size_t InputFile::readAt(std::size_t offset, std::span<char> bytes) const {
  return readAll(bytes, [&](std::span<char> rest, std::size_t before) {
    return pread(descriptor_, rest.data(), rest.size(), static_cast<off_t>(offset + before));
  });
}

std::string contentOf(const std::string& path, std::size_t most) {
  constexpr std::size_t piece = std::size_t{64} << 10U;
  const InputFile file(path);
  std::string content;
  while (content.size() < most) {
    const std::size_t before = content.size();
    content.resize(before + std::min(piece, most - before));
    const std::size_t got = file.read(std::span(content).subspan(before));
    if (before + got == content.size()) continue;
    content.resize(before + got);
    break;
  }
  return content;
}

}  // namespace embedded::data
