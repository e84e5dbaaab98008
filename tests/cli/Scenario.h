// A scenario: a text file that holds data, a command and what is to come out, so that a
// statistician can read and check it without the program.
//
// A file begins with comment lines that say what it shows; sections follow, each opened by a line
// `--- NAME`. What is not given is not compared, but the exit status always is.
//
//   --- data                the file data.csv; `--- data NAME` another one
//   --- schema              the file data.schema.json
//   --- options             words of the command line, as a shell splits them without quotes
//   --- command             the command
//   --- status              the exit status; 0 when the section is missing
//   --- results             cells; see ScenarioResults.h
//   --- messages            one a line: SEVERITY LINE:COLUMN IDENTIFIER | ARGUMENT | ... , with `-`
//                           for no place and `?` for any; `nearest NAME` at the end when a name is
//                           proposed; all of the run's messages, in order
//   --- text                lines that stand one after another in what a reader sees
//
// Every scenario that is accepted is also run case by case and must give the same document.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "Program.h"

namespace cli_tests {

struct Scenario {
  std::string name;                             // of the file, without its ending
  std::map<std::string, std::string> files;     // by name
  std::map<std::string, std::string> sections;  // the others, by name

  bool has(const std::string& section) const { return sections.contains(section); }
  // A section's lines; empty when it is missing.
  std::vector<std::string> lines(const std::string& section) const;
  // A section's text without the last line feed.
  std::string text(const std::string& section) const;
  int status() const;
};

// Reads a scenario; throws std::runtime_error naming file and line for an unknown section.
Scenario readScenario(const std::filesystem::path& file);

// All scenarios of tests/scenarios, by name.
std::vector<Scenario> allScenarios();

// Writes the scenario's files into the folder.
void writeFiles(const Scenario& scenario, const Folder& folder);

// Runs the scenario there, with these words added to its options.
Outcome runScenario(const Scenario& scenario, const Folder& folder,
                    const std::vector<std::string>& extra);

}  // namespace cli_tests
