// Identity, fingerprint and spooling of files.
#include "Files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <system_error>
#include <utility>

#include "EngineMessages.h"
#include "InputFile.h"
#include "embedded/session/Session.h"

namespace embedded::data {
namespace {

constexpr std::size_t wholeLimit = 1U << 20U;
constexpr std::size_t blockSize = 64U << 10U;
constexpr std::size_t blockCount = 16;

std::string readBlock(const InputFile& file, std::size_t offset, std::size_t size) {
  std::string block(size, '\0');
  block.resize(file.readAt(offset, block));
  return block;
}

std::string hashOfBytes(Engine& engine, const std::string& bytes) {
  const auto query = engine.query("SELECT sha256($1::BLOB)", {bytes});
  Chunk chunk;
  query->next(chunk);
  auto* text = static_cast<duckdb_string_t*>(duckdb_vector_get_data(chunk.column(0)));
  return {duckdb_string_t_data(text), duckdb_string_t_length(*text)};
}

// What is hashed of a file, and how the hash is called then.
std::pair<std::string, std::string> sampleOf(const InputFile& file) {
  const std::size_t size = file.size();
  if (size <= wholeLimit) return {"sha256:", readBlock(file, 0, size)};
  std::string sample = std::to_string(size) + "\n";
  for (std::size_t i = 0; i < blockCount; ++i)
    sample += readBlock(file, (size - blockSize) / (blockCount - 1) * i, blockSize);
  return {"sha256-sampled:", std::move(sample)};
}

std::string fingerprintOfFile(Engine& engine, const std::string& file) {
  try {
    const auto [name, sample] = sampleOf(InputFile(file));
    return name + hashOfBytes(engine, sample);
  } catch (const std::system_error& problem) {
    fail(messages::unreadable, {file, problem.code().message()});
  }
}

// What could not be written of standard input.
[[noreturn]] void failSpooling(const std::filesystem::path& target) {
  const std::string reason = errno == 0 ? "" : std::strerror(errno);
  fail(messages::noRoomToSpill, {"-", target.parent_path().parent_path().string(), reason});
}

}  // namespace

std::string identityOf(const std::vector<std::string>& files) {
  std::string identity;
  for (const std::string& file : files) {
    struct stat status{};
    if (stat(file.c_str(), &status) != 0) {
      if (errno != ENOENT) fail(messages::unreadable, {file, std::strerror(errno)});
      status = {};
    }
    for (const long long part :
         {static_cast<long long>(status.st_size), static_cast<long long>(status.st_ino),
          static_cast<long long>(status.st_mtim.tv_sec),
          static_cast<long long>(status.st_mtim.tv_nsec)})
      identity += std::to_string(part) + ' ';
  }
  return identity;
}

std::string fingerprintOf(Engine& engine, const std::vector<std::string>& files) {
  if (files.size() == 1) return fingerprintOfFile(engine, files.front());
  std::string lines;
  for (const std::string& file : files) lines += fingerprintOfFile(engine, file) + '\n';
  return "sha256:" + hashOfBytes(engine, lines);
}

bool spoolStandardInput(const std::filesystem::path& target) {
  errno = 0;
  std::ofstream out(target, std::ios::binary);
  if (!out) failSpooling(target);
  std::vector<char> buffer(1U << 20U);
  bool any = false;
  for (;;) {
    Session::checkCancelled();
    const ssize_t got = read(STDIN_FILENO, buffer.data(), buffer.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) fail(messages::unreadable, {"-", std::strerror(errno)});
    if (got == 0) break;
    any = true;
    errno = 0;
    if (!out.write(buffer.data(), got)) failSpooling(target);
  }
  if (!out.flush()) failSpooling(target);
  return any;
}

}  // namespace embedded::data
