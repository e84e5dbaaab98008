// Paths, patterns of paths, and what is refused.
#include "DataAddress.h"

#include <glob.h>

#include <algorithm>
#include <filesystem>
#include <optional>

#include "DataMessages.h"

namespace embedded::data {
namespace {

namespace fs = std::filesystem;

std::optional<FileKind> kindOf(const std::string& path) {
  std::string ending = fs::path(path).extension().string();
  std::ranges::transform(ending, ending.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  if (ending == ".csv") return FileKind::Csv;
  if (ending == ".tsv") return FileKind::Tsv;
  if (ending == ".parquet") return FileKind::Parquet;
  if (ending == ".json") return FileKind::Json;
  if (ending == ".duckdb") return FileKind::DuckDb;
  return std::nullopt;
}

// A word and "://" in front make a network address.
bool isUrl(const std::string& text) {
  const std::size_t mark = text.find("://");
  return mark != std::string::npos && mark > 0 &&
         std::all_of(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(mark),
                     [](unsigned char c) { return std::isalnum(c) || c == '+' || c == '.'; });
}

// The text of a URL without what may be a password.
std::string withoutPassword(std::string url) {
  const std::size_t begin = url.find("://") + 3;
  const std::size_t at = url.find('@', begin);
  const std::size_t colon = url.find(':', begin);
  if (at != std::string::npos && colon < at) url.erase(colon, at - colon);
  return url;
}

// The files that a pattern stands for; a path that exists as written stands for itself.
std::vector<std::string> filesOf(const std::string& path) {
  std::error_code error;
  if (fs::exists(path, error)) return {path};
  if (path.find_first_of("*?[") == std::string::npos) fail(messages::noSuchFile, {path});
  glob_t found{};
  const int status = glob(path.c_str(), 0, nullptr, &found);
  std::vector<std::string> files;
  if (status == 0) files.assign(found.gl_pathv, found.gl_pathv + found.gl_pathc);
  globfree(&found);
  if (files.empty()) fail(messages::noSuchFile, {path});
  std::ranges::sort(files);
  return files;
}

// Splits `?table=NAME` off the path of a database file.
void splitTable(DataAddress& address, std::string& path) {
  const std::string mark = "?table=";
  const std::size_t at = path.rfind(mark);
  if (at == std::string::npos || kindOf(path.substr(0, at)) != FileKind::DuckDb) return;
  address.table = path.substr(at + mark.size());
  path.resize(at);
}

}  // namespace

DataAddress parseAddress(const std::string& text) {
  DataAddress address;
  address.text = text;
  if (text == "-") {
    address.standardInput = true;
    return address;
  }
  if (isUrl(text)) fail(messages::refusedUrl, {withoutPassword(text)});
  std::string path = text;
  splitTable(address, path);
  address.files = filesOf(path);
  const std::optional<FileKind> kind = kindOf(address.files.front());
  for (const std::string& file : address.files) {
    std::error_code error;
    if (!fs::is_regular_file(file, error)) fail(messages::notAFile, {file});
    if (!kindOf(file)) fail(messages::unknownKind, {file});
    if (kindOf(file) != kind) fail(messages::mixedFiles, {text});
    if (fs::file_size(file, error) == 0) fail(messages::emptyFile, {file});
  }
  address.kind = *kind;
  return address;
}

}  // namespace embedded::data
