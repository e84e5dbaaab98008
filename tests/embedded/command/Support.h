// A session with a small dictionary, and a made-up command: the parser knows none by name.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "embedded/session/Session.h"
#include "host/command/CommandDescriptor.h"
#include "host/command/CommandSpec.h"
#include "host/command/VarSpecObj.h"
#include "host/data/ProcedureDataSource.h"

namespace embedded::command_tests {

// The command TASTE:
//   /TRY list (required) SHARE=0..1 open, LIMIT=0..100 closed below, KINDS=SOUR SWEET SWEETISH
//   SALTY
//        ORDER=UP | DOWN
//   /TAKE RULE=FIRST | CUT(number) | LEVEL(values, required) | GROUPS(values, may be left out)
//   /TRAY
CommandDescriptor tasteCommand();

// Variables: a b c d (numbers), w (the weight), s (a string of 4 bytes), "Event Count", by,
// when (a date), flag (a boolean), grade (numbers 1 and 2 declared, labelled low and high),
// town (a string with declared categories), split (a split variable).
data::Dictionary smallDictionary();

// A message as "line:column:length identifier [arguments] nearest"; the last two where there are
// any.
std::string shown(const output::Message& message);

class CommandTest : public ::testing::Test {
 protected:
  CommandTest();

  // Reads the command; `spec()` is what was read.
  int parse(const std::string& command);
  const CommandSpec& spec() const { return *spec_; }
  const ParamObj& parameter(const char* subcommand, const char* name) const;
  TokenList list(const char* subcommand = "TRY") const;

  // The messages since the last call, as shown().
  std::vector<std::string> messages();
  // The messages that reading this command leads to.
  std::vector<std::string> messagesOf(const std::string& command);

  Session session_;
  Session::Scope scope_{session_};
  ProcedureDataSource source_;

 private:
  std::unique_ptr<KORA_TokenSequence> tokens_;
  std::unique_ptr<CommandSpec> spec_;
};

}  // namespace embedded::command_tests
