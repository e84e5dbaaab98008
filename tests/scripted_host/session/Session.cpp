#include "scripted_host/session/Session.h"

#include <utility>

namespace scripted {

namespace {
// The last one is the current one; a test may compare two runs.
std::vector<Session*> sessions;
}  // namespace

Session::Session(Script given) : script(std::move(given)) {
  sessions.push_back(this);
  for (const std::string& split : script.data.splits) inUse.insert(indexOf(split));
  if (!script.data.weight.empty()) inUse.insert(indexOf(script.data.weight));
}

Session::~Session() {
  std::erase(sessions, this);
}

Session& Session::current() {
  if (sessions.empty()) throw std::logic_error("a host call without a session");
  return *sessions.back();
}

bool Session::enter(std::string_view name, std::vector<std::string> args) {
  log.calls.push_back({std::string(name), std::move(args)});
  ++callCount;
  if (script.faults.throwAt == callCount) throw HostFailure(std::string(name));
  return script.faults.refuseAt == callCount;
}

void Session::leave(std::string_view name) {
  log.calls.push_back({std::string("~").append(name), {}});
}

void Session::destroyed(std::string_view type) {
  expect(--live[std::string(type)] >= 0, "an object is destroyed once");
}

void Session::expect(bool kept, std::string_view contract) {
  if (!kept) log.violations.emplace_back(contract);
}

void Session::expectPhase(Phase least, std::string_view operation) {
  if (phase < least) log.violations.push_back("too early in the run: " + std::string(operation));
}

void Session::event(std::string kind, std::string what) {
  log.events.push_back({std::move(kind), std::move(what)});
}

void Session::message(std::string kind, std::string via, std::string id,
                      std::vector<std::string> args) {
  event("message", id);
  log.messages.push_back({std::move(kind), std::move(via), std::move(id), std::move(args)});
}

int Session::indexOf(std::string_view variable) const {
  for (std::size_t i = 0; i < script.data.variables.size(); ++i)
    if (script.data.variables[i].name == variable) return static_cast<int>(i);
  return -1;
}

const Variable& Session::variable(int index) const {
  return script.data.variables.at(static_cast<std::size_t>(index));
}

}  // namespace scripted
