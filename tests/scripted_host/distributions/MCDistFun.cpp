// Distribution functions straight from Boost.Math, which the script can make fail by name.
//
// They owe nothing to the embedded host's, so that the module is tested with two sets.
#include "host/distributions/MCDistFun.h"

#include <boost/math/distributions/beta.hpp>
#include <boost/math/distributions/binomial.hpp>
#include <boost/math/distributions/normal.hpp>
#include <cmath>
#include <limits>

#include "host/distributions/MCMV.h"
#include "scripted_host/session/Session.h"

using scripted::session;

namespace {

bool fails(std::string_view name) {
  const bool refused = session().enter("MCDistFun::" + std::string(name));
  return refused || session().script.faults.failingDistributions.contains(name);
}

double missing(long& error) {
  error = 1;
  return MCMV::Missing;
}

constexpr double infinity = std::numeric_limits<double>::infinity();

}  // namespace

namespace MCDistFun {

double IdfStdNorm(double p) {
  if (fails("IdfStdNorm") || !(p >= 0 && p <= 1)) return MCMV::Missing;
  if (p == 0 || p == 1) return p == 0 ? -infinity : infinity;
  return boost::math::quantile(boost::math::normal(), p);
}

double CdfStdNorm(double z) {
  if (fails("CdfStdNorm") || std::isnan(z) || z == MCMV::Missing) return MCMV::Missing;
  return 0.5 * std::erfc(-z / std::sqrt(2.0));
}

double IdfBeta(const double& p, const double& a, const double& b) {
  if (fails("IdfBeta") || !(p >= 0 && p <= 1 && a > 0 && b > 0)) return MCMV::Missing;
  return boost::math::quantile(boost::math::beta_distribution<>(a, b), p);
}

double CdfBin(double x, double n, double p, long& error) {
  session().expect(error == 0, "the error flag is cleared before a call");
  if (fails("CdfBin") || !(n >= 0 && p >= 0 && p <= 1)) return missing(error);
  if (x < 0 || x >= n) return x < 0 ? 0.0 : 1.0;
  return boost::math::cdf(boost::math::binomial(n, p), x);
}

double PdfBin(double x, double n, double p, long& error) {
  session().expect(error == 0, "the error flag is cleared before a call");
  if (fails("PdfBin") || !(n >= 0 && p >= 0 && p <= 1)) return missing(error);
  if (x < 0 || x > n) return 0.0;
  return n == 0 ? 1.0 : boost::math::pdf(boost::math::binomial(n, p), x);
}

// No search: an answer that a test can tell from its arguments.
double FindNCParamT(double a, double b, double q, double d, double eps) {
  if (fails("FindNCParamT")) return MCMV::Missing;
  session().expect(b == 5.0 && d == 0.000001 && eps == 1e-12, "the probe's fixed arguments");
  return a + q;
}

}  // namespace MCDistFun
