// The pivot document: everything that one run has to say, as plain data.
//
// The host's output classes fill it, renderers read it, and nothing else passes between them.
// Renderers never compute a statistic; the document never holds a formatted number.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "embedded/output/Text.h"

namespace embedded::output {

// An index into some list of the document; `none` points nowhere.
using Index = std::uint32_t;
inline constexpr Index none = static_cast<Index>(-1);

enum class Axis : std::uint8_t { Row, Column, Layer };

// A category or a group of a dimension. Nodes stand in the order in which they were added; node
// 0 is the dimension itself.
struct Node {
  TextPtr label;
  Index parent = none;
  bool isGroup = false;
  bool hasCells = false;  // some cell lies in this category, or below this group
  std::vector<Index> children;
  std::vector<TextPtr> footnotes;  // of the category itself, and so of all its cells
};

struct Dimension {
  TextPtr label;
  Axis axis = Axis::Row;
  int level = 1;  // 1 is outermost on its axis
  bool labelsInside = false;
  bool hidden = false;
  std::vector<Node> nodes;
};

enum class State : std::uint8_t { Valid, Missing, NotANumber };

inline constexpr std::size_t maxDimensions = 4;

// A cell: where it is, and what stands there.
struct Cell {
  double value = 0.0;                     // meaningful when state is Valid
  std::array<Index, maxDimensions> at{};  // a node of each dimension, in the table's order
  Index split = none;                     // into Document::splits, for split groups laid as rows
  Index footnotes = none;                 // into Table::footnoteLists
  State state = State::Valid;
  NumberFormat format = NumberFormat::GeneralStat;
};

// How the resampled values of the statistic in one cell spread.
struct Distribution {
  std::array<Index, maxDimensions> at{};  // the place of the cell
  Index split = none;
  double value = 0.0;           // of the statistic itself
  std::optional<double> lower;  // the interval taken from the resampled values
  std::optional<double> upper;
  double width = 0.0;  // of the bins; 0: the values are so few that each is counted by itself
  // How often each value occurred, or how many values lie in the bin around it; ascending.
  std::vector<std::pair<double, std::uint32_t>> counts;
};

// A pivot table. Cells stand in the order in which they were first written.
struct Table {
  TextPtr title;
  std::vector<Dimension> dimensions;
  std::vector<Cell> cells;
  std::vector<std::vector<TextPtr>> footnoteLists;  // footnotes of single cells
  std::vector<Distribution> distributions;          // of resampled statistics, when there are any
  Index split = none;      // of a table of its own for one split group, into Document::splits
  bool splitRows = false;  // the split variables are its outermost row dimensions
};

// The values of the split variables in one split group, outermost first.
struct SplitGroup {
  std::vector<TextPtr> values;  // each of kind Value
};

enum class Severity : std::uint8_t { Error, Warning, Note };

// A place in the command: line and column count from 1, columns in characters.
struct Place {
  int line = 1;
  int column = 1;
  int length = 1;
  std::string lineText;
};

struct Message {
  Severity severity = Severity::Error;
  TextPtr text;                // String or Composite
  std::optional<Place> where;  // of messages about the command
  std::string nearest;         // the nearest valid name, when a name was mistyped
  std::optional<int> show;     // of warnings about the data, as the procedure gave them
  std::optional<int> level;
  Index split = none;
};

struct Note {
  int kind = 0;
  TextPtr label;
  TextPtr text;
};

// How many cases there were, and how many lacked what.
struct CaseCounts {
  struct Missing {
    std::uint64_t system = 0;
    std::uint64_t user = 0;
  };
  std::uint64_t read = 0;
  std::uint64_t invalidWeight = 0;
  std::vector<std::pair<std::string, Missing>> missing;  // by variable, in the command's order
};

struct DataInfo {
  std::string source;
  std::string fingerprint;  // "sha256:..."
  std::string weight;       // empty when the data are not weighted
  std::vector<VariablePtr> splits;
  std::optional<std::uint64_t> seed;
  CaseCounts cases;
  std::vector<std::pair<Index, CaseCounts>> casesBySplit;
  TextPtr reading;  // which way cases were read, and why; null when nothing was read
};

struct Document {
  std::string procedure;  // the title, "Proportions"
  std::string version;    // of the program
  std::string command;    // as given
  bool accepted = false;
  DataInfo data;
  std::vector<Note> notes;
  std::vector<Message> messages;
  std::vector<Table> tables;
  std::vector<SplitGroup> splits;
};

}  // namespace embedded::output
