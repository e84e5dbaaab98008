// `counts`: counts without a data file, through the same path as data: they become a small
// table of weighted cases and a command.
#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <utility>

#include "Program.h"
#include "embedded/data/MemorySource.h"
#include "embedded/errors/Error.h"

namespace cli {

namespace {

using embedded::Error;
using embedded::ErrorKind;
using embedded::data::MemoryTable;
using embedded::output::Sentences;

constexpr std::uint64_t mostCases = std::uint64_t{1} << 52;  // sums of weights stay exact

[[noreturn]] void refuse(const std::string& text) {
  throw Error(ErrorKind::Usage, "Invalid counts ^1 ...", {text});
}

std::uint64_t readCount(std::string_view text, const std::string& whole) {
  std::uint64_t count = 0;
  const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (problem != std::errc() || end != text.data() + text.size() || count > mostCases) {
    refuse(whole);
  }
  return count;
}

std::vector<std::uint64_t> readCounts(const std::string& text, char separator, std::size_t number) {
  std::vector<std::uint64_t> counts;
  for (std::size_t at = 0; at <= text.size();) {
    const std::size_t end = std::min(text.find(separator, at), text.size());
    counts.push_back(readCount(std::string_view(text).substr(at, end - at), text));
    at = end + 1;
  }
  if (counts.size() != number) {
    refuse(text);
  }
  return counts;
}

// Successes and failures of SUCCESSES/TRIALS.
std::pair<std::uint64_t, std::uint64_t> readProportion(const std::string& text) {
  const auto counts = readCounts(text, '/', 2);
  if (counts[0] > counts[1]) {
    refuse(text);
  }
  return {counts[0], counts[1] - counts[0]};
}

embedded::output::VariableInfo outcome(const char* name, const Sentences& sentences) {
  embedded::output::VariableInfo info;
  info.name = name;
  info.numberLabels = {{0.0, std::string(sentences.sentence("failure"))},
                       {1.0, std::string(sentences.sentence("success"))}};
  return info;
}

MemoryTable pairedTable(const std::string& text, const Sentences& sentences) {
  MemoryTable table;
  table.variables = {outcome("first", sentences), outcome("second", sentences)};
  table.rows = {{1, 1}, {1, 0}, {0, 1}, {0, 0}};
  table.counts = readCounts(text, ',', 4);
  return table;
}

MemoryTable groupsTable(const std::vector<std::string>& proportions, const Sentences& sentences) {
  MemoryTable table;
  table.variables = {outcome("outcome", sentences)};
  if (proportions.size() == 2) {
    embedded::output::VariableInfo group;
    group.name = "group";
    table.variables.push_back(std::move(group));
  }
  for (std::size_t g = 0; g < proportions.size(); ++g) {
    const auto [successes, failures] = readProportion(proportions[g]);
    for (const auto& [value, count] : {std::pair{1.0, successes}, std::pair{0.0, failures}}) {
      std::vector<double> row{value};
      if (proportions.size() == 2) {
        row.push_back(static_cast<double>(g + 1));
      }
      table.rows.push_back(std::move(row));
      table.counts.push_back(count);
    }
  }
  return table;
}

// A list as it is written after a parameter: commas and blanks alike.
std::string parameter(const char* name, const std::string& value) {
  return value.empty() ? "" : fmt::format(" {}={}", name, value);
}

std::string commandFor(const CountsOptions& counts) {
  std::string command = "PROPORTIONS\n  /";
  if (!counts.paired.empty()) {
    command += "PAIREDSAMPLES first second";
  } else if (counts.proportions.size() == 2) {
    command += "INDEPENDENTSAMPLES outcome BY group";
  } else {
    command += "ONESAMPLE outcome";
  }
  if (counts.testValue) {
    command += fmt::format(" TESTVAL={}", *counts.testValue);
  }
  command += parameter("TESTTYPES", counts.tests) + parameter("CITYPES", counts.intervals);
  command += "\n  /SUCCESS VALUE=LEVEL(1)";
  if (counts.level) {
    command += fmt::format("\n  /CRITERIA CILEVEL={}", *counts.level);
  }
  return command;
}

}  // namespace

int runCounts(const Arguments& arguments, const embedded::output::Sentences& sentences) {
  const CountsOptions& counts = arguments.counts;
  if (counts.paired.empty() && (counts.proportions.empty() || counts.proportions.size() > 2)) {
    throw Error(ErrorKind::Usage, "Counts want one or two proportions ...");
  }
  embedded::Request request = arguments.request;
  request.table = counts.paired.empty() ? groupsTable(counts.proportions, sentences)
                                        : pairedTable(counts.paired, sentences);
  request.command = commandFor(counts);
  return runAndWrite(std::move(request), arguments, sentences);
}

}  // namespace cli
