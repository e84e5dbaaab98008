// The command line of a run, so that a report can say how it was made.
#pragma once

#include <string>

namespace cli {

// The program's name and its arguments as a shell would read them back: what it could take for
// something else stands in quotes.
std::string invocationOf(int argc, const char* const* argv);

}  // namespace cli
