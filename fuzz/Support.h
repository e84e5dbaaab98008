// What the fuzz targets share: files that hold an input, and what an input may lead to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

#include "embedded/session/Module.h"

namespace fuzz {

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

// A folder of this process alone, gone when it ends.
const std::filesystem::path& folder();

// Writes a file in the folder, over the one that is there; returns its path.
std::string write(const std::string& name, std::string_view content);

// Carries out `work`. An Error of any kind but an internal one is an answer; whatever else leaves
// it ends the process, as a finding.
void attempt(const std::function<void()>& work);

// Ends the process with this finding unless `holds`.
void require(bool holds, const char* finding);

// The module that belongs to this build.
const embedded::Module& module();

}  // namespace fuzz
