// Files, answers and findings of the fuzz targets.
#include "Support.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>

#include "embedded/errors/Error.h"

namespace fuzz {

namespace {

class Folder {
 public:
  Folder()
      : path_(std::filesystem::temp_directory_path() /
              ("proportions-fuzz-" + std::to_string(getpid()))) {
    std::filesystem::create_directories(path_);
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

[[noreturn]] void end(const char* finding) {
  std::fprintf(stderr, "finding: %s\n", finding);
  std::abort();
}

}  // namespace

const std::filesystem::path& folder() {
  static const Folder own;
  return own.path();
}

std::string write(const std::string& name, std::string_view content) {
  const std::string path = (folder() / name).string();
  std::ofstream(path, std::ios::binary)
      .write(content.data(), static_cast<std::streamsize>(content.size()));
  return path;
}

void attempt(const std::function<void()>& work) {
  try {
    work();
  } catch (const embedded::Error& error) {
    if (error.kind() == embedded::ErrorKind::Internal) end(error.what());
  } catch (const std::exception& error) {
    end(error.what());
  }
}

void require(bool holds, const char* finding) {
  if (!holds) end(finding);
}

const embedded::Module& module() {
  static const embedded::Module loaded =
      embedded::Module::load(BUILD_ROOT "/lib/proportions.module.json", false);
  return loaded;
}

}  // namespace fuzz
