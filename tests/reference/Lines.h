// Files of reference results, a JSON object on each line that begins with its id.
//
// A test program is started once for each of its tests, so that only the line of the test at hand
// is parsed.
#pragma once

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

namespace reference {

struct Line {
  std::string id;
  std::string text;

  nlohmann::json parsed() const { return nlohmann::json::parse(text); }
};

// For the names of tests and the messages of failed ones.
inline void PrintTo(const Line& line, std::ostream* out) {
  *out << line.id;
}

// All lines of a file of the test data; throws std::runtime_error when there is none, or one
// without an id.
std::vector<Line> readLines(const std::string& file);

}  // namespace reference
