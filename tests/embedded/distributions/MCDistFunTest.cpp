// The contract of the host's distribution functions: edges and errors.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "host/distributions/MCDistFun.h"
#include "host/distributions/MCMV.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
const double kNaN = std::nan("");

TEST(IdfStdNorm, KeepsItsEdges) {
  EXPECT_EQ(MCDistFun::IdfStdNorm(0), -kInfinity);
  EXPECT_EQ(MCDistFun::IdfStdNorm(1), kInfinity);
  EXPECT_EQ(MCDistFun::IdfStdNorm(0.5), 0);
  // The double next to 0.975 is below it, and so is its quantile.
  EXPECT_EQ(MCDistFun::IdfStdNorm(0.975), 1.95996398454005386);
  for (const double p : {-1e-300, 1.0000000000000002, kNaN, kInfinity, -kInfinity, MCMV::Missing}) {
    EXPECT_EQ(MCDistFun::IdfStdNorm(p), MCMV::Missing) << p;
  }
}

TEST(CdfStdNorm, KeepsItsEdges) {
  EXPECT_EQ(MCDistFun::CdfStdNorm(0), 0.5);
  EXPECT_EQ(MCDistFun::CdfStdNorm(-kInfinity), 0);
  EXPECT_EQ(MCDistFun::CdfStdNorm(kInfinity), 1);
  EXPECT_EQ(MCDistFun::CdfStdNorm(kNaN), MCMV::Missing);
  EXPECT_EQ(MCDistFun::CdfStdNorm(MCMV::Missing), MCMV::Missing);
}

TEST(IdfBeta, KeepsItsEdges) {
  EXPECT_EQ(MCDistFun::IdfBeta(0, 2, 3), 0);
  EXPECT_EQ(MCDistFun::IdfBeta(1, 2, 3), 1);
  EXPECT_DOUBLE_EQ(MCDistFun::IdfBeta(0.5, 1, 1), 0.5);
}

TEST(IdfBeta, IsMissingOutsideItsDomain) {
  for (const double bad : {-0.5, kNaN, kInfinity, -kInfinity, MCMV::Missing}) {
    EXPECT_EQ(MCDistFun::IdfBeta(bad, 2, 3), MCMV::Missing) << bad;
    EXPECT_EQ(MCDistFun::IdfBeta(0.5, bad, 3), MCMV::Missing) << bad;
    EXPECT_EQ(MCDistFun::IdfBeta(0.5, 2, bad), MCMV::Missing) << bad;
  }
  EXPECT_EQ(MCDistFun::IdfBeta(1.5, 2, 3), MCMV::Missing);
  EXPECT_EQ(MCDistFun::IdfBeta(0.5, 0, 3), MCMV::Missing);
  EXPECT_EQ(MCDistFun::IdfBeta(0.5, 2, 0), MCMV::Missing);
}

TEST(IdfBeta, IsAValueForEveryShape) {
  for (double a = 1e-25; a < 1e105; a *= 700) {
    for (double b = 1e-25; b < 1e105; b *= 700) {
      for (const double p : {5e-324, 1e-300, 1e-12, 0.3, 0.5, 0.9, 1 - 1e-15, b / (a + b)}) {
        const double x = MCDistFun::IdfBeta(p, a, b);
        EXPECT_TRUE(x >= 0 && x <= 1) << p << " " << a << " " << b << ": " << x;
      }
    }
  }
}

TEST(CdfBin, KeepsItsEdges) {
  long error = 0;
  EXPECT_EQ(MCDistFun::CdfBin(-1, 10, 0.3, error), 0);
  EXPECT_EQ(error, 0);
  EXPECT_EQ(MCDistFun::CdfBin(10, 10, 0.3, error), 1);
  EXPECT_EQ(error, 0);
  EXPECT_EQ(MCDistFun::CdfBin(11, 10, 0.3, error), 1);
  EXPECT_EQ(error, 0);
  EXPECT_EQ(MCDistFun::CdfBin(0, 0, 0.3, error), 1);
  EXPECT_EQ(error, 0);
  EXPECT_EQ(MCDistFun::CdfBin(-1, 0, 0.3, error), 0);
  EXPECT_EQ(error, 0);
  EXPECT_EQ(MCDistFun::CdfBin(4, 10, 0, error), 1);
  EXPECT_EQ(MCDistFun::CdfBin(4, 10, 1, error), 0);
  EXPECT_EQ(error, 0);
}

TEST(PdfBin, KeepsItsEdges) {
  long error = 0;
  EXPECT_EQ(MCDistFun::PdfBin(0, 0, 0.3, error), 1);
  EXPECT_EQ(MCDistFun::PdfBin(-1, 10, 0.3, error), 0);
  EXPECT_EQ(MCDistFun::PdfBin(11, 10, 0.3, error), 0);
  EXPECT_EQ(MCDistFun::PdfBin(0, 10, 0, error), 1);
  EXPECT_EQ(MCDistFun::PdfBin(10, 10, 1, error), 1);
  EXPECT_EQ(error, 0);
}

using Binomial = double (*)(double, double, double, long&);

TEST(BinomialFunctions, FlagWhatIsOutsideTheirDomain) {
  for (const Binomial function : {Binomial{MCDistFun::CdfBin}, Binomial{MCDistFun::PdfBin}}) {
    const auto flags = [&](double x, double n, double p) {
      long error = 0;
      const double value = function(x, n, p, error);
      return error != 0 && value == MCMV::Missing;
    };
    for (const double bad : {kNaN, kInfinity, -kInfinity, MCMV::Missing}) {
      EXPECT_TRUE(flags(bad, 10, 0.5)) << bad;
      EXPECT_TRUE(flags(3, bad, 0.5)) << bad;
      EXPECT_TRUE(flags(3, 10, bad)) << bad;
    }
    EXPECT_TRUE(flags(3, -1, 0.5));
    EXPECT_TRUE(flags(3, 10.5, 0.5));
    EXPECT_TRUE(flags(2.5, 10, 0.5));
    EXPECT_TRUE(flags(3, 10, -0.1));
    EXPECT_TRUE(flags(3, 10, 1.1));
    EXPECT_FALSE(flags(3, 10, 0.5));
  }
}

TEST(FindNCParamT, IsMissingWithoutAnAnswer) {
  EXPECT_EQ(MCDistFun::FindNCParamT(2, 5, 0, 1e-6, 1e-12), MCMV::Missing);
  EXPECT_EQ(MCDistFun::FindNCParamT(MCMV::Missing, 5, 0.5, 1e-6, 1e-12), MCMV::Missing);
  EXPECT_EQ(MCDistFun::FindNCParamT(2, -5, 0.5, 1e-6, 1e-12), MCMV::Missing);
  EXPECT_EQ(MCDistFun::FindNCParamT(kNaN, 5, 0.5, 1e-6, 1e-12), MCMV::Missing);
}

}  // namespace
