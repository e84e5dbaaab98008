// The binomial distribution: single probabilities and both tails.
#pragma once

#include <optional>

#include "embedded/distributions/BetaTail.h"

namespace embedded::distributions {

// Shared domain: n >= 0 and x whole numbers, n at most kMostTrials, 0 <= p <= 1; anything else,
// and a tail that could not be computed, gives nothing.
inline constexpr double kMostTrials = 1e15;

// P(X <= x) (Lower) or P(X > x) (Upper) for X ~ Bin(n, p) at any whole x: by the beta tails, each
// as such, never as a difference from 1 where it is the smaller. The cost does not depend on n.
std::optional<double> binomialTail(double x, double n, double p, Tail tail);

// P(X = x); 0 outside 0..n. Loader (2000).
std::optional<double> binomialTerm(double x, double n, double p);

}  // namespace embedded::distributions
