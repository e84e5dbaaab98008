// Data sets and commands in the abstract form of the reference files.
#pragma once

#include <nlohmann/json.hpp>

#include "scripted_host/session/Script.h"

namespace scripted {

// A list of subcommands with their leading lists and parameters, and a dictionary without data.
Command readCommand(const nlohmann::json& given);
DataSet readDictionary(const nlohmann::json& given);

// The short form of a whole run: design, variables, rules; and a data set with its values.
Command readRunCommand(const nlohmann::json& given);
DataSet readDataSet(const nlohmann::json& given);

}  // namespace scripted
