// What the checks find: contracts of the host interface that a host breaks.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace conformance {

struct Finding {
  std::string contract;  // "Class::operation: what was promised"
  std::string detail;    // what came instead, and for what
};

class Report {
 public:
  // Counts a check; when it does not hold, keeps the finding (the first one of each contract).
  void expect(bool holds, std::string_view contract, std::string detail = {});
  // The same for a number that must be within `bound` of another, relative to its size.
  void expectNear(double got, double want, double bound, std::string_view contract,
                  const std::string& what);

  int checks() const { return checks_; }
  const std::vector<Finding>& findings() const { return findings_; }
  bool has(std::string_view contract) const;

 private:
  int checks_ = 0;
  std::vector<Finding> findings_;
};

}  // namespace conformance
