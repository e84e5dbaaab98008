// Assertions: what must hold unless this module, or the host that calls it, is wrong.
//
// They are active in every build and never about what a user wrote. A broken one goes to the
// host's handler with the text to the letter and does not come back.
#pragma once

#include "host/errors/Assertion.h"

// `text` words the invariant, `source` names the unit that it stands in.
#define PRP_ASSERT(condition, text, source) \
  ((condition) ? static_cast<void>(0) : KORA_AssertionFailed(text, source, __LINE__))

// The same in debug builds; nothing, and nothing evaluated, in others.
#ifdef NDEBUG
#define PRP_DEBUG_ASSERT(condition, text, source) static_cast<void>(0)
#else
#define PRP_DEBUG_ASSERT(condition, text, source) PRP_ASSERT(condition, text, source)
#endif
