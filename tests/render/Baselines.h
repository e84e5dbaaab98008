// Approved outputs: a rendered document must equal the file of that name under tests/data/render.
#pragma once

#include <string>

#include "Documents.h"
#include "render/Renderer.h"

namespace samples {

// A context with the English sentences and the description of the samples, without colours.
render::Context context(int width = 100);

// The document as the format of this name writes it.
std::string rendered(const Document& document, const std::string& format,
                     const render::Context& with = context());

// Fails unless the text is that of the baseline. What came instead is written under the build
// tree, from where it can be approved by copying it.
void expectBaseline(const std::string& name, const std::string& text);

// The whole baseline, to be looked into.
std::string readFile(const std::string& path);

}  // namespace samples
