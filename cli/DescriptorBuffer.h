// A stream's way to an open file that remembers why writing failed.
#pragma once

#include <array>
#include <streambuf>

namespace cli {

class DescriptorBuffer final : public std::streambuf {
 public:
  // Writes to the descriptor, which it does not close.
  explicit DescriptorBuffer(int descriptor);
  // Writes what comes from now on to another one.
  void redirect(int descriptor) { descriptor_ = descriptor; }

  // The reason of the first failure, as in errno; 0 when there was none.
  int problem() const { return problem_; }

 protected:
  int_type overflow(int_type character) override;
  int sync() override;

 private:
  static constexpr std::size_t size = 1U << 16U;

  int descriptor_;
  int problem_ = 0;
  std::array<char, size> buffer_;
};

}  // namespace cli
