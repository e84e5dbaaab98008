// Prints a dictionary as a sidecar: read back with the same data, it gives the same dictionary.
#pragma once

#include <string>

#include "Dictionary.h"
#include "RelationCases.h"

namespace embedded::data {

// A Table Schema as JSON, indented, with a line feed at the end. `delivery`, of a run that uses all
// columns, stands in it as "proportions:reading" when given; it is told, and not read back.
std::string describe(const Dictionary& dictionary, const Delivery* delivery = nullptr);

}  // namespace embedded::data
