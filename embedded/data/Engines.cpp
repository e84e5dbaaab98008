// The table of engines, and the loading of their libraries.
#include "Engines.h"

#include <dlfcn.h>

#include <algorithm>
#include <array>
#include <string>

#include "EngineMessages.h"
#include "SharedLibrary.h"

namespace embedded::data {
namespace {

constexpr std::array engines{
    ServerEngine{"clickhouse", "clickhouse", 8123, "CLICKHOUSE_PASSWORD"},
    ServerEngine{"clickhouse+https", "clickhouse", 8443, "CLICKHOUSE_PASSWORD", true},
    ServerEngine{"postgresql", "postgresql", 5432, "PGPASSWORD", false, " sslmode sslrootcert "},
};

}  // namespace

const ServerEngine* findServerEngine(std::string_view scheme) {
  const auto* found = std::ranges::find(engines, scheme, &ServerEngine::scheme);
  return found == engines.end() ? nullptr : found;
}

std::unique_ptr<SqlServer> connectServer(const ServerAddress& address,
                                         const ServerOptions& options) {
  // The library stays loaded: objects of its classes live as long as the data are read.
  const ServerEngine* engine = findServerEngine(address.scheme);
  const std::string name(engine == nullptr ? address.scheme : engine->library);
  void* library = openLibrary("libproportions-" + name + ".so");
  void* connect = library == nullptr ? nullptr : dlsym(library, "connectServer");
  if (connect == nullptr) {
    const char* reason = dlerror();
    fail(messages::noEngineLibrary, {options.source, reason == nullptr ? "" : reason});
  }
  std::unique_ptr<SqlServer> server;
  reinterpret_cast<ConnectServer*>(connect)(address, options, server);
  return server;
}

}  // namespace embedded::data
