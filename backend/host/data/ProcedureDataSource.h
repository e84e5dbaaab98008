// The active data set of the running command.
#pragma once

#include <memory>

#include "host/Api.h"
#include "host/data/CaseIterator.h"
#include "host/data/KORA_Variable.h"

// What a selection of cases would be; procedures pass null, for all cases.
class KORA_CaseSelection;

class HOST_API KORA_DataSource {
 public:
  virtual ~KORA_DataSource();

  // The variable of this dictionary index, owned by the data source. Never null for an index
  // that the host itself has handed out. [any time]
  virtual const KORA_Variable* GetVariable(int index) const = 0;
};

// Made by a procedure at the start of a run; refers to the host's session, which outlives it.
class HOST_API ProcedureDataSource : public KORA_DataSource {
 public:
  ProcedureDataSource();
  ~ProcedureDataSource() override;
  ProcedureDataSource(const ProcedureDataSource&) = delete;
  ProcedureDataSource& operator=(const ProcedureDataSource&) = delete;

  const KORA_Variable* GetVariable(int index) const override;

  // Says whether this procedure takes part in bootstrapping. [before parse]
  virtual void Bootstrapping(bool takesPart);
  // True once reading the data or writing the output cannot go on. Stays true. [any time]
  virtual bool FatalError() const;
  // Number of split variables, pooling variables included, and the dictionary index of each,
  // outermost first; 0 <= i < GetNSplitVars(). [any time]
  virtual int GetNSplitVars() const;
  virtual int GetSplitVarIndex(int i) const;
  // The split-layout query: true when each split group is to have tables of its own, false
  // when the groups are laid as rows of common tables. While resampling or pooling, false.
  // [any time]
  virtual bool SplitsAsSeparateTables() const;
  // Dictionary index of the weight variable, negative when the data are not weighted. [any time]
  virtual int GetWeightVarIndex() const;
  // A new iterator before the first case; never null, and always a ProcDSIterator here. The
  // caller owns it. [after parse]
  virtual std::unique_ptr<KORA_InputCaseIterator> MakeIterator(const KORA_CaseSelection* selection);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

// Whether the host is running a bootstrap now. [any time]
HOST_API bool QBOOTSTRAPPING();
