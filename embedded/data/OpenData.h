// Opens the data of a run: relation, sidecar, dictionary, cases.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CaseSource.h"
#include "Dictionary.h"
#include "RelationCases.h"
#include "embedded/output/Document.h"

namespace embedded::data {

struct DataOptions {
  std::string address;                             // DATA of the command line
  std::string schema;                              // a schema or package; found when empty
  std::optional<std::string> weight;               // the schema's when not given
  std::optional<std::vector<std::string>> splits;  // the schema's when not given
  std::optional<std::string> imputation;           // the imputation number
  CaseOptions cases;
  int threads = 0;     // 0: as many as the machine has
  std::string memory;  // "512MB"; empty for the engine's own limit
  double timeout = 0;  // seconds that a server may keep silent; 0 for any time
  ProgressListener progress = {};
};

struct OpenedData {
  Dictionary dictionary;
  std::unique_ptr<RelationCases> cases;
  output::DataInfo info;  // source, fingerprint, weight and splits
};

// Error(Data) for data or a schema that cannot be read, Error(Usage) for an unknown weight,
// split or imputation variable.
OpenedData openData(const DataOptions& options);

}  // namespace embedded::data
