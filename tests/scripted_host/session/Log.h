// What the scripted host writes down while a module runs.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/output/BpCellText.h"
#include "host/output/BpPivotTable.h"

namespace scripted {

// A call of an operation ("Class::operation", "Class" for a constructor, "~Class").
struct Call {
  std::string name{};
  std::vector<std::string> args{};
};

struct Message {
  std::string kind{};  // "error", "warning", "message"
  std::string via{};   // the operation that issued it, "host" for the host's own
  std::string id{};
  std::vector<std::string> args{};
};

struct Note {
  int kind{};
  BpTextHandle label{};
  BpTextHandle text{};
};

struct Warning {
  BpTextHandle text{};
  int show{};
  int level{};
  int group{};  // ordinal of the split group that was being read
};

// A label below its groups, outermost first.
using Path = std::vector<BpTextHandle>;

struct Dimension {
  BpTextHandle label{};
  int sort{};
  bool positioned = false;
  int place = -1;
  int level = 0;
  bool labelsInside = false;
  bool hidden = false;
  std::vector<Path> added{};  // every category in the order of the calls, repeats included
  std::optional<Path> current{};
};

struct Cell {
  double value{};
  BpFormatSpec format{};
  std::vector<BpAnnotation> notes{};
};

// One category that was added, with what was current in all dimensions, and its cell.
struct Entry {
  std::size_t dimension{};
  std::vector<std::optional<Path>> current{};
  std::optional<Cell> cell{};
  std::vector<BpAnnotation> categoryNotes{};
};

struct Table {
  BpTextHandle title{};
  BpTextHandle identity{};
  bool shown = false;
  int group = 0;
  std::vector<Dimension> dimensions{};
  std::vector<Entry> entries{};
};

// What became visible to a user, in order: {"note", label}, {"splitchange", group}, {"table",
// number}, {"warning", identifier}, {"message", identifier}.
struct Event {
  std::string kind{};
  std::string what{};
};

// A line of diagnostic text: the writer ("B", "I", "D", "S", "IV", "DV", "SV", "BV"; "line" for a
// plain one), the label or the text, and the values.
struct Line {
  std::string writer{};
  std::string label{};
  std::vector<double> numbers{};
  std::vector<std::string> texts{};
};

struct Log {
  std::vector<Call> calls{};
  std::vector<Message> messages{};
  std::vector<Note> notes{};
  std::vector<Warning> warnings{};
  std::vector<std::shared_ptr<Table>> tables{};
  std::vector<Event> events{};
  std::vector<Line> lines{};
  // Breaches of the host interface's contracts.
  std::vector<std::string> violations{};

  std::size_t count(std::string_view call) const;
  // The names of the calls that are among these, in order.
  std::vector<std::string> only(std::initializer_list<std::string_view> names) const;
  // Identifiers of all messages, and of all warnings; titles of all tables.
  std::vector<std::string> messageIds() const;
  std::vector<std::string> warningIds() const;
  std::vector<std::string> titles() const;
  const Table& table(std::string_view title, std::size_t number = 0) const;
};

}  // namespace scripted
