// The active data set as procedures see it: the session's dictionary and cases.
#include "host/data/ProcedureDataSource.h"

#include "SessionIterator.h"
#include "embedded/session/Session.h"
#include "host/data/CaseIterator.h"

using embedded::Session;

KORA_Variable::~KORA_Variable() = default;
KORA_DataSource::~KORA_DataSource() = default;
KORA_InputCaseIterator::~KORA_InputCaseIterator() = default;
ProcDSIterator::~ProcDSIterator() = default;

struct ProcedureDataSource::Impl {
  Session& session = Session::current();
  bool takesPart = false;
  bool opened = false;

  // Fixes the columns, before the first iterator. What goes wrong ends the reading.
  void open() {
    opened = true;
    try {
      session.cases->measure(session.dictionary, session.columnsInUse);
      session.cases->use(session.columnsInUse);
    } catch (...) {
      if (!session.fatal) session.fatal = std::current_exception();
    }
  }
};

ProcedureDataSource::ProcedureDataSource() : impl_(std::make_unique<Impl>()) {}
ProcedureDataSource::~ProcedureDataSource() = default;

const KORA_Variable* ProcedureDataSource::GetVariable(int index) const {
  return &impl_->session.dictionary.variables[static_cast<std::size_t>(index)];
}

void ProcedureDataSource::Bootstrapping(bool takesPart) {
  impl_->takesPart = takesPart;
}

bool ProcedureDataSource::FatalError() const {
  return impl_->session.fatal != nullptr;
}

int ProcedureDataSource::GetNSplitVars() const {
  return static_cast<int>(impl_->session.dictionary.splits.size());
}

int ProcedureDataSource::GetSplitVarIndex(int i) const {
  return impl_->session.dictionary.splits[static_cast<std::size_t>(i)];
}

bool ProcedureDataSource::SplitsAsSeparateTables() const {
  const Session& session = impl_->session;
  return session.splitLayout == embedded::SplitLayout::Tables && !session.bootstrapping &&
         !session.pooling;
}

int ProcedureDataSource::GetWeightVarIndex() const {
  return impl_->session.dictionary.weight;
}

std::unique_ptr<KORA_InputCaseIterator> ProcedureDataSource::MakeIterator(
    const KORA_CaseSelection*) {
  const bool first = !impl_->opened;
  if (first) impl_->open();
  return std::make_unique<embedded::data::SessionIterator>(impl_->session, first);
}

bool QBOOTSTRAPPING() {
  return Session::current().bootstrapping;
}
