// Distinct patterns, counted inside the engine by an aggregate of our own: each of its threads
// fills a table as it scans, and the tables are put together at the end.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "ColumnWords.h"
#include "DuckDb.h"
#include "Relation.h"

namespace embedded::data {

struct CountedPatterns {
  PatternBatch batch;
  std::vector<ColumnFaults> faults;  // by index into ScanRequest::columns
};

// Whether the patterns of a request can be had this way in the order that it asks for.
bool canCount(const ScanRequest& request);

// The rows that patterns are counted of.
struct CountedRows {
  std::string sql;                 // a query with the columns of the request as v0, v1, ...
  bool textual = false;            // as in Relation
  std::vector<bool> dictionaries;  // which columns may be kept as dictionaries, and are numbers
};

// Counts the patterns of `request` over `rows`. Nothing when there are too many different ones to
// be held: the engine must group them then. Throws EngineFailure and Error(Cancelled).
std::optional<CountedPatterns> countPatterns(Engine& engine, const CountedRows& rows,
                                             const ScanRequest& request);

// Puts patterns into the order of their split values.
void sortBySplits(PatternBatch& batch, const ScanRequest& request);

}  // namespace embedded::data
