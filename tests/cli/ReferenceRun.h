// One whole run of the reference results (data/procedure.jsonl): a small data set and a
// command in an abstract form, as the files and words that the program wants.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "Program.h"
#include "reference/Lines.h"

namespace cli_tests {

struct ReferenceRun {
  nlohmann::json given;  // `command` and `dataset`
  nlohmann::json expect;
};

// The run of a line of that file.
ReferenceRun readRun(const reference::Line& line);

// The command as a user writes it.
std::string commandText(const nlohmann::json& command);

// Writes data.csv and data.schema.json into the folder. A column `row` that no command names is
// added, so that a row of missing values is no empty line.
void writeData(const nlohmann::json& dataset, const Folder& folder);

// The words of the command line for this run, `extra` ones last.
std::vector<std::string> argumentsOf(const ReferenceRun& run,
                                     const std::vector<std::string>& extra = {});

// Rows of the data set.
std::size_t rowsOf(const nlohmann::json& dataset);

}  // namespace cli_tests
