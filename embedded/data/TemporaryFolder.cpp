// Made by mkdtemp, removed with everything in it.
#include "TemporaryFolder.h"

#include <cerrno>
#include <cstdlib>
#include <new>
#include <system_error>

#include "DataMessages.h"

namespace embedded::data {

TemporaryFolder::TemporaryFolder() {
  std::error_code error;
  const std::filesystem::path parent = std::filesystem::temp_directory_path(error);
  std::string name = (parent / "proportions-XXXXXX").string();
  if (!error && mkdtemp(name.data()) == nullptr) error = {errno, std::generic_category()};
  if (error) fail(messages::noTemporaryFolder, {parent.string(), error.message()});
  path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  try {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  } catch (const std::bad_alloc&) {  // NOLINT(bugprone-empty-catch)
    // It stays.
  }
}

}  // namespace embedded::data
