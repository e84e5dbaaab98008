// What is wrong with a command line, in the words of the catalogue.
#pragma once

#include <CLI/App.hpp>
#include <CLI/Error.hpp>
#include <string>

#include "embedded/output/Values.h"

namespace cli {

// What the parser of options found, with the nearest name for one that it does not know, and which
// help tells more: a line each.
std::string wrongUsage(const CLI::App& app, const CLI::ParseError& problem,
                       const embedded::output::Sentences& sentences);

}  // namespace cli
