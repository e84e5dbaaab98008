// Tails of binomial distributions that keep their relative digits, for any number of trials.
//
// A tail is the probability at its inner end times the series of the ratios of its terms. The
// series is summed by its value, as a continued fraction, so that it costs some hundred steps where
// the terms are millions.
#pragma once

#include <optional>

namespace statistics {

// The host's binomial functions, without a value when the host reports an error.
std::optional<double> binomialCdf(double x, double trials, double probability);
std::optional<double> binomialPdf(double x, double trials, double probability);

// P(X >= x) / P(X = x) for X ~ Bin(trials, probability), at least 1.
// Domain: whole 1 <= x <= trials <= 2^52, 0 < probability < 1, x >= (trials + 1) probability.
// Steps: about 170 / z^2 for x at z standard deviations above the mean. The relative error of the
// tails made of it is held below 1e-12 by the tests, for z from a third to 36.
// Nothing when it does not settle within its cap of steps, which happens only at the mean of more
// than 1e10 trials. DiDonato and Morris 1992, equation 9.
std::optional<double> upperTailRatio(double x, double trials, double probability);

// P(X >= x) for X ~ Bin(trials, probability), given P(X < x). Where one minus that would lose
// digits it is P(X = x) times its ratio; should the host have no P(X = x), it is the difference
// all the same.
double upperTail(double x, double trials, double probability, double below);

// The smaller tail of a sign test.
struct SignTail {
  double sum = 0.0;   // P(X <= k), k the smaller count, X ~ Bin(first + second, 1/2)
  double last = 0.0;  // P(X = k)
};

// The tail P(X <= min(first, second)) of X ~ Bin(first + second, 1/2), counts whole and at most
// 2^51. Nothing when a call of the host's probability function reports an error: every term is a
// call up to a thousand, and the last term alone beyond.
std::optional<SignTail> signTail(double first, double second);

}  // namespace statistics
