// A probe of the host's non-centrality search, for developers: fourteen lines on standard output.
#include <cstdio>

#include "PRPAlgorithm.h"
#include "host/distributions/MCDistFun.h"
#include "host/distributions/MCMV.h"
#include "proportionsFlags.h"

void PrintFindNCParamT(double a, double b, double q, double d) {
  const double r = MCDistFun::FindNCParamT(a, b, q, d, 1e-12);
  if (r == MCMV::Missing)
    std::printf("FindNCParamT( %f, %f, %f, %f ) = missing\n", a, b, q, d);
  else
    std::printf("FindNCParamT( %f, %f, %f, %f ) = %f\n", a, b, q, d, r);
}

void PRPAlgorithm::ProbeFindNCParamT() const {
  if (!gProbeFindNCParamT) return;
  for (const double a : {2.0, 1.0, 0.0, -1.0, -2.0, -3.0, -4.0})
    for (const double q : {0.975, 0.025}) PrintFindNCParamT(a, 5.0, q, 0.000001);
  std::fflush(stdout);
}
