// The run of one command: parse, notes, two loops over the split groups, clean-up.
//
// The first loop reads every split group once and keeps an analysis object for each that has
// cases. The second reads the data again, and each object writes its tables. Objects are released
// in the reverse order of their creation; the host may watch that order.
//
// When a host call throws, the exception passes through: unwinding frees the list, the store, the
// parser, the record, the data source, the tokens and the output, in this order. Analysis objects
// and iterators are held by plain pointers on purpose and stay behind then.
#include "proportions.h"

#include <memory>
#include <string>
#include <vector>

#include "PRPAggregation.h"
#include "PRPAlgorithm.h"
#include "PRPAssert.h"
#include "PRPParser.h"
#include "PRPParserNames.h"
#include "PRPValidSpecs.h"
#include "host/command/TokenInfoObj.h"
#include "host/data/CaseIterator.h"
#include "host/data/ProcedureDataSource.h"
#include "host/errors/BEPesRepos.h"
#include "host/output/BpProcedure.h"
#include "proportionsFlags.h"

namespace {

using Algorithms = std::vector<PRPAlgorithm*>;

// The kind of output block that the host is asked for.
constexpr int StatisticalProcedure = 10;

// What the loops work on; owned by the entry.
struct Run {
  ProcedureDataSource& source;
  BpProcedure& output;
  const PRPValidSpecs& specs;
  PRPAggregation& aggregation;
};

// A new iterator before the first case; the caller deletes it.
ProcDSIterator* MakeIterator(ProcedureDataSource& source) {
  KORA_InputCaseIterator* iterator = source.MakeIterator(nullptr).release();
  auto* pDSIter = dynamic_cast<ProcDSIterator*>(iterator);
  PRP_ASSERT(pDSIter != nullptr, "pDSIter!= 0", "proportions");
  return pDSIter;
}

// The first loop: appends an object for each split group that has cases. Returns whether the run
// may go on, should the data source have failed meanwhile.
bool ReadGroups(const Run& run, ProcDSIterator& iterator, bool split, Algorithms& algorithms) {
  bool more = true;
  bool gotCases = true;
  if (run.source.FatalError()) return more;
  while (more && gotCases) {
    auto* algorithm = new PRPAlgorithm(run.source, run.output, run.specs);
    gotCases = algorithm->InitialPass(iterator, run.aggregation);
    if (!gotCases) {
      delete algorithm;
    } else {
      algorithms.push_back(algorithm);
      if (!split) {
        // Data without split variables are one group.
        gotCases = false;
        more = algorithm->GoodData();
      }
    }
    if (run.source.FatalError()) break;
  }
  return more;
}

// The group's tables, or nothing but its cases passed over when it has no valid ones.
bool WriteGroup(PRPAlgorithm& algorithm, ProcDSIterator& iterator) {
  if (!algorithm.GoodData()) {
    algorithm.PassSplitGroup(iterator);
    return false;
  }
  const bool ok = algorithm.ComputeAndDisplay(iterator);
  if (ok) algorithm.ProbeFindNCParamT();
  return ok;
}

// The second loop, over the groups in the order of the first.
void WriteGroups(const Run& run, ProcDSIterator& iterator, bool split, bool proceed,
                 const Algorithms& algorithms) {
  for (PRPAlgorithm* pPropAlgor : algorithms) {
    if (!proceed) break;
    PRP_ASSERT(pPropAlgor != nullptr, "pPropAlgor != 0", "proportions");
    const bool ok = WriteGroup(*pPropAlgor, iterator);
    if (gDisplayAlgorithm) pPropAlgor->Display();
    proceed = split || ok;
    if (run.source.FatalError()) break;
  }
}

void Destroy(Algorithms& algorithms) {
  for (PRPAlgorithm*& algorithm : algorithms) {
    delete algorithm;
    algorithm = nullptr;
  }
}

// Both loops and what lies between them.
void Analyse(const Run& run) {
  BEPesRepos::BEPesClear();
  const bool split = run.source.GetNSplitVars() != 0;
  Algorithms algorithms;

  ProcDSIterator* iterator = MakeIterator(run.source);
  bool proceed = ReadGroups(run, *iterator, split, algorithms);
  if (!run.source.FatalError()) {
    run.aggregation.SortSuccessValues();
    proceed = run.aggregation.PoolSplitGroups(algorithms);
  }
  delete iterator;
  iterator = nullptr;

  if (!run.source.FatalError()) iterator = MakeIterator(run.source);
  if (!run.source.FatalError()) WriteGroups(run, *iterator, split, proceed, algorithms);
  delete iterator;

  Destroy(algorithms);
  BEPesRepos::BEPesCheckError();
}

}  // namespace

void PROPORTI() {
  const std::string title(prp::Title);
  BpProcedure output(title, StatisticalProcedure);
  const KORA_TokenSequence tokens(true);
  ProcedureDataSource source;
  source.Bootstrapping(true);
  PRPValidSpecs specs(source);
  PRPParser parser(tokens, specs, source);

  const bool parsed = parser.Parse();
  if (parsed && !source.FatalError()) {
    specs.WriteNotes();
    if (gDisplaySpecs) specs.Display();
  }
  PRPAggregation aggregation;
  if (parsed && !source.FatalError()) Analyse({source, output, specs, aggregation});
}
