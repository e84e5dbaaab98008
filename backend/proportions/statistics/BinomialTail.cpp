// Binomial tails by continued fraction, by plain sum, and from the middle.
#include "statistics/BinomialTail.h"

#include <algorithm>
#include <cmath>

#include "host/distributions/MCDistFun.h"
#include "host/distributions/MCMV.h"

namespace statistics {
namespace {

// Below this 1 - P loses more than two bits, and the tail lies above the mean for certain.
constexpr double directTailLimit = 0.25;

// Terms of a sign test that are all asked of the host.
constexpr double plainTerms = 1000.0;

std::optional<double> ifAvailable(double value, long error) {
  if (error != 0 || value == MCMV::Missing) return std::nullopt;
  return value;
}

// One pair of coefficients of the continued fraction, for step m > 0.
struct Coefficients {
  double numerator, denominator;
};

// The fraction of I_p(a, b) with a = x, b = trials - x + 1. `lambda` is a - (a + b) p, which must
// be given since it cannot be recovered from rounded parts. All terms are positive.
Coefficients coefficients(double m, double a, double b, double p, double lambda) {
  const double even = a + 2.0 * m - 1.0;
  const double numerator = (a + m - 1.0) / even * ((a + b + m - 1.0) / even) * m * (b - m) * p * p;
  const double denominator =
      m + m * (b - m) * p / even + (a + m) * (lambda + 1.0 + m * (2.0 - p)) / (even + 2.0);
  return {numerator, denominator};
}

// All terms of a sign test, from the outermost.
std::optional<SignTail> plainSignTail(double k, double trials) {
  SignTail tail;
  for (double term = 0.0; term <= k; term += 1.0) {
    const auto probability = binomialPdf(term, trials, 0.5);
    if (!probability) return std::nullopt;
    tail.sum += *probability;
    tail.last = *probability;
  }
  return tail;
}

// Half the distribution less the terms between k and its middle.
double signTailFromMiddle(double k, double trials, double last) {
  const double middle = std::floor(trials / 2.0);
  double between = 0.0;
  double term = last;
  for (double x = k; x < middle; x += 1.0) {
    term *= (trials - x) / (x + 1.0);
    between += term;
  }
  // An even number of trials has a middle term, which belongs to both halves.
  const double half = 2.0 * middle == trials ? 0.5 + term / 2.0 : 0.5;
  return half - between;
}

}  // namespace

std::optional<double> binomialCdf(double x, double trials, double probability) {
  long error = 0;
  const double value = MCDistFun::CdfBin(x, trials, probability, error);
  return ifAvailable(value, error);
}

std::optional<double> binomialPdf(double x, double trials, double probability) {
  long error = 0;
  const double value = MCDistFun::PdfBin(x, trials, probability, error);
  return ifAvailable(value, error);
}

std::optional<double> upperTailRatio(double x, double trials, double probability) {
  constexpr int maxSteps = 200000;
  constexpr double settled = 1e-16;
  const double b = trials - x + 1.0;
  // Rounded once: for 1e12 trials the plain difference would keep only ten digits.
  const double lambda = std::fma(-(trials + 1.0), probability, x);
  // Lentz's method; without its guards against zeros, as every term is positive.
  double fraction = x * (lambda + 1.0) / (x + 1.0);
  double c = fraction;
  double d = 0.0;
  for (int step = 1; step <= maxSteps; ++step) {
    const auto [numerator, denominator] = coefficients(step, x, b, probability, lambda);
    d = 1.0 / (denominator + numerator * d);
    c = denominator + numerator / c;
    const double factor = c * d;
    fraction *= factor;
    if (step >= b || std::fabs(factor - 1.0) <= settled) return x * (1.0 - probability) / fraction;
  }
  return std::nullopt;
}

double upperTail(double x, double trials, double probability, double below) {
  const double direct = 1.0 - below;
  if (direct > directTailLimit) return direct;
  const auto atX = binomialPdf(x, trials, probability);
  const auto ratio = upperTailRatio(x, trials, probability);
  return atX && ratio ? *atX * *ratio : direct;
}

std::optional<SignTail> signTail(double first, double second) {
  const double k = std::floor(std::min(first, second) + 0.5);
  const double trials = first + second;
  if (k < plainTerms) return plainSignTail(k, trials);
  const auto last = binomialPdf(k, trials, 0.5);
  if (!last) return std::nullopt;
  // Within a third of a standard deviation of the middle the terms between are fewer.
  const double fromMiddle = trials - 2.0 * k;
  if (fromMiddle * fromMiddle > 0.1 * trials)
    if (const auto ratio = upperTailRatio(trials - k, trials, 0.5))
      return SignTail{*last * *ratio, *last};
  return SignTail{signTailFromMiddle(k, trials, *last), *last};
}

}  // namespace statistics
