// Formats that are no text.
#pragma once

#include "render/Renderer.h"

namespace render {

// Whether the format consists of bytes that no terminal can show.
bool isBinary(const Format& format);

}  // namespace render
