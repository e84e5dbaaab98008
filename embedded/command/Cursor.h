// A place in the lexemes of a command, and what is wrong with them.
#pragma once

#include <string>
#include <vector>

#include "embedded/command/CommandMessages.h"
#include "embedded/command/Lexer.h"
#include "embedded/command/Names.h"

namespace embedded::command {

class Cursor {
 public:
  // Begins with the problems that were met when the lexemes were made. `lexed` must outlive it.
  explicit Cursor(const Lexed& lexed);

  bool atEnd() const { return at_ >= lexed_->lexemes.size(); }
  const Lexeme& here() const { return lexed_->lexemes[at_]; }
  const Lexeme& take() { return lexed_->lexemes[at_++]; }
  bool is(LexKind kind, std::size_t ahead = 0) const {
    return at_ + ahead < lexed_->lexemes.size() && lexed_->lexemes[at_ + ahead].kind == kind;
  }
  // At `NAME =`.
  bool atParameter() const { return is(LexKind::Word) && is(LexKind::Equals, 1); }
  // At the end of a subcommand: the end or a slash.
  bool atSubcommandEnd() const { return atEnd() || is(LexKind::Slash); }
  // At the end of a value: that of the subcommand, or the next parameter.
  bool atValueEnd() const { return atSubcommandEnd() || atParameter(); }
  const Spot& place() const { return atEnd() ? lexed_->end : here().place; }

  // Passes over what is left of a subcommand, or of a value.
  void skipSubcommand();
  void skipValue();

  bool failed() const { return failed_; }
  // Notes a mistake. A place where no token could be made is told once, and the mistakes of a
  // command that has too many are not all told.
  void fail(const CommandMessage& message, const std::vector<std::string>& arguments,
            const Spot& where, std::string nearest = {});
  // Notes a name that stands for nothing, or for several things.
  void failName(const CommandMessage& unknown, const std::vector<std::string>& arguments,
                const Lexeme& word, const FoundName& found, const std::vector<std::string>& names);
  // Adds what was noted to the session's document, in the order of the places.
  void tell();

 private:
  bool isFull() const;
  // Whether no token could be made at this place of the lexeme here or of the one just taken.
  bool isBad(const Spot& where) const;

  const Lexed* lexed_;
  std::size_t at_ = 0;
  bool failed_ = false;
  bool further_ = false;  // there were mistakes that are not told
  std::vector<output::Message> mistakes_;
};

}  // namespace embedded::command
