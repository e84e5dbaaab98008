// The system-missing value: what stands for "there is no such number".
#pragma once

#include <limits>

namespace MCMV {

// The most negative finite double, -1.7976931348623157e+308. Every statistic that could not be
// computed holds it; it is compared with ==, never by a tolerance.
inline constexpr double Missing = std::numeric_limits<double>::lowest();

}  // namespace MCMV
