// The program: checks the host that it is linked with, and names every contract that it breaks.
// The exit status is 0 when there is none.
#include <cstdio>

#include "conformance/Checks.h"

int main() {
  const auto host = conformance::makeHost();
  conformance::Report report;
  conformance::checkAll(*host, report);
  for (const auto& [contract, detail] : report.findings()) {
    std::printf("broken: %s%s%s\n", contract.c_str(), detail.empty() ? "" : "; ", detail.c_str());
  }
  std::printf("%d checks, %zu contracts broken\n", report.checks(), report.findings().size());
  return report.findings().empty() ? 0 : 1;
}
