// Identity, fingerprint and spooling of files.
#include "Files.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>

#include "EngineMessages.h"
#include "embedded/session/Session.h"

namespace embedded::data {
namespace {

constexpr std::uintmax_t wholeLimit = 1U << 20U;
constexpr std::uintmax_t blockSize = 64U << 10U;
constexpr std::uintmax_t blockCount = 16;

std::string readBlock(std::ifstream& stream, std::uintmax_t offset, std::uintmax_t size) {
  std::string block(size, '\0');
  stream.seekg(static_cast<std::streamoff>(offset));
  stream.read(block.data(), static_cast<std::streamsize>(size));
  block.resize(static_cast<std::size_t>(stream.gcount()));
  return block;
}

std::string hashOfBytes(Engine& engine, const std::string& bytes) {
  const auto query = engine.query("SELECT sha256($1::BLOB)", {bytes});
  Chunk chunk;
  query->next(chunk);
  auto* text = static_cast<duckdb_string_t*>(duckdb_vector_get_data(chunk.column(0)));
  return {duckdb_string_t_data(text), duckdb_string_t_length(*text)};
}

std::string fingerprintOfFile(Engine& engine, const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  if (!stream || error) fail(messages::unreadable, {file, "Reason cannot be opened ..."});
  if (size <= wholeLimit) return "sha256:" + hashOfBytes(engine, readBlock(stream, 0, size));
  std::string sample = std::to_string(size) + "\n";
  for (std::uintmax_t i = 0; i < blockCount; ++i)
    sample += readBlock(stream, (size - blockSize) / (blockCount - 1) * i, blockSize);
  return "sha256-sampled:" + hashOfBytes(engine, sample);
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
    if (stat(file.c_str(), &status) != 0) status = {};
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
  std::ofstream out(target, std::ios::binary);
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
