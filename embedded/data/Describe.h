// Prints a dictionary as a sidecar: read back with the same data, it gives the same dictionary.
#pragma once

#include <string>

#include "Dictionary.h"

namespace embedded::data {

// A Table Schema as JSON, indented, with a line feed at the end.
std::string describe(const Dictionary& dictionary);

}  // namespace embedded::data
