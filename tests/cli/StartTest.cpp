// What the program needs to start: not the engine, before a file is to be read.
#include <gtest/gtest.h>

#include <cstdlib>

#include "Program.h"

namespace cli_tests {
namespace {

namespace fs = std::filesystem;

// The program and its module without the engine's library, in a place of their own.
class WithoutEngine : public ::testing::Test {
 protected:
  WithoutEngine() {
    fs::create_directories(folder_.path() / "bin");
    fs::create_directories(folder_.path() / "lib");
    const fs::path built(BUILD_ROOT);
    fs::copy(built / "bin/proportions", folder_.path() / "bin");
    for (const char* file : {"libproportions.so", "proportions.module.json"})
      fs::copy(built / "lib" / file, folder_.path() / "lib");
  }

  // The exit status; what is written goes to output().
  int run(const std::string& arguments) const {
    const std::string program = (folder_.path() / "bin/proportions").string();
    const int status =
        std::system(("'" + program + "' " + arguments + " > '" + file() + "' 2>&1").c_str());
    return WEXITSTATUS(status);
  }
  std::string output() const { return contentOf(file()); }
  std::string data() const { return folder_.write("data.csv", "v\n1\n0\n").string(); }

 private:
  std::string file() const { return (folder_.path() / "output").string(); }
  Folder folder_;
};

TEST_F(WithoutEngine, WhatReadsNoFileRuns) {
  EXPECT_EQ(run("--version"), 0) << output();
  EXPECT_EQ(run("methods"), 0) << output();
  EXPECT_EQ(run("counts 30/100"), 0) << output();
}

TEST_F(WithoutEngine, AFileIsRefusedWithTheSystemsReason) {
  // An engine that is installed on the machine is found there.
  const bool isOurs = fs::exists(fs::path(BUILD_ROOT) / "lib/libduckdb.so");
  EXPECT_EQ(run("run '" + data() + "' -c 'PROPORTIONS ONESAMPLE v'"), isOurs ? 3 : 0);
  EXPECT_EQ(output().find("cannot be loaded: libduckdb.so") != std::string::npos, isOurs)
      << output();
}

}  // namespace
}  // namespace cli_tests
