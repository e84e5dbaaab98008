// The host's error repository.
#pragma once

#include "host/Api.h"

namespace BEPesRepos {

// Forgets what was gathered before this run's data are read. [after parse]
HOST_API void BEPesClear();
// Lets the host act on what was gathered while the data were read. [at the end of a run]
HOST_API void BEPesCheckError();

}  // namespace BEPesRepos
