// A session of the scripted host: a script, a log, and the state of the run between them.
//
// Every operation of the host interface begins with enter(), which writes the call down and makes
// it fail when the script says so. Checks of contracts go to the log as violations.
#pragma once

#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "scripted_host/session/Log.h"
#include "scripted_host/session/Script.h"

namespace scripted {

// What a call throws that the script makes throw.
struct HostFailure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// What the assertion handler throws.
struct AssertionFailed : std::logic_error {
  AssertionFailed(const std::string& words, const std::string& unit)
      : std::logic_error(unit + ": " + words), expression(words), source(unit) {}
  std::string expression;
  std::string source;
};

// The states of the run that contracts are tagged with; each includes those before it.
enum class Phase { BeforeParse, AfterParse, DuringRun };

class Session {
 public:
  explicit Session(Script given);
  virtual ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // The session that was made last.
  static Session& current();

  // Begins an operation: writes it down, throws if it is to throw. True when it is to answer its
  // failure.
  bool enter(std::string_view name, std::vector<std::string> args = {});
  // A destructor: written down, never failing.
  void leave(std::string_view name);
  // Keeps book of the objects of a class, for `live`.
  void created(std::string_view type) { ++live[std::string(type)]; }
  void destroyed(std::string_view type);

  void expect(bool kept, std::string_view contract);
  void expectPhase(Phase least, std::string_view operation);
  void event(std::string kind, std::string what);
  void message(std::string kind, std::string via, std::string id, std::vector<std::string> args);

  int indexOf(std::string_view variable) const;  // -1 when there is none
  const Variable& variable(int index) const;

  const Script script;
  Log log;
  Phase phase = Phase::BeforeParse;
  bool fatal = false;
  bool onCase = false;
  bool onSplitGroup = false;
  int fatalQueries = 0;
  int group = -1;            // of the iterator that moved last,
  std::size_t row = 0;       // and its case
  std::size_t splitRow = 0;  // the case with which the split group began
  std::map<std::string, int> live;
  // Dictionary indices that validators have accepted, or the data source uses.
  std::set<int> inUse;
  std::size_t callCount = 0;
};

inline Session& session() {
  return Session::current();
}

}  // namespace scripted
