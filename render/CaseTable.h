// How many cases each split group had and what they lacked, as a table for readers.
#pragma once

#include <optional>

#include "render/ReaderTable.h"
#include "render/Renderer.h"

namespace render {

// A row for each split group: cases read, and where any group has some, those of invalid weight
// and those that lack a value of a variable (system-missing, user-missing). Nothing without split
// groups. Its cells have texts alone.
std::optional<ReaderTable> caseTable(const Document& document, const Context& context);

}  // namespace render
