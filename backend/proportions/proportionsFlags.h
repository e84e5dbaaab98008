// The three switches of the diagnostic output.
//
// A diagnostic build exports them as data, for a host to set. In the shipped module they are
// constants, so that nothing can switch the dumps on.
#pragma once

#ifdef PROPORTIONS_DIAGNOSTIC

extern "C" {
// The specification is dumped after the parse.
extern __attribute__((visibility("default"))) bool gDisplaySpecs;
// Each analysis object is dumped after its tables.
extern __attribute__((visibility("default"))) bool gDisplayAlgorithm;
// The host's non-centrality search is probed on standard output after each group's tables.
extern __attribute__((visibility("default"))) bool gProbeFindNCParamT;
}

#else

inline constexpr bool gDisplaySpecs = false;
inline constexpr bool gDisplayAlgorithm = false;
inline constexpr bool gProbeFindNCParamT = false;

#endif
