#include "embedded/session/Run.h"

#include "embedded/data/Describe.h"
#include "embedded/data/OpenData.h"
#include "embedded/errors/Error.h"

namespace embedded {

namespace {

data::CaseMode modeOf(const Request& request) {
  if (request.diagnostics || request.delivery == CaseDelivery::CaseByCase) {
    return data::CaseMode::CaseByCase;
  }
  return request.delivery == CaseDelivery::Patterns ? data::CaseMode::Patterns
                                                    : data::CaseMode::Auto;
}

data::DataOptions dataOptions(const Request& request) {
  data::DataOptions options;
  options.address = request.data;
  options.schema = request.schema;
  if (!request.weight.empty()) {
    options.weight = request.weight;
  }
  if (request.splitsGiven) {
    options.splits = request.splits;
  }
  options.cases.mode = modeOf(request);
  options.cases.collation = request.locale;
  options.threads = request.threads;
  options.memory = request.memory;
  return options;
}

// Fills the session's data from the counts that were given in place of data.
void openTable(Session& session, const data::MemoryTable& table) {
  session.dictionary = data::dictionaryOf(table);
  session.cases = std::make_unique<data::MemorySource>(table);
  session.document.data.source = "counts";
  session.document.data.weight = table.weight;
}

void openRelation(Session& session, const Request& request) {
  data::OpenedData opened = data::openData(dataOptions(request));
  session.dictionary = std::move(opened.dictionary);
  session.cases = std::move(opened.cases);
  session.document.data = std::move(opened.info);
}

void warnOfNoCases(output::Document& document) {
  if (document.accepted && document.data.cases.read == 0) {
    output::Message message;
    message.severity = output::Severity::Warning;
    message.text = output::Text::string("No cases ...");
    document.messages.push_back(std::move(message));
  }
}

}  // namespace

std::unique_ptr<Session> run(const Request& request, const Module& module) {
  auto session = std::make_unique<Session>();
  const Session::Scope scope(*session);
  session->commandText = request.command;
  session->splitLayout = request.splitLayout;
  session->collation = text::Collation(request.locale);
  session->diagnostics = request.diagnostics;
  session->document.command = request.command;
  session->document.version = request.version;
  if (request.table) {
    openTable(*session, *request.table);
  } else {
    openRelation(*session, request);
  }
  module.call();
  if (session->fatal) {
    std::rethrow_exception(session->fatal);
  }
  Session::checkCancelled();
  session->document.accepted = session->accepted;
  warnOfNoCases(session->document);
  return session;
}

std::string describe(const Request& request) {
  data::OpenedData opened = data::openData(dataOptions(request));
  std::vector<int> all(opened.dictionary.variables.size());
  for (std::size_t i = 0; i < all.size(); ++i) {
    all[i] = static_cast<int>(i);
  }
  opened.cases->measure(opened.dictionary, all);
  return data::describe(opened.dictionary);
}

}  // namespace embedded
