// Libraries that are loaded when something is asked of them, so that a run without them neither
// waits for them nor needs them.
#pragma once

#include <string>

namespace embedded::data {

// Loads the library `file`: beside the program as it is built and installed (../lib), else wherever
// the system looks. It stays loaded. Null when there is none; dlerror() then says why.
void* openLibrary(const std::string& file);

}  // namespace embedded::data
