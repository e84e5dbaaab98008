// Names that programs read, the same in every format for machines.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "render/Grid.h"

namespace render {

// "valid", "missing" or "nan".
std::string_view stateName(embedded::output::State state);

// The labels from the dimension's outermost group down to the node, each printed, with the
// separator between them.
std::string joinedPath(const Dimension& dimension, Index node, std::string_view separator,
                       const std::function<std::string(const embedded::output::Text&)>& print);

}  // namespace render
