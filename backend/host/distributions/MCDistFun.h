// Distribution functions that the host offers to every procedure.
//
// All are pure: no state, no locale, safe to call at any time. Probabilities lie in [0, 1].
#pragma once

#include "host/Api.h"

namespace MCDistFun {

// The standard normal quantile: z with P(Z <= z) = p. Domain 0 < p < 1; p = 0 and p = 1 give
// minus and plus infinity; anything else, NaN included, gives MCMV::Missing. [any time]
HOST_API double IdfStdNorm(double p);

// The standard normal distribution function P(Z <= z). Deep lower tails keep their relative
// digits; minus and plus infinity give 0 and 1; NaN and MCMV::Missing give MCMV::Missing.
// A caller that wants an upper tail passes -z. [any time]
HOST_API double CdfStdNorm(double z);

// The quantile of the beta distribution with shapes a > 0 and b > 0: x with I_x(a, b) = p,
// 0 <= p <= 1. Anything else gives MCMV::Missing. [any time]
HOST_API double IdfBeta(const double& p, const double& a, const double& b);

// P(X <= x) for X ~ Bin(n, p), 0 <= p <= 1, n >= 0 a whole number. x = -1 gives 0 without an
// error, x >= n gives 1. `error` is 0 on success and nonzero on failure (then the result is
// MCMV::Missing); the caller clears it before the call. [any time]
HOST_API double CdfBin(double x, double n, double p, long& error);

// P(X = x) for X ~ Bin(n, p); domain and error as for CdfBin. PdfBin(0, 0, p) is 1; x outside
// 0..n gives 0 without an error. [any time]
HOST_API double PdfBin(double x, double n, double p, long& error);

// The non-centrality delta of Student's t with P(T <= a | b degrees of freedom, delta) = q,
// searched from step d to tolerance eps; MCMV::Missing when no such delta is found. [any time]
HOST_API double FindNCParamT(double a, double b, double q, double d, double eps);

}  // namespace MCDistFun
