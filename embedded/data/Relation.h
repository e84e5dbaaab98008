// What an engine must offer so that its tables can be analysed: columns, a scan in an order,
// distinct patterns, and a few aggregates. Everything above this interface is the same for all
// engines; adding one means implementing this once.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "host/data/OBS.h"

namespace embedded::data {

// What the values of a column are.
enum class ColumnKind : std::uint8_t {
  Boolean,
  Integer,
  Real,  // also decimals
  Text,  // also enumerations
  Date,
  Time,
  Timestamp,
  Unsupported  // lists, structs, blobs, ...: refused when used
};
constexpr bool isText(ColumnKind kind) {
  return kind == ColumnKind::Text;
}

struct Column {
  std::string name;
  std::string typeName;  // the engine's own
  ColumnKind kind = ColumnKind::Unsupported;
};

// How a run reads one column.
struct ColumnRead {
  int column = 0;                      // index into Relation::columns()
  ColumnKind as = ColumnKind::Real;    // what its values are to become
  int width = 0;                       // bytes of a string; 0 for a number
  bool widthDeclared = false;          // a longer string is an error of the data
  std::vector<std::string> nullTexts;  // texts that stand for no value at all
  std::vector<std::string> trueTexts;  // of a text column read as Boolean
  std::vector<std::string> falseTexts;
};

// What a scan is to deliver. A row holds the columns in this order, each in ObsWords(width)
// words: a number, MCMV::Missing when there is none (null, not-a-number, infinite); a string
// padded with blanks, all NUL bytes when null. Negative zero reads as zero.
struct ScanRequest {
  std::vector<ColumnRead> columns;
  std::size_t orderBy = 0;  // rows come in the order of so many first columns: missing first,
                            // numbers ascending, strings by collation and then by bytes, trailing
                            // blanks not counted; then as they stand in the data
  int weight = -1;          // index into `columns`; of patterns, it is no part of the rows
  std::string collation;    // a language tag; code point order when empty

  std::size_t words() const;  // of a row, the weight's included
};

// Values that a numeric column had but a number cannot be made of: not-a-number and infinities.
using NonFiniteCounts = std::vector<std::uint64_t>;  // by index into ScanRequest::columns

// One pass over the rows. What went wrong with the data comes as Error(Data).
class RowScan {
 public:
  virtual ~RowScan() = default;
  // Replaces `rows` by some further rows, at least one; 0 at the end of the data.
  virtual std::size_t next(std::vector<OBS>& rows) = 0;
  // Valid after the end.
  virtual const NonFiniteCounts& nonFinite() const = 0;
};

// Distinct rows. `weights` are sums of rounded weights: a finite weight w >= 0.5 counts
// floor(w + 0.5), all others 0, and the two kinds stand in rows of their own.
struct PatternBatch {
  std::vector<OBS> rows;              // without the weight
  std::vector<double> weights;        // 0 for cases of invalid weight
  std::vector<std::uint64_t> counts;  // cases
};

class PatternScan {
 public:
  virtual ~PatternScan() = default;
  // Replaces the batch; false at the end. Rows come in the order asked for; two of them may be
  // equal, when the engine tells values apart that read as the same number.
  virtual bool next(PatternBatch& batch) = 0;
  virtual const NonFiniteCounts& nonFinite() const = 0;
};

class Relation {
 public:
  virtual ~Relation() = default;

  // What a person calls these data: the path or address, never with a password.
  virtual const std::string& source() const = 0;
  // In the order of the data. Names are unique, also without regard to case.
  virtual const std::vector<Column>& columns() const = 0;
  // Whether a column's values are texts in the data, so that a dictionary decides what they are.
  virtual bool textual() const = 0;

  virtual std::unique_ptr<RowScan> scan(const ScanRequest& request) = 0;
  virtual std::unique_ptr<PatternScan> patterns(const ScanRequest& request) = 0;
  virtual std::uint64_t rowCount() = 0;
  // The longest string of each column in bytes, trailing blanks not counted, by one aggregate.
  virtual std::vector<std::uint64_t> longest(std::span<const ColumnRead> columns) = 0;
  // The number, from 1, of the first row with a string of more bytes; "?" when there is none.
  virtual std::string firstLonger(const ColumnRead& column, std::uint64_t bytes) = 0;
  // Of the first rows, at most `sample`: how many there were, and how many distinct patterns.
  struct Sample {
    std::uint64_t rows = 0;
    std::uint64_t patterns = 0;
  };
  virtual Sample sample(const ScanRequest& request, std::uint64_t sample) = 0;

  // Changes whenever the data do; cheap, compared at both ends of each pass.
  virtual std::string identity() = 0;
  // Names the content, for the document: "sha256:...".
  virtual std::string fingerprint() = 0;
};

}  // namespace embedded::data
