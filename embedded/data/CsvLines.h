// Counts the cases of plain CSV text by the texts of their fields, without asking what these mean.
//
// Plain is what needs no reading rules: no quotes, no control of any kind, every line with as many
// fields as there are columns. Whatever else there is in a file, the engine's reader decides.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "CountingTable.h"
#include "CsvTexts.h"

namespace embedded::data {

class CsvLines {
 public:
  // Eight bytes behind the last line are read, though not minded.
  static constexpr std::size_t padding = 8;

  // Lines of `fields` fields between delimiters, of which those at the indices `wanted`, ascending,
  // are told apart; `texts` has the shared codes of each of them. `returns`: lines end with a
  // carriage return and a line feed.
  CsvLines(char delimiter, bool returns, std::size_t fields, std::span<const std::size_t> wanted,
           std::vector<CsvTexts>& texts);

  // Counts whole lines, the last of them with its line feed. False when they are not plain, or too
  // different to be counted so: the object is useless then.
  bool add(std::span<const char> lines);
  const CountingTable& table() const { return table_; }
  // How many lines were counted.
  std::uint64_t lines() const { return counted_; }

 private:
  bool isPlain(std::span<const char> lines) const;
  const char* codeLines(const char* at, const char* end);
  const char* codeLine(const char* at);
  bool count();

  static constexpr std::size_t linesAtOnce = 2048;
  struct Field {
    CsvTextCodes codes;
    std::vector<OBS> coded;  // of each line, its code as a number
  };
  std::uint64_t delimiters_;  // eight of them
  bool returns_;
  std::vector<int> fieldOf_;  // of each column, the index of its field; negative: not wanted
  std::vector<Field> fields_;
  std::size_t lines_ = 0;      // coded and not counted yet
  std::uint64_t counted_ = 0;  // the others
  CountingTable table_;        // its values are codes
};

}  // namespace embedded::data
