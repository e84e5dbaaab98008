// Case iterators: the cases of the active data, one after the other, in split order.
#pragma once

#include "host/Api.h"
#include "host/data/OBS.h"

// Cases one by one. Between a NextCase() that gave a case and the next call, the case's values
// can be read for every variable that a validator has accepted or the data source itself uses
// (weight, split variables); `index` is a dictionary index. The pointers die with the next
// NextCase().
class HOST_API KORA_InputCaseIterator {
 public:
  virtual ~KORA_InputCaseIterator();

  // Moves on. False when there is nothing more, and then on every further call; also after a
  // fatal error, which the data source then reports. [during run]
  virtual bool NextCase() = 0;
  // First word of the variable's observation. [on a case]
  virtual const OBS* GetObsPointer(int index) const = 0;
  // A numeric variable's value, MCMV::Missing when it is system-missing. [on a case]
  virtual double GetNumericValue(int index) const = 0;
  // A string variable's bytes, exactly its width of them, not terminated. [on a case]
  virtual const char* GetStringValue(int index) const = 0;
};

// The iterator of a procedure's data source adds weights and the ends of split groups.
//
// Groups come in the order of their split values: missing first, numbers ascending, strings by
// collation and then by bytes. After the last case of each group, the last one included,
// NextCase() gives an end mark, for which SplitGroupEnd() is true and no values can be read;
// the NextCase() after it gives the first case of the next group. Data without split variables
// are one group. Two iterators made in one run deliver the same cases in the same order.
class HOST_API ProcDSIterator : public KORA_InputCaseIterator {
 public:
  ~ProcDSIterator() override;

  // True when the last NextCase() gave an end mark instead of a case. [during run]
  virtual bool SplitGroupEnd() const = 0;
  // The case's weight as it stands in the data: unrounded, possibly MCMV::Missing, zero or
  // negative; 1 in unweighted data. What a dictionary calls user-missing is a plain number
  // here. [on a case]
  virtual double Weight() const = 0;
};
