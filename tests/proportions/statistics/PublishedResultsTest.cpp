// Worked examples from the literature and from other programs, to their printed digits.
//
// The conventions of the sources are translated here: a one-sided bound at 95 % is the bound of a
// two-sided interval at 90 %; a chi-squared is the square of Z; a one-sided p in a stated direction
// is the smaller tail in all examples. None of the examples was left out, and none is about a
// variant that differs from ours: those that are named otherwise agree by symmetry (the
// minimum-likelihood p at a test value of one half) or because no clamp is reached.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "statistics/Methods.h"

namespace {

using namespace statistics;
using nlohmann::json;

std::vector<json> examples(const std::string& design) {
  std::ifstream input(std::string(TEST_DATA) + "/statistics/published.json");
  std::vector<json> found;
  for (const json& example : json::parse(input))
    if (example.at("design") == design) found.push_back(example);
  return found;
}

// The names of the sources that are not simply our keyword in lower case.
std::string keywordOf(const std::string& method) {
  static const std::map<std::string, std::string> names{
      {"wilson", "WILSON_SCORE"},  {"wilson_cc", "WILSON_SCORECC"},
      {"wald_cc", "WALDCC"},       {"wald_unclamped", "WALD"},
      {"exact_central", "EXACT"},  {"exact_minlike", "EXACT"},
      {"exact_less", "EXACT"},     {"exact_greater", "EXACT"},
      {"mcnemar_cc", "MCNEMARCC"}, {"wald_h0_cc", "WALDH0CC"},
      {"wald_h0", "WALDH0"}};
  const auto found = names.find(method);
  if (found != names.end()) return found->second;
  std::string keyword = method;
  for (char& letter : keyword)
    letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
  return keyword;
}

template <class Methods>
const auto& methodOf(const json& example, const Methods& methods) {
  const std::string keyword = keywordOf(example.at("method"));
  for (const auto& method : methods)
    if (method.keyword == keyword) return method;
  throw std::runtime_error("no method " + keyword);
}

// Half a unit of the last printed digit. A statistic may be printed with fewer digits than p.
double printed(const json& value, int decimals) {
  const std::string text = value.dump();
  const auto point = text.find('.');
  const bool isPlain = point != std::string::npos && text.find('e') == std::string::npos;
  const int shown = isPlain ? static_cast<int>(text.size() - point - 1) : decimals;
  return 0.5000001 * std::pow(10.0, -std::min(decimals, shown));
}

void expectInterval(const json& example, const auto& counts, const auto& methods) {
  const std::string sides = example.at("sides");
  const double level = 100.0 * example.at("level").get<double>();
  const CriticalValues critical = criticalValues(sides == "two" ? level : 2.0 * level - 100.0);
  const Interval interval = methodOf(example, methods).compute(counts, critical);
  const int decimals = example.at("decimals");
  const double bound = 0.5000001 * std::pow(10.0, -decimals);
  const json& expected = example.at("expected");
  if (sides != "upper_bound") {
    EXPECT_NEAR(interval.lower, expected.at("lower").get<double>(), bound) << example.at("id");
  }
  if (sides != "lower_bound") {
    EXPECT_NEAR(interval.upper, expected.at("upper").get<double>(), bound) << example.at("id");
  }
}

void expectTest(const json& example, const auto& counts, const auto& methods) {
  const TestResult result = methodOf(example, methods).compute(counts);
  const int decimals = example.at("decimals");
  const json& expected = example.at("expected");
  const json& statistic = expected.at("statistic");
  if (statistic.is_number()) {
    const double z = std::fabs(result.statistic);
    const double got = expected.at("statistic_kind") == "chisq" ? z * z : z;
    EXPECT_NEAR(got, statistic.get<double>(), printed(statistic, decimals)) << example.at("id");
  }
  if (!expected.at("p").is_number()) return;
  const std::string method = example.at("method");
  const bool isOneSided = method == "exact_less" || method == "exact_greater";
  const double p = isOneSided ? result.oneSided : result.twoSided;
  EXPECT_NEAR(p, expected.at("p").get<double>(), 0.5000001 * std::pow(10.0, -decimals))
      << example.at("id");
}

OneSampleCounts oneSampleOf(const json& example) {
  const json& in = example.at("inputs");
  const double x = in.at("x");
  return {x, in.at("n").get<double>() - x, in.value("p0", 0.5)};
}

PairedCounts pairedOf(const json& example) {
  const json& in = example.at("inputs");
  return {in.at("a"), in.at("b"), in.at("c"), in.at("d")};
}

IndependentCounts independentOf(const json& example) {
  const json& in = example.at("inputs");
  const double x1 = in.at("x1");
  const double x2 = in.at("x2");
  return {x1, in.at("n1").get<double>() - x1, x2, in.at("n2").get<double>() - x2};
}

TEST(PublishedResults, OneSampleIntervals) {
  const auto found = examples("one_sample_ci");
  EXPECT_EQ(found.size(), 59U);
  for (const json& example : found)
    expectInterval(example, oneSampleOf(example), oneSampleIntervals);
}

TEST(PublishedResults, OneSampleTests) {
  const auto found = examples("one_sample_test");
  EXPECT_EQ(found.size(), 6U);
  for (const json& example : found) expectTest(example, oneSampleOf(example), oneSampleTests);
}

TEST(PublishedResults, PairedIntervals) {
  const auto found = examples("paired_ci");
  EXPECT_EQ(found.size(), 8U);
  for (const json& example : found) expectInterval(example, pairedOf(example), pairedIntervals);
}

TEST(PublishedResults, PairedTests) {
  const auto found = examples("paired_test");
  EXPECT_EQ(found.size(), 4U);
  for (const json& example : found) expectTest(example, pairedOf(example), pairedTests);
}

TEST(PublishedResults, IndependentIntervals) {
  const auto found = examples("indep_ci");
  EXPECT_EQ(found.size(), 7U);
  for (const json& example : found)
    expectInterval(example, independentOf(example), independentIntervals);
}

TEST(PublishedResults, IndependentTests) {
  const auto found = examples("indep_test");
  EXPECT_EQ(found.size(), 4U);
  for (const json& example : found) expectTest(example, independentOf(example), independentTests);
}

}  // namespace
