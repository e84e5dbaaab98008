// The error repository: the session keeps what ended the reading of cases; nothing else gathers.
#include "host/errors/BEPesRepos.h"

namespace BEPesRepos {

void BEPesClear() {}

// What is fatal is raised by the session, after the procedure has cleaned up.
void BEPesCheckError() {}

}  // namespace BEPesRepos
