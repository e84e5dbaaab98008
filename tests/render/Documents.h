// Documents made by hand, as a procedure would write them, for the tests of all formats.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "embedded/output/Description.h"
#include "embedded/output/Document.h"
#include "embedded/output/Values.h"
#include "embedded/output/Writer.h"

namespace samples {

using embedded::output::Axis;
using embedded::output::Description;
using embedded::output::Document;
using embedded::output::Index;
using embedded::output::NumberFormat;
using embedded::output::RawValue;
using embedded::output::Text;
using embedded::output::TextPtr;
using embedded::output::VariableInfo;
using embedded::output::VariablePtr;

// The system-missing value, and not-a-number.
extern const double missing;
extern const double nan;

// A few English sentences; every other identifier is its own sentence.
const embedded::output::Sentences& english();

// What a module would say of the tables below.
const Description& description();

VariablePtr variable(std::string name, std::string label = {});
// A numeric variable with value labels 0 and 1.
VariablePtr yesNo(std::string name, std::string label, std::string no, std::string yes);

TextPtr id(std::string identifier);
// "^1 = ^2": a variable and the value that is its success.
TextPtr success(const VariablePtr& variable, RawValue value);

// Opens tables and writes cells by the paths of their labels.
class Builder {
 public:
  Builder();

  // A table with dimensions in this order; columns come last, the others are rows.
  Index table(const std::string& title, std::vector<TextPtr> rows, TextPtr columns);

  // One path a dimension: groups first, the category last.
  using Path = std::vector<TextPtr>;
  void cell(Index table, const std::vector<Path>& at, double value,
            NumberFormat format = NumberFormat::GeneralStat);
  // A cell with a footnote.
  void cell(Index table, const std::vector<Path>& at, double value, const std::string& footnote);
  // The category at the end of a path.
  Index category(Index table, Index dimension, const Path& path);

  // Begins a split group of these values.
  void split(std::vector<TextPtr> values, bool separateTables);

  Document document;
  embedded::output::Writer writer{document};
};

// One sample: two variables, intervals and tests, with cells that are missing, not-a-number,
// never written, tiny, and at the end of their range.
Document oneSample();
// Groups of region and sex as rows of common tables; one group's value is missing.
Document splitRows();
// The same groups, each with a table of its own.
Document splitTables();
// Pairs as nested groups of rows, and a table that has no cells.
Document pairs();
// Statistics with nested groups of columns, too wide for a line.
Document wide();
// A command that was refused, on several lines.
Document refused();
// Labels that would like to be markup, formulas or terminal commands.
Document hostile();
// Wide characters.
Document eastAsian();

}  // namespace samples
