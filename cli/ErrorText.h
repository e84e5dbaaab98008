// What a user reads when something goes wrong.
#pragma once

#include <string>

#include "embedded/errors/Error.h"
#include "embedded/output/Values.h"

namespace cli {

// The error as a line in the language of the sentences, behind the program's name.
std::string errorLine(const embedded::Error& error, const embedded::output::Sentences& sentences);

}  // namespace cli
