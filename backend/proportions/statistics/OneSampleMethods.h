// The methods for one sample: nine intervals and six tests, in slot order.
//
// In the formulas x of n trials are successes, f = n - x, p = x / n; p0 is the test value.
#pragma once

#include "statistics/MethodRow.h"
#include "statistics/OneSample.h"

namespace statistics {

inline constexpr std::array<IntervalMethod<OneSampleCounts>, 9> oneSampleIntervals{{
    {{.keyword = "AGRESTI_COULL",
      .isDefault = true,
      .label = "Agresti-Coull",
      .variant = "z^2 / 2 added to successes and to failures",
      .formula = "m +- z sqrt(m (1 - m) / (n + z^2)), m = (x + z^2 / 2) / (n + z^2)",
      .source = "Agresti and Coull 1998"},
     &agrestiCoull},
    {{.keyword = "ANSCOMBE",
      .label = "Anscombe",
      .variant = "logit interval with one half added to successes and to failures",
      .formula = "1 / (1 + (f + 1/2) / (x + 1/2) exp(+-z s)), "
                 "s^2 = (n + 1)(n + 2) / (n (x + 1)(f + 1))",
      .source = "Anscombe 1956"},
     &anscombe},
    {{.keyword = "CLOPPER_PEARSON",
      .label = "Clopper-Pearson Exact ...",
      .formula = "beta quantiles: alpha/2 of Beta(x, f + 1) and 1 - alpha/2 of Beta(x + 1, f)",
      .source = "Clopper and Pearson 1934"},
     &clopperPearson},
    {{.keyword = "JEFFREYS",
      .isDefault = true,
      .label = "Jeffreys",
      .variant = "equal tails, no special bounds when all or none are successes",
      .formula = "beta quantiles: alpha/2 and 1 - alpha/2 of Beta(x + 1/2, f + 1/2)",
      .source = "Brown, Cai and DasGupta 2001"},
     &jeffreys},
    {{.keyword = "LOGIT",
      .label = "Logit",
      .variant = "logit interval with nothing added",
      .formula = "1 / (1 + f / x exp(+-z s)), s^2 = n / (x f)",
      .canFail = "missing when there are no successes or no failures",
      .source = "Newcombe 2001"},
     &logit},
    {{.keyword = "WALD",
      .label = "Wald",
      .formula = "p +- z sqrt(p (1 - p) / n)",
      .source = "Wald 1943"},
     &wald},
    {{.keyword = "WALDCC",
      .label = "Wald (Continuity Corrected)",
      .variant = "continuity correction of 1 / (2n)",
      .formula = "p +- (z sqrt(p (1 - p) / n) + 1 / (2n))",
      .source = "Blyth and Still 1983"},
     &waldCorrected},
    {{.keyword = "WILSON_SCORE",
      .isDefault = true,
      .label = "Wilson Score",
      .formula = "(p + z^2 / (2n) +- z sqrt(p (1 - p) / n + z^2 / (4 n^2))) / (1 + z^2 / n)",
      .source = "Wilson 1927"},
     &wilsonScore},
    {{.keyword = "WILSON_SCORECC",
      .label = "Wilson Score (Continuity Corrected)",
      .variant = "continuity correction of 1 / (2n), no special bounds when all or none are "
                 "successes",
      .formula = "(2x + z^2 +- (1 + z sqrt(z^2 - 1/n + 4 n p (1 - p) -+ (4p - 2)))) "
                 "/ (2 (n + z^2)), lower bound with + (4p - 2)",
      .canFail = "a bound is not a number when the root is of a negative number: all or none are "
                 "successes, and z^2 < 2 + 1/n",
      .source = "Newcombe 1998"},
     &wilsonScoreCorrected},
}};

inline constexpr std::array<TestMethod<OneSampleCounts>, 6> oneSampleTests{{
    {{.keyword = "EXACT",
      .label = "Exact Binomial",
      .variant = "two-sided p is twice the smaller tail",
      .formula = "min(P(X <= x), P(X >= x)), X binomial with n and p0",
      .canFail = "missing when the distribution function fails",
      .source = "Clopper and Pearson 1934"},
     &exactTest},
    {{.keyword = "MIDP",
      .isDefault = true,
      .label = "Mid-p Adjusted Binomial",
      .variant = "two-sided p is twice the smaller tail",
      .formula = "min(P(X <= x), P(X >= x)) - P(X = x) / 2, X binomial with n and p0",
      .canFail = "missing when a distribution function fails",
      .source = "Lancaster 1961"},
     &midpTest},
    {{.keyword = "SCORE",
      .isDefault = true,
      .label = "Score",
      .showsStatistic = true,
      .formula = "Z = (x - n p0) / sqrt(n p0 (1 - p0))",
      .source = "Wilson 1927"},
     &scoreTest},
    {{.keyword = "SCORECC",
      .label = "Score (Continuity Corrected)",
      .showsStatistic = true,
      .variant = "continuity correction of one half count",
      .formula = "Z = (x - n p0 -+ 1/2) / sqrt(n p0 (1 - p0)), 0 when |p - p0| < 1 / (2n)",
      .source = "Yates 1934"},
     &scoreCorrectedTest},
    {{.keyword = "WALD",
      .label = "Wald",
      .showsStatistic = true,
      .formula = "Z = (x - n p0) / sqrt(x (1 - p))",
      .canFail = "missing when there are no successes or no failures",
      .source = "Wald 1943"},
     &waldTest},
    {{.keyword = "WALDCC",
      .label = "Wald (Continuity Corrected)",
      .showsStatistic = true,
      .variant = "continuity correction of one half count",
      .formula = "Z = (x - n p0 -+ 1/2) / sqrt(x (1 - p)), 0 when |p - p0| < 1 / (2n)",
      .canFail = "missing when there are no successes or no failures",
      .source = "Wald 1943, Yates 1934"},
     &waldCorrectedTest},
}};

static_assert(isSound(oneSampleIntervals) && isSound(oneSampleTests));
static_assert(hasSlots(oneSampleIntervals,
                       {"AGRESTI_COULL", "ANSCOMBE", "CLOPPER_PEARSON", "JEFFREYS", "LOGIT", "WALD",
                        "WALDCC", "WILSON_SCORE", "WILSON_SCORECC"}));
static_assert(hasSlots(oneSampleTests, {"EXACT", "MIDP", "SCORE", "SCORECC", "WALD", "WALDCC"}));

}  // namespace statistics
