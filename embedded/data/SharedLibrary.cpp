// Where the program's own libraries stand.
#include "SharedLibrary.h"

#include <dlfcn.h>

#include <filesystem>

namespace embedded::data {

void* openLibrary(const std::string& file) {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  const auto beside = program.parent_path().parent_path() / "lib" / file;
  const bool isThere = !error && std::filesystem::exists(beside, error);
  // Most functions of a large library are never called: each is found when it is.
  return dlopen(isThere ? beside.c_str() : file.c_str(), RTLD_LAZY | RTLD_LOCAL);
}

}  // namespace embedded::data
