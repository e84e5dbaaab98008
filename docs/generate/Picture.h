// The picture of a method: its curves over the proportion, as SVG.
#pragma once

#include <string>
#include <vector>

#include "Coverage.h"

namespace docs {

// What the picture is of, in words that those who cannot see it are told.
struct Caption {
  std::string title;
  std::string text;
};

// Coverage around 95 %, or rejections around 5 %. What lies outside of the picture is drawn at its
// edge.
std::string picture(const std::vector<Curve>& curves, statistics::MethodKind kind,
                    const Caption& caption);

}  // namespace docs
