#include "render/XlsxParts.h"

#include <xlsxwriter.h>

#include <algorithm>
#include <cstdio>
#include <new>
#include <string>
#include <utility>

namespace {

struct Part {
  std::string bytes;
  std::size_t at = 0;
};

thread_local bool whole = true;

Part& partOf(void* cookie) {
  return *static_cast<Part*>(cookie);
}

ssize_t readPart(void* cookie, char* bytes, std::size_t size) {
  Part& part = partOf(cookie);
  const std::size_t got = part.bytes.copy(bytes, size, part.at);
  part.at += got;
  return static_cast<ssize_t>(got);
}

// 0 is the error of this kind of function.
ssize_t writePart(void* cookie, const char* bytes, std::size_t size) {
  Part& part = partOf(cookie);
  try {
    part.bytes.replace(part.at, std::min(size, part.bytes.size() - part.at), bytes, size);
  } catch (const std::bad_alloc&) {
    whole = false;
    return 0;
  }
  part.at += size;
  return static_cast<ssize_t>(size);
}

int seekPart(void* cookie, off64_t* offset, int from) {
  Part& part = partOf(cookie);
  const std::size_t base = from == SEEK_SET ? 0 : from == SEEK_CUR ? part.at : part.bytes.size();
  const off64_t place = static_cast<off64_t>(base) + *offset;
  if (place < 0 || place > static_cast<off64_t>(part.bytes.size())) return -1;
  part.at = static_cast<std::size_t>(place);
  *offset = place;
  return 0;
}

int closePart(void* cookie) {
  delete static_cast<Part*>(cookie);
  return 0;
}

}  // namespace

// Called by the library, which finds this one before its own.
extern "C" [[gnu::visibility("default")]] FILE* lxw_tmpfile(char* /*folder*/) {
  auto* part = new (std::nothrow) Part;
  FILE* file = part == nullptr
                   ? nullptr
                   : fopencookie(part, "w+b", {readPart, writePart, seekPart, closePart});
  if (file == nullptr) {
    whole = false;
    delete part;
  }
  return file;
}

namespace render {

bool partsAreWhole() {
  return std::exchange(whole, true);
}

}  // namespace render
