// What is wrong with a command line, in the words of the catalogue.
#pragma once

#include <CLI/Error.hpp>

#include "embedded/errors/Error.h"

namespace cli {

// The error of kind Usage that says what the parser of options found.
embedded::Error wrongUsage(const CLI::ParseError& problem);

}  // namespace cli
