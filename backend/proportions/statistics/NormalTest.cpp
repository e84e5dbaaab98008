// The tails of a standard normal statistic, and the critical values of a level.
#include "statistics/NormalTest.h"

#include <cmath>

#include "host/distributions/MCDistFun.h"

namespace statistics {

TestResult normalTest(double statistic) {
  TestResult result{.statistic = statistic};
  if (statistic == MCMV::Missing) return result;
  const double tail = MCDistFun::CdfStdNorm(-std::fabs(statistic));
  if (tail == MCMV::Missing) return result;
  result.oneSided = tail;
  result.twoSided = 2.0 * tail;
  return result;
}

CriticalValues criticalValues(double levelPercent) {
  return {.alpha = 1.0 - levelPercent / 100.0,
          .z = MCDistFun::IdfStdNorm(levelPercent / 200.0 + 0.5)};
}

}  // namespace statistics
