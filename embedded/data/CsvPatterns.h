// Patterns of plain CSV files: cases counted by their texts, and each text read once by the engine,
// in the very way in which it would read the file.
#pragma once

#include <optional>
#include <string>

#include "CountingQuery.h"
#include "CsvSource.h"

namespace embedded::data {

// The patterns of `request`; `scratch` names a file that may be written for it. Nothing when the
// files are not plain, hold too many different texts, or a text is not what its column is to be:
// the engine reads them then, and says what is wrong. Throws Error(Cancelled).
std::optional<CountedPatterns> countCsvPatterns(Engine& engine, const CsvSource& source,
                                                const ScanRequest& request, int threads,
                                                const std::string& scratch,
                                                const ProgressListener& progress = {});

}  // namespace embedded::data
