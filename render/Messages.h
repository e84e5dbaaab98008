// Messages and the facts of a run as a reader sees them.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "embedded/output/Document.h"
#include "render/Renderer.h"

namespace render {

// The message as lines, each ended: kind and sentence with its place, then, for a message about
// the command, the line of the command with a caret under the place.
std::string messageText(const Document& document, const embedded::output::Message& message,
                        const Context& context);

// How the run was made: label and text, in order; what does not apply is left out.
std::vector<std::pair<std::string, std::string>> runFacts(const Document& document,
                                                          const Context& context);

}  // namespace render
