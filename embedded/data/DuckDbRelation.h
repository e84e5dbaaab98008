// Files and database tables, read by the embedded engine.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "DataAddress.h"
#include "Progress.h"
#include "Relation.h"

namespace embedded::data {

struct RelationOptions {
  int threads = 0;                     // 0: as many as the machine has
  std::string memory;                  // "512MB"; empty for the engine's own limit
  std::vector<std::string> nullTexts;  // stand for missing values in every column
  ProgressListener progress = {};
};

// Opens the data that an address names; standard input is spooled first. Everything temporary
// goes away with the relation. Error(Data) for what cannot be read.
std::unique_ptr<Relation> openDuckDb(const DataAddress& address, const RelationOptions& options);

}  // namespace embedded::data
