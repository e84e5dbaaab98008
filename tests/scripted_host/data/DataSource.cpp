// The data source and its dictionary.
#include <map>

#include "host/data/ProcedureDataSource.h"
#include "scripted_host/data/Current.h"
#include "scripted_host/session/Session.h"

using scripted::Phase;
using scripted::session;

namespace {

// An iterator that is none of a procedure's data source.
class PlainIterator : public KORA_InputCaseIterator {
 public:
  bool NextCase() override { return false; }
  const OBS* GetObsPointer(int) const override { return nullptr; }
  double GetNumericValue(int) const override { return MCMV::Missing; }
  const char* GetStringValue(int) const override { return nullptr; }
};

}  // namespace

KORA_DataSource::~KORA_DataSource() = default;

struct ProcedureDataSource::Impl {
  mutable std::map<int, std::unique_ptr<KORA_Variable>> variables;
};

ProcedureDataSource::ProcedureDataSource() : impl_(new Impl) {
  session().enter("ProcedureDataSource");
  session().created("ProcedureDataSource");
}

ProcedureDataSource::~ProcedureDataSource() {
  session().leave("ProcedureDataSource");
  session().destroyed("ProcedureDataSource");
}

const KORA_Variable* ProcedureDataSource::GetVariable(int index) const {
  session().enter("ProcedureDataSource::GetVariable", {std::to_string(index)});
  auto& variable = impl_->variables[index];
  if (variable == nullptr) variable = scripted::makeVariable(index);
  session().expect(variable != nullptr, "a variable is asked for by an index of the dictionary");
  return variable.get();
}

void ProcedureDataSource::Bootstrapping(bool takesPart) {
  session().enter("ProcedureDataSource::Bootstrapping", {takesPart ? "true" : "false"});
}

bool ProcedureDataSource::FatalError() const {
  session().enter("ProcedureDataSource::FatalError");
  ++session().fatalQueries;
  const auto& from = session().script.faults.fatalFromQuery;
  if (from && session().fatalQueries >= *from) session().fatal = true;
  return session().fatal;
}

int ProcedureDataSource::GetNSplitVars() const {
  session().enter("ProcedureDataSource::GetNSplitVars");
  return static_cast<int>(session().script.data.splits.size());
}

int ProcedureDataSource::GetSplitVarIndex(int i) const {
  session().enter("ProcedureDataSource::GetSplitVarIndex", {std::to_string(i)});
  return session().indexOf(session().script.data.splits.at(static_cast<std::size_t>(i)));
}

bool ProcedureDataSource::SplitsAsSeparateTables() const {
  session().enter("ProcedureDataSource::SplitsAsSeparateTables");
  return !session().script.data.splitsAsRows;
}

int ProcedureDataSource::GetWeightVarIndex() const {
  session().enter("ProcedureDataSource::GetWeightVarIndex");
  const std::string& weight = session().script.data.weight;
  return weight.empty() ? -1 : session().indexOf(weight);
}

std::unique_ptr<KORA_InputCaseIterator> ProcedureDataSource::MakeIterator(
    const KORA_CaseSelection* selection) {
  const bool refused = session().enter("ProcedureDataSource::MakeIterator");
  session().expect(selection == nullptr, "all cases are asked for");
  session().expectPhase(Phase::AfterParse, "MakeIterator");
  session().phase = Phase::DuringRun;
  if (refused || session().script.faults.nullIterator) return nullptr;
  if (session().script.faults.plainIterator) return std::make_unique<PlainIterator>();
  return scripted::makeIterator();
}

bool QBOOTSTRAPPING() {
  session().enter("QBOOTSTRAPPING");
  return session().script.data.bootstrapping;
}
