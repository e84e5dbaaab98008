// The engines whose tables can be named by an address. Each but the embedded one is a library of
// its own beside the program, loaded when an address asks for it: a run on files loads none.
//
// A new engine is one file in embedded/engines/ and one row in Engines.cpp.
#pragma once

#include <memory>
#include <string_view>

#include "SqlServer.h"

namespace embedded::data {

struct ServerEngine {
  std::string_view scheme;            // of its addresses
  std::string_view library;           // in the name of its library
  int port = 0;                       // where an address names none
  std::string_view passwordVariable;  // of the environment
  bool secure = false;                // whether its addresses ask for TLS
  std::string_view parameters = {};   // that an address may set, between blanks
};

// The engine of a scheme; null when there is none.
const ServerEngine* findServerEngine(std::string_view scheme);

// Loads the engine of an address and connects. Errors are those of ConnectServer, and Error(Data)
// when there is no such library.
std::unique_ptr<SqlServer> connectServer(const ServerAddress& address,
                                         const ServerOptions& options);

}  // namespace embedded::data
