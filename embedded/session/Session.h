// The host session: what the host's classes share while one command runs. The only global state.
//
// The program makes a session, fills in data, command and options, makes it current, and calls
// the procedure's entry. The classes that the procedure then creates find the session here.
#pragma once

#include <atomic>
#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "embedded/command/Spot.h"
#include "embedded/data/CaseSource.h"
#include "embedded/data/Dictionary.h"
#include "embedded/output/Document.h"
#include "embedded/output/Writer.h"
#include "embedded/text/Collation.h"
#include "host/data/CaseIterator.h"

namespace embedded {

// How split groups are laid out.
enum class SplitLayout { Rows, Tables };

struct Session {
  // Filled before the run.
  std::string commandText;
  data::Dictionary dictionary;
  std::unique_ptr<data::CaseSource> cases;
  text::Collation collation;
  SplitLayout splitLayout = SplitLayout::Rows;
  bool bootstrapping = false;  // the case source presents bootstrap samples
  bool pooling = false;        // it presents imputations
  std::function<void(const std::string& line)> diagnostics;  // where diagnostic lines go
  // Receives the document when many cells of finished split groups have gathered in it; they are
  // taken out of it afterwards. Empty: the document keeps everything.
  std::function<void(const output::Document& document)> finishedGroups;

  // Filled by the run.
  std::vector<int> columnsInUse;  // accepted by a validator, in order, without repeats
  output::Document document;
  output::Writer writer{document};
  std::exception_ptr fatal;  // what ended the reading of cases; FatalError() when set
  bool accepted = false;     // the procedure went on after its parse: it wrote its notes

  // A number that the command gives as the whole value of a parameter.
  struct GivenNumber {
    std::string subcommand;
    std::string parameter;
    double value = 0.0;
  };
  std::vector<GivenNumber> givenNumbers;

  // The place in the command that the procedure looked at last: where its messages belong.
  std::optional<command::Spot> commandFocus;

  // The iterator that gave the last case, set by the iterators; split values are read from it.
  const KORA_InputCaseIterator* currentCases = nullptr;
  // The split group that cases are being read from, set by BpProcedure::SplitChange().
  output::Index currentSplit = output::none;

  // Set from a signal handler; long work looks at it and throws Error(Cancelled).
  static std::atomic<bool> cancelled;

  // The session of the running command; an assertion failure when there is none.
  static Session& current();

  // Makes a session current for a scope.
  class Scope {
   public:
    explicit Scope(Session& session);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

   private:
    Session* previous_;
  };

  Session() = default;
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Makes the split group of the case just read the current one, of the document and of all
  // that is written from now on.
  void beginSplitGroup();
  // Adds a column that the run will read.
  void useColumn(int index);
  // Throws Error(Cancelled) when the user interrupted.
  static void checkCancelled();

 private:
  void handOnFinishedGroups();

  // Split groups already in the document, by the words of their values.
  std::unordered_map<std::string, output::Index> splitGroups_;
};

}  // namespace embedded
