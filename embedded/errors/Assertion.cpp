// The assertion handler: a broken invariant ends the run as an internal error.
#include "host/errors/Assertion.h"

#include <string>

#include "embedded/errors/Error.h"

void KORA_AssertionFailed(const char* expression, const char* source, int line) {
  throw embedded::Error(embedded::ErrorKind::Internal, "Assertion failed ^1 ^2 ^3 ...",
                        {expression, source, std::to_string(line)});
}
