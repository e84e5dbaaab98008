// One table laid out in lines for a terminal or a log.
#pragma once

#include <ostream>

#include "render/ReaderTable.h"
#include "render/Renderer.h"

namespace render {

// Writes the table without its title, in lines of at most the context's width: a wider table is
// split by columns, with its row labels repeated. Numbers stand with their decimal points under
// one another; footnotes and notes follow.
void writeTextTable(ReaderTable table, const Context& context, std::ostream& out);

// Escape sequences of a terminal.
inline constexpr std::string_view bold = "\x1b[1m";
inline constexpr std::string_view faint = "\x1b[2m";
inline constexpr std::string_view red = "\x1b[31m";
inline constexpr std::string_view yellow = "\x1b[33m";
inline constexpr std::string_view plain = "\x1b[0m";

}  // namespace render
