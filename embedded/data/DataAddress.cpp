// Paths, patterns of paths, addresses of servers, and what is refused.
#include "DataAddress.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <string_view>

#include "EngineMessages.h"
#include "Engines.h"
#include "FilePattern.h"

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

// The text of a URL without what may be a password or a parameter. A password may hold any
// character, so all up to the last @ may be one.
std::string withoutPassword(std::string url) {
  url.resize(std::min(url.find_first_of("?#"), url.size()));
  const std::size_t at = url.rfind('@');
  const std::size_t colon = url.find(':', url.find("://") + 3);
  if (at != std::string::npos && colon < at) url.erase(colon, at - colon);
  return url;
}

[[noreturn]] void badServerAddress(std::string_view scheme) {
  failUsage(messages::badServerAddress, {std::string(scheme) + "://USER@HOST:PORT/DATABASE/TABLE"});
}

// A part of an address with its %XX put back; empty when it has none, or a bad one.
std::string decoded(std::string_view part) {
  std::string text;
  for (std::size_t i = 0; i < part.size(); ++i) {
    if (part[i] != '%') {
      text += part[i];
      continue;
    }
    unsigned value = 0;
    const char* digits = part.data() + i + 1;
    if (i + 2 >= part.size() || std::from_chars(digits, digits + 2, value, 16).ptr != digits + 2 ||
        value == 0)
      return {};
    text += static_cast<char>(value);
    i += 2;
  }
  return text;
}

// HOST, HOST:PORT, or an IPv6 address in brackets.
void splitHost(std::string_view text, ServerAddress& server) {
  const std::size_t bracket = text.find(']');
  const bool hasBrackets = text.starts_with('[') && bracket != std::string_view::npos;
  const std::size_t colon = text.find(':', hasBrackets ? bracket : 0);
  server.host = decoded(hasBrackets ? text.substr(1, bracket - 1) : text.substr(0, colon));
  if (colon == std::string_view::npos) return;
  const std::string_view port = text.substr(colon + 1);
  const auto [end, error] = std::from_chars(port.data(), port.data() + port.size(), server.port);
  if (error != std::errc() || end != port.data() + port.size() || server.port < 1 ||
      server.port > 65535)
    badServerAddress(server.scheme);
}

// NAME=VALUE, joined by "&", with names that the engine allows.
void splitParameters(std::string_view text, const ServerEngine& engine, ServerAddress& server) {
  for (;;) {
    const std::string_view one = text.substr(0, text.find('&'));
    const std::size_t equals = one.find('=');
    const std::string name(one.substr(0, equals));
    const std::string value = equals == one.npos ? "" : decoded(one.substr(equals + 1));
    if (name.empty() || value.empty() || engine.parameters.find(" " + name + " ") == one.npos)
      badServerAddress(engine.scheme);
    server.parameters.emplace_back(name, value);
    if (one.size() == text.size()) return;
    text.remove_prefix(one.size() + 1);
  }
}

ServerAddress serverAddress(const std::string& text, const ServerEngine& engine) {
  const std::size_t begin = text.find("://") + 3;
  const std::size_t at = text.rfind('@');
  if (at != std::string::npos && text.find(':', begin) < at)
    failUsage(messages::passwordInAddress,
              {withoutPassword(text), std::string(engine.passwordVariable)});
  ServerAddress server;
  server.scheme = engine.scheme;
  server.port = engine.port;
  server.secure = engine.secure;
  std::string_view rest = std::string_view(text).substr(begin);
  if (const std::size_t mark = rest.find('?'); mark != rest.npos) {
    splitParameters(rest.substr(mark + 1), engine, server);
    rest = rest.substr(0, mark);
  }
  const std::size_t first = rest.find('/');
  const std::size_t second = first == rest.npos ? rest.npos : rest.find('/', first + 1);
  if (second == rest.npos || rest.find_first_of("?#") != rest.npos ||
      rest.find('/', second + 1) != rest.npos)
    badServerAddress(engine.scheme);
  std::string_view authority = rest.substr(0, first);
  if (const std::size_t user = authority.find('@'); user != authority.npos) {
    server.user = decoded(authority.substr(0, user));
    if (server.user.empty()) badServerAddress(engine.scheme);
    authority.remove_prefix(user + 1);
  }
  splitHost(authority, server);
  server.database = decoded(rest.substr(first + 1, second - first - 1));
  std::string_view table = rest.substr(second + 1);
  if (const std::size_t point = table.find('.'); point != table.npos) {
    server.schema = decoded(table.substr(0, point));
    if (server.schema.empty()) badServerAddress(engine.scheme);
    table.remove_prefix(point + 1);
  }
  server.table = decoded(table);
  if (server.host.empty() || server.database.empty() || server.table.empty())
    badServerAddress(engine.scheme);
  return server;
}

// The files that a pattern stands for; a path that exists as written stands for itself.
std::vector<std::string> filesOf(const std::string& path) {
  std::error_code problem;
  if (fs::exists(path, problem)) return {path};
  if (problem && !isPattern(path)) fail(messages::unreadable, {path, problem.message()});
  std::vector<std::string> files;
  if (isPattern(path)) files = pathsOf(path);
  if (files.empty()) fail(messages::noSuchFile, {path});
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
  // The system would read the name up to the byte 0 only, and find another file.
  if (text.find('\0') != std::string::npos)
    fail(messages::noSuchFile, {isUrl(text) ? withoutPassword(text) : text});
  if (isUrl(text)) {
    const ServerEngine* engine = findServerEngine(text.substr(0, text.find("://")));
    if (engine == nullptr) fail(messages::refusedUrl, {withoutPassword(text)});
    address.server = serverAddress(text, *engine);
    return address;
  }
  std::string path = text;
  splitTable(address, path);
  address.files = filesOf(path);
  for (const std::string& file : address.files) {
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (error) fail(messages::unreadable, {file, error.message()});
    if (!fs::is_regular_file(status)) fail(messages::notAFile, {file});
    const std::optional<FileKind> kind = kindOf(file);
    if (!kind) fail(messages::unknownKind, {file});
    if (&file == &address.files.front()) address.kind = *kind;
    if (*kind != address.kind) fail(messages::mixedFiles, {text});
    if (fs::file_size(file, error) == 0) fail(messages::emptyFile, {file});
  }
  return address;
}

}  // namespace embedded::data
