// What the scripted host wrote down, in the form of the reference files.
#pragma once

#include <nlohmann/json.hpp>

#include "scripted_host/session/Log.h"

namespace scripted {

// A text as it is; a template with its arguments as [template, [argument, ...]]. The system-missing
// value is null, not-a-number "nan".
nlohmann::json writeLabel(const BpTextHandle& text);
nlohmann::json writeNumber(double number);

// Labels of the first row dimension and of the variables in the order they were added, and the rows
// with their cells; a category of a statistic without a cell has the value and the format null.
nlohmann::json writeTable(const Table& table);

nlohmann::json writeNotes(const Log& log);
nlohmann::json writeWarnings(const Log& log);
nlohmann::json writeMessages(const Log& log);
nlohmann::json writeEvents(const Log& log);

}  // namespace scripted
