#include "embedded/messages/MessageFile.h"

#include "embedded/errors/Error.h"

namespace embedded::messages {

namespace {

constexpr std::uint32_t magic = 0x950412DE;
// Of the header: magic number, revision, number of entries, the two tables.
constexpr std::size_t revisionAt = 4;
constexpr std::size_t countAt = 8;
constexpr std::size_t originalsAt = 12;
constexpr std::size_t sentencesAt = 16;
constexpr std::size_t headerSize = 20;
constexpr std::size_t entrySize = 8;  // length and offset of a text

[[noreturn]] void refuse() {
  throw Error(ErrorKind::Internal, "Invalid message file ...");
}

}  // namespace

MessageFile::MessageFile(std::span<const unsigned char> bytes) : bytes_(bytes) {
  if (bytes.size() < headerSize || number(0) != magic || number(revisionAt) != 0) {
    refuse();
  }
  count_ = number(countAt);
  originals_ = number(originalsAt);
  sentences_ = number(sentencesAt);
}

std::uint32_t MessageFile::number(std::size_t offset) const {
  if (offset + 4 > bytes_.size()) {
    refuse();
  }
  std::uint32_t value = 0;
  for (std::size_t i = 4; i-- > 0;) {
    value = value << 8U | bytes_[offset + i];
  }
  return value;
}

std::string_view MessageFile::text(std::uint32_t table, std::uint32_t index) const {
  const std::size_t entry = table + std::size_t{index} * entrySize;
  const std::size_t length = number(entry);
  const std::size_t begin = number(entry + 4);
  if (begin + length > bytes_.size()) {
    refuse();
  }
  return {reinterpret_cast<const char*>(bytes_.data()) + begin, length};
}

std::optional<std::string_view> MessageFile::find(std::string_view identifier) const {
  std::uint32_t low = 0;
  std::uint32_t high = identifier.empty() ? 0 : count_;
  while (low < high) {
    const std::uint32_t middle = low + (high - low) / 2;
    const int order = text(originals_, middle).compare(identifier);
    if (order == 0) {
      return text(sentences_, middle);
    }
    (order < 0 ? low : high) = order < 0 ? middle + 1 : middle;
  }
  return std::nullopt;
}

std::vector<std::string_view> MessageFile::identifiers() const {
  std::vector<std::string_view> all;
  for (std::uint32_t i = 0; i < count_; ++i) {
    if (const std::string_view identifier = text(originals_, i); !identifier.empty()) {
      all.push_back(identifier);
    }
  }
  return all;
}

}  // namespace embedded::messages
