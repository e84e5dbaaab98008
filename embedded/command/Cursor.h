// A place in the lexemes of a command, and the reports about it.
#pragma once

#include <string>
#include <vector>

#include "embedded/command/CommandMessages.h"
#include "embedded/command/Lexer.h"
#include "embedded/command/Names.h"

namespace embedded::command {

class Cursor {
 public:
  explicit Cursor(const Lexed& lexed) : lexed_(&lexed) {}

  bool atEnd() const { return at_ == lexed_->lexemes.size(); }
  const Lexeme& here() const { return lexed_->lexemes[at_]; }
  const Lexeme& take() { return lexed_->lexemes[at_++]; }
  bool is(LexKind kind, std::size_t ahead = 0) const {
    return at_ + ahead < lexed_->lexemes.size() && lexed_->lexemes[at_ + ahead].kind == kind;
  }
  // At `NAME =`.
  bool atParameter() const { return is(LexKind::Word) && is(LexKind::Equals, 1); }
  // At the end of a value: the end, a slash, or the next parameter.
  bool atValueEnd() const { return atEnd() || is(LexKind::Slash) || atParameter(); }
  const output::Place& place() const { return atEnd() ? lexed_->end : here().place; }

  void skipSubcommand();
  void skipValue();

  bool failed() const { return failed_; }
  void fail(const CommandMessage& message, const std::vector<std::string>& arguments,
            const output::Place& where, std::string nearest = {});
  // A name that stands for nothing, or for several things.
  void failName(const CommandMessage& unknown, const std::vector<std::string>& arguments,
                const Lexeme& word, const FoundName& found, const std::vector<std::string>& names);

 private:
  const Lexed* lexed_;
  std::size_t at_ = 0;
  bool failed_ = false;
};

}  // namespace embedded::command
