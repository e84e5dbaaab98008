// MCDistFun: edges, errors, both tails, and values that are known in closed form.
#include <cmath>
#include <limits>

#include "conformance/Checks.h"
#include "host/distributions/MCDistFun.h"
#include "host/distributions/MCMV.h"

namespace conformance {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double bound = 1e-13;

void checkNormal(Report& report) {
  using namespace MCDistFun;
  const double nan = std::nan("");
  report.expect(IdfStdNorm(0) == -infinity && IdfStdNorm(1) == infinity,
                "IdfStdNorm: minus and plus infinity at 0 and 1");
  report.expect(IdfStdNorm(nan) == MCMV::Missing && IdfStdNorm(-0.1) == MCMV::Missing,
                "IdfStdNorm: MCMV::Missing outside its domain");
  report.expectNear(IdfStdNorm(0.025), -1.9599639845400542355, bound, "IdfStdNorm: the quantile",
                    "IdfStdNorm(0.025)");
  report.expectNear(CdfStdNorm(-37), 5.7255712225245768e-300, 1e-11,
                    "CdfStdNorm: deep lower tails keep their relative digits", "CdfStdNorm(-37)");
  report.expect(CdfStdNorm(-infinity) == 0 && CdfStdNorm(infinity) == 1,
                "CdfStdNorm: 0 and 1 at the infinities");
  report.expect(CdfStdNorm(nan) == MCMV::Missing && CdfStdNorm(MCMV::Missing) == MCMV::Missing,
                "CdfStdNorm: MCMV::Missing for not-a-number and for MCMV::Missing");
}

void checkBeta(Report& report) {
  using MCDistFun::IdfBeta;
  report.expect(IdfBeta(0, 2, 3) == 0 && IdfBeta(1, 2, 3) == 1, "IdfBeta: 0 and 1 at p 0 and 1");
  report.expectNear(IdfBeta(0.025, 1, 10), -std::expm1(std::log1p(-0.025) / 10), bound,
                    "IdfBeta: the quantile", "IdfBeta(0.025, 1, 10)");
  report.expectNear(IdfBeta(0.25, 3, 1), std::cbrt(0.25), bound, "IdfBeta: the quantile",
                    "IdfBeta(0.25, 3, 1)");
  const bool outside = IdfBeta(-0.1, 2, 3) == MCMV::Missing &&
                       IdfBeta(0.5, 0, 3) == MCMV::Missing && IdfBeta(0.5, 2, -1) == MCMV::Missing;
  report.expect(outside, "IdfBeta: MCMV::Missing outside its domain");
}

void checkBinomial(Report& report) {
  using namespace MCDistFun;
  long error = 0;
  const bool edges = CdfBin(-1, 10, 0.3, error) == 0 && error == 0 &&
                     CdfBin(10, 10, 0.3, error) == 1 && error == 0;
  report.expect(edges, "CdfBin: 0 at -1 and 1 from n on, without an error");
  report.expectNear(CdfBin(1, 4, 0.5, error), 0.3125, bound, "CdfBin: the lower tail",
                    "CdfBin(1, 4, 0.5)");
  report.expectNear(CdfBin(0, 1000, 0.5, error), std::ldexp(1.0, -1000), 1e-11,
                    "CdfBin: deep tails keep their relative digits", "CdfBin(0, 1000, 0.5)");
  report.expect(error == 0, "CdfBin: no error in its domain");
  const double refused = CdfBin(1, 4, 1.5, error);
  report.expect(error != 0 && refused == MCMV::Missing,
                "CdfBin: an error and MCMV::Missing outside its domain");
  error = 0;
  report.expectNear(PdfBin(2, 4, 0.5, error), 0.375, bound, "PdfBin: the probability",
                    "PdfBin(2, 4, 0.5)");
  report.expect(PdfBin(0, 0, 0.3, error) == 1, "PdfBin: 1 for no trial");
  report.expect(PdfBin(5, 4, 0.3, error) == 0 && PdfBin(-1, 4, 0.3, error) == 0 && error == 0,
                "PdfBin: 0 outside 0..n, without an error");
}

}  // namespace

void checkDistributions(Report& report) {
  checkNormal(report);
  checkBeta(report);
  checkBinomial(report);
  // P(T <= 0 | delta) is P(Z <= -delta) whatever the degrees of freedom.
  report.expectNear(MCDistFun::FindNCParamT(0, 5, 0.975, 1e-6, 1e-12), -1.9599639845400542, 1e-10,
                    "FindNCParamT: the non-centrality", "FindNCParamT(0, 5, 0.975, ...)");
  report.expect(MCDistFun::FindNCParamT(1, 5, 2, 1e-6, 1e-12) == MCMV::Missing,
                "FindNCParamT: MCMV::Missing without an answer");
}

}  // namespace conformance
