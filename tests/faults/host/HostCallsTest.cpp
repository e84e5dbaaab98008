// Every host call of whole runs of each design, failing in every way that it can: the exception
// passes or the run ends by its own rules, what is owned is released, and the next command works.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "proportions/proportions.h"
#include "scripted_host/command/Words.h"
#include "scripted_host/session/Session.h"

namespace {

using scripted::Command;
using scripted::Script;

// Split groups, weights, a missing value, a text and numbers: what reaches most of the interface.
scripted::DataSet dataSet() {
  const double none = MCMV::Missing;
  return {.variables = {scripted::numeric("g", {1, 1, 1, 1, 2, 2, 3, 3, 3}),
                        scripted::numeric("v", {1, 0, 1, 0, none, 1, 1, 0, 1}),
                        scripted::numeric("u", {0, 0, 1, 1, 1, 1, 0, 1, 1}),
                        scripted::text("s", 12, {"a", "b", "b", "a", "a", "b", "b", "b", "a"}),
                        scripted::numeric("w", {1, 2, 3, 1, 1, 1, 2, 1, 1})},
          .weight = "w",
          .splits = {"g"}};
}

scripted::Params allMethods() {
  return {scripted::keywords("CITYPES", {"ALL"}), scripted::keywords("TESTTYPES", {"ALL"})};
}

Script scriptOf(const std::string& design) {
  Script script{.data = dataSet(), .command = {}};
  if (design == "one sample") {
    script.command = {scripted::oneSample({"v", "u"}, allMethods()),
                      scripted::success(scripted::cutPoint("VALUE", 0.5))};
  } else if (design == "paired samples") {
    script.command = {scripted::paired({"v", "WITH", "u"}, allMethods())};
  } else {
    auto params = allMethods();
    params.push_back(scripted::levels("SELECT", std::vector<std::string>{"a", "b"}));
    script.command = {scripted::independent({"v", "BY", "s"}, std::move(params)),
                      scripted::missing("LISTWISE", "EXCLUDE")};
  }
  return script;
}

// A run without faults, as a measure of the next command.
std::vector<std::string> titlesOfSoundRun(const Script& script) {
  scripted::Session host(script);
  PROPORTI();
  EXPECT_TRUE(host.log.violations.empty());
  return host.log.titles();
}

// What an exception may leave behind: the objects that the entry holds by plain pointers.
void expectReleased(const scripted::Session& host) {
  for (const auto& [type, count] : host.live) {
    const int most = type == "Iterator"                               ? 1
                     : type == "ParserMessage" || type == "ObsVecMap" ? 4
                                                                      : 0;
    EXPECT_LE(count, most) << type;
  }
}

void expectAllReleased(const scripted::Session& host) {
  for (const auto& [type, count] : host.live) EXPECT_EQ(count, 0) << type;
}

class HostCalls : public testing::TestWithParam<const char*> {};

// Runs with a fault until it lies beyond the run's end; returns how many runs met it.
template <class SetFault, class WasMet>
std::size_t countFaults(const Script& script, const SetFault& set, const WasMet& wasMet) {
  const auto titles = titlesOfSoundRun(script);
  EXPECT_FALSE(titles.empty());
  for (std::size_t k = 1;; ++k) {
    Script failing = script;
    set(failing.faults, k);
    bool met = false;
    {
      scripted::Session host(failing);
      try {
        PROPORTI();
        expectAllReleased(host);
      } catch (const scripted::HostFailure&) {
        expectReleased(host);
      } catch (const scripted::AssertionFailed& failure) {
        // No iterator, or a command without the list that its description requires.
        EXPECT_TRUE(failure.expression == "pDSIter!= 0" || failure.expression == "nTokens > 0")
            << failure.expression;
      }
      met = wasMet(host, k);
    }
    if (!met) return k - 1;
    if (k % 16 == 0) {
      EXPECT_EQ(titlesOfSoundRun(script), titles) << "after fault " << k;
    }
    if (testing::Test::HasFailure()) return k;
  }
}

TEST_P(HostCalls, EachMayThrow) {
  const std::size_t points = countFaults(
      scriptOf(GetParam()), [](auto& faults, std::size_t k) { faults.throwAt = k; },
      [](const auto& host, std::size_t k) { return host.callCount >= k; });
  std::printf("fault points, %s, host calls that throw: %zu\n", GetParam(), points);
  EXPECT_GT(points, 500U);
}

TEST_P(HostCalls, EachMayRefuse) {
  const std::size_t points = countFaults(
      scriptOf(GetParam()), [](auto& faults, std::size_t k) { faults.refuseAt = k; },
      [](const auto& host, std::size_t k) { return host.callCount >= k; });
  std::printf("fault points, %s, host calls that answer failure or null: %zu\n", GetParam(),
              points);
  EXPECT_GT(points, 500U);
}

TEST_P(HostCalls, TheRunMayBeCancelledAtAnyQuestion) {
  const std::size_t points = countFaults(
      scriptOf(GetParam()),
      [](auto& faults, std::size_t k) { faults.fatalFromQuery = static_cast<int>(k); },
      [](const auto& host, std::size_t k) { return host.fatalQueries >= static_cast<int>(k); });
  std::printf("fault points, %s, cancelled between groups: %zu\n", GetParam(), points);
  EXPECT_GT(points, 5U);
}

TEST_P(HostCalls, TheCasesMayEndShort) {
  const Script script = scriptOf(GetParam());
  const std::size_t rows = script.data.variables.front().data.size();
  const std::size_t points = countFaults(
      script, [](auto& faults, std::size_t k) { faults.fatalAfterCases = static_cast<int>(k) - 1; },
      [rows](const auto&, std::size_t k) { return k <= rows; });
  std::printf("fault points, %s, cases that end short: %zu\n", GetParam(), points);
  EXPECT_EQ(points, rows);
}

INSTANTIATE_TEST_SUITE_P(Designs, HostCalls,
                         testing::Values("one sample", "paired samples", "independent samples"),
                         [](const auto& each) {
                           std::string name = each.param;
                           for (char& c : name) c = c == ' ' ? '_' : c;
                           return name;
                         });

}  // namespace
