// What the engine's tables cannot tell of their files: identity, fingerprint, standard input.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "DuckDb.h"

namespace embedded::data {

// Size and time of change of each file, as one text; differs when a file was written to,
// replaced or removed. Error(Data) when one cannot be looked at.
std::string identityOf(const std::vector<std::string>& files);

// Names the content. "sha256:" and the hash of the file when it has up to 1 MiB; of a larger
// one "sha256-sampled:" and the hash of its size and of sixteen blocks of 64 KiB, evenly spaced
// from the first byte to the last. Of several files, the hash of their own hashes, one a line.
std::string fingerprintOf(Engine& engine, const std::vector<std::string>& files);

// Copies standard input to a file, in pieces, and says whether there was anything.
bool spoolStandardInput(const std::filesystem::path& target);

}  // namespace embedded::data
