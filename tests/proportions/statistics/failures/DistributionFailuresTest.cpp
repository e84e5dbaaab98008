// The formulas with a host whose distribution functions fail on request.
//
// This program defines the host's functions itself: each answers with a fixed number until it is
// told to fail its k-th call.
#include <gtest/gtest.h>

#include <map>
#include <string>

#include "host/distributions/MCDistFun.h"
#include "statistics/Methods.h"

namespace {

// Calls so far and the call that fails (0: none), by function.
struct Script {
  int calls = 0;
  int failing = 0;
  bool silent = false;  // the failure sets no error flag
  bool fails() { return ++calls == failing; }
};

std::map<std::string, Script>& scripts() {
  static std::map<std::string, Script> all;
  return all;
}

double answer(const std::string& function, double value, long& error) {
  if (error != 0) ADD_FAILURE() << "the error flag was not cleared before " << function;
  if (!scripts()[function].fails()) return value;
  if (!scripts()[function].silent) error = 5;
  return MCMV::Missing;
}

double answer(const std::string& function, double value) {
  long error = 0;
  return answer(function, value, error);
}

}  // namespace

namespace MCDistFun {
double IdfStdNorm(double) {
  return answer("IdfStdNorm", 1.96);
}
double CdfStdNorm(double) {
  return answer("CdfStdNorm", 0.125);
}
double IdfBeta(const double&, const double&, const double&) {
  return answer("IdfBeta", 0.25);
}
double CdfBin(double x, double trials, double, long& error) {
  // Of a thousand trials nearly all lies below.
  const double tail = trials == 1000.0 ? 0.875 : x < 4.0 ? 0.25 : 0.375;
  return answer("CdfBin", tail, error);
}
double PdfBin(double, double, double, long& error) {
  return answer("PdfBin", 0.125, error);
}
}  // namespace MCDistFun

namespace {

using namespace statistics;

class DistributionFailures : public testing::Test {
 protected:
  void SetUp() override { scripts().clear(); }
  static void fail(const std::string& function, int call) { scripts()[function].failing = call; }
  static int calls(const std::string& function) { return scripts()[function].calls; }
};

void expectMissing(const TestResult& result) {
  EXPECT_EQ(result.oneSided, MCMV::Missing);
  EXPECT_EQ(result.twoSided, MCMV::Missing);
}

const OneSampleCounts fourOfTen{4, 6, 0.5};
const CriticalValues at95{0.05, 1.96};

TEST_F(DistributionFailures, LeaveABoundOfBetaQuantilesMissing) {
  for (const auto method : {&clopperPearson, &jeffreys}) {
    scripts().clear();
    fail("IdfBeta", 1);
    const Interval first = method(fourOfTen, at95);
    // Not clamped to 0: there is no bound. The other one stands. Whichever is asked for first.
    EXPECT_NE(first.lower == MCMV::Missing, first.upper == MCMV::Missing);
    EXPECT_EQ(first.lower == MCMV::Missing ? first.upper : first.lower, 0.25);
    scripts().clear();
    fail("IdfBeta", 2);
    const Interval second = method(fourOfTen, at95);
    EXPECT_NE(second.lower == MCMV::Missing, second.upper == MCMV::Missing);
    EXPECT_NE(first.lower == MCMV::Missing, second.lower == MCMV::Missing);
  }
}

TEST_F(DistributionFailures, OfEitherTailLeaveBinomialTestsMissing) {
  for (const int call : {1, 2}) {
    scripts().clear();
    fail("CdfBin", call);
    expectMissing(exactTest(fourOfTen));
    // Both are asked for all the same.
    EXPECT_EQ(calls("CdfBin"), 2);
    scripts().clear();
    fail("CdfBin", call);
    expectMissing(midpTest(fourOfTen));
  }
}

TEST_F(DistributionFailures, OfTheObservedProbabilityLeaveOnlyMidPMissing) {
  fail("PdfBin", 1);
  EXPECT_EQ(exactTest(fourOfTen).oneSided, 0.375);
  EXPECT_EQ(calls("PdfBin"), 0);
  expectMissing(midpTest(fourOfTen));
}

TEST_F(DistributionFailures, OfTheObservedProbabilityLeaveAnUpperTailItsDifference) {
  fail("PdfBin", 1);
  EXPECT_EQ(exactTest(OneSampleCounts{600, 400, 0.5}).oneSided, 0.125);
  EXPECT_EQ(calls("PdfBin"), 1);
}

TEST_F(DistributionFailures, LeaveNormalTestsTheirStatistic) {
  for (const auto& method : independentTests) {
    scripts().clear();
    fail("CdfStdNorm", 1);
    const TestResult result = method.compute({18, 2, 3, 17});
    EXPECT_GT(result.statistic, 0.0) << method.keyword;
    expectMissing(result);
  }
}

TEST_F(DistributionFailures, OfAnyTermLeavePairedBinomialTestsMissing) {
  const PairedCounts counts{7, 3, 6, 7};
  EXPECT_EQ(exactTest(counts).oneSided, 4 * 0.125);
  EXPECT_EQ(calls("PdfBin"), 4);
  for (int call = 1; call <= 4; ++call) {
    scripts().clear();
    fail("PdfBin", call);
    expectMissing(exactTest(counts));
    // The sum stops at the call that failed.
    EXPECT_EQ(calls("PdfBin"), call);
    scripts().clear();
    fail("PdfBin", call);
    expectMissing(midpTest(counts));
  }
}

TEST_F(DistributionFailures, AreTakenForFailuresWithoutAnErrorFlagToo) {
  for (const std::string function : {"CdfBin", "PdfBin"}) {
    scripts().clear();
    fail(function, 1);
    scripts()[function].silent = true;
    expectMissing(midpTest(fourOfTen));
  }
}

TEST_F(DistributionFailures, OfTheLastTermLeaveManyTermsMissing) {
  fail("PdfBin", 1);
  expectMissing(exactTest(PairedCounts{0, 5e6, 6e6, 0}));
  EXPECT_EQ(calls("PdfBin"), 1);
}

TEST_F(DistributionFailures, OfTheQuantileLeaveTheCriticalValueMissing) {
  fail("IdfStdNorm", 1);
  EXPECT_EQ(criticalValues(95.0).z, MCMV::Missing);
  EXPECT_EQ(criticalValues(95.0).z, 1.96);
}

}  // namespace
