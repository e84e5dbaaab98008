// Texts of the document as JSON: an identifier with its arguments for programs, and the sentence
// for readers.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "embedded/output/Values.h"

namespace render {

// Keys keep the order in which they are set.
using Json = nlohmann::ordered_json;

// The value on one line; bytes that are no UTF-8 become replacement characters.
std::string jsonText(const Json& json);

// A double as the shortest JSON number that reads back as the same double; null for an infinite
// one, which JSON cannot say.
std::string jsonNumber(double number);

// A value of a variable without its label: a number, ISO text of a date or time, a string; null
// when it is missing.
Json jsonValue(const embedded::output::Text& text);

// The arguments of a composite, lists as arrays.
Json jsonArguments(const embedded::output::Text& text);

// {"id", "arguments" of composites, "text"}.
Json jsonLabel(const embedded::output::Text& text, const embedded::output::Sentences& sentences);

}  // namespace render
