// How far a long read has come, for whoever wants to show it.
#pragma once

#include <cstdint>
#include <functional>

namespace embedded::data {

struct Progress {
  std::uint64_t rows = 0;   // read so far; 0 where nothing tells
  std::uint64_t total = 0;  // rows there are to read, perhaps an estimate; 0 when unknown
};

// Called often while data are read or waited for, always from the thread that asked for them; it
// should be quick. May be empty.
using ProgressListener = std::function<void(const Progress&)>;

}  // namespace embedded::data
