// Where cases come from: one interface for streams of rows, of patterns, and of drawn samples.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <vector>

#include "host/data/OBS.h"

namespace embedded::data {

// How the values of a case lie in a row of words: for each column in use, its dictionary index
// and the word where its observation begins.
struct ObservationLayout {
  std::vector<int> columns;           // dictionary indices, in the order of the words
  std::vector<int> offsetOfVariable;  // by dictionary index; -1 for a column not in use
  std::size_t words = 0;              // of one case
};

// Some consecutive cases of one split group.
struct CaseBlock {
  const OBS* rows = nullptr;              // count * layout.words words
  const double* weights = nullptr;        // one a case, raw; null when every weight is 1
  const std::uint64_t* counts = nullptr;  // cases that each row stands for; null when one each
  std::size_t count = 0;                  // may be 0 where only a group's end is to be told
  bool resampled = false;                 // of a drawn sample: no cases of the data themselves
  bool endsGroup = false;                 // the split group ends after this block
};

// One pass over the cases in split order. A block's memory is the stream's and dies with the
// next call.
class CaseStream {
 public:
  virtual ~CaseStream() = default;
  // False when there is nothing more. Throws embedded::Error of kind Data or Cancelled.
  virtual bool next(CaseBlock& block) = 0;
};

struct Dictionary;

// The cases of a run. Every stream that it opens delivers the same cases in the same order.
class CaseSource {
 public:
  virtual ~CaseSource() = default;
  // Finds the widths of those string variables among `columns` whose width is not yet known, by
  // one aggregate over them, and puts them into the dictionary. Called before a width matters:
  // when a command names the variables. Error(Data) for a string that is too long, and for a
  // column that cannot be analysed.
  virtual void measure(Dictionary& dictionary, std::span<const int> columns) {
    static_cast<void>(dictionary);
    static_cast<void>(columns);
  }
  // Fixes the columns in use (weight and split variables are added by the source itself); called
  // once, after the command was read and before the first stream.
  virtual void use(std::span<const int> columns) = 0;
  virtual const ObservationLayout& layout() const = 0;
  virtual std::unique_ptr<CaseStream> open() = 0;
  // Whether cases come as patterns with counts; known after use().
  virtual bool deliversPatterns() const { return false; }
  // Values of each numeric column in use that are not numbers or infinite, by dictionary index;
  // known after a whole pass.
  virtual std::map<int, std::uint64_t> nonFinite() const { return {}; }
};

}  // namespace embedded::data
