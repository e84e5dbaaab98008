// Made by mkdtemp, removed with everything in it.
#include "TemporaryFolder.h"

#include <cstdlib>
#include <system_error>

#include "DataMessages.h"

namespace embedded::data {

TemporaryFolder::TemporaryFolder() {
  std::error_code error;
  const std::filesystem::path parent = std::filesystem::temp_directory_path(error);
  std::string name = (parent / "proportions-XXXXXX").string();
  if (error || mkdtemp(name.data()) == nullptr)
    fail(messages::noTemporaryFolder, {parent.string()});
  path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace embedded::data
