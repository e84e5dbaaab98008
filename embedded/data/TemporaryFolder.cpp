// Made by mkdtemp, removed with everything in it.
#include "TemporaryFolder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <new>
#include <system_error>

#include "DataMessages.h"

namespace embedded::data {
namespace {

// The place that std::filesystem::temp_directory_path() looks at, which does not tell the name of
// one that is no folder.
std::filesystem::path placeOfAll() {
  for (const char* variable : {"TMPDIR", "TMP", "TEMP", "TEMPDIR"})
    if (const char* place = std::getenv(variable); place != nullptr && *place != '\0') return place;
  return "/tmp";
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  const std::filesystem::path parent = placeOfAll();
  std::string name = (parent / "proportions-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr)
    fail(messages::noTemporaryFolder, {parent.string(), std::strerror(errno)});
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
