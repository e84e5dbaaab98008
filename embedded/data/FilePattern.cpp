// Part by part, from the front: no recursion, however long the pattern.
#include "FilePattern.h"

#include <fnmatch.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>

#include "DataMessages.h"
#include "EngineMessages.h"

namespace embedded::data {
namespace {

namespace fs = std::filesystem;

void check(const std::error_code& problem, const std::string& path) {
  if (problem && problem != std::errc::no_such_file_or_directory &&
      problem != std::errc::not_a_directory)
    fail(messages::unreadable, {path, problem.message()});
}

std::string withoutBackslashes(std::string_view part) {
  std::string name;
  for (std::size_t i = 0; i < part.size(); ++i) {
    if (part[i] == '\\' && i + 1 < part.size()) ++i;
    name += part[i];
  }
  return name;
}

// The paths below a folder whose names a part of a pattern matches; none below a file. The folder
// is empty, or ends with a `/`.
std::vector<std::string> matchesIn(const std::string& folder, const std::string& part) {
  std::vector<std::string> matches;
  std::error_code problem;
  const std::string listed = folder.empty() ? "." : folder;
  for (fs::directory_iterator entry(listed, problem), end; !problem && entry != end;
       entry.increment(problem)) {
    const std::string name = entry->path().filename().string();
    if (fnmatch(part.c_str(), name.c_str(), FNM_PERIOD) == 0) matches.push_back(folder + name);
  }
  check(problem, listed);
  return matches;
}

bool exists(const std::string& path) {
  std::error_code problem;
  const bool found = fs::exists(fs::symlink_status(path, problem));
  check(problem, path);
  return found;
}

}  // namespace

bool isPattern(std::string_view path) {
  return path.find_first_of("*?[") != std::string_view::npos;
}

std::vector<std::string> pathsOf(const std::string& pattern) {
  std::vector<std::string> paths = {""};
  for (std::size_t at = 0; at < pattern.size();) {
    const std::size_t slash = std::min(pattern.find('/', at), pattern.size());
    const std::size_t next = std::min(pattern.find_first_not_of('/', slash), pattern.size());
    const std::string part = pattern.substr(at, slash - at);
    if (isPattern(part)) {
      std::vector<std::string> longer;
      for (const std::string& folder : paths)
        std::ranges::move(matchesIn(folder, part), std::back_inserter(longer));
      paths = std::move(longer);
    } else {
      for (std::string& path : paths) path += withoutBackslashes(part);
    }
    for (std::string& path : paths) path.append(pattern, slash, next - slash);
    at = next;
  }
  std::erase_if(paths, [](const std::string& path) { return !exists(path); });
  std::ranges::sort(paths);
  return paths;
}

}  // namespace embedded::data
