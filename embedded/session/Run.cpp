#include "embedded/session/Run.h"

#include <algorithm>

#include "embedded/data/Describe.h"
#include "embedded/data/ImputationSource.h"
#include "embedded/data/OpenData.h"
#include "embedded/data/ResampledSource.h"
#include "embedded/errors/Error.h"
#include "embedded/output/Imputation.h"
#include "embedded/session/Reading.h"

namespace embedded {

namespace {

data::CaseMode modeOf(const Request& request) {
  if (request.bootstrap) {
    return data::CaseMode::Patterns;
  }
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
  if (request.imputation) {
    options.imputation = request.imputation->number;
  }
  options.cases.mode = modeOf(request);
  options.cases.collation = request.locale;
  options.cases.rowsAtOnce = request.rowsAtOnce;
  options.threads = request.threads;
  options.memory = request.memory;
  options.timeout = request.timeout;
  options.progress = request.progress;
  return options;
}

// Fills the session's data from the counts that were given in place of data.
void openTable(Session& session, const data::MemoryTable& table) {
  session.dictionary = data::dictionaryOf(table);
  session.cases = std::make_unique<data::MemorySource>(table);
  session.document.data.source = "counts";
  session.document.data.weight = table.weight;
}

// The cases stay the session's.
const data::RelationCases& openRelation(Session& session, const Request& request) {
  data::OpenedData opened = data::openData(dataOptions(request));
  session.dictionary = std::move(opened.dictionary);
  session.document.data = std::move(opened.info);
  const data::RelationCases& cases = *opened.cases;
  session.cases = std::move(opened.cases);
  return cases;
}

// Has the numbers of the imputations checked while the cases are read.
void checkImputations(Session& session) {
  session.cases =
      std::make_unique<data::ImputationSource>(std::move(session.cases), session.dictionary);
  session.pooling = true;
}

// Puts samples drawn from the patterns in the place of the data; they stay the session's.
const data::ResampledSource& resample(Session& session, const Bootstrap& bootstrap) {
  const int sampleNumber = data::addSampleNumber(session.dictionary);
  const data::Resampling resampling{
      .samples = bootstrap.samples,
      .seed = bootstrap.seed,
      .jackknife = bootstrap.interval == output::BootstrapInterval::Bca};
  auto source =
      std::make_unique<data::ResampledSource>(std::move(session.cases), sampleNumber, resampling);
  const data::ResampledSource& samples = *source;
  session.cases = std::move(source);
  session.bootstrapping = true;
  session.document.data.seed = bootstrap.seed;
  return samples;
}

// The confidence level in percent: the command's, else the one that its tables show, else the usual
// one.
double levelOf(const Session& session, const output::Description& description) {
  for (const Session::GivenNumber& given : session.givenNumbers) {
    if (given.subcommand == description.levelSubcommand &&
        given.parameter == description.levelParameter) {
      return given.value;
    }
  }
  for (const output::Table& table : session.document.tables) {
    for (const output::Dimension& dimension : table.dimensions) {
      for (const output::Node& node : dimension.nodes) {
        if (!node.label->items.empty() &&
            description.of(table.title->id, node.label->id).role == output::Role::Level) {
          return std::get<double>(node.label->items.front()->value);
        }
      }
    }
  }
  return output::BootstrapOptions().level;
}

void summariseSamples(Session& session, const Bootstrap& bootstrap,
                      const data::ResampledSource& samples,
                      const output::Description& description) {
  output::BootstrapOptions options{.samples = bootstrap.samples,
                                   .level = bootstrap.level.value_or(levelOf(session, description)),
                                   .interval = bootstrap.interval,
                                   .patterns = {}};
  if (bootstrap.interval == output::BootstrapInterval::Bca) {
    for (const data::GroupPatterns& group : samples.groups()) {
      options.patterns.push_back(group.drawable);
    }
  }
  output::summariseBootstrap(session.document, description, options);
  if (session.splitLayout == SplitLayout::Tables) {
    output::separateSplitGroups(session.document);
  }
}

void poolImputations(Session& session, const Imputation& imputation,
                     const output::Description& description) {
  output::poolImputations(session.document, description, imputation.df);
  if (session.splitLayout == SplitLayout::Tables) {
    output::separateSplitGroups(session.document);
  }
}

void warn(output::Document& document, output::TextPtr text) {
  output::Message message;
  message.severity = output::Severity::Warning;
  message.text = std::move(text);
  document.messages.push_back(std::move(message));
}

void warnOfNoCases(output::Document& document) {
  if (document.data.cases.read == 0) {
    warn(document, output::Text::string("No cases ..."));
  }
}

// A split variable is constant in each group, so an analysis of it has little to say; and one
// that is named like an imputation number is taken for one.
void warnOfSplits(Session& session) {
  for (const int split : session.dictionary.splits) {
    const data::Variable& variable = session.dictionary.variables[static_cast<std::size_t>(split)];
    const auto& used = session.columnsInUse;
    if (std::find(used.begin(), used.end(), split) != used.end()) {
      warn(session.document, output::Text::composite("Split variable analysed ^1 ...",
                                                     {output::Text::ofVariable(variable.info)}));
    }
    if (!session.pooling && data::isImputationNumber(variable)) {
      warn(session.document, output::Text::composite("Split variable numbers imputations ^1 ...",
                                                     {output::Text::ofVariable(variable.info)}));
    }
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
  if (!request.bootstrap && !request.imputation) {
    session->finishedGroups = request.finishedGroups;
  }
  session->document.command = request.command;
  session->document.version = request.version;
  const data::RelationCases* cases = nullptr;
  if (request.table) {
    openTable(*session, *request.table);
  } else {
    cases = &openRelation(*session, request);
  }
  if (request.imputation) {
    checkImputations(*session);
  }
  const data::ResampledSource* samples =
      request.bootstrap ? &resample(*session, *request.bootstrap) : nullptr;
  module.call();
  if (session->fatal) {
    std::rethrow_exception(session->fatal);
  }
  Session::checkCancelled();
  session->document.accepted = session->accepted;
  if (!session->accepted) {
    return session;
  }
  if (samples != nullptr) {
    summariseSamples(*session, *request.bootstrap, *samples, module.description());
  }
  if (request.imputation) {
    poolImputations(*session, *request.imputation, module.description());
  }
  if (cases != nullptr) {
    noteReading(session->document, request, cases->delivery());
  }
  warnOfSplits(*session);
  warnOfNoCases(session->document);
  return session;
}

std::string describe(const Request& request) {
  data::OpenedData opened = data::openData(dataOptions(request));
  std::vector<int> all;
  for (std::size_t i = 0; i < opened.dictionary.variables.size(); ++i) {
    if (opened.dictionary.variables[i].supported) {
      all.push_back(static_cast<int>(i));
    }
  }
  opened.cases->measure(opened.dictionary, all);
  opened.cases->plan(all);
  return data::describe(opened.dictionary, &opened.cases->delivery());
}

}  // namespace embedded
