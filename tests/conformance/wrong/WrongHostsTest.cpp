// Hosts with one deliberate fault each: the kit names it, and finds nothing else that the sound one
// does not have.
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

#include "conformance/Checks.h"
#include "conformance/Description.h"
#include "scripted_host/command/Words.h"
#include "scripted_host/session/Session.h"

namespace {

using conformance::Report;
using scripted::Script;

// The scripted host, with a fault put into its script.
class ScriptedHost : public conformance::Host {
 public:
  using Spoil = std::function<void(Script&)>;
  explicit ScriptedHost(Spoil spoil) : spoil_(std::move(spoil)) {}

  void run(const conformance::Sample& data, const std::string& command,
           const std::function<void()>& procedure) override {
    Script script{.data = dataOf(data), .command = commandOf(command)};
    spoil_(script);
    scripted::Session session(script);
    procedure();
  }

 private:
  // It delivers the cases as they stand: here they are sorted by the split variable.
  static scripted::DataSet dataOf(const conformance::Sample& data) {
    std::vector<std::size_t> order(data.rows());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
      return data.variables[3].numbers[a] < data.variables[3].numbers[b];
    });
    scripted::DataSet set{.weight = data.weight, .splits = {data.split}, .splitsAsRows = true};
    for (const auto& given : data.variables) {
      scripted::Variable variable{.name = given.name, .width = given.width};
      for (const std::size_t row : order) variable.data.push_back(valueOf(given, row));
      for (const double missing : given.userMissing) variable.userMissing.emplace_back(missing);
      set.variables.push_back(std::move(variable));
    }
    return set;
  }

  static scripted::Value valueOf(const conformance::SampleVariable& variable, std::size_t row) {
    if (variable.width == 0) {
      if (const auto number = variable.numbers[row]) return *number;
    } else if (const auto text = variable.texts[row]) {
      return *text;
    }
    return scripted::None;
  }

  // It takes commands as values: those of the kit.
  static scripted::Command commandOf(const std::string& command) {
    using namespace scripted;
    SubCommand list{.name = "LIST", .list = names({"v"}), .params = {}};
    if (command == conformance::plainCommand) {
      list.list = names({"v", "s"});
    } else if (command == conformance::parserCommand) {
      list.list = names({"v", "BY", "s"});
      list.params = {number("NUMBER", 50), keywords("WORDS", {"two", "one", "two"}),
                     levels("RULE", std::vector<double>{1, 2})};
    } else if (command.ends_with("NUMBER=0")) {
      list.params = {number("NUMBER", 0)};
    } else if (command.ends_with("NUMBER=101")) {
      list.params = {number("NUMBER", 101)};
    } else if (command.ends_with("WORDS=four")) {
      list.params = {keywords("WORDS", {"four"})};
    } else {
      list.params = {qualified("RULE", "LAST")};
    }
    return {list};
  }

  Spoil spoil_;
};

Report reportOf(const ScriptedHost::Spoil& spoil) {
  ScriptedHost host(spoil);
  Report report;
  conformance::checkAll(host, report);
  return report;
}

// What the scripted host does not keep even without a fault, on purpose: it searches for no
// non-centrality, and it uses the place of a value again for the next one, so that a module that
// relies on more than it needs is found out.
bool isKnown(const std::string& contract) {
  return contract.starts_with("FindNCParamT") ||
         contract == "GetStringValue: the bytes stay until the next NextCase";
}

TEST(ConformanceKit, FindsNothingElseInASoundHost) {
  const Report report = reportOf([](Script&) {});
  EXPECT_GT(report.checks(), 100);
  for (const auto& [contract, detail] : report.findings()) {
    EXPECT_TRUE(isKnown(contract)) << contract << "; " << detail;
  }
}

struct Fault {
  const char* name;
  std::function<void(Script&)> spoil;
  const char* contract;  // that must be among the findings
};

scripted::Variable& variable(Script& script, std::size_t index) {
  return script.data.variables.at(index);
}

const Fault faults[] = {
    {"LeavesOutCases", [](Script& s) { s.faults.fatalAfterCases = 3; }, "NextCase"},
    {"GivesNoIterator", [](Script& s) { s.faults.nullIterator = true; },
     "MakeIterator: never null"},
    {"GivesAPlainIterator", [](Script& s) { s.faults.plainIterator = true; },
     "MakeIterator: an iterator with weights"},
    {"IsFatalWithoutReason", [](Script& s) { s.faults.fatalFromQuery = 1; }, "FatalError: false"},
    {"HasNoBinomialTail", [](Script& s) { s.faults.failingDistributions = {"CdfBin"}; },
     "CdfBin: the lower tail"},
    {"HasNoBetaQuantile", [](Script& s) { s.faults.failingDistributions = {"IdfBeta"}; },
     "IdfBeta: the quantile"},
    {"SaysThatItResamples", [](Script& s) { s.data.bootstrapping = true; }, "QBOOTSTRAPPING"},
    {"LaysGroupsAsTables", [](Script& s) { s.data.splitsAsRows = false; },
     "SplitsAsSeparateTables"},
    {"ForgetsTheWeight", [](Script& s) { s.data.weight.clear(); }, "GetWeightVarIndex"},
    {"WeighsByAnotherVariable", [](Script& s) { s.data.weight = "v"; }, "Weight: as it stands"},
    {"RoundsWeights", [](Script& s) { variable(s, 2).data[1] = 3.0; }, "Weight: as it stands"},
    {"ForgetsTheSplit", [](Script& s) { s.data.splits.clear(); }, "GetNSplitVars"},
    {"MixesGroups",
     [](Script& s) {
       for (auto& each : s.data.variables)
         std::rotate(each.data.begin(), each.data.begin() + 2, each.data.end());
     },
     "NextCase: groups in the order"},
    {"ForgetsUserMissing", [](Script& s) { variable(s, 0).userMissing.clear(); }, "IsMissing"},
    {"ReadsMissingAsZero",
     [](Script& s) {
       for (auto& value : variable(s, 0).data) {
         if (std::holds_alternative<std::monostate>(value)) value = 0.0;
       }
     },
     "GetNumericValue: the value"},
    {"ReadsNullAsBlank",
     [](Script& s) {
       for (auto& value : variable(s, 1).data) {
         if (std::holds_alternative<std::monostate>(value)) value = std::string();
       }
     },
     "GetStringValue: padded"},
    {"CallsStringsNumbers", [](Script& s) { variable(s, 1).formatType = FormatType::Number; },
     "GetFormat: a string format"},
    {"RefusesEveryVariable", [](Script& s) { s.data.refusingValidators = {"LIST"}; },
     "ValidateVariables: accepts"},
    {"TakesWordsForNumbers", [](Script& s) { variable(s, 0).categoryTexts["one"] = 1; },
     "ValidateCatValue: no word"},
    {"RefusesValues", [](Script& s) { variable(s, 1).rejectedTexts = {"beta"}; },
     "ValidateCatValue: a text"},
    {"CollatesBackwards",
     [](Script& s) {
       s.collation = [](std::string_view a, std::string_view b) { return b.compare(a); };
     },
     "KORAMBstrncoll_A: the sign"},
    {"ReadsAnotherCommand",
     [](Script& s) { s.command.front().params.push_back(scripted::number("NUMBER", 999)); },
     "UniversalParser: 0 when the command follows"},
    {"LosesParameters", [](Script& s) { s.command.front().params.clear(); },
     "UniversalParser: not 0 when"},
};

class WrongHost : public testing::TestWithParam<Fault> {};

TEST_P(WrongHost, IsNamedByItsFault) {
  const Report report = reportOf(GetParam().spoil);
  std::string found;
  for (const auto& [contract, detail] : report.findings()) found += contract + "\n";
  EXPECT_TRUE(report.has(GetParam().contract)) << "found instead:\n" << found;
}

INSTANTIATE_TEST_SUITE_P(Faults, WrongHost, testing::ValuesIn(faults),
                         [](const auto& each) { return each.param.name; });

}  // namespace
