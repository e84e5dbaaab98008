// The sample, and what calls the checks.
#include <exception>

#include "conformance/Checks.h"

namespace conformance {

std::size_t Sample::rows() const {
  return variables.empty() ? 0 : variables.front().numbers.size() + variables.front().texts.size();
}

Sample sample() {
  const std::nullopt_t none = std::nullopt;
  Sample data;
  data.variables = {
      {.name = "v", .numbers = {1, 0, 1, 9, none, 1}, .texts = {}, .userMissing = {9}},
      {.name = "s",
       .width = 12,
       .numbers = {},
       .texts = {"beta", "alpha", none, "alphabetical", "beta", "b"},
       .userMissing = {}},
      {.name = "w", .numbers = {1, 2.5, 1, 1, none, -1}, .texts = {}, .userMissing = {}},
      {.name = "g", .numbers = {2, 1, none, 1, 2, 1}, .texts = {}, .userMissing = {}}};
  data.weight = "w";
  data.split = "g";
  return data;
}

void runChecked(Host& host, const std::string& command, Report& report, const char* contract,
                const std::function<void()>& procedure) {
  try {
    bool called = false;
    host.run(sample(), command, [&] {
      called = true;
      procedure();
    });
    report.expect(called, "a run calls the procedure");
  } catch (const std::exception& error) {
    report.expect(false, contract, std::string("a call threw: ") + error.what());
  }
}

void checkAll(Host& host, Report& report) {
  runChecked(host, plainCommand, report, "distribution functions do not throw",
             [&] { checkDistributions(report); });
  runChecked(host, plainCommand, report, "text helpers do not throw", [&] { checkTexts(report); });
  runChecked(host, plainCommand, report, "number formats do not throw",
             [&] { checkNumbers(report); });
  runChecked(host, plainCommand, report, "the dictionary does not throw",
             [&] { checkDictionary(sample(), report); });
  checkParser(host, report);
  checkValidators(host, report);
  checkCases(host, report);
  checkObservationMap(host, report);
  checkOutput(host, report);
}

}  // namespace conformance
