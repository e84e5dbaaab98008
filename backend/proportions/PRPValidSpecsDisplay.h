// What every diagnostic dump of this module begins with.
#pragma once

#include <string_view>

// One line of diagnostic text, and the banner in front of a dump, four lines in one text.
void PRPDisplayLine(std::string_view text);
void PRPDisplayBanner();
