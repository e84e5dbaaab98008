// What the data side of the scripted host tells its other sides.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/data/CaseIterator.h"
#include "host/data/KORA_Variable.h"
#include "scripted_host/session/Script.h"

namespace scripted {

// Name and value of each split variable, latched when the split group began.
std::vector<std::pair<std::string, Value>> currentSplit();

// The dictionary entry of this index; lives as long as the session. None for a wrong index.
std::unique_ptr<KORA_Variable> makeVariable(int index);

// A new iterator before the first case.
std::unique_ptr<ProcDSIterator> makeIterator();

}  // namespace scripted
