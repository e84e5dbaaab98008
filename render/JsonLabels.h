// Texts of the document as JSON: an identifier with its arguments for programs, and the sentence
// for readers.
#pragma once

#include <string>

#include "embedded/output/Values.h"

namespace render {

// A value of a variable without its label: a number, ISO text of a date or time, a string; null
// when it is missing.
std::string jsonValue(const embedded::output::Text& text);

// The arguments of a composite, lists as arrays.
std::string jsonArguments(const embedded::output::Text& text);

// {"id", "arguments" of composites, "text"}.
std::string jsonLabel(const embedded::output::Text& text,
                      const embedded::output::Sentences& sentences);

}  // namespace render
