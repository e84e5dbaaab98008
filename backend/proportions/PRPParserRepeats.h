// Taking repeats out of a list.
#pragma once

#include <algorithm>
#include <set>
#include <vector>

namespace prp {

// Keeps the first of each value, in order. Returns whether there were repeats.
template <class Value>
bool RemoveRepeats(std::vector<Value>& values) {
  std::set<Value> seen;
  return std::erase_if(values, [&](const Value& value) { return !seen.insert(value).second; }) > 0;
}

}  // namespace prp
