// A compiled message file of gettext, read where it lies in memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace embedded::messages {

class MessageFile {
 public:
  // `bytes` is a whole .mo file of revision 0 with little-endian numbers, whose identifiers are
  // sorted by their bytes (as msgfmt writes them); it must outlive the object. Throws
  // Error(Internal) when it is none.
  explicit MessageFile(std::span<const unsigned char> bytes);

  // The sentence of an identifier; none when the file does not hold it. The file's own header,
  // which it keeps under the empty identifier, is no sentence.
  std::optional<std::string_view> find(std::string_view identifier) const;
  // All identifiers but the header's, in the order of their bytes.
  std::vector<std::string_view> identifiers() const;

 private:
  std::uint32_t number(std::size_t offset) const;
  // The text that entry `index` of the table at `table` points to.
  std::string_view text(std::uint32_t table, std::uint32_t index) const;

  std::span<const unsigned char> bytes_;
  std::uint32_t count_ = 0;
  std::uint32_t originals_ = 0;  // where the table of identifiers begins
  std::uint32_t sentences_ = 0;
};

}  // namespace embedded::messages
