#include "embedded/distributions/Binomial.h"

#include <cmath>

#include "embedded/distributions/BetaDensity.h"
#include "embedded/distributions/DoubleDouble.h"

namespace embedded::distributions {

namespace {

bool isWhole(double value) {
  return std::floor(value) == value;
}

bool inDomain(double x, double n, double p) {
  return p >= 0 && p <= 1 && n >= 0 && n <= kMostTrials && isWhole(n) && isWhole(x) &&
         std::isfinite(x);
}

// base^n for a base in (0, 1).
double wholePower(DoubleDouble base, double n) {
  return expToDouble(log(base) * n);
}

}  // namespace

std::optional<double> binomialTail(double x, double n, double p, Tail tail) {
  if (!inDomain(x, n, p)) return std::nullopt;
  if (x < 0) return tail == Tail::Lower ? 0 : 1;
  if (x >= n) return tail == Tail::Lower ? 1 : 0;
  // P(X > x) = I_p(x + 1, n - x).
  const double value = betaTail(p, x + 1, n - x, other(tail));
  if (std::isnan(value)) return std::nullopt;
  return value;
}

std::optional<double> binomialTerm(double x, double n, double p) {
  if (!inDomain(x, n, p)) return std::nullopt;
  if (x < 0 || x > n) return 0;
  if (p == 0) return x == 0 ? 1 : 0;
  if (p == 1) return x == n ? 1 : 0;
  const Fraction point = Fraction::of(p);
  if (x == 0) return wholePower(point.complement, n);
  if (x == n) return wholePower(point.x, n);
  // 1 / B(x, n - x) = C(n, x) x (n - x) / n.
  const BetaDensity density(x, n - x);
  return density.at(point) / x * (n / (n - x));
}

}  // namespace embedded::distributions
