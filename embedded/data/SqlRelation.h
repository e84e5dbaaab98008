// The table of a server as a relation. One for all servers: what differs between them lies below
// SqlServer.
#pragma once

#include <memory>

#include "DataAddress.h"
#include "Progress.h"
#include "Relation.h"

namespace embedded::data {

// Connects to the server of an address, which messages call `source`. `timeout` is how many seconds
// of the server's silence are borne, 0 for any; `progress` is told while it works. Error(Data) for
// what cannot be reached or read.
std::unique_ptr<Relation> openServer(const std::string& source, const ServerAddress& address,
                                     double timeout, const ProgressListener& progress = {});

}  // namespace embedded::data
