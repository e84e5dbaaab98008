// The standard normal distribution with all relative digits in its lower tail.
#pragma once

namespace embedded::distributions {

// P(Z <= z) for any z but NaN; an upper tail is normalTail(-z). The argument of the library's
// complementary error function is carried in two parts, so that the error stays within a few ulp
// down to the smallest doubles.
double normalTail(double z);

// The lower quantile for 0 < p < 1, within 1 ulp: the library's value after one Newton step from a
// tail that is known better than it has to be.
double normalQuantile(double p);

// The regimes of the tail P(Z >= z) that Newton's step needs: the difference from q, over the
// density at z.
//
// z < 3: the series phi(z) (z + z^3/3 + z^5/15 + ...) in double-double. Zelen and Severo (1964),
// Abramowitz and Stegun 26.2.11.
double quantileOffByCentralSeries(double z, double q);
// The complementary error function, for tails that are no subnormal numbers.
double quantileOffByErrorFunction(double z, double q);
// z > 20: the asymptotic series of Mills' ratio, Abramowitz and Stegun 26.2.12.
double quantileOffByMillsRatio(double z, double q);

}  // namespace embedded::distributions
