// The data source's view of the dictionary.
#include "conformance/Checks.h"
#include "host/data/OBS.h"
#include "host/data/ProcedureDataSource.h"
#include "host/distributions/MCMV.h"

namespace conformance {

namespace {

int indexOf(const Sample& data, const std::string& name) {
  for (std::size_t i = 0; i < data.variables.size(); ++i) {
    if (data.variables[i].name == name) return static_cast<int>(i);
  }
  return -1;
}

void checkVariable(const SampleVariable& want, const KORA_Variable* got, Report& report) {
  report.expect(got != nullptr, "GetVariable: never null for an index of the dictionary",
                want.name);
  if (got == nullptr) return;
  report.expect(got->GetName() == want.name, "KORA_Variable::GetName: the name as defined",
                std::string(got->GetName()) + " for " + want.name);
  report.expect(got->GetType() == want.width,
                "KORA_Variable::GetType: 0 for a number, else the width in bytes",
                want.name + ": " + std::to_string(got->GetType()));
  report.expect(got->GetFormat().IsString() == (want.width > 0),
                "KORA_Variable::GetFormat: a string format for strings alone", want.name);
  std::string upper = want.name;
  for (char& c : upper) c = static_cast<char>(c - 'a' + 'A');
  report.expect(got->GetUpperName() == upper, "KORA_Variable::GetUpperName: the upper-case form",
                std::string(got->GetUpperName()));
}

}  // namespace

void checkDictionary(const Sample& data, Report& report) {
  ProcedureDataSource source;
  source.Bootstrapping(true);
  report.expect(!source.FatalError(), "FatalError: false while nothing has failed");
  report.expect(!QBOOTSTRAPPING(), "QBOOTSTRAPPING: false without a bootstrap");
  for (std::size_t i = 0; i < data.variables.size(); ++i) {
    const KORA_Variable* variable = source.GetVariable(static_cast<int>(i));
    checkVariable(data.variables[i], variable, report);
    report.expect(variable == source.GetVariable(static_cast<int>(i)),
                  "GetVariable: stays where it is as long as the data source");
  }
  report.expect(source.GetNSplitVars() == 1, "GetNSplitVars: the number of split variables",
                std::to_string(source.GetNSplitVars()));
  if (source.GetNSplitVars() == 1) {
    report.expect(source.GetSplitVarIndex(0) == indexOf(data, data.split),
                  "GetSplitVarIndex: the dictionary index");
  }
  report.expect(source.GetWeightVarIndex() == indexOf(data, data.weight),
                "GetWeightVarIndex: the dictionary index of the weight");
  report.expect(!source.SplitsAsSeparateTables(),
                "SplitsAsSeparateTables: false when groups are laid as rows");
  OBS word{};
  for (const double value : {9.0, 1.0, MCMV::Missing}) {
    word.number = value;
    const KORA_Variable* variable = source.GetVariable(0);
    if (variable == nullptr) continue;
    report.expect(variable->IsMissing(&word) == (value != 1.0),
                  "KORA_Variable::IsMissing: system-missing and user-missing values",
                  std::to_string(value));
  }
}

}  // namespace conformance
