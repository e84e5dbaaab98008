// The list of findings.
#include "conformance/Report.h"

#include <cmath>
#include <utility>

namespace conformance {

void Report::expect(bool holds, std::string_view contract, std::string detail) {
  ++checks_;
  if (!holds && !has(contract)) findings_.push_back({std::string(contract), std::move(detail)});
}

void Report::expectNear(double got, double want, double bound, std::string_view contract,
                        const std::string& what) {
  const bool near =
      std::isfinite(want) ? std::abs(got - want) <= bound * std::abs(want) : got == want;
  expect(near, contract,
         what + " gives " + std::to_string(got) + " instead of " + std::to_string(want));
}

bool Report::has(std::string_view contract) const {
  for (const Finding& finding : findings_) {
    if (finding.contract.find(contract) != std::string::npos) return true;
  }
  return false;
}

}  // namespace conformance
