#include "ModuleTest.h"

#include <cctype>
#include <cmath>
#include <fstream>
#include <set>

namespace module_tests {

using nlohmann::json;

Host::~Host() {
  for (const std::string& violation : log.violations) ADD_FAILURE() << "contract: " << violation;
}

json writeElem(const BinInfoElem& elem) {
  json numbers = json::array();
  for (const double number : elem._numValues)
    numbers.push_back(number == MCMV::Missing ? json("missing") : json(number));
  return {{"_binOption", elem._binOption},
          {"_bCategorical", elem._bCategorical},
          {"_numValues", numbers},
          {"_strValues", elem._strValues},
          {"_obsLen", elem._obsLen}};
}

namespace {

json writeElems(const PRPValidSpecs::BinInfoElems& elems) {
  json written = json::array();
  for (const BinInfoElem& elem : elems) written.push_back(writeElem(elem));
  return written;
}

// What a reference may carry beside the result.
const std::set<std::string> besides = {"tol", "knife", "alt", "key"};

std::string differenceOfNumbers(double got, double want, double tol, const std::string& place) {
  if (std::abs(got - want) <= 8 * tol + 1e-12 * std::abs(want) + 1e-200) return "";
  return place + ": " + json(got).dump() + " instead of " + json(want).dump();
}

std::string differenceOfObjects(const json& got, const json& want, const std::string& place) {
  for (const auto& [key, value] : got.items())
    if (!want.contains(key)) return place + ": should not have " + key + " " + value.dump();
  const double tol = want.value("tol", 0.0);
  for (const auto& [key, value] : want.items()) {
    if (besides.contains(key)) continue;
    if (!got.contains(key)) return place + ": lacks " + key + " " + value.dump();
    const std::string inside = place + "." + key;
    const std::string found = got[key].is_number() && value.is_number()
                                  ? differenceOfNumbers(got[key], value, tol, inside)
                                  : difference(got[key], value, inside);
    if (!found.empty()) return found;
  }
  return "";
}

// A row with alternatives: each cell on the knife's edge may have any of their values.
json withAlternatives(const json& got, json want) {
  if (!want.is_object() || !want.contains("alt")) return want;
  for (std::size_t i = 0; i < want["cells"].size() && i < got["cells"].size(); ++i) {
    json& cell = want["cells"][i];
    if (!cell.value("knife", false)) continue;
    for (const json& alternative : want["alt"])
      if (difference(got["cells"][i]["value"], alternative).empty()) cell["value"] = alternative;
  }
  return want;
}

}  // namespace

json writeRecord(const PRPValidSpecs& specs) {
  return {{"fModelType", specs.GetModelType()},
          {"fvTestVarInds", specs.GetTestVarInds()},
          {"fvBinInfoElems", writeElems(specs.GetBinInfoElems())},
          {"fvTestVarInds2", specs.GetTestVarInds2()},
          {"fvBinInfoElems2", writeElems(specs.GetBinInfoElems2())},
          {"fTestValue", specs.GetTestValue()},
          {"fbOrderPair", specs.GetOrderPair()},
          {"fGroupVarInd", specs.GetGroupVarInd()},
          {"fGroupInfoElem", writeElem(specs.GetGroupInfoElem())},
          {"fbScopeAnalysis", specs.GetScopeAnalysis()},
          {"fbUserMissingIncluded", specs.GetUserMissingIncluded()},
          {"fSuccessInfoElem", writeElem(specs.GetSuccessInfoElem())},
          {"fbIgnoreCase", specs.GetIgnoreCase()},
          {"fbPrintUpperCase", specs.GetPrintUpperCase()},
          {"fbPrintCategoryOrder", specs.GetPrintCategoryOrder()},
          {"fCILevelPct", specs.GetCILevelPct()},
          {"fvbTestTypes", specs.GetTestTypes()},
          {"fvbCITypes", specs.GetCITypes()}};
}

std::string difference(const json& got, const json& want, const std::string& place) {
  if (got.is_number() && want.is_number()) return differenceOfNumbers(got, want, 0.0, place);
  if (got.is_object() && want.is_object()) return differenceOfObjects(got, want, place);
  if (got.is_array() && want.is_array() && got.size() == want.size()) {
    for (std::size_t i = 0; i < want.size(); ++i) {
      const std::string inside = place + "[" + std::to_string(i) + "]";
      const std::string found = difference(got[i], withAlternatives(got[i], want[i]), inside);
      if (!found.empty()) return found;
    }
    return "";
  }
  return got == want ? "" : place + ": " + got.dump() + " instead of " + want.dump();
}

json readFile(const std::string& file) {
  std::ifstream in(std::string(TEST_DATA) + "/" + file);
  return json::parse(in);
}

const scripted::Line& lineOf(const scripted::Log& log, const std::string& label, std::size_t from) {
  for (std::size_t i = from; i < log.lines.size(); ++i)
    if (log.lines[i].label == label) return log.lines[i];
  throw std::runtime_error("no line " + label);
}

double numberOf(const scripted::Log& log, const std::string& label, std::size_t from) {
  return lineOf(log, label, from).numbers.at(0);
}

std::string identifier(std::string text) {
  for (char& c : text)
    if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
  return text;
}

}  // namespace module_tests
