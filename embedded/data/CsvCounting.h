// Distinct cases of CSV files, counted on their bytes by threads of our own.
//
// The engine's reader makes a number of every field, and that is nearly all that reading such a
// file costs. Columns of few values hold few texts: here the texts are counted, and whoever asked
// has each of them read once.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Progress.h"
#include "Relation.h"

namespace embedded::data {

// How the files look.
struct CsvForm {
  struct File {
    std::string path;
    std::size_t header = 0;  // bytes before the end of the header's line
  };
  std::vector<File> files;
  char delimiter = ',';
  std::size_t fields = 0;
};

struct CountedTexts {
  std::vector<std::vector<std::string>> texts;  // of each column, by code
  PatternBatch patterns;                        // a row holds the code of each column, as a number
};

// Bytes of a file that are counted at once.
inline constexpr std::size_t blockOfFile = std::size_t{1} << 20U;

// Counts the texts of the columns at the indices `wanted`, ascending, by up to `threads` threads,
// 0 for as many as the machine has; a file is cut in blocks of `block` bytes. Nothing when a file
// is not plain CSV (as CsvLines has it), holds too many different texts, or changes meanwhile:
// another reader must tell then. `progress` is told estimates. Throws Error(Cancelled).
std::optional<CountedTexts> countTexts(const CsvForm& form, const std::vector<std::size_t>& wanted,
                                       int threads, std::size_t block = blockOfFile,
                                       const ProgressListener& progress = {});

}  // namespace embedded::data
