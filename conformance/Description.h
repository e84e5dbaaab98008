// The made-up command of the kit, and texts of it.
#pragma once

#include "host/command/CommandDescriptor.h"

namespace conformance {

// CHECKHOST /LIST tokens (required) NUMBER=(0, 100] WORDS=ONE TWO THREE RULE=FIRST | LEVEL(tokens).
CommandDescriptor description();

inline constexpr const char* parserCommand =
    "CHECKHOST /LIST v BY s NUMBER=50 WORDS=two one two RULE=LEVEL(1 2)";

// Each breaks the description in one place.
inline constexpr const char* refusedCommands[] = {
    "CHECKHOST /LIST v NUMBER=0", "CHECKHOST /LIST v NUMBER=101", "CHECKHOST /LIST v WORDS=four",
    "CHECKHOST /LIST v RULE=LAST"};

}  // namespace conformance
