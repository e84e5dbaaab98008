// Combining estimates over imputations, by Rubin's rules.
//
// Sources: Rubin, Multiple Imputation for Nonresponse in Surveys (1987); Barnard and Rubin,
// Biometrika 86 (1999) 948-955, for the degrees of freedom; Lott and Reiter, The American
// Statistician 74 (2020) 109-115, for the Wilson interval; Sidi and Harel, The American
// Statistician 75 (2021) 29-36, for the Newcombe interval of two independent proportions.
#pragma once

#include <optional>
#include <span>

namespace embedded::output {

enum class PoolingDf { BarnardRubin, Rubin };

// What m >= 2 imputations say of one quantity.
struct PooledEstimate {
  double estimate = 0.0;       // mean of the estimates
  double within = 0.0;         // mean of their squared standard errors
  double between = 0.0;        // variance of the estimates over the imputations, divisor m - 1
  double total = 0.0;          // within + (1 + 1/m) between
  double standardError = 0.0;  // root of the total
  double df = 0.0;             // degrees of freedom; infinite when the imputations agree
  // Relative increase in variance, fraction of missing information, relative efficiency. With
  // no variance within, the increase is 0 when the imputations agree and infinite otherwise.
  double increase = 0.0;
  double missingInformation = 0.0;
  double efficiency = 1.0;
  int imputations = 0;
};

struct PooledInterval {
  double lower = 0.0;
  double upper = 0.0;
};

struct PooledTest {
  double statistic = 0.0;
  double oneSided = 0.0;  // the smaller tail
  double twoSided = 0.0;
};

// Combines estimates with their standard errors; the spans have the same length, at least 2.
// `completeDf`: degrees of freedom of the complete data, at least 0, for Barnard and Rubin's;
// without it, Rubin's. Something that is not a number among them makes all that rests on it none.
PooledEstimate poolEstimates(std::span<const double> estimates,
                             std::span<const double> standardErrors,
                             std::optional<double> completeDf, PoolingDf rule);

// Rubin's degrees of freedom (1987, (3.1.6)) for an increase r: (m - 1) (1 + 1/r)^2, infinite
// where r is 0.
double rubinDf(int imputations, double increase);

// The quantile of Student's t at confidence level L percent, 0 <= L < 100, two-sided, for degrees
// of freedom above 0: of the normal distribution where they are infinite. Infinite where it is
// beyond the doubles.
double criticalValue(double levelPercent, double df);

// Wald's interval from the pooled estimate, kept within [low, high].
PooledInterval pooledWald(const PooledEstimate& pooled, double levelPercent, double low,
                          double high);

// Lott and Reiter's Wilson interval of one proportion of n > 0 trials. Its t has Rubin's degrees
// of freedom, as they define it. Where the imputations agree it is Wilson's own interval.
PooledInterval pooledWilson(const PooledEstimate& pooled, double trials, double levelPercent);

// Sidi and Harel's Newcombe interval of a difference: the pooled Wilson intervals of two
// independent proportions, squared and added.
PooledInterval pooledNewcombe(const PooledEstimate& first, double firstTrials,
                              const PooledEstimate& second, double secondTrials,
                              double levelPercent);

// The test that the quantity is zero: t with the pooled degrees of freedom. Nothing when the
// total variance or the degrees of freedom are zero.
std::optional<PooledTest> pooledTest(const PooledEstimate& difference);

}  // namespace embedded::output
