// The methods for independent samples: seven intervals and five tests, in slot order.
//
// In the formulas s1 of n1 trials and s2 of n2 are successes; p1 and p2 are the proportions,
// d = p1 - p2.
#pragma once

#include "statistics/Independent.h"
#include "statistics/MethodRow.h"

namespace statistics {

inline constexpr std::array<IntervalMethod<IndependentCounts>, 7> independentIntervals{{
    {{.keyword = "AGRESTI_CAFFO",
      .isDefault = true,
      .label = "Agresti-Caffo",
      .variant = "one success and one failure added to each group",
      .formula = "a1 - a2 +- z sqrt(a1 (1 - a1) / (n1 + 2) + a2 (1 - a2) / (n2 + 2)), "
                 "a = (s + 1) / (n + 2)",
      .source = "Agresti and Caffo 2000"},
     &agrestiCaffo},
    {{.keyword = "BROWN_LI_JEFFREYS",
      .label = "Brown-Li-Jeffreys",
      .variant = "variances divided by n, not by n + 1",
      .formula = "b1 - b2 +- z sqrt(b1 (1 - b1) / n1 + b2 (1 - b2) / n2), "
                 "b = (s + 1/2) / (n + 1)",
      .source = "Brown and Li 2005"},
     &brownLiJeffreys},
    {{.keyword = "HAUCK_ANDERSON",
      .label = "Hauck-Anderson",
      .variant = "continuity correction of 1 / (2 min(n1, n2))",
      .formula = "d +- (z sqrt(p1 (1 - p1) / (n1 - 1) + p2 (1 - p2) / (n2 - 1)) "
                 "+ 1 / (2 min(n1, n2)))",
      .canFail = "missing when a group has one trial",
      .source = "Hauck and Anderson 1986"},
     &hauckAnderson},
    {{.keyword = "NEWCOMBE",
      .isDefault = true,
      .label = "Newcombe",
      .variant = "hybrid score interval",
      .formula = "d - sqrt((p1 - l1)^2 + (u2 - p2)^2), d + sqrt((u1 - p1)^2 + (p2 - l2)^2); "
                 "l and u of Wilson's intervals",
      .source = "Newcombe 1998"},
     &newcombe},
    {{.keyword = "NEWCOMBECC",
      .label = "Newcombe (Continuity Corrected)",
      .variant = "hybrid score interval, continuity correction of 1 / (2n) in each group, no "
                 "special bounds when all or none are successes",
      .formula = "as Newcombe, l and u of Wilson's intervals with continuity correction",
      .canFail = "a bound is not a number when a group has all or no successes and "
                 "z^2 < 2 + 1/n",
      .source = "Newcombe 1998"},
     &newcombeCorrected},
    {{.keyword = "WALD",
      .label = "Wald",
      .formula = "d +- z sqrt(p1 (1 - p1) / n1 + p2 (1 - p2) / n2)",
      .source = "Wald 1943"},
     &wald},
    {{.keyword = "WALDCC",
      .label = "Wald (Continuity Corrected)",
      .variant = "continuity correction of half of 1/n1 + 1/n2",
      .formula = "d +- (z sqrt(p1 (1 - p1) / n1 + p2 (1 - p2) / n2) + (1/n1 + 1/n2) / 2)",
      .source = "Fleiss, Levin and Paik 2003"},
     &waldCorrected},
}};

inline constexpr std::array<TestMethod<IndependentCounts>, 5> independentTests{{
    {{.keyword = "HAUCK_ANDERSON",
      .label = "Hauck-Anderson",
      .showsStatistic = true,
      .variant = "continuity correction of 1 / (2 min(n1, n2))",
      .formula = "Z = (d -+ cc) / sqrt(p1 (1 - p1) / (n1 - 1) + p2 (1 - p2) / (n2 - 1)), "
                 "cc = 1 / (2 min(n1, n2)), 0 when |d| < cc",
      .canFail = "missing when |d| >= cc and the variance is 0 or a group has one trial",
      .source = "Hauck and Anderson 1986"},
     &hauckAndersonTest},
    {{.keyword = "WALD",
      .label = "Wald",
      .showsStatistic = true,
      .variant = "variances not pooled",
      .formula = "Z = d / sqrt(p1 (1 - p1) / n1 + p2 (1 - p2) / n2)",
      .canFail = "missing when neither group has both successes and failures",
      .source = "Wald 1943"},
     &waldTest},
    {{.keyword = "WALDCC",
      .label = "Wald (Continuity Corrected)",
      .showsStatistic = true,
      .variant = "variances not pooled, continuity correction of half of 1/n1 + 1/n2",
      .formula = "Z = (d -+ cc) / sqrt(p1 (1 - p1) / n1 + p2 (1 - p2) / n2), "
                 "cc = (1/n1 + 1/n2) / 2, 0 when |d| < cc",
      .canFail = "missing when |d| >= cc and neither group has both successes and failures",
      .source = "Fleiss, Levin and Paik 2003"},
     &waldCorrectedTest},
    {{.keyword = "WALDH0",
      .isDefault = true,
      .label = "Wald H0",
      .showsStatistic = true,
      .variant = "pooled proportion in the variance",
      .formula = "Z = d / sqrt((1/n1 + 1/n2) p (1 - p)), p = (s1 + s2) / (n1 + n2)",
      .canFail = "missing when all cases, or none, are successes",
      .source = "Pearson 1900"},
     &waldH0Test},
    {{.keyword = "WALDH0CC",
      .label = "Wald H0 (Continuity Corrected)",
      .showsStatistic = true,
      .variant = "pooled proportion in the variance, continuity correction of half of "
                 "1/n1 + 1/n2",
      .formula = "Z = (d -+ cc) / sqrt((1/n1 + 1/n2) p (1 - p)), cc = (1/n1 + 1/n2) / 2, "
                 "0 when |d| < cc",
      .source = "Yates 1934"},
     &waldH0CorrectedTest},
}};

static_assert(isSound(independentIntervals) && isSound(independentTests));
static_assert(hasSlots(independentIntervals,
                       {"AGRESTI_CAFFO", "BROWN_LI_JEFFREYS", "HAUCK_ANDERSON", "NEWCOMBE",
                        "NEWCOMBECC", "WALD", "WALDCC"}));
static_assert(hasSlots(independentTests,
                       {"HAUCK_ANDERSON", "WALD", "WALDCC", "WALDH0", "WALDH0CC"}));

}  // namespace statistics
