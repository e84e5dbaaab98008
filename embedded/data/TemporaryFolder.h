// A folder for temporary files that goes away with its owner, whatever happened.
#pragma once

#include <filesystem>
#include <string>

namespace embedded::data {

class TemporaryFolder {
 public:
  // Makes a folder that only this user can read. Error(Data) when none can be made.
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace embedded::data
