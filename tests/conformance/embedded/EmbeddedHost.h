// The embedded host as the conformance kit runs it.
#pragma once

#include "conformance/Host.h"

namespace conformance_tests {

class EmbeddedHost : public conformance::Host {
 public:
  void run(const conformance::Sample& data, const std::string& command,
           const std::function<void()>& procedure) override;
};

}  // namespace conformance_tests
