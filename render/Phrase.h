// Sentences of the catalogue filled with texts that are ready to be read.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "render/Renderer.h"

namespace render {

// The sentence of the identifier with its arguments in order.
std::string phrase(const Context& context, std::string_view id,
                   const std::vector<std::string>& arguments = {});

// The same with a list as the argument after the others.
std::string phraseWithList(const Context& context, std::string_view id,
                           const std::vector<std::string>& arguments,
                           const std::vector<std::string>& list);

}  // namespace render
