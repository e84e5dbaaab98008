// What the module's tests share: a scripted host that fails the test when the module breaks a
// contract, the objects of a run made one by one, and comparison with reference results.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <vector>

#include "host/output/BpProcedure.h"
#include "proportions/PRPParser.h"
#include "proportions/PRPValidSpecs.h"
#include "proportions/proportions.h"
#include "scripted_host/command/Words.h"
#include "scripted_host/json/WriteLog.h"
#include "scripted_host/session/Session.h"

namespace module_tests {

// A session whose contracts must be kept.
class Host : public scripted::Session {
 public:
  explicit Host(scripted::Script given) : Session(std::move(given)) {}
  Host(scripted::DataSet data, scripted::Command command)
      : Session({.data = std::move(data), .command = std::move(command)}) {}
  ~Host() override;

  Host& run() {
    PROPORTI();
    return *this;
  }
};

// The objects that the entry makes before the data are read, in its order, and the parse.
struct Parsed {
  Parsed() : parser(tokens, specs, source), accepted(parser.Parse()) {}

  BpProcedure output{"Proportions", 10};
  KORA_TokenSequence tokens{true};
  ProcedureDataSource source;
  PRPValidSpecs specs{source};
  PRPParser parser;
  bool accepted;
};

// The record as the reference files write it.
nlohmann::json writeElem(const BinInfoElem& elem);
nlohmann::json writeRecord(const PRPValidSpecs& specs);

// Where `got` first differs from what is wanted; empty when it agrees. Numbers agree within
// 8 tol + 1e-12 of their size; of a result that hangs on the rounding of a comparison ("knife") any
// of the alternatives will do.
std::string difference(const nlohmann::json& got, const nlohmann::json& want,
                       const std::string& place = "");

nlohmann::json readFile(const std::string& file);

// The lines of diagnostic text that were written: the first label found that is this one, from the
// `from`-th line on.
const scripted::Line& lineOf(const scripted::Log& log, const std::string& label,
                             std::size_t from = 0);
double numberOf(const scripted::Log& log, const std::string& label, std::size_t from = 0);

// Letters, digits and underscores, for the names of tests.
std::string identifier(std::string text);

}  // namespace module_tests
