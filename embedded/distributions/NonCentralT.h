// The non-centrality parameter of Student's t from a tail probability.
#pragma once

#include <optional>

namespace embedded::distributions {

// P(T <= t) for the non-central t distribution with `freedom` > 0 degrees of freedom and
// non-centrality delta, by the library (Benton and Krishnamoorthy, 2003); NaN where it fails.
double nonCentralTTail(double t, double freedom, double delta);

// delta with P(T <= t | freedom, delta) = q, 0 < q < 1. The tail falls with delta; the root is
// bracketed by steps from 0 that start at `step` > 0 and double, then found by the method of
// Alefeld, Potra and Shi (1995, algorithm 748) until the bracket is no longer than `tolerance`
// (or a few ulp). Nothing on an argument out of its domain, where no bracket is found within
// |delta| <= kMostNonCentrality, or when the tail or the search fails.
std::optional<double> findNonCentrality(double t, double freedom, double q, double step,
                                        double tolerance);

inline constexpr double kMostNonCentrality = 1e4;

}  // namespace embedded::distributions
