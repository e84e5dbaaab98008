// What the user asked for on the command line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "embedded/output/Values.h"
#include "embedded/session/Run.h"

namespace cli {

// Where and how the results are written.
struct OutputOptions {
  std::string format;  // empty: by the ending of `path`, else text
  std::string path;    // empty: standard output
  std::string language = "en";
  std::string colour = "auto";
  bool quiet = false;
  bool sentences = false;  // each row of results also as a sentence
  std::string invocation;  // the whole command line
};

// The counts that `counts` was given.
struct CountsOptions {
  std::vector<std::string> proportions;  // SUCCESSES/TRIALS, one or two
  std::string paired;                    // BOTH,FIRST,SECOND,NEITHER
  std::optional<double> testValue;
  std::optional<double> level;
  std::string tests;
  std::string intervals;
};

struct BootstrapOptions {
  std::uint32_t samples = 0;  // 0: none asked for
  embedded::Bootstrap bootstrap;
};

struct ImputationOptions {
  std::optional<std::string> number;  // name of the variable
  embedded::output::PoolingDf df = embedded::output::PoolingDf::BarnardRubin;
};

struct DiagnosticOptions {
  std::vector<std::string> flags;  // specs, algorithm, probe
  std::string path;                // empty: standard error
};

struct Arguments {
  enum class Action { Run, Counts, Describe, Methods };
  Action action = Action::Run;
  embedded::Request request;
  std::string commandFile;
  std::string module;  // description file; empty: beside the program
  OutputOptions output;
  CountsOptions counts;
  BootstrapOptions bootstrap;
  ImputationOptions imputation;
  DiagnosticOptions diagnostics;
  std::string keyword;  // of `methods`
};

// Reads the command line. Sets `exit` and returns nothing when the program has nothing more to do:
// help, the version, or wrong usage (status 2), all already written in the language of the
// sentences.
std::optional<Arguments> readArguments(int argc, char** argv,
                                       const embedded::output::Sentences& sentences, int& exit);

}  // namespace cli
