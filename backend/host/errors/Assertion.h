// The host's assertion handler.
#pragma once

#include "host/Api.h"

// A procedure found one of its own invariants broken: a programming error. `expression` is the
// invariant as the procedure words it, `source` the unit it stands in. Does not return: the host
// ends the process or throws, and the exception passes through the procedure.
[[noreturn]] HOST_API void KORA_AssertionFailed(const char* expression, const char* source,
                                                int line);
