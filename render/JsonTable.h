// One table of the json output.
#pragma once

#include <functional>
#include <string>

#include "render/Renderer.h"

namespace render {

// The names of the split variables, outermost first.
std::string jsonSplitNames(const Document& document);
// The values of a split group; null outside of groups.
std::string jsonSplitValues(const Document& document, embedded::output::Index split,
                            const embedded::output::Sentences& sentences);

// Adds the table to `block`, a line a cell, and calls `flush` after each row, which may take the
// text away.
void writeJsonTable(const Document& document, const embedded::output::Table& table,
                    const Context& context, std::string& block, const std::function<void()>& flush);

}  // namespace render
