// The methods for paired samples: five intervals and six tests, in slot order.
//
// In the formulas b cases are successes on the first measurement only, c on the second only; of N
// cases all told; p1 and p2 are the proportions.
#pragma once

#include "statistics/MethodRow.h"
#include "statistics/Paired.h"

namespace statistics {

inline constexpr std::array<IntervalMethod<PairedCounts>, 5> pairedIntervals{{
    {{.keyword = "AGRESTI_MIN",
      .label = "Agresti-Min",
      .variant = "one half added to each of the four counts",
      .formula = "d +- z sqrt(((b + 1/2 + c + 1/2) / M - d^2) / M), d = (b - c) / M, M = N + 2",
      .source = "Agresti and Min 2005"},
     &agrestiMin},
    {{.keyword = "BONETT_PRICE",
      .isDefault = true,
      .label = "Bonett-Price",
      .variant = "one added to each of the two discordant counts",
      .formula = "d +- z sqrt(((b + 1 + c + 1) / M - d^2) / M), d = (b - c) / M, M = N + 2",
      .source = "Bonett and Price 2012"},
     &bonettPrice},
    {{.keyword = "NEWCOMBE",
      .isDefault = true,
      .label = "Newcombe",
      .variant = "hybrid score interval; the correlation is corrected only when "
                 "n11 n00 - b c > N / 2, and is not set to 0 below that",
      .formula = "p1 - p2 - sqrt(v^2 + w^2 - 2 phi v w), v = p1 - l1, w = u2 - p2, and its mirror; "
                 "l and u of Wilson's intervals",
      .canFail = "missing when the correlation phi cannot be formed",
      .source = "Newcombe 1998"},
     &newcombe},
    {{.keyword = "WALD",
      .label = "Wald",
      .formula = "d +- z sqrt(((b + c) / N - d^2) / N), d = (b - c) / N",
      .source = "Wald 1943"},
     &wald},
    {{.keyword = "WALDCC",
      .label = "Wald (Continuity Corrected)",
      .variant = "continuity correction of 1 / N",
      .formula = "d +- (z sqrt(((b + c) / N - d^2) / N) + 1 / N), d = (b - c) / N",
      .source = "Fleiss, Levin and Paik 2003"},
     &waldCorrected},
}};

inline constexpr std::array<TestMethod<PairedCounts>, 6> pairedTests{{
    {{.keyword = "EXACT",
      .label = "Exact Binomial",
      .variant = "two-sided p is twice the smaller tail",
      .formula = "P(X <= min(b, c)), X binomial with b + c and 1/2",
      .canFail = "missing when the probability function fails",
      .source = "McNemar 1947"},
     &exactTest},
    {{.keyword = "MIDP",
      .isDefault = true,
      .label = "Mid-p Adjusted Binomial",
      .variant = "two-sided p is twice the smaller tail",
      .formula = "P(X <= k) - P(X = k) / 2, k = min(b, c), X binomial with b + c and 1/2",
      .canFail = "missing when the probability function fails",
      .source = "Lancaster 1961"},
     &midpTest},
    {{.keyword = "MCNEMAR",
      .isDefault = true,
      .label = "McNemar",
      .showsStatistic = true,
      .variant = "normal statistic, the signed root of the chi-squared",
      .formula = "Z = (b - c) / sqrt(b + c)",
      .canFail = "missing when no case is discordant",
      .source = "McNemar 1947"},
     &mcNemarTest},
    {{.keyword = "MCNEMARCC",
      .label = "McNemar (Continuity Corrected)",
      .showsStatistic = true,
      .variant = "continuity correction of one whole count",
      .formula = "Z = (b - c -+ 1) / sqrt(b + c), 0 when b = c",
      .source = "Edwards 1948"},
     &mcNemarCorrectedTest},
    {{.keyword = "WALD",
      .label = "Wald",
      .showsStatistic = true,
      .formula = "Z = (b - c) / sqrt(b + c - (b - c)^2 / N)",
      .canFail = "missing when the variance is not positive",
      .source = "Wald 1943"},
     &waldTest},
    {{.keyword = "WALDCC",
      .label = "Wald (Continuity Corrected)",
      .showsStatistic = true,
      .variant = "continuity correction of one whole count",
      .formula = "Z = (b - c -+ 1) / sqrt(b + c - (b - c)^2 / N), 0 when b = c",
      .canFail = "missing when b and c differ and the variance is not positive",
      .source = "Wald 1943, Edwards 1948"},
     &waldCorrectedTest},
}};

static_assert(isSound(pairedIntervals) && isSound(pairedTests));
static_assert(hasSlots(pairedIntervals,
                       {"AGRESTI_MIN", "BONETT_PRICE", "NEWCOMBE", "WALD", "WALDCC"}));
static_assert(hasSlots(pairedTests, {"EXACT", "MIDP", "MCNEMAR", "MCNEMARCC", "WALD", "WALDCC"}));

}  // namespace statistics
