// What an HTML report consists of besides its results: the frame of the page with its style and
// script, how the run was made, and what was said about it.
#pragma once

#include <ostream>
#include <string_view>

#include "render/Renderer.h"

namespace render {

// The style sheet and the script, which are part of the program.
std::string_view htmlStyle();
std::string_view htmlScript();

void writeHtmlHead(const Document& document, const Context& context, std::ostream& out);
void writeHtmlEnd(const Document& document, const Context& context, std::ostream& out);

// The command, the data, the notes, and the command line that makes the same results again.
void writeHtmlRun(const Document& document, const Context& context, std::ostream& out);
// All messages with their places; nothing when there are none.
void writeHtmlMessages(const Document& document, const Context& context, std::ostream& out);

}  // namespace render
