// Reads the description file of a module.
#pragma once

#include <string>

#include "embedded/output/Description.h"

namespace embedded {

// The description in this file. Throws Error(Usage) when it cannot be read or is none.
output::Description readDescription(const std::string& path);

}  // namespace embedded
