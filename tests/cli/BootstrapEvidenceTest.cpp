// Bootstrap results against exact theory, where it is known, and against a plain resampling of
// rows.
//
// Seeds are fixed. How far a result may lie from what is expected is computed: five standard errors
// of its Monte Carlo error, by the number of samples on either side.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

#include "Program.h"
#include "Results.h"
#include "Rows.h"

namespace cli_tests {
namespace {

constexpr double far = 5.0;

std::string csvOf(const Folder& folder, const std::string& command,
                  const std::vector<std::string>& options) {
  Call call{.arguments = {"run", "data.csv", "-c", command, "--format", "csv", "--quiet"},
            .folder = folder.path(),
            .input = {}};
  call.arguments.insert(call.arguments.end(), options.begin(), options.end());
  const Outcome outcome = run(call);
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  return outcome.out;
}

// --- Distributions ------------------------------------------------------------------------------

// A discrete distribution by its values.
using Law = std::map<double, double>;

double binomialProbability(int n, int k, double p) {
  if (p == 0.0 || p == 1.0) {
    return k == (p == 0.0 ? 0 : n) ? 1.0 : 0.0;
  }
  return std::exp(std::lgamma(n + 1.0) - std::lgamma(k + 1.0) - std::lgamma(n - k + 1.0) +
                  k * std::log(p) + (n - k) * std::log1p(-p));
}

double moment(const Law& law, double around, int power) {
  double sum = 0.0;
  for (const auto& [value, probability] : law) {
    sum += probability * std::pow(value - around, power);
  }
  return sum;
}

// The smallest value below or at which a share p of the distribution lies.
double quantile(const Law& law, double p) {
  double below = 0.0;
  for (const auto& [value, probability] : law) {
    below += probability;
    if (below >= p) {
      return value;
    }
  }
  return law.rbegin()->first;
}

Law lawOf(const std::vector<double>& values) {
  Law law;
  for (const double value : values) {
    law[value] += 1.0 / static_cast<double>(values.size());
  }
  return law;
}

// `samples` is the number of samples behind the results, and `behind` of those behind the law;
// infinite for an exact one.
void expectAgrees(const BootstrapCells& got, const Law& law, double behind = INFINITY) {
  const double parts = 1.0 / got.samples + 1.0 / behind;
  const double mean = moment(law, 0.0, 1);
  const double variance = moment(law, mean, 2);
  const double deviation = std::sqrt(variance);
  EXPECT_NEAR(got.statistic + got.bias, mean, far * deviation * std::sqrt(parts) + 1e-12);
  const double kurtosis = moment(law, mean, 4) / (variance * variance);
  EXPECT_NEAR(got.error, deviation,
              far * deviation * std::sqrt((kurtosis - 1.0) / 4.0 * parts) + 1e-12);
  for (const auto& [bound, tail] : {std::pair(got.lower, 0.025), {got.upper, 0.975}}) {
    const double reach = far * std::sqrt(tail * (1.0 - tail) * parts);
    EXPECT_GE(bound, quantile(law, std::max(tail - reach, 0.0)) - 1e-12) << "tail " << tail;
    EXPECT_LE(bound, quantile(law, std::min(tail + reach, 1.0)) + 1e-12) << "tail " << tail;
  }
}

// --- Exact theory -------------------------------------------------------------------------------

struct Proportion {
  int successes, trials;
};

class ExactProportion : public testing::TestWithParam<Proportion> {};

// Of n cases redrawn with replacement, the number of successes is binomial.
TEST_P(ExactProportion, HasTheBinomialDistribution) {
  const auto [successes, trials] = GetParam();
  const Folder folder;
  folder.write("data.csv", "v,w\n1," + std::to_string(successes) + "\n0," +
                               std::to_string(trials - successes) + "\n");
  const Results results(csvOf(
      folder,
      "PROPORTIONS /ONESAMPLE v CITYPES=WALD TESTTYPES=SCORE TESTVAL=0.3 /SUCCESS VALUE=LEVEL(1)",
      {"--weight", "w", "--bootstrap", "4000", "--seed", "1"}));
  const double p = static_cast<double>(successes) / trials;
  Law proportions, differences, errors;
  for (int k = 0; k <= trials; ++k) {
    const double probability = binomialProbability(trials, k, p);
    const double drawn = static_cast<double>(k) / trials;
    proportions[drawn] += probability;
    differences[drawn - 0.3] += probability;
    errors[std::sqrt(drawn * (1.0 - drawn) / trials)] += probability;
  }
  const std::string table = "One-Sample Proportions Confidence Intervals";
  expectAgrees(bootstrapOf(results, {table, "", "Wald", "v = 1", "Observed / Proportion"}),
               proportions);
  expectAgrees(bootstrapOf(results, {table, "", "Wald", "v = 1", "Asymptotic Standard Error"}),
               errors);
  expectAgrees(bootstrapOf(results, {"One-Sample Proportions Tests", "", "Score", "v = 1",
                                     "Observed - Test Value"}),
               differences);
}

INSTANTIATE_TEST_SUITE_P(Bootstrap, ExactProportion,
                         testing::Values(Proportion{27, 40}, Proportion{1, 12}, Proportion{5, 6},
                                         Proportion{150, 300}, Proportion{9990, 10000}),
                         [](const auto& tested) {
                           return std::to_string(tested.param.successes) + "of" +
                                  std::to_string(tested.param.trials);
                         });

// Large counts: sqrt(p (1 - p) / n) to all digits that the Monte Carlo error leaves.
TEST(ExactProportion, HoldsForABillionCases) {
  const Folder folder;
  folder.write("data.csv", "v,w\n1,300000\n0,999700000\n");
  const Results results(csvOf(folder, "PROPORTIONS /ONESAMPLE v CITYPES=WALD TESTTYPES=NONE",
                              {"--weight", "w", "--bootstrap", "5000", "--seed", "3"}));
  const BootstrapCells got = bootstrapOf(results, {"One-Sample Proportions Confidence Intervals",
                                                   "", "Wald", "v = 1", "Observed / Proportion"});
  const double error = std::sqrt(0.0003 * 0.9997 / 1e9);
  EXPECT_NEAR(got.bias, 0.0, far * error / std::sqrt(5000.0));
  EXPECT_NEAR(got.error, error, far * error / std::sqrt(2.0 * 5000.0));
  EXPECT_NEAR(got.lower, 0.0003 - 1.959964 * error, 0.3 * error);
  EXPECT_NEAR(got.upper, 0.0003 + 1.959964 * error, 0.3 * error);
}

// The difference of a pair is (n10 - n01) / n, and (n10, n01) is multinomial.
TEST(ExactPairs, HaveTheMultinomialDistribution) {
  const Folder folder;
  folder.write("data.csv", "v,u,w\n1,1,9\n1,0,7\n0,1,3\n0,0,6\n");
  const Results results(csvOf(folder,
                              "PROPORTIONS /PAIREDSAMPLES v WITH u CITYPES=WALD TESTTYPES=NONE "
                              "/SUCCESS VALUE=LEVEL(1)",
                              {"--weight", "w", "--bootstrap", "4000", "--seed", "5"}));
  Law law;
  for (int a = 0; a <= 25; ++a) {
    for (int b = 0; a + b <= 25; ++b) {
      const double probability =
          binomialProbability(25, a, 0.28) * binomialProbability(25 - a, b, 0.12 / 0.72);
      law[std::round((a - b) * 1e6) / 25e6] += probability;
    }
  }
  expectAgrees(bootstrapOf(results, {"Paired-Samples Proportions Confidence Intervals", "", "Wald",
                                     "Pair 1 vars v u ...", "Difference in Proportions"}),
               law);
}

// The sizes of the groups are drawn too; a sample without one of them has no difference.
TEST(ExactGroups, HaveTheMixtureOfBinomials) {
  const Folder folder;
  folder.write("data.csv", "v,g,w\n1,1,5\n0,1,3\n1,2,1\n0,2,2\n");
  const Results results(csvOf(folder,
                              "PROPORTIONS /INDEPENDENTSAMPLES v BY g CITYPES=WALD TESTTYPES=NONE "
                              "/SUCCESS VALUE=LEVEL(1)",
                              {"--weight", "w", "--bootstrap", "4000", "--seed", "6"}));
  Law law;
  double lacking = 0.0;
  for (int n1 = 0; n1 <= 11; ++n1) {
    const double size = binomialProbability(11, n1, 8.0 / 11.0);
    if (n1 == 0 || n1 == 11) {
      lacking += size;
      continue;
    }
    for (int a = 0; a <= n1; ++a) {
      for (int b = 0; b <= 11 - n1; ++b) {
        const double difference = a / static_cast<double>(n1) - b / static_cast<double>(11 - n1);
        law[std::round(difference * 1e9) / 1e9] +=
            size * binomialProbability(n1, a, 5.0 / 8.0) * binomialProbability(11 - n1, b, 1.0 / 3);
      }
    }
  }
  for (auto& [value, probability] : law) {
    probability /= 1.0 - lacking;
  }
  BootstrapCells got = bootstrapOf(results, {"Independent-Samples Proportions Confidence Intervals",
                                             "", "Wald", "v = 1", "Difference in Proportions"});
  EXPECT_NEAR(got.samples, 4000.0 * (1.0 - lacking),
              far * std::sqrt(4000.0 * lacking * (1.0 - lacking)));
  // The law's values are rounded to nine digits.
  got.lower = std::round(got.lower * 1e9) / 1e9;
  got.upper = std::round(got.upper * 1e9) / 1e9;
  expectAgrees(got, law);
}

// --- Rows ---------------------------------------------------------------------------------------

using rows::Analysis;
using rows::Design;
using rows::Estimates;
using rows::Grouping;
using rows::Row;
using rows::Success;

struct AnalysisCase {
  std::string name;
  Analysis analysis;
  std::string command;
};

void PrintTo(const AnalysisCase& tested, std::ostream* out) {
  *out << tested.name;
}

std::vector<AnalysisCase> analyses() {
  const std::vector<std::tuple<Success, std::string, std::string>> rules{
      {Success::First, "First", "FIRST"},
      {Success::Last, "Last", "LAST"},
      {Success::Midpoint, "Midpoint", "MIDPOINT"},
      {Success::CutPoint, "CutPoint", "CUTPOINT(2)"},
      {Success::Level, "Level", "LEVEL(2)"}};
  const std::vector<std::tuple<Grouping, std::string, std::string>> groupings{
      {Grouping::Levels, "Levels", "LEVEL(1 2)"},
      {Grouping::Midpoint, "Midpoint", "MIDPOINT"},
      {Grouping::CutPoint, "CutPoint", "CUTPOINT(2)"}};
  std::vector<AnalysisCase> all;
  for (const auto& [success, name, word] : rules) {
    const std::string rule = " CITYPES=WALD TESTTYPES=NONE /SUCCESS VALUE=" + word;
    all.push_back({"OneSample" + name,
                   {Design::OneSample, success, Grouping::Levels},
                   "PROPORTIONS /ONESAMPLE v" + rule});
    all.push_back({"Paired" + name,
                   {Design::Paired, success, Grouping::Levels},
                   "PROPORTIONS /PAIREDSAMPLES v WITH u" + rule});
    for (const auto& [grouping, groupName, groupWord] : groupings) {
      all.push_back({"Independent" + name + "By" + groupName,
                     {Design::Independent, success, grouping},
                     "PROPORTIONS /INDEPENDENTSAMPLES v BY g SELECT=" + groupWord + rule});
    }
  }
  return all;
}

class AgainstRows : public testing::TestWithParam<AnalysisCase> {
 protected:
  static constexpr int ownSamples = 8000;

  // Weighted rows with missing values in two split groups, whose extremes differ.
  AgainstRows() {
    std::string data = "r,v,u,g,w\n";
    const auto text = [](const std::optional<double>& value) {
      return value ? std::to_string(static_cast<int>(*value)) : std::string();
    };
    for (int i = 0; i < 70; ++i) {
      const int group = i % 2;
      Row row;
      if (i % 9 != 0) row.v = (i * 5 + i / 7) % (group == 0 ? 4 : 3) + group;
      if (i % 11 != 0) row.u = (i * 3 + i / 5) % 4;
      if (i % 13 != 0) row.g = (i * 7 + i / 4) % 3 + 1;
      const int weight = i % 4;
      data += std::string(group == 0 ? "a" : "b") + "," + text(row.v) + "," + text(row.u) + "," +
              text(row.g) + "," + std::to_string(weight) + "\n";
      cases_[group].insert(cases_[group].end(), static_cast<std::size_t>(weight), row);
    }
    folder_.write("data.csv", data);
    folder_.write("data.schema.json", "{\"fields\": []}");
  }

  // Fails unless the cells agree with the estimates that `pick` takes.
  void compare(const BootstrapCells& got, const Estimates& original,
               const std::vector<Estimates>& own, std::optional<double> Estimates::* pick) const {
    ASSERT_TRUE(original.*pick);
    EXPECT_NEAR(got.statistic, *(original.*pick), 1e-12);
    std::vector<double> values;
    for (const Estimates& estimates : own) {
      // Equal fractions are equal values.
      if (estimates.*pick) values.push_back(std::round(*(estimates.*pick) * 1e12) / 1e12);
    }
    const double share = static_cast<double>(values.size()) / ownSamples;
    EXPECT_NEAR(got.samples / 4000.0, share,
                far * std::sqrt(share * (1.0 - share) * (1.0 / 4000 + 1.0 / ownSamples)));
    expectAgrees(got, lawOf(values), static_cast<double>(values.size()));
  }

  Folder folder_;
  std::vector<Row> cases_[2];
};

// The first of the cells of this table, split and statistic, and below this row.
CsvPlace placeOf(const Results& results, const std::string& table, const std::string& split,
                 const std::string& statistic, int which) {
  for (const auto& [place, cell] : results.cells()) {
    const bool isSecond = place.row.rfind(">=", 0) == 0 || place.row == "= 2" ||
                          place.variable.rfind("Pair 1 / u", 0) == 0;
    if (place.table == table && place.split == split && place.statistic == statistic &&
        isSecond == (which == 2)) {
      return place;
    }
  }
  ADD_FAILURE() << "no cell: " << table << " | " << split << " | " << statistic;
  return {};
}

TEST_P(AgainstRows, Agrees) {
  const Analysis& analysis = GetParam().analysis;
  const Results results(
      csvOf(folder_, GetParam().command,
            {"--split", "r", "--weight", "w", "--bootstrap", "4000", "--seed", "8"}));
  for (const int group : {0, 1}) {
    const std::string split = group == 0 ? "r=a" : "r=b";
    const auto& cases = cases_[group];
    const Estimates original = estimate(analysis, cases, cases);
    const auto own = resample(analysis, cases, ownSamples, 100U + static_cast<unsigned>(group));
    const auto at = [&](const char* table, const char* statistic, int which) {
      return bootstrapOf(results, placeOf(results, table, split, statistic, which));
    };
    if (analysis.design == Design::OneSample) {
      const char* table = "One-Sample Proportions Confidence Intervals";
      compare(at(table, "Observed / Proportion", 1), original, own, &Estimates::first);
      compare(at(table, "Asymptotic Standard Error", 1), original, own, &Estimates::error);
      continue;
    }
    const bool paired = analysis.design == Design::Paired;
    const char* statistics = paired ? "Paired-Samples Proportions Statistics"
                                    : "Independent-Samples Proportions Group Statistics";
    const char* intervals = paired ? "Paired-Samples Proportions Confidence Intervals"
                                   : "Independent-Samples Proportions Confidence Intervals";
    compare(at(statistics, "Proportion", 1), original, own, &Estimates::first);
    compare(at(statistics, "Proportion", 2), original, own, &Estimates::second);
    compare(at(intervals, "Difference in Proportions", 1), original, own, &Estimates::difference);
  }
}

INSTANTIATE_TEST_SUITE_P(Bootstrap, AgainstRows, testing::ValuesIn(analyses()),
                         [](const auto& tested) { return tested.param.name; });

// --- BCa ----------------------------------------------------------------------------------------

double normalBelow(double z) {
  return 0.5 * std::erfc(-z / std::sqrt(2.0));
}

double normalQuantile(double p) {
  double low = -40.0;
  double high = 40.0;
  for (int i = 0; i < 200; ++i) {
    const double middle = 0.5 * (low + high);
    (normalBelow(middle) < p ? low : high) = middle;
  }
  return 0.5 * (low + high);
}

// Efron (1987) with the exact distribution in place of samples: z0 from P(X* < x) + P(X* = x) / 2,
// and, for a proportion, a = (1 - 2 p) / sqrt(n p (1 - p)) / 6, which is what leaving out one row
// at a time comes to.
TEST(Bca, OfAProportionCorrectsTheBinomialDistribution) {
  for (const auto& [successes, trials] : {std::pair(27, 40), {4, 30}, {55, 60}}) {
    const Folder folder;
    folder.write("data.csv", "v,w\n1," + std::to_string(successes) + "\n0," +
                                 std::to_string(trials - successes) + "\n");
    const Results results(
        csvOf(folder, "PROPORTIONS /ONESAMPLE v CITYPES=WALD TESTTYPES=NONE",
              {"--weight", "w", "--bootstrap", "10000", "--bootstrap-interval", "bca"}));
    const BootstrapCells got = bootstrapOf(results, {"One-Sample Proportions Confidence Intervals",
                                                     "", "Wald", "v = 1", "Observed / Proportion"});
    const double p = static_cast<double>(successes) / trials;
    Law law;
    double below = 0.0;
    for (int k = 0; k <= trials; ++k) {
      const double probability = binomialProbability(trials, k, p);
      law[static_cast<double>(k) / trials] = probability;
      below += k < successes ? probability : k == successes ? probability / 2.0 : 0.0;
    }
    const double acceleration = (1.0 - 2.0 * p) / std::sqrt(trials * p * (1.0 - p)) / 6.0;
    // By how much the share below the statistic may be off, and z0 with it.
    const double shareError = far * std::sqrt(below * (1.0 - below) / 10000.0);
    for (const auto& [bound, tail] :
         {std::pair(got.lower, -1.959963984540054), {got.upper, 1.959963984540054}}) {
      double levels[2];
      for (const int side : {0, 1}) {
        const double z0 = normalQuantile(below + (side == 0 ? -shareError : shareError));
        const double level = normalBelow(z0 + (z0 + tail) / (1.0 - acceleration * (z0 + tail)));
        levels[side] = level + (side == 0 ? -far : far) * std::sqrt(level * (1 - level) / 10000.0);
      }
      EXPECT_GE(bound, quantile(law, levels[0]) - 1e-12) << successes << " of " << trials;
      EXPECT_LE(bound, quantile(law, levels[1]) + 1e-12) << successes << " of " << trials;
    }
  }
}

}  // namespace
}  // namespace cli_tests
