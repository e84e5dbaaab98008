// Tokens of the script as a module meets them.
#pragma once

#include "host/command/TokenInfoObj.h"
#include "scripted_host/session/Script.h"

struct TokenInfoObj::Impl {
  scripted::Token token;
};

namespace scripted {

TokenList tokenList(const Tokens& tokens);

}  // namespace scripted
