#include "embedded/session/Session.h"

#include <algorithm>

#include "embedded/errors/Error.h"
#include "host/data/OBS.h"
#include "host/distributions/MCMV.h"
#include "host/errors/Assertion.h"

namespace embedded {

namespace {

Session* currentSession = nullptr;

// The value of a split variable in the case just read.
output::TextPtr splitValue(const data::Variable& variable, const OBS* observation) {
  if (variable.type == 0) {
    return output::Text::ofValue(variable.info, observation->number, true);
  }
  // A null string is no blank one: it is shown as missing.
  if (variable.isSystemMissing(observation)) {
    return output::Text::ofValue(variable.info, MCMV::Missing, true);
  }
  const std::string_view bytes(observation->bytes, static_cast<std::size_t>(variable.type));
  std::string text(bytes.substr(0, bytes.find('\0')));
  text.erase(text.find_last_not_of(' ') + 1);
  return output::Text::ofValue(variable.info, std::move(text), true);
}

}  // namespace

std::atomic<bool> Session::cancelled = false;

Session& Session::current() {
  if (currentSession == nullptr) {
    KORA_AssertionFailed("a session is current", "Session", __LINE__);
  }
  return *currentSession;
}

Session::Scope::Scope(Session& session) : previous_(currentSession) {
  currentSession = &session;
}

Session::Scope::~Scope() {
  currentSession = previous_;
}

void Session::useColumn(int index) {
  if (std::find(columnsInUse.begin(), columnsInUse.end(), index) == columnsInUse.end()) {
    columnsInUse.push_back(index);
  }
}

// What goes wrong ends the reading of cases: the call comes from the procedure, which is to clean
// up.
void Session::handOnFinishedGroups() {
  constexpr std::size_t manyCells = std::size_t{1} << 16;
  if (!finishedGroups || fatal || writer.cells() < manyCells) {
    return;
  }
  try {
    finishedGroups(document);
    writer.release();
  } catch (...) {
    fatal = std::current_exception();
  }
}

void Session::beginSplitGroup() {
  handOnFinishedGroups();
  output::SplitGroup group;
  std::string key;
  for (const int index : dictionary.splits) {
    const data::Variable& variable = dictionary.variables[static_cast<std::size_t>(index)];
    const OBS* observation = currentCases->GetObsPointer(index);
    key.append(observation->bytes, ObsWords(variable.type) * sizeof(OBS));
    group.values.push_back(splitValue(variable, observation));
  }
  const auto [known, isNew] =
      splitGroups_.try_emplace(std::move(key), static_cast<output::Index>(document.splits.size()));
  if (isNew) {
    document.splits.push_back(std::move(group));
  }
  currentSplit = known->second;
  writer.beginSplit(currentSplit, splitLayout == SplitLayout::Tables && !bootstrapping && !pooling);
}

void Session::checkCancelled() {
  if (cancelled.load(std::memory_order_relaxed)) {
    throw Error(ErrorKind::Cancelled, "Interrupted");
  }
}

}  // namespace embedded
