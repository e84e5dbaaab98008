// Text helpers in the host's locale. All texts are UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "host/Api.h"

// Takes trailing blanks off. [any time]
HOST_API void KORAMBstrtrim_A(std::string& text);
// Folds to capital, and to small letters. Invalid bytes stay as they are. [any time]
HOST_API void KORAMBstrupr_A(std::string& text);
HOST_API void KORAMBstrlwr_A(std::string& text);
// Negative, 0 or positive as the first n bytes of `a` sort before, with or after those of `b` in
// the host's collation; n beyond an end means up to the end. [any time]
HOST_API int KORAMBstrncoll_A(std::string_view a, std::string_view b, std::size_t n);
// A whole number written out in decimal digits. [any time]
HOST_API std::string KORAMBltoa_A(std::int32_t number);
