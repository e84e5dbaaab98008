// Dates and times as ISO 8601 texts and as the numbers that stand for them.
#pragma once

#include <optional>
#include <string_view>

#include "embedded/output/Text.h"

namespace embedded::data {

// The number of `text` as a value of this kind: a date YYYY-MM-DD in days since 1970-01-01, a
// time HH:MM[:SS[.fraction]] in seconds, a timestamp (date, `T` or a blank, time, an optional `Z`)
// in seconds since 1970-01-01T00:00 UTC, for booleans true, false, 0 or 1, else a number with a
// decimal point. Empty when the text is no such value. Independent of locale.
std::optional<double> numberOf(std::string_view text, output::ValueKind kind);

}  // namespace embedded::data
