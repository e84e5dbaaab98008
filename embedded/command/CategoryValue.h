// The value that a text of a command stands for.
#pragma once

#include <string_view>

#include "embedded/data/Dictionary.h"
#include "host/data/OBS.h"

namespace embedded::command {

// The observation of this text as a category of the variable: of a string variable the text
// itself, where it fits the width; of a numeric one a number, else a value label, else, for dates
// and times, ISO 8601 text. Nothing when it is none of these, or when the variable declares its
// categories and this is not one of them.
OwnedOBS categoryValue(const data::Variable& variable, std::string_view text);

}  // namespace embedded::command
