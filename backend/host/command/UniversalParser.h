// The host's parser, driven by a command description alone.
#pragma once

#include <memory>

#include "host/Api.h"
#include "host/command/CommandDescriptor.h"
#include "host/command/CommandSpec.h"
#include "host/command/TokenInfoObj.h"

class HOST_API UniversalParser {
 public:
  // All three must outlive the parser; `result` is filled by getCommandSpecifications.
  UniversalParser(const KORA_TokenSequence& tokens, CommandSpec& result,
                  const CommandDescriptor& description);
  ~UniversalParser();
  UniversalParser(const UniversalParser&) = delete;
  UniversalParser& operator=(const UniversalParser&) = delete;

  // Reads the tokens. 0 when they follow the description; otherwise the violations have been
  // reported in the host's own words and `result` is not to be read. [before parse]
  int getCommandSpecifications();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};
