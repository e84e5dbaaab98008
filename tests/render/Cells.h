// The cells that a document shows, for comparing what a format's reader found.
#pragma once

#include <string>
#include <vector>

#include "Documents.h"
#include "render/ReaderTable.h"

namespace samples {

// The tables that have cells, as readers see them; before them that of the split groups' cases.
std::vector<render::ReaderTable> shownTables(const Document& document);

// How the document was made and what it says, as single words that every format must hold:
// source, fingerprint, weight, seed, version.
std::vector<std::string> provenance(const Document& document);

// Runs a command in the shell; its standard output, or nothing when it failed.
std::string outputOf(const std::string& command);

}  // namespace samples
