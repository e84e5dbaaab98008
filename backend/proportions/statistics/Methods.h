// All 38 methods: a table for each design and kind, and one view of them all.
//
// The slot of a method is its index in its table; flags, rows and documents follow that order.
// Whoever computes walks the typed tables; whoever only names or explains methods - the grammar,
// the list of methods, documents - walks methodsOf.
#pragma once

#include <span>
#include <string_view>

#include "statistics/IndependentMethods.h"
#include "statistics/OneSampleMethods.h"
#include "statistics/PairedMethods.h"

namespace statistics {

enum class Design { OneSample = 0, Paired = 1, Independent = 2 };
enum class MethodKind { Interval, Test };

inline constexpr Design designs[] = {Design::OneSample, Design::Paired, Design::Independent};
inline constexpr MethodKind methodKinds[] = {MethodKind::Interval, MethodKind::Test};

// The methods of a design, in slot order. The view is valid for the whole run.
std::span<const MethodInfo> methodsOf(Design design, MethodKind kind);

// "one sample", "paired samples", "independent samples"; "interval", "test".
std::string_view nameOf(Design design);
std::string_view nameOf(MethodKind kind);

}  // namespace statistics
