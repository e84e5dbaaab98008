// One run: data and a command in, a document out. What a program that embeds this host calls.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "embedded/data/MemorySource.h"
#include "embedded/data/Progress.h"
#include "embedded/output/Document.h"
#include "embedded/output/Resampling.h"
#include "embedded/output/Rubin.h"
#include "embedded/session/Module.h"
#include "embedded/session/Session.h"

namespace embedded {

// Which cases the procedure is given.
enum class CaseDelivery { Automatic, CaseByCase, Patterns };

// Samples to draw from the data.
struct Bootstrap {
  std::uint32_t samples = 0;
  std::uint64_t seed = 0;
  output::BootstrapInterval interval = output::BootstrapInterval::Percentile;
  std::optional<double> level;  // in percent; the command's when not given
};

// Imputations that the data hold.
struct Imputation {
  std::string number;  // name of the variable that numbers them; 0 is the original data
  output::PoolingDf df = output::PoolingDf::BarnardRubin;
};

struct Request {
  std::string data;                        // a path, "-", or an engine's address
  std::optional<data::MemoryTable> table;  // counts given in place of data
  std::string command;                     // as written
  std::string schema;                      // the sidecar's path; empty: found beside the data
  std::string weight;                      // names; empty: what the sidecar says
  std::vector<std::string> splits;
  bool splitsGiven = false;
  SplitLayout splitLayout = SplitLayout::Rows;
  std::string locale;                  // collation of strings; empty: code point order
  std::optional<Bootstrap> bootstrap;  // not together with imputation
  std::optional<Imputation> imputation;
  CaseDelivery delivery = CaseDelivery::Automatic;
  int threads = 0;               // 0: as many as the machine has
  std::uint32_t rowsAtOnce = 0;  // most cases taken from the data at a time; 0: as they come.
                                 // Results never depend on it: it is there for their tests.
  std::string memory;            // such as "2GB"; empty: the engine's own limit
  double timeout = 0;            // seconds that a server may keep silent; 0: any time
  std::string version;
  std::function<void(const std::string& line)> diagnostics;
  // Receives parts of the document, whole split groups each, as they are finished; the document
  // that the session holds in the end then lacks their cells. Not called when results of several
  // groups are put together, under bootstrap and imputation.
  std::function<void(const output::Document& part)> finishedGroups;
  data::ProgressListener progress;  // told while data are read
};

// Carries out the request. The session holds the document afterwards, also when the command was
// refused (document.accepted is false then). Throws Error of kind Usage, Data, Cancelled, Memory or
// Internal when there is no document to show.
std::unique_ptr<Session> run(const Request& request, const Module& module);

// The dictionary that a run of this request would use, as a schema file.
std::string describe(const Request& request);

}  // namespace embedded
