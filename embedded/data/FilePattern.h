// Patterns of file names, as a shell reads them.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace embedded::data {

// Whether a path holds a wildcard: `*`, `?` or `[...]`.
bool isPattern(std::string_view path);

// The paths that a pattern stands for, in the order of their names; none when there are none. A
// wildcard stands for no `/` and for no point at the front of a name, and never for the folder
// itself or the one above it; a backslash takes the next character as it is. Error(Data): a folder
// that cannot be listed to its end, or a path that cannot be looked at, as files would be missed.
std::vector<std::string> pathsOf(const std::string& pattern);

}  // namespace embedded::data
