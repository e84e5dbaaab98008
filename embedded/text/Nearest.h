// The nearest of some names, for a name that was mistyped.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace embedded::text {

// The candidate with the fewest edits from `name` (Levenshtein 1966, without regard to case), if it
// takes no more than a third of the name's length, at least one; empty when there is none.
std::string nearest(std::string_view name, std::span<const std::string> candidates);

}  // namespace embedded::text
