// Loads the embedded engine's library and finds its functions.
#include "DuckDbFunctions.h"

#include <dlfcn.h>

#include "DuckDb.h"
#include "SharedLibrary.h"

namespace embedded::data {
namespace {

[[noreturn]] void failLoading() {
  const char* reason = dlerror();
  throw EngineFailure(reason == nullptr ? "" : reason);
}

template <class Function>
void find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  if (function == nullptr) failLoading();
}

DuckDbLibrary load() {
  void* library = openLibrary(DUCKDB_LIBRARY);
  if (library == nullptr) failLoading();
  DuckDbLibrary functions;
#define EMBEDDED_DUCKDB_FIND(name) find(library, #name, functions.name);
  EMBEDDED_DUCKDB_FUNCTIONS(EMBEDDED_DUCKDB_FIND)
#undef EMBEDDED_DUCKDB_FIND
  return functions;
}

}  // namespace

const DuckDbLibrary& duckDbLibrary() {
  static const DuckDbLibrary functions = load();
  return functions;
}

}  // namespace embedded::data
