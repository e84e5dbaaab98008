// Messages and the facts of a run as a reader sees them.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "embedded/output/Document.h"
#include "render/Renderer.h"

namespace render {

// "error", "warning" or "note" in the reader's language.
std::string severityName(embedded::output::Severity severity, const Context& context);

// The message in full: its sentence, the nearest name where one was mistyped, the split group where
// the sentence does not name it. On one line.
std::string messageSentence(const Document& document, const embedded::output::Message& message,
                            const Context& context);

// The message as lines, each ended: kind and sentence with its place, then, for a message about
// the command, the line of the command with a caret under the place.
std::string messageText(const Document& document, const embedded::output::Message& message,
                        const Context& context);

// How the run was made: label and text, in order; what does not apply is left out.
std::vector<std::pair<std::string, std::string>> runFacts(const Document& document,
                                                          const Context& context);

}  // namespace render
