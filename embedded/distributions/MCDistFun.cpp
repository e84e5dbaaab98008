// The host's distribution functions: the contract's domains and edges around the ones of this room.
#include "host/distributions/MCDistFun.h"

#include <cmath>
#include <limits>
#include <optional>

#include "embedded/distributions/BetaQuantile.h"
#include "embedded/distributions/Binomial.h"
#include "embedded/distributions/NonCentralT.h"
#include "embedded/distributions/StandardNormal.h"
#include "host/distributions/MCMV.h"

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Splits a result into the flag and the value of the contract.
double flagged(std::optional<double> value, long& error) {
  error = value ? 0 : 1;
  return value.value_or(MCMV::Missing);
}

}  // namespace

namespace MCDistFun {

double IdfStdNorm(double p) {
  if (!(p >= 0 && p <= 1)) return MCMV::Missing;
  if (p == 0) return -kInfinity;
  if (p == 1) return kInfinity;
  return embedded::distributions::normalQuantile(p);
}

double CdfStdNorm(double z) {
  if (std::isnan(z) || z == MCMV::Missing) return MCMV::Missing;
  return embedded::distributions::normalTail(z);
}

double IdfBeta(const double& p, const double& a, const double& b) {
  const bool valid = p >= 0 && p <= 1 && a > 0 && b > 0 && a < kInfinity && b < kInfinity;
  if (!valid) return MCMV::Missing;
  return embedded::distributions::betaQuantile(p, a, b, embedded::distributions::Tail::Lower)
      .value_or(MCMV::Missing);
}

double CdfBin(double x, double n, double p, long& error) {
  if (x == MCMV::Missing) return flagged(std::nullopt, error);
  return flagged(
      embedded::distributions::binomialTail(x, n, p, embedded::distributions::Tail::Lower), error);
}

double PdfBin(double x, double n, double p, long& error) {
  if (x == MCMV::Missing) return flagged(std::nullopt, error);
  return flagged(embedded::distributions::binomialTerm(x, n, p), error);
}

double FindNCParamT(double a, double b, double q, double d, double eps) {
  return embedded::distributions::findNonCentrality(a, b, q, d, eps).value_or(MCMV::Missing);
}

}  // namespace MCDistFun
