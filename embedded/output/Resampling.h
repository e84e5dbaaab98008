// What bootstrap samples say of a run's estimates.
//
// A run over samples leaves, in the document, the tables of the data (sample 0) and of every
// sample, told apart by the outermost split variable. Here the samples become statistics beside
// each estimate, and their tables go away.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "embedded/output/Description.h"
#include "embedded/output/Document.h"

namespace embedded::output {

enum class BootstrapInterval { Percentile, Bca };

struct BootstrapOptions {
  std::uint32_t samples = 0;
  double level = 95.0;  // of the intervals, in percent
  BootstrapInterval interval = BootstrapInterval::Percentile;
  // By split group: how many cases each pattern holds. Samples beyond `samples` lack one case of
  // a pattern each; they give the acceleration of BCa intervals.
  std::vector<std::vector<std::uint64_t>> patterns;
};

// Why an interval is missing.
enum class BootstrapLack { None, TooFewSamples, SamplesAgree, StatisticOutside, NoStatistic };

// What is missing stands without a value.
struct BootstrapSummary {
  std::optional<double> bias;
  std::optional<double> standardError;
  std::optional<double> lower;
  std::optional<double> upper;
  BootstrapLack lacking = BootstrapLack::None;
};

// Summarises the sampled values of one statistic; all is missing with fewer than two of them. Bias
// is their mean less the statistic; the standard error has divisor B - 1. The percentile interval
// interpolates between order statistics at p (B + 1) (Davison and Hinkley 1997, 5.2.1). BCa (Efron
// 1987) corrects for bias, where samples equal to the statistic count half, and for acceleration;
// it has no bounds when the statistic lies outside all its samples, or is itself missing. Samples
// that all agree have no interval. Values that differ by rounding alone are equal.
BootstrapSummary summarise(const std::optional<double>& statistic, std::vector<double> samples,
                           double levelPercent, BootstrapInterval interval, double acceleration);

// The acceleration from leaving out one case at a time: values[k] is the statistic without one of
// the counts[k] cases of pattern k; those that could not be computed are not there (nullopt).
// Efron 1987, (6.6) with the jackknife's values; 0 when they all agree.
double jackknifeAcceleration(std::span<const std::optional<double>> values,
                             std::span<const std::uint64_t> counts);

// Fills in how the sampled values spread: each value with its count while there are at most 60,
// else the middles of 40 bins of equal width that are not empty.
void addHistogram(Distribution& distribution, std::vector<double> samples);

// Replaces the samples of the document by "Bootstrap" statistics beside each estimate: bias,
// standard error, interval, and the number of samples that could be computed; what is missing
// carries its reason. Messages about single samples go away, and messages about the data name the
// user's own split values alone. Tables keep the distributions of their first estimates, 1000 in
// all, for pictures.
void summariseBootstrap(Document& document, const Description& description,
                        const BootstrapOptions& options);

// Gives every split group tables of its own in place of rows of common tables. A group without
// cells in a table that has some gets none.
void separateSplitGroups(Document& document);

}  // namespace embedded::output
