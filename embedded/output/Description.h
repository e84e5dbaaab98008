// What a module says of the texts that it writes: the meaning of labels, for readers that know no
// procedure by name.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace embedded::output {

// What a label stands for.
enum class Role {
  None,
  Outcome,     // a variable with its success
  Group,       // a group of cases
  Comparison,  // two things compared
  Count,
  Trials,
  Estimate,
  Difference,
  StandardError,
  Level,  // the spanner of an interval
  Lower,
  Upper,
  Statistic,
  POneSided,
  PTwoSided,
  Method,    // a row's way of computing
  Reference  // a footnote that names the reference value
};

// The meaning of one label, by its identifier.
struct Meaning {
  Role role = Role::None;
  std::string pooling;             // how it is combined over imputations; empty: not at all
  std::optional<double> rangeLow;  // ends of the range that the value can take
  std::optional<double> rangeHigh;
  std::optional<double> reference;  // the value that stands for "no effect"
  std::string referenceArgumentOf;  // or the footnote whose argument that value is
  std::string direction;            // how a difference is taken, in words
  std::string note;                 // which variant of a method this is, in words
};

// Where the counts behind an estimate stand, for degrees of freedom of complete data.
struct DegreesOfFreedom {
  std::string table;   // title; empty: the same table
  std::string counts;  // label of the counts
  std::string take;    // "first" or "sum" of the rows; empty: the row's own
  double minus = 0.0;
};

// What is said of one table, by its title.
struct TableMeaning {
  std::string holds;        // "intervals", "tests", "statistics"
  std::string direction;    // how differences in it are taken, in words
  std::string estimate;     // label of what its rows are about
  std::string groupsTable;  // title and label of the two estimates behind a difference
  std::string groupsEstimate;
  std::optional<DegreesOfFreedom> degreesOfFreedom;
  std::map<std::string, Meaning, std::less<>> labels;
};

struct Description {
  std::string command;
  std::string title;
  std::string library;            // file name of the module
  std::string diagnosticLibrary;  // of its diagnostic build; empty when there is none
  // By the name that a user gives: the flag that the diagnostic build exports.
  std::map<std::string, std::string, std::less<>> diagnosticFlags;
  std::string entry;
  std::string attach;
  std::string catalogue;
  // Where a command gives its confidence level, in percent; empty when it cannot.
  std::string levelSubcommand;
  std::string levelParameter;
  std::map<std::string, Meaning, std::less<>> labels;
  std::map<std::string, TableMeaning, std::less<>> tables;

  // What is said of the table of this title; nothing when it is not described.
  const TableMeaning& table(std::string_view title) const;
  // The meaning of a label in a table: what the table says of it where it says something, and
  // what is said of it everywhere otherwise.
  Meaning of(std::string_view title, std::string_view label) const;
};

}  // namespace embedded::output
