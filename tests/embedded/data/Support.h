// Helps tests of the data side: files in a folder of their own, and the cases of a run.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "embedded/data/DuckDb.h"
#include "embedded/data/OpenData.h"
#include "embedded/data/SqlDialect.h"
#include "embedded/errors/Error.h"
#include "embedded/output/Values.h"
#include "embedded/session/Session.h"
#include "host/data/ProcedureDataSource.h"

namespace embedded::data {

// A folder that goes away with the test.
class DataTest : public ::testing::Test {
 protected:
  DataTest() {
    std::string name = (std::filesystem::temp_directory_path() / "data-test-XXXXXX").string();
    folder_ = mkdtemp(name.data());
  }
  ~DataTest() override { std::filesystem::remove_all(folder_); }

  std::string path(const std::string& name) const { return (folder_ / name).string(); }

  // Writes a file and gives its path.
  std::string write(const std::string& name, const std::string& content) const {
    std::ofstream(folder_ / name, std::ios::binary) << content;
    return path(name);
  }

  // Writes the result of a query as a Parquet file.
  std::string parquet(const std::string& name, const std::string& query) const {
    Engine({}).rows("COPY (" + query + ") TO " + duckDbDialect.text(path(name)) +
                    " (FORMAT parquet)");
    return path(name);
  }

 private:
  std::filesystem::path folder_;
};

inline DataOptions optionsFor(const std::string& address, CaseMode mode = CaseMode::Auto) {
  DataOptions options;
  options.address = address;
  options.cases.mode = mode;
  return options;
}

// A case as a reader sees it: numbers in their shortest form, "." for system-missing, strings in
// brackets with "0" for each NUL byte; then the weight.
using SeenCase = std::vector<std::string>;

// Everything that one pass delivers; an empty case stands for an end mark.
struct Seen {
  std::vector<SeenCase> cases;
  output::Document document;
};

inline std::string shown(const Variable& variable, const OBS* observation) {
  if (variable.type == 0) {
    const double value = observation->number;
    return value < -1e308                      ? "."
           : std::signbit(value) && value == 0 ? "-0"
                                               : output::shortest(value);
  }
  std::string text(observation->bytes, static_cast<std::size_t>(variable.type));
  for (char& byte : text)
    if (byte == '\0') byte = '0';
  return "[" + text + "]";
}

inline std::vector<SeenCase> pass(ProcedureDataSource& source, const std::vector<int>& columns) {
  std::vector<SeenCase> cases;
  const auto iterator = source.MakeIterator(nullptr);
  auto& input = dynamic_cast<ProcDSIterator&>(*iterator);
  while (input.NextCase()) {
    SeenCase& seen = cases.emplace_back();
    if (input.SplitGroupEnd()) continue;
    for (const int index : columns)
      seen.push_back(shown(static_cast<const Variable&>(*source.GetVariable(index)),
                           input.GetObsPointer(index)));
    seen.push_back(output::shortest(input.Weight()));
  }
  EXPECT_FALSE(input.NextCase());
  return cases;
}

// Reads the named columns (all when none is named) twice as a procedure would, and requires that
// both passes agree. Errors of reading come out as they are.
inline Seen readAll(const DataOptions& options, std::vector<std::string> names = {}) {
  OpenedData opened = openData(options);
  Session session;
  const Session::Scope scope(session);
  session.dictionary = std::move(opened.dictionary);
  session.cases = std::move(opened.cases);
  session.document.data = opened.info;
  if (names.empty())
    for (const Variable& variable : session.dictionary.variables) names.push_back(variable.name);
  std::vector<int> columns;
  for (const std::string& name : names) {
    columns.push_back(session.dictionary.find(name));
    session.useColumn(columns.back());
  }
  ProcedureDataSource source;
  Seen seen;
  seen.cases = pass(source, columns);
  const std::vector<SeenCase> again = source.FatalError() ? seen.cases : pass(source, columns);
  if (session.fatal) std::rethrow_exception(session.fatal);
  EXPECT_EQ(seen.cases, again);
  seen.document = std::move(session.document);
  return seen;
}

// The identifier of the error of some work, and its arguments; empty when there was none.
struct Failure {
  std::string id;
  std::vector<std::string> arguments;
  ErrorKind kind = ErrorKind::Internal;
};

template <class Work>
Failure failureOf(const Work& work) {
  try {
    work();
  } catch (const Error& error) {
    return {error.identifier(), error.arguments(), error.kind()};
  }
  return {};
}

}  // namespace embedded::data
