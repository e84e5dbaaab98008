// What the program does for each of its subcommands. Each returns the exit status; what goes
// wrong is thrown as embedded::Error.
#pragma once

#include "Arguments.h"
#include "embedded/output/Values.h"

namespace cli {

int runData(const Arguments& arguments, const embedded::output::Sentences& sentences);
int runCounts(const Arguments& arguments, const embedded::output::Sentences& sentences);
int describeData(const Arguments& arguments);
int listMethods(const Arguments& arguments, const embedded::output::Sentences& sentences);

// Runs the request and writes its document.
int runAndWrite(embedded::Request request, const Arguments& arguments,
                const embedded::output::Sentences& sentences);

}  // namespace cli
