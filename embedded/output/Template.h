// The template engine: fills the placeholders of identifiers and of their sentences.
//
// `^1` is the first argument. `[F:R:]2` prints the list that is argument 2: its first item by
// the pattern F, each further one by R, in which %1 or ^1 is the item. An item takes as many
// entries of the list as the patterns name, so that `[%1 = %2:,^1 = ^2:]1` prints pairs:
// `region = North,sex = F`.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "embedded/output/Text.h"

namespace embedded::output {

// Prints one argument that is not a list.
using PrintArgument = std::function<std::string(const Text&)>;

// The pattern with its placeholders filled. A placeholder without its argument stays as it is; a
// list where a plain argument is wanted is printed with ", " between its items.
std::string fillTemplate(std::string_view pattern, std::span<const TextPtr> arguments,
                         const PrintArgument& print);

}  // namespace embedded::output
