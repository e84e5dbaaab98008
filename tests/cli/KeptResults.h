// What every run that fails owes its user: an older file of results kept whole, nothing on standard
// output, a message that says what is wrong, and no file left behind.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Program.h"

namespace cli_tests {

// Runs write to results.txt, which holds an older result, and have a folder of their own for
// temporary files.
class KeptResults : public testing::Test {
 protected:
  KeptResults() { folder_.write("results.txt", older); }

  Call call(const std::string& data, const std::string& command,
            const std::vector<std::string>& options = {}) const {
    Call call{.arguments = {"run", data, "-c", command, "-o", "results.txt"},
              .folder = folder_.path(),
              .input = {}};
    call.arguments.insert(call.arguments.end(), options.begin(), options.end());
    call.temporary = temporary_.path();
    return call;
  }

  // `said` is part of the message; empty where there is none to expect.
  void expectFailure(const Outcome& outcome, int status, const std::string& said) const {
    EXPECT_EQ(outcome.status, status) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err.find(said), std::string::npos) << outcome.err;
    EXPECT_EQ(outcome.err.find("Internal"), std::string::npos) << outcome.err;
    EXPECT_EQ(contentOf(folder_.path() / "results.txt"), older);
    EXPECT_EQ(folder_.files(), files_);
    EXPECT_EQ(temporary_.files(), std::vector<std::string>{});
  }

  static constexpr const char* older = "an older result\n";
  Folder folder_;
  Folder temporary_;
  std::vector<std::string> files_{"results.txt"};  // of the folder, before and after
};

}  // namespace cli_tests
