// Tokens of a command, as a procedure meets them in lists.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "host/Api.h"

// The token stream that the host holds for the current command.
class HOST_API TokenSequenceBase {
 public:
  // Codes of the reserved words that may stand in lists of variables.
  enum OperatorCode { NoOperator = 0, OperatorWith = 31, OperatorBy = 34 };
};

class HOST_API KORA_TokenSequence : public TokenSequenceBase {
 public:
  // `current`: true for the tokens of the command that the host is carrying out. [before parse]
  explicit KORA_TokenSequence(bool current);
  ~KORA_TokenSequence();
  KORA_TokenSequence(const KORA_TokenSequence&) = delete;
  KORA_TokenSequence& operator=(const KORA_TokenSequence&) = delete;

  struct Impl;
  const Impl& impl() const { return *impl_; }

 private:
  std::unique_ptr<Impl> impl_;
};

// One token: a word, a number, a quoted text or a range of variables. A value; copies share
// what the host keeps for it.
class HOST_API TokenInfoObj {
 public:
  // Whether it is one of the words reserved in lists of variables (written without quotes), and
  // which; NoOperator for anything else. [after parse]
  bool IsReservedWord() const;
  TokenSequenceBase::OperatorCode getOperatorCode() const;
  // Whether it is a number written without quotes, and that number (MCMV::Missing for other
  // tokens). [after parse]
  bool IsNumber() const;
  double getNumeric() const;
  // The text as written, quotes taken off; and in capital letters. UTF-8. [after parse]
  std::string getString() const;
  std::string getUpperString() const;

  // The host's own side: what the token is and where it stands.
  struct Impl;
  explicit TokenInfoObj(std::shared_ptr<const Impl> impl) : impl_(std::move(impl)) {}
  const Impl& impl() const { return *impl_; }

 private:
  std::shared_ptr<const Impl> impl_;
};

using TokenList = std::vector<TokenInfoObj>;
