// A row of the tables of methods: all that is known of one method, in one place.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "statistics/Results.h"

namespace statistics {

// What a method is, without the counts that it takes.
struct MethodInfo {
  std::string_view keyword = {};  // in the command, upper case
  bool isDefault = false;         // computed when the command names no methods
  std::string_view label = {};    // of its output row, to the letter
  bool showsStatistic = false;    // a test with a Z
  std::string_view variant = {};  // which variant it is, in words; empty when there is only one
  std::string_view formula = {};  // in one line of plain text
  std::string_view canFail = {};  // when a value is missing or not a number; empty when never
  std::string_view source = {};   // author and year
};

template <class Counts>
struct IntervalMethod : MethodInfo {
  Interval (*compute)(const Counts&, const CriticalValues&) = nullptr;
};

template <class Counts>
struct TestMethod : MethodInfo {
  TestResult (*compute)(const Counts&) = nullptr;
};

// The rows of a table without their functions, in slot order.
template <class Method, std::size_t Size>
consteval std::array<MethodInfo, Size> describe(const std::array<Method, Size>& methods) {
  std::array<MethodInfo, Size> described;
  for (std::size_t slot = 0; slot < Size; ++slot) described[slot] = methods[slot];
  return described;
}

// Whether every row is filled in and no keyword or label stands twice.
template <class Method, std::size_t Size>
consteval bool isSound(const std::array<Method, Size>& methods) {
  for (std::size_t slot = 0; slot < Size; ++slot) {
    const Method& row = methods[slot];
    if (row.keyword.empty() || row.label.empty() || row.formula.empty() || row.source.empty() ||
        row.compute == nullptr)
      return false;
    for (std::size_t other = 0; other < slot; ++other)
      if (methods[other].keyword == row.keyword || methods[other].label == row.label) return false;
  }
  return true;
}

// Whether the slots hold these keywords in this order.
template <class Method, std::size_t Size>
consteval bool hasSlots(const std::array<Method, Size>& methods,
                        const std::array<std::string_view, Size>& keywords) {
  for (std::size_t slot = 0; slot < Size; ++slot)
    if (methods[slot].keyword != keywords[slot]) return false;
  return true;
}

}  // namespace statistics
