// The words that tests write commands and data sets with.
//
//   Command{oneSample({"x", "y"}, {number("TESTVAL", 0.3)}), success(level({"1"}))}
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "scripted_host/session/Script.h"

namespace scripted {

// --- Tokens -------------------------------------------------------------------------------------

inline Token word(std::string text) {
  return {.text = std::move(text), .number = {}};
}
Token numberToken(double number);
inline Token with() {
  return {.text = "WITH", .number = {}, .code = TokenSequenceBase::OperatorWith};
}
inline Token by() {
  return {.text = "BY", .number = {}, .code = TokenSequenceBase::OperatorBy};
}
inline Token qualifier(std::string text) {
  return {.text = std::move(text), .number = {}, .qualifier = true};
}
// Names of variables; "WITH", "BY" and "(PAIRED)" are what they look like.
Tokens names(const std::vector<std::string>& words);

// --- Parameters ---------------------------------------------------------------------------------

Param number(std::string name, double value);
Param keyword(std::string name, std::string value);
Param keywords(std::string name, std::vector<std::string> values);
Param qualified(std::string name, std::string qualifier);
// SELECT or VALUE with what they carry.
Param cutPoint(std::string name, double value);
Param levels(std::string name, const std::vector<double>& values);
Param levels(std::string name, const std::vector<std::string>& values);

// --- Subcommands --------------------------------------------------------------------------------

using Params = std::vector<Param>;
SubCommand oneSample(const std::vector<std::string>& list, Params params = {});
SubCommand paired(const std::vector<std::string>& list, Params params = {});
SubCommand independent(const std::vector<std::string>& list, Params params = {});
SubCommand success(Param value);
SubCommand missing(const std::string& scope, const std::string& userMissing);
SubCommand level(double percent);

// --- Data ---------------------------------------------------------------------------------------

// MCMV::Missing stands for no value.
Variable numeric(std::string name, const std::vector<double>& data);
Variable text(std::string name, int width, const std::vector<Value>& data);

}  // namespace scripted
