#include "DescriptorBuffer.h"

#include <unistd.h>

#include <cerrno>

namespace cli {

DescriptorBuffer::DescriptorBuffer(int descriptor) : descriptor_(descriptor) {
  setp(buffer_.data(), buffer_.data() + buffer_.size());
}

DescriptorBuffer::int_type DescriptorBuffer::overflow(int_type character) {
  if (sync() != 0) {
    return traits_type::eof();
  }
  if (!traits_type::eq_int_type(character, traits_type::eof())) {
    sputc(traits_type::to_char_type(character));
  }
  return traits_type::not_eof(character);
}

int DescriptorBuffer::sync() {
  const char* from = pbase();
  while (problem_ == 0 && from < pptr()) {
    const ssize_t written = write(descriptor_, from, static_cast<std::size_t>(pptr() - from));
    if (written >= 0) {
      from += written;
    } else if (errno != EINTR) {
      problem_ = errno;
    }
  }
  setp(buffer_.data(), buffer_.data() + buffer_.size());
  return problem_ == 0 ? 0 : -1;
}

}  // namespace cli
