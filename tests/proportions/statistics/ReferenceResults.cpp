#include "ReferenceResults.h"

#include <cmath>
#include <fstream>

#include "host/distributions/MCMV.h"

namespace reference {
namespace {

using nlohmann::json;

std::string nameOf(const std::string& group, std::size_t method) {
  return group + std::to_string(method);
}

bool isState(double got, const json& want) {
  if (want.is_null() || want == "empty") return got == MCMV::Missing;
  return want == "nan" && std::isnan(got);
}

bool isNear(double got, double want, double bound) {
  return got != MCMV::Missing && std::fabs(got - want) <= bound;
}

}  // namespace

std::vector<json> linesOf(const std::string& file) {
  std::ifstream input(std::string(TEST_DATA) + "/statistics/" + file);
  std::vector<json> lines;
  for (std::string text; std::getline(input, text);) {
    json line = json::parse(text);
    if (!line.contains("header")) lines.push_back(std::move(line));
  }
  return lines;
}

double Line::toleranceOf(const std::string& name) const {
  if (!line_.contains("tol") || !line_["tol"].contains(name)) return 0.0;
  return 8.0 * line_["tol"][name].get<double>();
}

bool Line::isOnKnifeEdge(const std::string& group, std::size_t method) const {
  if (!line_.contains("knife")) return false;
  for (const json& name : line_["knife"])
    if (name == nameOf(group, method)) return true;
  return false;
}

testing::AssertionResult Line::compare(double got, const json& want, double bound,
                                       const std::string& name) const {
  const bool agrees =
      want.is_number() ? isNear(got, want.get<double>(), bound) : isState(got, want);
  if (agrees) return testing::AssertionSuccess();
  return testing::AssertionFailure()
         << line_.at("id") << " " << name << ": " << json(got) << " is not " << want;
}

testing::AssertionResult Line::agrees(double got, const std::string& group, std::size_t method,
                                      std::size_t place) const {
  const std::string name = nameOf(group, method) + "." + std::to_string(place);
  const json& want = line_.at(group).at(method).at(place);
  const double size = want.is_number() ? std::fabs(want.get<double>()) : 0.0;
  const double bound = toleranceOf(name) + 1e-12 * size + 1e-200;
  const auto result = compare(got, want, bound, name);
  if (result || !isOnKnifeEdge(group, method)) return result;
  // On the edge itself the statistic is 0 or a few roundings of the comparison beside it.
  if (!line_.contains("alt")) return testing::AssertionSuccess();
  const json& other = line_["alt"].at(nameOf(group, method)).at(place);
  return compare(got, other, 1e-12, name);
}

testing::AssertionResult Line::agreesEstimate(double got, std::size_t place,
                                              double rounding) const {
  const std::string name = nameOf("est", place);
  const json& want = line_.at("est").at(place);
  const double size = want.is_number() ? std::fabs(want.get<double>()) : 0.0;
  return compare(got, want, rounding + 1e-12 * size, name);
}

testing::AssertionResult Line::agreesFlag(bool got, std::size_t place) const {
  if (line_.at("est").at(place) == got) return testing::AssertionSuccess();
  return testing::AssertionFailure() << line_.at("id") << " flag " << place;
}

}  // namespace reference
